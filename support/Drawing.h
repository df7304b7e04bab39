#pragma once

#include <span>

#include "platform/Pictures.h"

namespace marl {

/// One of the sizes in which the program has a picture.
struct Drawing {
  int id = 0;   ///< MARL_PICTURE_..., resources/ids.h
  int dpi = 0;  ///< the resolution that it was drawn for
};

/// The drawing to use at a resolution: the smallest that is large enough, or the largest.
/// `drawings` is not empty and sorted by resolution.
const Drawing& DrawingFor(std::span<const Drawing> drawings, int dpi);

/// The picture at a resolution, scaled if no drawing has exactly that one. Null if the program has
/// none.
PicturePtr LoadDrawing(Pictures& pictures, std::span<const Drawing> drawings, int dpi);

/// The part of a picture that begins at `left`, `top`; outside the picture it is transparent.
Picture CutOut(const Picture& picture, int left, int top, int width, int height);

/// The picture in `column` and `row` of a strip of square ones, `drawn` pixels wide each, as a
/// square of `size` pixels.
PicturePtr TileOf(const Picture& strip, int column, int row, int drawn, int size);

/// The picture at another size. Smaller: each pixel is the mean of the area that it covers. Larger:
/// the mean of the pixels around it, weighted by distance.
Picture Scaled(const Picture& picture, int width, int height);

}  // namespace marl
