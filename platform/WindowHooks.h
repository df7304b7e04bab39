#pragma once

#include <cstdint>
#include <string_view>

#include "platform/WindowHandle.h"

namespace marl {

/// Where a window's procedure is; 0 is none.
using ProcAddress = std::intptr_t;

/// Sees every message of a window before the window does.
class MessageListener {
 public:
  virtual ~MessageListener() = default;
  /// Returns the message's result. Runs within an event (`Desktop::Event`).
  virtual std::intptr_t OnMessage(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                                  std::intptr_t lParam) = 0;
};

/// Message numbers by name, and procedures in front of windows.
class WindowHooks {
 public:
  virtual ~WindowHooks() = default;
  /// The number of a message that is the same for all programs that ask for the name
  /// (RegisterWindowMessage); 0 on failure.
  virtual std::uint32_t RegisterMessage(std::string_view name) = 0;
  /// Puts the listener in the place of the window's procedure (SetWindowLong, index -4). Returns
  /// the procedure that was there; 0 when there is no such window.
  virtual ProcAddress Replace(WindowHandle window, MessageListener& listener) = 0;
  /// Makes `previous` the window's procedure again. The listener hears nothing from here on.
  virtual void PutBack(WindowHandle window, ProcAddress previous) = 0;
  /// Hands a message to a procedure that was replaced (CallWindowProc).
  virtual std::intptr_t Call(ProcAddress previous, WindowHandle window, std::uint32_t message,
                             std::uintptr_t wParam, std::intptr_t lParam) = 0;
};

}  // namespace marl
