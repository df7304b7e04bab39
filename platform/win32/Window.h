#pragma once

#include <windows.h>

#include "platform/Icons.h"
#include "platform/WindowHandle.h"

namespace marl::win32 {

/// The platform's handle of a window or icon that the logic knows by its number (LongToHandle). The
/// number of a handle is `HandleToLong`: handles of windows and icons have 32 bits at both widths.
inline HWND Window(WindowHandle window) { return static_cast<HWND>(LongToHandle(window)); }
inline HICON Icon(IconHandle icon) { return static_cast<HICON>(LongToHandle(icon)); }

}  // namespace marl::win32
