#pragma once

#include "platform/Text.h"

namespace marl {

/// What the running process knows of itself.
class Process {
 public:
  virtual ~Process() = default;
  /// The command line behind the program's own name, as it was typed.
  virtual Text CommandLine() const = 0;
  /// Full path of the program's file (GetModuleFileName).
  virtual Text ProgramPath() const = 0;
  /// True when another process of this same program runs for this user already: the first caller
  /// claims a named object of the user's session and holds it to its end.
  virtual bool PreviousInstance() = 0;
};

}  // namespace marl
