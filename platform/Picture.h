#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace marl {

/// A picture in memory: top-down rows of 32-bit pixels, 0xAARRGGBB, premultiplied by alpha.
struct Picture {
  int width = 0;   ///< pixels
  int height = 0;  ///< pixels
  std::vector<std::uint32_t> pixels;

  Picture() = default;
  Picture(int w, int h, std::uint32_t fill = 0)
      : width(w), height(h), pixels(static_cast<std::size_t>(w) * h, fill) {}

  std::size_t IndexOf(int x, int y) const { return static_cast<std::size_t>(y) * width + x; }
  std::uint32_t& At(int x, int y) { return pixels[IndexOf(x, y)]; }
  std::uint32_t At(int x, int y) const { return pixels[IndexOf(x, y)]; }
};

/// Pictures are shared, never changed once a control shows them.
using PicturePtr = std::shared_ptr<const Picture>;

}  // namespace marl
