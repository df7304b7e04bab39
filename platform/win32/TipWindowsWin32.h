#pragma once

#include "platform/TipWindows.h"

namespace marl::win32 {

/// The tip windows of the common controls.
class TipWindowsWin32 : public TipWindows {
 public:
  void InitCommonControls() override;
  std::intptr_t Instance() const override;
  WindowHandle CreateTip(std::uint32_t style, WindowHandle parent) override;
  void Destroy(WindowHandle window) override;
  void SetTopmost(WindowHandle window) override;
  void Send(WindowHandle tip, int message, std::uintptr_t wParam,
            const TipParameter& lParam) override;
  bool ClientRect(WindowHandle window, PixelRect& out) const override;
};

}  // namespace marl::win32
