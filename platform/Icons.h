#pragma once

#include <cstdint>

#include "platform/Text.h"
#include "platform/WindowHandle.h"

namespace marl {

/// An icon, as the platform numbers it; 0 is none.
using IconHandle = std::int32_t;
/// A library of resources that is open; 0 is none.
using LibraryHandle = std::intptr_t;

/// Sizes that the platform tells (GetSystemMetrics), in pixels.
enum SystemMetric : int {
  kIconWidth = 11,
  kIconHeight = 12,
  kSmallIconWidth = 49,
  kSmallIconHeight = 50,
};

/// Which icon of a window is set (WM_SETICON).
enum WindowIcon : int { kSmallIcon = 0, kBigIcon = 1 };

/// Icons from libraries, and the windows that carry them.
class Icons {
 public:
  virtual ~Icons() = default;
  /// Opens a library for its resources (LoadLibrary); 0 when it cannot be opened.
  virtual LibraryHandle OpenLibrary(TextView path) = 0;
  /// Closes the library (FreeLibrary). Icons that were loaded from it stay.
  virtual void CloseLibrary(LibraryHandle library) = 0;
  /// The icon of a number in the size asked for, shared between all who load it (LoadImage with
  /// LR_SHARED); 0 when the library has none.
  virtual IconHandle Load(LibraryHandle library, int id, int width, int height) = 0;
  /// Gives an icon back (DestroyIcon).
  virtual void Destroy(IconHandle icon) = 0;
  /// A size of the platform's, by `SystemMetric`.
  virtual int Metric(int index) const = 0;
  /// The window that owns this one (GetWindow with GW_OWNER); 0 when none does.
  virtual WindowHandle OwnerOf(WindowHandle window) const = 0;
  /// Gives the window an icon, by `WindowIcon` (SendMessage with WM_SETICON).
  virtual void SetIcon(WindowHandle window, int which, IconHandle icon) = 0;
};

}  // namespace marl
