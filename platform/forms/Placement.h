#pragma once

#include "platform/Geometry.h"

namespace marl {

/// Where the corner of a window has to be so that the window is inside the work area: moved by as
/// little as possible, and at the area's corner if it is larger. In pixels.
Point CornerInside(const PixelRect& window, const PixelRect& work);

/// True if the user can take hold of the window's title bar: enough of it is inside the work area
/// of its monitor. `scale` is the number of pixels of an inch.
bool CanBeReached(const PixelRect& window, const PixelRect& work, int scale);

}  // namespace marl
