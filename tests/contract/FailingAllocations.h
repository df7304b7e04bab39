#pragma once

#include <cstdint>
#include <new>

namespace marl {

/// Which allocations by operator new fail, in test programs that replace it (LiveBytes.cpp,
/// LiveBytesSanitized.cpp). Only those are counted that are made while an `AllocationsWatched`
/// lives, so that the test's own do not fail.
struct FailingAllocations {
  std::int64_t first = 0;    ///< number of the first that fails, from 1; 0 for none
  bool allLater = false;     ///< all after it fail too
  std::int64_t counted = 0;  ///< number of allocations so far
  bool watched = false;

  /// Counts from now on, and fails these.
  void Begin(std::int64_t number, bool later) {
    first = number;
    allLater = later;
    counted = 0;
  }
  /// True if the allocation that is about to be made has to fail.
  bool Fails() {
    if (!watched) return false;
    ++counted;
    return first != 0 && (counted == first || (allLater && counted > first));
  }
};

inline FailingAllocations theFailingAllocations;

/// Watches allocations while it lives, or stops watching them.
class AllocationsWatched {
 public:
  explicit AllocationsWatched(bool watched) : before_(theFailingAllocations.watched) {
    theFailingAllocations.watched = watched;
  }
  ~AllocationsWatched() { theFailingAllocations.watched = before_; }
  AllocationsWatched(const AllocationsWatched&) = delete;
  AllocationsWatched& operator=(const AllocationsWatched&) = delete;

 private:
  bool before_;
};

}  // namespace marl
