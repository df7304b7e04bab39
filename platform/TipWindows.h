#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/Text.h"
#include "platform/Variant.h"
#include "platform/WindowHandle.h"

namespace marl {

/// A tool of a tip window (TOOLINFO), with the platform's field names.
struct ToolInfo {
  int cbSize = 0;  ///< size of the platform's record in its second version, 8-bit
  std::uint32_t uFlags = 0;
  WindowHandle hwnd = 0;
  std::intptr_t uId = 0;
  PixelRect rect;
  std::intptr_t hinst = 0;
  Text lpszText;

  bool operator==(const ToolInfo&) const = default;
};

/// Size of the second version of the platform's record in a 32-bit program.
constexpr int kToolInfoSize = 44;

enum ToolFlag : std::uint32_t { kToolCenterTip = 2, kToolSubclass = 0x10 };

/// Messages of a tip window, with the platform's numbers.
enum TipMessage : int {
  kTipSetDelayTime = 1027,
  kTipAddTool = 1028,
  kTipSetBackColor = 1043,
  kTipSetTextColor = 1044,
  kTipSetTitle = 1056,
};

/// A message's second parameter.
using TipParameter = Variant<std::intptr_t, Text, ToolInfo>;

/// Tip windows of the common controls.
class TipWindows {
 public:
  virtual ~TipWindows() = default;
  /// Registers the common controls (InitCommonControls).
  virtual void InitCommonControls() = 0;
  /// The program's instance handle, for a tool's record.
  virtual std::intptr_t Instance() const = 0;
  /// Creates a tip window (CreateWindowEx with the class "Tooltips_Class32"), at the latest when
  /// the mouse moves over its tool. The handle is valid for these operations only; 0 on failure.
  virtual WindowHandle CreateTip(std::uint32_t style, WindowHandle parent) = 0;
  /// Destroys a tip window (DestroyWindow).
  virtual void Destroy(WindowHandle window) = 0;
  /// Puts the window above all windows that are not topmost, without moving, sizing or activating
  /// it (SetWindowPos).
  virtual void SetTopmost(WindowHandle window) = 0;
  /// Sends a message to a tip window (SendMessage).
  virtual void Send(WindowHandle tip, int message, std::uintptr_t wParam,
                    const TipParameter& lParam) = 0;
  /// A window's client area (GetClientRect). False if there is no such window.
  virtual bool ClientRect(WindowHandle window, PixelRect& out) const = 0;
};

}  // namespace marl
