#pragma once

#include "shell/Platform.h"

namespace marl {

/// `folder` and `file` with exactly one backslash between them.
Text JoinPath(TextView folder, TextView file);

/// Starts the programs of the suite. Every button press and menu choice that starts a program ends
/// up here.
class Launcher {
 public:
  explicit Launcher(Platform& platform) : platform_(platform) {}

  /// Starts `file` in `folder`, which becomes its working directory (ShellExecute without a verb),
  /// if the file exists. `windowStyle` is a ShowWindow command. True if the program was passed to
  /// the shell, whether or not the shell could start it. If `complain` is set, a message tells the
  /// user about a missing file.
  bool RunProgram(TextView folder, TextView file, TextView arguments, int windowStyle,
                  bool complain) const;

  /// Opens a document or an address, with the desktop as owner. The result is ignored.
  void ShellOpen(TextView verb, TextView file, TextView parameters, TextView directory,
                 int show) const;

 private:
  Platform& platform_;
};

}  // namespace marl
