#pragma once

#include <string>
#include <vector>

#include "tests/unit/Journeys.h"

namespace marl {

/// True if the long runs are asked for (`./marl faults`): every call, every allocation.
bool LongRun();

/// What may be stored on a machine after a journey that was disturbed: each value as it was before,
/// or as an undisturbed journey leaves it, on this machine or on one without settings (where every
/// value is the default).
class SoundStores {
 public:
  explicit SoundStores(std::vector<StoredState> states) : states_(std::move(states)) {}
  /// What is stored and must not be, in words; empty if there is nothing.
  std::string Wrong(const StoredState& stored) const;

 private:
  bool Known(const std::string& place, const std::string* value) const;

  std::vector<StoredState> states_;
};

/// What is stored after a disturbed journey and must not be (`SoundStores::Wrong`).
std::string WrongAfter(const Journey& journey, const StoredState& stored);

/// Checks a run that has ended or been killed: no handle is left, and no form, icon or hook if it
/// has ended by itself. Discards the program.
void ExpectNothingHeld(ProgramRun& run);
/// Checks that the program starts on the machine without a failure, and can be left.
void ExpectNextStart(Machine& machine);

std::string Narrow(TextView text);
/// The text of the message with which a run has failed; empty if it has not.
std::string FailureOf(const ProgramRun& run);

}  // namespace marl
