#include "support/Drawing.h"

#include <algorithm>
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

/// A channel, 0 to 255.
std::uint32_t Rounded(double channel) {
  return static_cast<std::uint32_t>(std::min(255.0, channel + 0.5));
}

/// True if all pixels of these rows and columns are the same.
bool IsEven(const Picture& picture, const Shares& rows, const Shares& columns) {
  const std::uint32_t first = picture.pixels[picture.IndexOf(columns[0].pixel, rows[0].pixel)];
  for (const Share& row : rows) {
    const std::uint32_t* const pixels = picture.pixels.data() + picture.IndexOf(0, row.pixel);
    for (const Share& column : columns) {
      if (pixels[column.pixel] != first) return false;
    }
  }
  return true;
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
  const int columns = std::min(left + width, picture.width) - left;
  const int rows = std::min(top + height, picture.height) - top;
  for (int y = 0; y < rows && columns > 0; ++y) {
    std::copy_n(&picture.pixels[picture.IndexOf(left, top + y)], columns,
                &cut.pixels[cut.IndexOf(0, y)]);
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
    const Shares& ofRows = rows[static_cast<std::size_t>(y)];
    for (int x = 0; x < width; ++x) {
      const Shares& ofColumns = columns[static_cast<std::size_t>(x)];
      // Most of a drawing is even.
      if (IsEven(picture, ofRows, ofColumns)) {
        scaled.At(x, y) = picture.pixels[picture.IndexOf(ofColumns[0].pixel, ofRows[0].pixel)];
        continue;
      }
      double blue = 0;
      double green = 0;
      double red = 0;
      double alpha = 0;
      for (const Share& row : ofRows) {
        const std::uint32_t* const pixels = picture.pixels.data() + picture.IndexOf(0, row.pixel);
        for (const Share& column : ofColumns) {
          const std::uint32_t pixel = pixels[column.pixel];
          const double weight = row.weight * column.weight;
          blue += weight * static_cast<int>(pixel & 0xFF);
          green += weight * static_cast<int>(pixel >> 8 & 0xFF);
          red += weight * static_cast<int>(pixel >> 16 & 0xFF);
          alpha += weight * static_cast<int>(pixel >> 24);
        }
      }
      scaled.At(x, y) =
          Rounded(alpha) << 24 | Rounded(red) << 16 | Rounded(green) << 8 | Rounded(blue);
    }
  }
  return scaled;
}

}  // namespace marl
