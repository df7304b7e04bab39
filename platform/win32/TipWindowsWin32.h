#pragma once

#include <windows.h>

#include <map>
#include <vector>

#include "platform/TipWindows.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Wine.h"

namespace marl::win32 {

/// The tip windows of the common controls. Windows are expensive and most tips never show, so each
/// is created when the mouse first moves over its tool. Until then this object stores its messages.
class TipWindowsWin32 : public TipWindows {
 public:
  /// `relayAll`: each tip gets every mouse message of its window from here. Under Wine only the
  /// last tip of a window gets them by itself.
  explicit TipWindowsWin32(bool relayAll = OnWine()) : relayAll_(relayAll) {}
  ~TipWindowsWin32() override;
  void InitCommonControls() override;
  std::intptr_t Instance() const override;
  WindowHandle CreateTip(std::uint32_t style, WindowHandle parent) override;
  void Destroy(WindowHandle window) override;
  void SetTopmost(WindowHandle window) override;
  void Send(WindowHandle tip, int message, std::uintptr_t wParam,
            const TipParameter& lParam) override;
  bool ClientRect(WindowHandle window, PixelRect& out) const override;

 private:
  struct Message {
    int number;
    std::uintptr_t wParam;
    TipParameter lParam;
  };
  struct Tip {
    std::uint32_t style = 0;
    HWND parent = nullptr;
    bool topmost = false;
    HWND watched = nullptr;  ///< the window with the tool's area; null without a tool
    RECT place = {};
    std::vector<Message> told;  ///< messages from before the window existed
    UniqueWindow window;
  };

  static LRESULT CALLBACK Watch(HWND parent, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                DWORD_PTR self) noexcept;
  void OnMouse(HWND parent, UINT message, WPARAM w, LPARAM l);
  void Make(Tip& tip);

  bool relayAll_;
  std::map<WindowHandle, Tip> tips_;
  WindowHandle last_ = 0;
};

}  // namespace marl::win32
