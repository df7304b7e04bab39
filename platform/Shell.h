#pragma once

#include "platform/Status.h"
#include "platform/Text.h"

namespace marl {

/// `ShowWindow` commands that programs are started with.
enum ShowCommand : int {
  kShowHidden = 0,
  kShowNormal = 1,
  kShowMinimised = 2,
};

/// The window that a started program belongs to.
enum class ShellOwner { kMainForm, kDesktop };

/// Starts programs and opens documents.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Passes a file to the shell (ShellExecute). An empty verb means none. Returns the shell's code,
  /// above 32 for success.
  virtual int Execute(ShellOwner owner, TextView verb, TextView file, TextView parameters,
                      TextView directory, int show) = 0;
  /// Finds the program associated with the type of `file` (FindExecutable, a buffer of 1024
  /// characters). Returns its code, above 32 for success; `program` is then the buffer up to its
  /// first NUL, otherwise unchanged.
  virtual int FindProgram(TextView file, TextView directory, Text& program) = 0;
  /// Starts `program`, a full path, with this command line (CreateProcess) and a window that gets
  /// the focus. If `program` is empty, the platform takes it from the command line and searches for
  /// it. kElevationRequired if the program needs elevation, so that only the shell can start it.
  virtual Status Run(TextView program, TextView commandLine, int show) = 0;
  /// Opens a help file for the main form's window (WinHelp).
  virtual void Help(TextView file, int command, int data) = 0;
};

}  // namespace marl
