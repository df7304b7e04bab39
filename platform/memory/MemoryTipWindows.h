#pragma once

#include <map>
#include <vector>

#include "platform/TipWindows.h"

namespace marl {

/// Tip windows in memory, with the messages that each got, in order.
class MemoryTipWindows : public TipWindows {
 public:
  struct Sent {
    int message = 0;
    std::uintptr_t wParam = 0;
    TipParameter lParam;
    bool operator==(const Sent&) const = default;
  };
  struct Tip {
    std::uint32_t style = 0;
    WindowHandle parent = 0;
    bool topmost = false;
    std::vector<Sent> sent;
  };
  static constexpr std::intptr_t kInstance = 0x400000;

  std::map<WindowHandle, PixelRect> clients;  ///< windows and their client areas
  bool fails = false;                         ///< no tip window can be created

  std::map<WindowHandle, Tip> tips;  ///< existing tips
  int created = 0;
  int initialised = 0;  ///< calls of InitCommonControls

  void InitCommonControls() override { ++initialised; }
  std::intptr_t Instance() const override { return kInstance; }
  WindowHandle CreateTip(std::uint32_t style, WindowHandle parent) override {
    if (fails) return 0;
    ++created;
    tips[++last_] = {style, parent, false, {}};
    return last_;
  }
  void Destroy(WindowHandle window) override { tips.erase(window); }
  void SetTopmost(WindowHandle window) override {
    if (const auto tip = tips.find(window); tip != tips.end()) tip->second.topmost = true;
  }
  void Send(WindowHandle window, int message, std::uintptr_t wParam,
            const TipParameter& lParam) override {
    if (const auto tip = tips.find(window); tip != tips.end()) {
      tip->second.sent.push_back({message, wParam, lParam});
    }
  }
  bool ClientRect(WindowHandle window, PixelRect& out) const override {
    const auto client = clients.find(window);
    if (client == clients.end()) return false;
    out = client->second;
    return true;
  }

 private:
  WindowHandle last_ = 0x20000;
};

}  // namespace marl
