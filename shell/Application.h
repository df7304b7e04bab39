#pragma once

#include <memory>

#include "shell/Platform.h"
#include "shell/frmMain.h"

namespace marl {

/// The program on a given platform, from its start to its end.
///
/// Start reading here: `Run` creates the main form, whose load sequence (frmMain_Load.cpp) calls
/// everything else.
class Application {
 public:
  explicit Application(Platform platform, bool debugLog = kDebugLog);

  /// Runs the program until it ends. Returns the process's exit code.
  int Run();

  frmMain& mainForm() { return *main_; }

 private:
  Platform platform_;
  bool debugLog_;
  std::unique_ptr<frmMain> main_;
};

}  // namespace marl
