#include "platform/win32/WindowHooksWin32.h"

#include <string>

#include "platform/win32/Window.h"

namespace marl::win32 {

namespace {

// Properties of a hooked window. The last one stays after unhooking: another hook in front of ours,
// such as a tip window's, may later restore our procedure, which must still pass messages on.
constexpr wchar_t kListener[] = L"MarlListener";
constexpr wchar_t kDesktop[] = L"MarlDesktop";
constexpr wchar_t kPrevious[] = L"MarlPrevious";

WNDPROC Procedure(ProcAddress address) { return reinterpret_cast<WNDPROC>(address); }

}  // namespace

LRESULT CALLBACK WindowHooksWin32::Entry(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
  auto* const listener = static_cast<MessageListener*>(GetPropW(window, kListener));
  auto* const desktop = static_cast<Desktop*>(GetPropW(window, kDesktop));
  const auto previous = reinterpret_cast<WNDPROC>(GetPropW(window, kPrevious));
  if (message == WM_NCDESTROY) {
    for (const wchar_t* const name : {kListener, kDesktop, kPrevious}) RemovePropW(window, name);
  }
  if (!listener || !desktop || desktop->ended()) {
    return previous ? CallWindowProcW(previous, window, message, w, l)
                    : DefWindowProcW(window, message, w, l);
  }
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
  SetPropW(target, kListener, &listener);
  SetPropW(target, kDesktop, &desktop_);
  SetPropW(target, kPrevious, reinterpret_cast<HANDLE>(before));
  return SetWindowLongPtrW(target, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Entry));
}

void WindowHooksWin32::PutBack(WindowHandle window, ProcAddress previous) {
  const HWND target = Window(window);
  RemovePropW(target, kListener);
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
