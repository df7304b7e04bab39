#pragma once

#include <span>

#include "platform/Pictures.h"

namespace marl {

/// One size in which the program carries a picture.
struct Drawing {
  int id = 0;   ///< MARL_PICTURE_..., resources/ids.h
  int dpi = 0;  ///< the resolution that it was drawn for
};

/// The drawing to show at a resolution: the coarsest that is fine enough, or the finest. The
/// drawings are not empty and stand in the order of their resolutions.
const Drawing& DrawingFor(std::span<const Drawing> drawings, int dpi);

/// The picture at a resolution, made larger or smaller where no drawing is of just that one. Null
/// when the program carries none.
PicturePtr LoadDrawing(Pictures& pictures, std::span<const Drawing> drawings, int dpi);

/// The part of a picture that begins at `left`, `top`; what lies outside it is transparent.
Picture CutOut(const Picture& picture, int left, int top, int width, int height);

/// The picture at another size. Smaller: each pixel is the mean of the area that it covers. Larger:
/// of the pixels around it, weighted by their nearness.
Picture Scaled(const Picture& picture, int width, int height);

}  // namespace marl
