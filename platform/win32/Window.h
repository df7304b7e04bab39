#pragma once

#include <windows.h>

#include "platform/Icons.h"
#include "platform/WindowHandle.h"

namespace marl::win32 {

/// Converts a portable 32-bit handle of a window or icon to the platform's (LongToHandle); the
/// reverse is `HandleToLong`. Handles of windows and icons have 32 significant bits in 64-bit
/// programs too.
inline HWND Window(WindowHandle window) { return static_cast<HWND>(LongToHandle(window)); }
inline HICON Icon(IconHandle icon) { return static_cast<HICON>(LongToHandle(icon)); }

}  // namespace marl::win32
