#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/Geometry.h"

// What painting needs that no platform has to do: blending, and which areas to compose.

namespace marl {

/// Blends `count` pixels of `over`, 0xAARRGGBB and premultiplied by alpha, over those of `under`:
/// each channel of the result is over + under * (255 - alpha) / 255, rounded to the nearest. Opaque
/// pixels replace what is there. The two must not overlap.
void BlendPixels(std::uint32_t* under, const std::uint32_t* over, std::size_t count);

/// The areas to compose for an update region of these rectangles within `bounds`: the rectangles,
/// if they are few and much smaller than `bounds`, else `bounds` alone. Composing has a cost per
/// area, and what two distant buttons enclose is not painted for a highlight.
std::vector<PixelRect> AreasToPaint(std::span<const PixelRect> region, const PixelRect& bounds);

}  // namespace marl
