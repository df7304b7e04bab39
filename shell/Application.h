#pragma once

#include <memory>

#include "shell/Platform.h"
#include "shell/frmMain.h"

namespace marl {

/// The program: what lives from its first to its last moment, on a given platform.
///
/// Start reading here: `Run` makes the main form, whose load sequence (frmMain_Load.cpp) calls into
/// everything else.
class Application {
 public:
  explicit Application(Platform platform, bool debugLog = kDebugLog);

  /// Runs the program to its end. Returns the process's exit code.
  int Run();

  frmMain& mainForm() { return *main_; }

 private:
  Platform platform_;
  bool debugLog_;
  std::unique_ptr<frmMain> main_;
};

}  // namespace marl
