#include "shell/Application.h"

namespace marl {

namespace {

// Size of InitCommonControlsEx's record, and the class of extended combo boxes
// (ICC_USEREX_CLASSES).
constexpr int kRecordSize = 8;
constexpr int kUserExClasses = 0x200;

}  // namespace

Application::Application(Platform platform, bool debugLog)
    : platform_(platform), debugLog_(debugLog) {}

int Application::Run() {
  Desktop& desktop = platform_.desktop;
  desktop.Event([&] {
    Skip([&] { desktop.InitCommonControlsEx(kRecordSize, kUserExClasses); });
    main_ = std::make_unique<frmMain>(platform_, debugLog_);
    main_->Show();
  });
  return desktop.ended() ? desktop.exitCode() : desktop.Run();
}

}  // namespace marl
