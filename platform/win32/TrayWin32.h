#pragma once

#include <windows.h>

#include "platform/Tray.h"

namespace marl::win32 {

/// The notification area of the taskbar, and native menus.
class TrayWin32 : public Tray {
 public:
  bool NotifyIcon(int command, const NotifyIconData& data) override;
  IconHandle IconOf(WindowHandle window) const override;
  std::unique_ptr<PopupMenu> CreatePopup() override;
  Point CursorPosition() const override;
};

}  // namespace marl::win32
