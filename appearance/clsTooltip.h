#pragma once

#include "platform/TipWindows.h"
#include "platform/forms/Desktop.h"

namespace marl {

/// One balloon tip of the platform's common controls: one tip window with one tool, which is a
/// rectangle of a window or a whole control.
class clsTooltip {
 public:
  /// `desktop` provides the values of system colours.
  clsTooltip(TipWindows& tips, const Desktop& desktop);
  ~clsTooltip();
  clsTooltip(const clsTooltip&) = delete;
  clsTooltip& operator=(const clsTooltip&) = delete;

  Color BackCol() const { return backCol_; }
  bool Centered() const { return (tool_.uFlags & kToolCenterTip) != 0; }
  /// Destroys the tip window.
  void Reset();
  /// Recreates the tip for a rectangle of `parent`, in pixels. `Style` is 0, 1 (also over inactive
  /// windows), 64 (balloon) or 65; `Icon` is 0 to 3 (none, information, warning, error); anything
  /// else is refused. "|" in the text starts a line, if there is a title. Colours may be system
  /// colours; the times are in milliseconds, -1 for the platform's own. Returns the tip window, 0
  /// on refusal.
  WindowHandle Create(WindowHandle parent, int left, int top, int right, int bottom, TextView text,
                      int Style, bool Centered, int Icon, TextView title, Color ForeCol,
                      Color BackCol, int HoverTime, int PopupTime);
  /// The same for a whole control that has a window; returns 0 for one without.
  WindowHandle CreateForControl(const Control& control, TextView text, int Style, bool Centered,
                                int Icon, TextView title, Color ForeCol, Color BackCol,
                                int HoverTime, int PopupTime);
  const marl::Text& Text() const { return tool_.lpszText; }
  const marl::Text& Title() const { return title_; }
  Color ForeCol() const { return foreCol_; }
  int HoverTime() const { return hoverTime_; }
  int Icon() const { return icon_; }
  /// The first text and the first title that were ever set.
  const marl::Text& InitialText() const { return initialText_; }
  const marl::Text& InitialTitle() const { return initialTitle_; }
  int PopupTime() const { return popupTime_; }
  /// -1 if there is no tip.
  int Style() const { return style_; }

 private:
  TipWindows& tips_;
  const Desktop& desktop_;
  WindowHandle window_ = 0;
  int style_ = -1;
  int icon_ = 0;
  Color foreCol_ = 0;
  Color backCol_ = 0;
  marl::Text title_;
  int hoverTime_ = 0;
  int popupTime_ = 0;
  marl::Text initialText_;
  marl::Text initialTitle_;
  ToolInfo tool_;
};

}  // namespace marl
