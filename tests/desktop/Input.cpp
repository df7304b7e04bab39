#include "tests/desktop/Input.h"

#include <cstdint>
#include <set>
#include <utility>

#include "tests/desktop/Desktop.h"

namespace marl::desktop {

namespace {

/// How long a program may be busy before input is sent to it anyway.
constexpr UINT kBusy = 5000;

bool At(POINT place) {
  POINT now = {};
  return GetCursorPos(&now) && now.x == place.x && now.y == place.y;
}

/// Waits until the threads of the windows have responded.
void WaitForAnswers(std::initializer_list<HWND> windows) {
  std::set<DWORD> asked = {0, GetCurrentThreadId()};
  for (const HWND window : windows) {
    if (!asked.insert(GetWindowThreadProcessId(window, nullptr)).second) continue;
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kBusy, &result);
  }
}

HWND UnderMouse() {
  POINT now = {};
  return GetCursorPos(&now) ? WindowFromPoint(now) : nullptr;
}

GUITHREADINFO ThreadOf(HWND window) {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info;
}

/// True if it is in front and active in its own thread. (A disabled window is never active.)
bool InFront(HWND window) {
  return GetForegroundWindow() == window &&
         (!IsWindowEnabled(window) || ThreadOf(window).hwndActive == window);
}

bool HasFocus(HWND window) {
  const HWND focus = ThreadOf(window).hwndFocus;
  return focus == window || IsChild(window, focus);
}

INPUT MouseAt(POINT at, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
  // The screen is 65536 units wide and high; the middle of a pixel survives any rounding.
  const auto units = [](int pixel, int size) {
    return static_cast<LONG>((std::int64_t{pixel} * 2 + 1) * 32768 / size);
  };
  input.mi.dx = units(at.x, GetSystemMetrics(SM_CXSCREEN));
  input.mi.dy = units(at.y, GetSystemMetrics(SM_CYSCREEN));
  return input;
}

void Send(std::vector<INPUT> input) {
  SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
}

void AddKey(std::vector<INPUT>& input, WORD code, DWORD flags) {
  INPUT one = {};
  one.type = INPUT_KEYBOARD;
  one.ki.wVk = code;
  one.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
  one.ki.dwFlags = flags;
  input.push_back(one);
}

void AddChord(std::vector<INPUT>& input, const std::vector<WORD>& held, WORD key) {
  for (const WORD code : held) AddKey(input, code, 0);
  AddKey(input, key, 0);
  AddKey(input, key, KEYEVENTF_KEYUP);
  for (auto code = held.rbegin(); code != held.rend(); ++code) {
    AddKey(input, *code, KEYEVENTF_KEYUP);
  }
}

/// Moves the mouse there and presses or releases its buttons.
void Use(POINT at, std::initializer_list<DWORD> changes) {
  MoveMouse(at);
  std::vector<INPUT> input;
  for (const DWORD change : changes) input.push_back(MouseAt(at, change));
  Send(std::move(input));
}

}  // namespace

void SettleInput() {
  // A reply of the display: all earlier requests have been executed and reported.
  const HDC screen = GetDC(nullptr);
  GetPixel(screen, 0, 0);
  ReleaseDC(nullptr, screen);
  // Between two responses a thread is back in its message loop, where it receives the reports.
  const HWND front = GetForegroundWindow();
  const HWND below = UnderMouse();
  WaitForAnswers({front, below, GetDesktopWindow()});
  Sleep(1);
  WaitForAnswers({front, below, GetDesktopWindow()});
}

bool BringForward(HWND window) {
  constexpr std::chrono::seconds kPatience{2};
  const auto gone = [&] { return !IsWindow(window); };
  const auto begun = std::chrono::steady_clock::now();
  while (std::chrono::steady_clock::now() - begun < kDeadline) {
    if (!InFront(window)) SetForegroundWindow(window);
    WaitUntil([&] { return InFront(window) || gone(); }, kPatience);
    if (gone()) return false;
    // The focus follows the activation and would undo what was done before it. Some windows have no
    // control that could get it.
    WaitUntil([&] { return HasFocus(window) || !InFront(window) || gone(); }, kPatience);
    // An earlier activation may have been on its way and have taken the front away again.
    if (InFront(window)) return true;
  }
  return false;
}

void MoveMouse(int x, int y) { MoveMouse(POINT{x, y}); }

void MoveMouse(POINT to) {
  const HWND before = UnderMouse();
  bool again = false;
  WaitUntil([&] {
    // A mouse that is already there does not move, so it goes to the neighbouring pixel first.
    if (again) Send({MouseAt({to.x ? to.x - 1 : 1, to.y}, 0)});
    again = true;
    Send({MouseAt(to, 0)});
    WaitForAnswers({before});
    SettleInput();
    return At(to);
  });
}

void MouseButtons(std::initializer_list<DWORD> changes) {
  std::vector<INPUT> input;
  for (const DWORD change : changes) {
    INPUT one = {};
    one.type = INPUT_MOUSE;
    one.mi.dwFlags = change;
    input.push_back(one);
  }
  Send(std::move(input));
}

void Click(int x, int y) { Click(POINT{x, y}); }

void Click(POINT at) { Use(at, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}); }

void Click(POINT at, const std::vector<WORD>& held) {
  MoveMouse(at);
  std::vector<INPUT> input;
  for (const WORD code : held) AddKey(input, code, 0);
  input.push_back(MouseAt(at, MOUSEEVENTF_LEFTDOWN));
  input.push_back(MouseAt(at, MOUSEEVENTF_LEFTUP));
  for (auto code = held.rbegin(); code != held.rend(); ++code) {
    AddKey(input, *code, KEYEVENTF_KEYUP);
  }
  Send(std::move(input));
}

void RightClick(POINT at) { Use(at, {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP}); }

void DoubleClick(POINT at) {
  Use(at, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
}

void PressMouse(POINT at) { Use(at, {MOUSEEVENTF_LEFTDOWN}); }

void ReleaseMouse(POINT at) { Use(at, {MOUSEEVENTF_LEFTUP}); }

void Keys(const std::wstring& text) {
  SettleInput();
  std::vector<INPUT> input;
  for (const wchar_t c : text) {
    const SHORT key = VkKeyScanW(c);
    AddChord(input, HIBYTE(key) & 1 ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{},
             LOBYTE(key));
  }
  Send(std::move(input));
}

void Chord(const std::vector<WORD>& held, WORD key) {
  SettleInput();
  std::vector<INPUT> input;
  AddChord(input, held, key);
  Send(std::move(input));
}

}  // namespace marl::desktop
