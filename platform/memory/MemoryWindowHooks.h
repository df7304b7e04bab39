#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/FoldCase.h"
#include "platform/WindowHooks.h"

namespace marl {

/// Windows whose procedure records its messages, and the listeners in front of them.
class MemoryWindowHooks : public WindowHooks {
 public:
  struct Message {
    WindowHandle window = 0;
    std::uint32_t message = 0;
    std::uintptr_t wParam = 0;
    std::intptr_t lParam = 0;
    bool operator==(const Message&) const = default;
  };
  static constexpr ProcAddress kOwnProcedure = 0x401000;

  // Set by the test.
  std::intptr_t ownResult = 77;    ///< result of the windows' own procedure
  bool replaces = true;            ///< false: there is no such window
  std::set<WindowHandle> windows;  ///< existing windows; if empty, all exist

  // Recorded for the test.
  std::vector<std::string> registered;  ///< names, in order
  std::vector<Message> reached;         ///< messages that reached the windows' own procedure
  std::map<WindowHandle, MessageListener*> listeners;
  std::vector<std::pair<WindowHandle, ProcAddress>> putBack;
  std::vector<std::pair<WindowHandle, std::uint32_t>> allowed;

  /// Sends a message to a window, as the platform does: to the listener in front, if there is one.
  std::intptr_t Send(WindowHandle window, std::uint32_t message, std::uintptr_t wParam = 0,
                     std::intptr_t lParam = 0) {
    const auto listener = listeners.find(window);
    if (listener == listeners.end()) return Own({window, message, wParam, lParam});
    return listener->second->OnMessage(window, message, wParam, lParam);
  }
  /// The number of the message with this name, ignoring case; 0 for an empty name or one of more
  /// than 255 characters.
  std::uint32_t NumberOf(const std::string& name) {
    constexpr std::size_t kLongestName = 255;
    if (name.empty() || name.size() > kLongestName) return 0;
    return numbers_
        .try_emplace(FoldCase(Text(name.begin(), name.end())),
                     0xC001u + static_cast<std::uint32_t>(numbers_.size()))
        .first->second;
  }

  std::uint32_t RegisterMessage(std::string_view name) override {
    registered.emplace_back(name);
    return NumberOf(std::string(name));
  }
  ProcAddress Replace(WindowHandle window, MessageListener& listener) override {
    if (!replaces || window == 0 || (!windows.empty() && !windows.contains(window))) return 0;
    listeners[window] = &listener;
    return kOwnProcedure;
  }
  void PutBack(WindowHandle window, ProcAddress previous) override {
    putBack.emplace_back(window, previous);
    listeners.erase(window);
  }
  void Allow(WindowHandle window, std::uint32_t message) override {
    allowed.emplace_back(window, message);
  }
  std::intptr_t Call(ProcAddress previous, WindowHandle window, std::uint32_t message,
                     std::uintptr_t wParam, std::intptr_t lParam) override {
    return previous == kOwnProcedure ? Own({window, message, wParam, lParam}) : 0;
  }

 private:
  std::intptr_t Own(const Message& message) {
    reached.push_back(message);
    return ownResult;
  }
  std::map<Text, std::uint32_t> numbers_;
};

}  // namespace marl
