#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "tests/contract/FailingAllocations.h"

namespace marl {

/// Thrown by a call of a port at which the process is killed. Nothing catches it, and no later call
/// has an effect.
struct Killed {};

/// Which calls of the ports fail. Every call of a port that can fail on the platform counts; the
/// ports of `FaultyPorts.h` ask here first. Nothing counts before `Begin`.
class Faults {
 public:
  enum class Span {
    kThisCall,           ///< only the call with the given number
    kThisPortFromNowOn,  ///< this call, and all later ones of the same port
    kAllFromNowOn,       ///< this call and all later ones
  };

  /// Counts from now on. Nothing fails before a request.
  void Begin() { counting_ = true; }
  /// The call with this number fails, counted from 1.
  void FailAt(int number, Span span) {
    failAt_ = number;
    span_ = span;
  }
  /// All calls whose names begin like this fail.
  void FailCalls(std::string_view beginning) { failing_ = beginning; }
  /// The process is killed in the middle of the call with this number.
  void KillAt(int number) { killAt_ = number; }
  /// The same in the first call with this name.
  void KillIn(std::string_view call) { killIn_ = call; }
  /// Runs once, in place of another process, right before the call with this number.
  void MeanwhileAt(int number, std::function<void()> act) { meanwhile_[number] = std::move(act); }
  /// From now on every call succeeds, and none is counted.
  void End() {
    counting_ = false;
    failAt_ = killAt_ = 0;
    failing_.clear();
    meanwhile_.clear();
  }

  /// Number of calls counted.
  int calls() const { return calls_; }
  /// Number of calls that have failed, by name.
  const std::map<std::string, int>& failed() const { return failed_; }
  /// The call that failed first; empty if there was none.
  const std::string& first() const { return first_; }
  bool killed() const { return killed_; }
  /// True if the program made more calls than any journey needs.
  bool endless() const { return calls_ > kMostCalls; }

  /// `call` is the name of a port, a dot and the operation. True if the call has to fail.
  bool Fails(std::string_view call);

  /// True once the process is killed: a call without a result has no effect then.
  bool gone() const { return killed_; }

 private:
  static constexpr int kMostCalls = 200'000;

  bool counting_ = false;
  int calls_ = 0;
  int failAt_ = 0;
  int killAt_ = 0;
  bool killed_ = false;
  Span span_ = Span::kThisCall;
  std::string first_;
  std::string failing_;
  std::string killIn_;
  std::map<std::string, int> failed_;
  std::map<int, std::function<void()>> meanwhile_;
};

/// One call of a port: decides whether it fails, and watches no allocation while it lives, because
/// ports never throw.
class PortCall {
 public:
  PortCall(Faults& faults, std::string_view call) : fails_(faults.Fails(call)) {}
  bool fails() const { return fails_; }

 private:
  AllocationsWatched unwatched_{false};
  bool fails_;
};

}  // namespace marl
