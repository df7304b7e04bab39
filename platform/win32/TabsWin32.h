#pragma once

#include "platform/forms/CommonControls.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// Sets the tabs of a native tab control and the selected one.
void SyncTabs(const TabStrip& tabs, HWND window);

/// The tab strip whose page the control is (a sibling within its bounds); null if it is no page.
const TabStrip* StripOf(const Control& page);

/// The theme's background for the pages of one size. It is painted when it is first needed: most
/// pages of a form are never looked at.
class PageBackground {
 public:
  /// `size` in pixels.
  PageBackground(Size size, int dpi) : size_(size), dpi_(dpi) {}
  const Size& size() const { return size_; }
  /// Null without a theme.
  HBRUSH Brush();

 private:
  Size size_;
  int dpi_;
  bool painted_ = false;
  UniqueBrush brush_;
};

/// Fills the area with a brush whose pattern starts at `origin`, in the context's own coordinates.
void FillWith(HDC context, const RECT& area, HBRUSH brush, POINT origin);

}  // namespace marl::win32
