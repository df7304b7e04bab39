#include "platform/win32/WindowHooksWin32.h"

#include <map>
#include <string>

#include "platform/win32/Window.h"

namespace marl::win32 {

namespace {

/// A hooked window. It stays after unhooking: another hook in front of ours, such as a tip
/// window's, may later restore our procedure, which must still pass messages on.
struct Hook {
  MessageListener* listener = nullptr;
  Desktop* desktop = nullptr;
  WNDPROC previous = nullptr;
};

/// The hooked windows, all of the thread that shows the forms, until each is destroyed. Window
/// properties would be looked up by name for each message. Never freed: windows that outlive all
/// else still get messages.
std::map<HWND, Hook>& Hooks() {
  static auto& hooks = *new std::map<HWND, Hook>;
  return hooks;
}

WNDPROC Procedure(ProcAddress address) { return reinterpret_cast<WNDPROC>(address); }

}  // namespace

LRESULT CALLBACK WindowHooksWin32::Entry(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
  const auto found = Hooks().find(window);
  if (found == Hooks().end()) return DefWindowProcW(window, message, w, l);
  const auto [listener, desktop, previous] = found->second;
  if (message == WM_NCDESTROY) Hooks().erase(found);
  if (!listener || desktop->ended()) return CallWindowProcW(previous, window, message, w, l);
  LRESULT result = 0;
  desktop->Event([&] { result = listener->OnMessage(HandleToLong(window), message, w, l); });
  return result;
}

std::uint32_t WindowHooksWin32::RegisterMessage(std::string_view name) {
  return RegisterWindowMessageA(std::string(name).c_str());
}

ProcAddress WindowHooksWin32::Replace(WindowHandle window, MessageListener& listener) {
  const HWND target = Window(window);
  const LONG_PTR before = GetWindowLongPtrW(target, GWLP_WNDPROC);
  if (before == 0) return 0;
  Hooks()[target] = {&listener, &desktop_, reinterpret_cast<WNDPROC>(before)};
  return SetWindowLongPtrW(target, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Entry));
}

void WindowHooksWin32::PutBack(WindowHandle window, ProcAddress previous) {
  const HWND target = Window(window);
  const auto found = Hooks().find(target);
  if (found != Hooks().end()) found->second.listener = nullptr;
  SetWindowLongPtrW(target, GWLP_WNDPROC, previous);
}

void WindowHooksWin32::Allow(WindowHandle window, std::uint32_t message) {
  ChangeWindowMessageFilterEx(Window(window), message, MSGFLT_ALLOW, nullptr);
}

std::intptr_t WindowHooksWin32::Call(ProcAddress previous, WindowHandle window,
                                     std::uint32_t message, std::uintptr_t wParam,
                                     std::intptr_t lParam) {
  if (previous == 0) return DefWindowProcW(Window(window), message, wParam, lParam);
  return CallWindowProcW(Procedure(previous), Window(window), message, wParam, lParam);
}

}  // namespace marl::win32
