#pragma once

#include "platform/Text.h"

namespace marl {

/// What stands behind the program's own name on a command line: the name is in quotation marks, or
/// ends before the first blank or tab. One blank or tab separates; further ones belong to the
/// result.
TextView BehindProgram(TextView commandLine);

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
  /// Asks the system to start the program again with this command line after an installer or a
  /// restart of the computer has closed it (RegisterApplicationRestart); not after a failure.
  /// Failures are ignored.
  virtual void RegisterRestart(TextView commandLine) = 0;
};

}  // namespace marl
