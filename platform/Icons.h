#pragma once

#include <cstdint>

#include "platform/Text.h"
#include "platform/WindowHandle.h"

namespace marl {

/// An icon handle; 0 is none.
using IconHandle = std::int32_t;
/// An open resource library; 0 is none.
using LibraryHandle = std::intptr_t;

/// Sizes from GetSystemMetrics, in pixels.
enum SystemMetric : int {
  kIconWidth = 11,
  kIconHeight = 12,
  kSmallIconWidth = 49,
  kSmallIconHeight = 50,
};

/// Which icon of a window is set (WM_SETICON).
enum WindowIcon : int { kSmallIcon = 0, kBigIcon = 1 };

/// Icons from libraries, and the icons of windows.
class Icons {
 public:
  virtual ~Icons() = default;
  /// Opens a library for its resources (LoadLibrary); 0 if it cannot be opened.
  virtual LibraryHandle OpenLibrary(TextView path) = 0;
  /// Closes the library (FreeLibrary). Icons that were loaded from it stay.
  virtual void CloseLibrary(LibraryHandle library) = 0;
  /// The icon with this id in the given size, shared between all callers (LoadImage with
  /// LR_SHARED); 0 if the library has none.
  virtual IconHandle Load(LibraryHandle library, int id, int width, int height) = 0;
  /// Releases an icon (DestroyIcon).
  virtual void Destroy(IconHandle icon) = 0;
  /// A system size, by `SystemMetric`.
  virtual int Metric(int index) const = 0;
  /// The window that owns this one (GetWindow with GW_OWNER); 0 if there is none.
  virtual WindowHandle OwnerOf(WindowHandle window) const = 0;
  /// Sets a window's icon, by `WindowIcon` (SendMessage with WM_SETICON).
  virtual void SetIcon(WindowHandle window, int which, IconHandle icon) = 0;
};

}  // namespace marl
