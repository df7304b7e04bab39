#pragma once

#include <cstdint>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Picture.h"

namespace marl {

/// A second, simple implementation of the gradient: every entry is stored, every line is drawn,
/// every pixel of a line is computed on its own.
namespace reference {

/// The sweep: line k runs between the points 2k and 2k + 1.
struct Lines {
  std::vector<Point> points;
  std::vector<Color> ramp;
  int sx = 0;
  int sy = 0;
};

std::vector<Color> Blend(Color c1, Color c2, int steps);

Lines Compute(float angle, Color c1, Color c2, int width, int height);

/// The platform's line: each pixel is the exact point rounded, a tie goes up or left.
void DrawLine(Picture& picture, Point from, Point to, std::uint32_t pixel);

inline std::uint32_t Pixel(Color c) {
  return 0xFF000000u |
         static_cast<std::uint32_t>((c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF));
}

Picture Draw(const Lines& lines, int width, int height, std::uint32_t background);

}  // namespace reference

}  // namespace marl
