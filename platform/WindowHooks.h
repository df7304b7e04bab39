#pragma once

#include <cstdint>
#include <string_view>

#include "platform/WindowHandle.h"

namespace marl {

/// Address of a window procedure; 0 is none.
using ProcAddress = std::intptr_t;

/// Sees every message of a window before the window does.
class MessageListener {
 public:
  virtual ~MessageListener() = default;
  /// Returns the message's result. Runs within an event (`Desktop::Event`).
  virtual std::intptr_t OnMessage(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                                  std::intptr_t lParam) = 0;
};

/// Registered messages, and procedures in front of window procedures.
class WindowHooks {
 public:
  virtual ~WindowHooks() = default;
  /// The number of the message with this name, the same for all programs (RegisterWindowMessage); 0
  /// on failure.
  virtual std::uint32_t RegisterMessage(std::string_view name) = 0;
  /// Replaces the window's procedure by the listener (SetWindowLong, index -4). Returns the
  /// previous procedure; 0 if there is no such window.
  virtual ProcAddress Replace(WindowHandle window, MessageListener& listener) = 0;
  /// Makes `previous` the window's procedure again. The listener gets no more messages.
  virtual void PutBack(WindowHandle window, ProcAddress previous) = 0;
  /// Lets programs with fewer rights send the window this message (ChangeWindowMessageFilterEx):
  /// the shell has fewer than a program that runs as administrator. Failures are ignored.
  virtual void Allow(WindowHandle window, std::uint32_t message) = 0;
  /// Passes a message to a replaced procedure (CallWindowProc).
  virtual std::intptr_t Call(ProcAddress previous, WindowHandle window, std::uint32_t message,
                             std::uintptr_t wParam, std::intptr_t lParam) = 0;
};

}  // namespace marl
