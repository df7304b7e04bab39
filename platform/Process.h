#pragma once

#include "platform/Text.h"

namespace marl {

/// The running process.
class Process {
 public:
  virtual ~Process() = default;
  /// The command line after the program's own name, as typed.
  virtual Text CommandLine() const = 0;
  /// Full path of the program's file (GetModuleFileName).
  virtual Text ProgramPath() const = 0;
  /// True if this program is already running for this user: the first process creates a named
  /// object in the user's session and keeps it until it ends.
  virtual bool PreviousInstance() = 0;
};

}  // namespace marl
