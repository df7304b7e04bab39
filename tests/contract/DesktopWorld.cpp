#include "tests/contract/DesktopWorld.h"

#include "platform/memory/MemoryDesktop.h"
#ifdef _WIN32
#include <windows.h>

#include <cwchar>

#include "platform/win32/DesktopWin32.h"
#endif

namespace marl {

std::unique_ptr<Desktop> NewDesktop(Backend backend) {
#ifdef _WIN32
  if (backend == Backend::kWin32) return std::make_unique<win32::DesktopWin32>();
#endif
  static_cast<void>(backend);
  return std::make_unique<MemoryDesktop>();
}

#ifdef _WIN32
namespace {

WPARAM g_button = 0;

BOOL CALLBACK PressButton(HWND window, LPARAM) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  if (std::wcscmp(name, L"#32770") == 0 && IsWindowVisible(window)) {
    PostMessageW(window, WM_COMMAND, g_button, 0);
  }
  return TRUE;
}

void CALLBACK Answer(HWND, UINT, UINT_PTR, DWORD) {
  EnumThreadWindows(GetCurrentThreadId(), PressButton, 0);
}

}  // namespace

DialogAnswer::DialogAnswer(bool accept) {
  g_button = accept ? IDOK : IDCANCEL;
  timer_ = SetTimer(nullptr, 0, 50, Answer);
}

DialogAnswer::~DialogAnswer() { KillTimer(nullptr, timer_); }
#endif

}  // namespace marl
