#pragma once

#include "platform/forms/CommonControls.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// Gives a native tab control the tabs of the strip, with the selected one.
void SyncTabs(const TabStrip& tabs, HWND window);

/// The tab strip that the control is a page of, beside it and within its bounds; null when it is
/// no page.
const TabStrip* StripOf(const Control& page);

/// The background of a page of this size, in pixels, as the theme paints it; none without a theme.
UniqueBrush PageBackground(Size size);

/// Fills the area with a brush whose pattern starts at `origin`, in the context's own coordinates.
void FillWith(HDC context, const RECT& area, HBRUSH brush, POINT origin);

}  // namespace marl::win32
