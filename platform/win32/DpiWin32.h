#pragma once

#include <windows.h>

#include "platform/Resolution.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

// Windows before version 1607 has none of the functions for a resolution per monitor, so they are
// looked up when the program runs.

/// WM_DPICHANGED and WM_GETDPISCALEDSIZE: newer than the Windows that the program is built for.
constexpr UINT kDpiChanged = 0x02E0;
constexpr UINT kGetDpiScaledSize = 0x02E4;

/// The resolution of a window: that of its monitor (GetDpiForWindow, before version 1607
/// GetDpiForMonitor), or the system's on Windows 7.
Resolution ResolutionOf(HWND window);

/// A system size in pixels at this resolution (GetSystemMetricsForDpi, GetSystemMetrics).
int MetricFor(int index, int dpi);

/// Extends a client area to that of a window with this frame (AdjustWindowRectExForDpi,
/// AdjustWindowRectEx).
void AdjustFor(RECT& area, DWORD style, bool menuBar, DWORD exStyle, int dpi);

/// Monitor and work area that contain most of the rectangle, or are nearest to it.
Monitor MonitorOf(const RECT& place);

}  // namespace marl::win32
