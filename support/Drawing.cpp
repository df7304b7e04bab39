#include "support/Drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace marl {

namespace {

/// The weight of a pixel of a row or column in a pixel of the scaled picture.
struct Share {
  int pixel = 0;
  double weight = 0;
};
using Shares = std::vector<Share>;

/// For each of `to` pixels its weights of `from` pixels; the weights of a pixel add up to 1.
std::vector<Shares> SharesOf(int from, int to) {
  std::vector<Shares> all(static_cast<std::size_t>(to));
  const double step = static_cast<double>(from) / to;
  // A pixel takes the area that it covers, and at least its neighbours on both sides.
  const double reach = std::max(step, 1.0);
  for (int i = 0; i < to; ++i) {
    Shares& shares = all[static_cast<std::size_t>(i)];
    const double middle = (i + 0.5) * step;
    const double start = middle - reach / 2;
    const double end = middle + reach / 2;
    for (int pixel = static_cast<int>(std::floor(start)); pixel < end; ++pixel) {
      const double weight = std::min(end, pixel + 1.0) - std::max<double>(start, pixel);
      // Beyond the edge, the edge's pixels continue.
      if (weight > 1e-9) shares.push_back({std::clamp(pixel, 0, from - 1), weight / reach});
    }
  }
  return all;
}

int Resized(int length, int dpi, int drawnFor) { return (length * dpi + drawnFor / 2) / drawnFor; }

}  // namespace

const Drawing& DrawingFor(std::span<const Drawing> drawings, int dpi) {
  for (const Drawing& drawing : drawings) {
    if (drawing.dpi >= dpi) return drawing;
  }
  return drawings.back();
}

PicturePtr LoadDrawing(Pictures& pictures, std::span<const Drawing> drawings, int dpi) {
  const Drawing& drawing = DrawingFor(drawings, dpi);
  PicturePtr picture = pictures.Load(drawing.id);
  if (!picture || drawing.dpi == dpi) return picture;
  return std::make_shared<const Picture>(Scaled(*picture, Resized(picture->width, dpi, drawing.dpi),
                                                Resized(picture->height, dpi, drawing.dpi)));
}

Picture CutOut(const Picture& picture, int left, int top, int width, int height) {
  Picture cut(width, height);
  const int right = std::min(left + width, picture.width);
  for (int y = 0; y < height && top + y < picture.height; ++y) {
    for (int x = left; x < right; ++x) cut.At(x - left, y) = picture.At(x, top + y);
  }
  return cut;
}

PicturePtr TileOf(const Picture& strip, int column, int row, int drawn, int size) {
  Picture tile = CutOut(strip, column * drawn, row * drawn, drawn, drawn);
  if (size != drawn) tile = Scaled(tile, size, size);
  return std::make_shared<const Picture>(std::move(tile));
}

Picture Scaled(const Picture& picture, int width, int height) {
  Picture scaled(width, height);
  const std::vector<Shares> columns = SharesOf(picture.width, width);
  const std::vector<Shares> rows = SharesOf(picture.height, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::array<double, 4> sum{};
      for (const Share& row : rows[static_cast<std::size_t>(y)]) {
        for (const Share& column : columns[static_cast<std::size_t>(x)]) {
          const std::uint32_t pixel = picture.At(column.pixel, row.pixel);
          const double weight = row.weight * column.weight;
          for (std::size_t c = 0; c < 4; ++c) sum[c] += weight * (pixel >> (8 * c) & 0xFF);
        }
      }
      std::uint32_t pixel = 0;
      for (std::size_t c = 0; c < 4; ++c) {
        pixel |= static_cast<std::uint32_t>(std::min(255.0, std::floor(sum[c] + 0.5))) << (8 * c);
      }
      scaled.At(x, y) = pixel;
    }
  }
  return scaled;
}

}  // namespace marl
