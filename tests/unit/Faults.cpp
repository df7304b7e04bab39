#include "tests/unit/Faults.h"

#include "platform/forms/Desktop.h"

namespace marl {

namespace {

std::string_view PortOf(std::string_view call) { return call.substr(0, call.find('.')); }

}  // namespace

bool Faults::Fails(std::string_view call) {
  if (!counting_) return killed_;
  ++calls_;
  // The test that finds this fails; the program must not go on for ever.
  if (endless()) throw ProcessEnd{-1};
  if (const auto due = meanwhile_.find(calls_); due != meanwhile_.end()) {
    const auto act = std::exchange(due->second, nullptr);
    if (act) act();
  }
  if (killed_) return true;
  if (calls_ == killAt_ || (!killIn_.empty() && call == killIn_)) {
    killed_ = true;
    throw Killed();
  }
  if (!failing_.empty() && call.starts_with(failing_)) return true;
  if (failAt_ == 0 || calls_ < failAt_) return false;
  const bool concerned = calls_ == failAt_ || span_ == Span::kAllFromNowOn ||
                         (span_ == Span::kThisPortFromNowOn && PortOf(call) == PortOf(first_));
  if (!concerned) return false;
  if (calls_ == failAt_) first_ = call;
  ++failed_[std::string(call)];
  return true;
}

}  // namespace marl
