#pragma once

#include <ostream>
#include <vector>

#include "tests/unit/Machine.h"

namespace marl {

/// What a user does with the program, from its start to its end.
struct Journey {
  const char* name;
  /// Prepares the dialogs' users; may be null.
  void (*arrange)(ProgramRun&);
  /// Runs after start-up; may be null.
  void (*act)(ProgramRun&);
  bool starting = false;  ///< calls count from the start of the program, not from its idle state
  bool firstUse = false;  ///< on a machine without settings
};

inline void PrintTo(const Journey& journey, std::ostream* out) { *out << journey.name; }

const std::vector<Journey>& Journeys();

/// Goes the whole way. Calls of ports are counted from the start or the idle state on, until the
/// program has ended. Throws `Killed`.
void Travel(const Journey& journey, ProgramRun& run);

/// What a user does on one day, in order, with the running program.
const std::vector<void (*)(ProgramRun&)>& ActsOfADay();

/// The whole day, from start to end. Calls `after` after each act, with all that has been stored.
void TravelAll(ProgramRun& run, const std::function<void(const StoredState&)>& after = {});

}  // namespace marl
