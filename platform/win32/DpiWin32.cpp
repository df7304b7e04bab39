#include "platform/win32/DpiWin32.h"

#include "platform/win32/SystemLibrary.h"

namespace marl::win32 {

namespace {

// MDT_EFFECTIVE_DPI: the resolution that a monitor's user has chosen.
constexpr int kEffectiveDpi = 0;

using GetDpiForWindowType = UINT WINAPI(HWND);
using GetDpiForMonitorType = HRESULT WINAPI(HMONITOR, int, UINT*, UINT*);
using GetSystemMetricsForDpiType = int WINAPI(int, UINT);
using AdjustWindowRectExForDpiType = BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT);

template <typename Function>
Function* FindInUser(const char* name) {
  return SystemLibrary(L"user32.dll").Find<Function>(name);
}

Resolution SystemResolution() {
  const ClientContext screen(nullptr);
  return {GetDeviceCaps(screen.get(), LOGPIXELSX), GetDeviceCaps(screen.get(), LOGPIXELSY)};
}

Resolution ResolutionOf(HMONITOR monitor) {
  // Only Windows 8.1 and the first versions of Windows 10 have it and not GetDpiForWindow.
  static const auto ofMonitor =
      SystemLibrary(L"shcore.dll").Find<GetDpiForMonitorType>("GetDpiForMonitor");
  UINT x = 0;
  UINT y = 0;
  if (!ofMonitor || FAILED(ofMonitor(monitor, kEffectiveDpi, &x, &y)) || x == 0 || y == 0) {
    return SystemResolution();
  }
  return {static_cast<int>(x), static_cast<int>(y)};
}

}  // namespace

Resolution ResolutionOf(HWND window) {
  static const auto ofWindow = FindInUser<GetDpiForWindowType>("GetDpiForWindow");
  if (!ofWindow) return ResolutionOf(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST));
  const auto dpi = static_cast<int>(ofWindow(window));
  return dpi > 0 ? Resolution{dpi, dpi} : SystemResolution();
}

int MetricFor(int index, int dpi) {
  static const auto forDpi = FindInUser<GetSystemMetricsForDpiType>("GetSystemMetricsForDpi");
  return forDpi ? forDpi(index, static_cast<UINT>(dpi)) : GetSystemMetrics(index);
}

void AdjustFor(RECT& area, DWORD style, bool menuBar, DWORD exStyle, int dpi) {
  static const auto forDpi = FindInUser<AdjustWindowRectExForDpiType>("AdjustWindowRectExForDpi");
  if (forDpi) {
    forDpi(&area, style, menuBar, exStyle, static_cast<UINT>(dpi));
  } else {
    AdjustWindowRectEx(&area, style, menuBar, exStyle);
  }
}

Monitor MonitorOf(const RECT& place) {
  const HMONITOR monitor = MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST);
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  if (!GetMonitorInfoW(monitor, &info)) {
    // Without any monitor, as in a session that has been disconnected.
    info.rcMonitor = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    info.rcWork = info.rcMonitor;
  }
  const auto rect = [](const RECT& r) { return PixelRect{r.left, r.top, r.right, r.bottom}; };
  return {rect(info.rcMonitor), rect(info.rcWork), ResolutionOf(monitor)};
}

}  // namespace marl::win32
