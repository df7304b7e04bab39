#pragma once

#include <windows.h>

#include "platform/Tray.h"
#include "platform/win32/Wine.h"

namespace marl::win32 {

/// The notification area of the taskbar, and native menus.
class TrayWin32 : public Tray {
 public:
  /// `menusBlend`: menus draw pictures by their alpha, as on Windows. Wine copies all pixels, so
  /// there the menu's owner draws the pictures; on Windows that would lose the menu's theme.
  explicit TrayWin32(bool menusBlend = !OnWine()) : menusBlend_(menusBlend) {}
  bool NotifyIcon(int command, const NotifyIconData& data) override;
  IconHandle IconOf(WindowHandle window) const override;
  std::unique_ptr<PopupMenu> CreatePopup() override;
  Point CursorPosition() const override;

 private:
  bool menusBlend_;
};

}  // namespace marl::win32
