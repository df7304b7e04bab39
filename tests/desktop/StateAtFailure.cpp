#include "tests/desktop/StateAtFailure.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "tests/desktop/Desktop.h"
#include "tests/desktop/Pictures.h"

namespace marl::desktop {

namespace {

std::string Describe(HWND window) {
  RECT area = {};
  GetWindowRect(window, &area);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  std::string line = ToUtf8(ClassOf(window)) + " \"" + ToUtf8(TextOf(window)) + "\" of process " +
                     std::to_string(process) + " at " + std::to_string(area.left) + "," +
                     std::to_string(area.top) + "-" + std::to_string(area.right) + "," +
                     std::to_string(area.bottom);
  if (!IsWindowEnabled(window)) line += ", disabled";
  if (IsIconic(window)) line += ", minimised";
  if (window == GetForegroundWindow()) line += ", in front";
  // The text of a message box.
  if (const HWND text = GetDlgItem(window, 0xFFFF)) line += ": \"" + ToUtf8(TextOf(text)) + "\"";
  return line;
}

BOOL CALLBACK PrintIfVisible(HWND window, LPARAM) {
  if (IsWindowVisible(window)) std::printf("  %s\n", Describe(window).c_str());
  return TRUE;
}

}  // namespace

void StateAtFailure::OnTestStart(const testing::TestInfo& test) {
  test_ = &test;
  reported_ = false;
}

void StateAtFailure::OnTestPartResult(const testing::TestPartResult& part) {
  if (!part.failed() || reported_ || !test_) return;
  reported_ = true;
  POINT mouse = {};
  GetCursorPos(&mouse);
  std::printf("The mouse was at %ld,%ld. Windows from front to back:\n", mouse.x, mouse.y);
  EnumWindows(PrintIfVisible, 0);
  std::fflush(stdout);
  std::string name = std::string("failed-") + test_->test_suite_name() + "." + test_->name();
  std::replace(name.begin(), name.end(), '/', '-');
  Screenshot(name);
}

}  // namespace marl::desktop
