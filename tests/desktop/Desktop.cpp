#include "tests/desktop/Desktop.h"

#include <array>
#include <cstdint>
#include <utility>

namespace marl::desktop {

namespace {

int ScreenDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi;
}

struct WindowSearch {
  DWORD process;
  std::function<bool(HWND)> matches;
  HWND found = nullptr;
};

BOOL CALLBACK TestWindow(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<WindowSearch*>(data);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner != search.process || !search.matches(window)) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds deadline) {
  const auto begun = std::chrono::steady_clock::now();
  for (;;) {
    if (holds()) return true;
    const auto waited = std::chrono::steady_clock::now() - begun;
    if (waited >= deadline) return false;
    // Windows of this thread respond meanwhile, so that broadcasts to all windows do not wait for
    // them.
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    // A look at all windows takes processor time from the program that is waited for.
    Sleep(waited < std::chrono::milliseconds(100) ? 5 : 20);
  }
}

std::wstring FromUtf8(const std::string& text) {
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), needed);
  return wide;
}

std::string ToUtf8(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(), needed, nullptr, nullptr);
  return narrow;
}

std::wstring Environment(const wchar_t* name) {
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

int Twips(int pixels) { return MulDiv(pixels, 1440, ScreenDpi()); }
int PixelsOf(int twips) { return MulDiv(twips, ScreenDpi(), 1440); }

std::wstring TextOf(HWND window) {
  // Another program that hangs must not hang the test.
  constexpr UINT kHung = 20000;
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, kHung, &length)) {
    return {};
  }
  std::wstring text(length + 1, L'\0');
  DWORD_PTR got = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                      SMTO_NORMAL, kHung, &got);
  text.resize(got);
  return text;
}

std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 257> name = {};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

HWND FindWindowOf(DWORD process, std::function<bool(HWND)> matches) {
  WindowSearch search{process, std::move(matches)};
  EnumWindows(TestWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::optional<POINT> CloseBoxOf(HWND window) {
  RECT frame;
  if (!GetWindowRect(window, &frame)) return {};
  const int half = GetSystemMetrics(SM_CYCAPTION) / 2;
  const int y = frame.top + GetSystemMetrics(SM_CYFIXEDFRAME) + half;
  std::optional<int> first;
  int last = 0;
  for (int x = frame.right - 1; x > frame.left; --x) {
    const bool hit = SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == HTCLOSE;
    if (hit && !first) first = x;
    if (hit) last = x;
    if (first && !hit) break;
  }
  if (!first) return {};
  return POINT{(*first + last) / 2, y};
}

}  // namespace marl::desktop
