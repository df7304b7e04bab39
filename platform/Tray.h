#pragma once

#include <functional>
#include <memory>

#include "platform/Geometry.h"
#include "platform/Icons.h"
#include "platform/Picture.h"

namespace marl {

/// An icon of the notification area (NOTIFYICONDATA), with the platform's field names.
struct NotifyIconData {
  int cbSize = 0;  ///< size of the platform's record in its first version, 8-bit
  WindowHandle hWnd = 0;
  std::int32_t uID = 0;  ///< identifies the icon, together with the window
  std::uint32_t uFlags = 0;
  std::uint32_t uCallbackMessage = 0;
  IconHandle hIcon = 0;
  Text szTip;  ///< at most 63 characters are shown

  bool operator==(const NotifyIconData&) const = default;
};

/// Size of the first version of the platform's record in a 32-bit program.
constexpr int kNotifyIconDataSize = 88;

enum NotifyCommand : int { kNotifyAdd = 0, kNotifyDelete = 2 };
enum NotifyFlag : std::uint32_t { kNotifyMessage = 1, kNotifyIcon = 2, kNotifyTip = 4 };

/// A popup menu with a picture before each item.
class PopupMenu {
 public:
  virtual ~PopupMenu() = default;
  /// Square pictures side by side; items refer to them by index, from 0.
  virtual void SetImageList(PicturePtr strip) = 0;
  /// The window that the menu belongs to. It should be active when the menu is shown: the menu
  /// closes when the user clicks elsewhere, and takes keys.
  virtual void SetOwner(WindowHandle window) = 0;
  /// Appends an item. Items are numbered from 1.
  virtual void AddItem(TextView caption, int picture, bool checked, bool enabled) = 0;
  /// Shows the menu at a screen position, in pixels, and returns when it is closed. Raises `Click`
  /// if an item was chosen.
  virtual void Show(Point at) = 0;

  std::function<void(int itemNumber)> Click;
};

/// The notification area.
class Tray {
 public:
  virtual ~Tray() = default;
  /// Adds or removes an icon (Shell_NotifyIcon). False if the shell refuses.
  virtual bool NotifyIcon(int command, const NotifyIconData& data) = 0;
  /// The handle of the icon that a window shows (WM_GETICON); 0 for none.
  virtual IconHandle IconOf(WindowHandle window) const = 0;
  virtual std::unique_ptr<PopupMenu> CreatePopup() = 0;
  /// Position of the mouse on the screen, in pixels (GetCursorPos).
  virtual Point CursorPosition() const = 0;
};

}  // namespace marl
