#pragma once

#include <windows.h>

#include "platform/WindowHooks.h"
#include "platform/forms/Desktop.h"

namespace marl::win32 {

/// Hooks for windows of this thread.
class WindowHooksWin32 : public WindowHooks {
 public:
  explicit WindowHooksWin32(Desktop& desktop) : desktop_(desktop) {}

  std::uint32_t RegisterMessage(std::string_view name) override;
  ProcAddress Replace(WindowHandle window, MessageListener& listener) override;
  void PutBack(WindowHandle window, ProcAddress previous) override;
  void Allow(WindowHandle window, std::uint32_t message) override;
  std::intptr_t Call(ProcAddress previous, WindowHandle window, std::uint32_t message,
                     std::uintptr_t wParam, std::intptr_t lParam) override;

 private:
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;

  Desktop& desktop_;
};

}  // namespace marl::win32
