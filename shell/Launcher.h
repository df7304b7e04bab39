#pragma once

#include "shell/Platform.h"

namespace marl {

/// `folder` and `file` with exactly one backslash between them.
Text JoinPath(TextView folder, TextView file);

/// Starts programs of the suite: the one place that turns a press or a menu choice into a started
/// program.
class Launcher {
 public:
  explicit Launcher(Platform& platform) : platform_(platform) {}

  /// Starts `file` of `folder` with the folder as its working directory (ShellExecute without a
  /// verb), if a listing shows it there. `windowStyle` is a ShowWindow command. Returns whether the
  /// program was handed to the shell; what the shell made of it is not looked at. A missing file is
  /// told to the user when `complain` is set.
  bool RunProgram(TextView folder, TextView file, TextView arguments, int windowStyle,
                  bool complain) const;

  /// Opens a document or an address, with the desktop as owner. The result is not looked at.
  void ShellOpen(TextView verb, TextView file, TextView parameters, TextView directory,
                 int show) const;

 private:
  Platform& platform_;
};

}  // namespace marl
