#pragma once

#include <exception>
#include <utility>

namespace marl::win32 {

/// Takes an exception past the platform's stack frames, which must not see one: a callback runs its
/// work in `Run`, and the caller of the platform's function rethrows what it stopped.
class CarriedFailure {
 public:
  /// The result of `work`, or `failed` if it throws.
  template <typename Work, typename Result>
  Result Run(Work work, Result failed) noexcept {
    try {
      return work();
    } catch (...) {
      failure_ = std::current_exception();
      return failed;
    }
  }
  /// Throws what `Run` caught, if anything.
  void Rethrow() {
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  }

 private:
  std::exception_ptr failure_;
};

}  // namespace marl::win32
