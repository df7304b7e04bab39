#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/win32/Handle.h"

namespace marl::win32 {

/// 32-bit pixels in memory that both the platform and the program draw on (CreateDIBSection), kept
/// from one painting to the next: making one costs more than painting a button.
class PixelSurface {
 public:
  PixelSurface() = default;
  ~PixelSurface();
  PixelSurface(const PixelSurface&) = delete;
  PixelSurface& operator=(const PixelSurface&) = delete;

  /// Makes it at least so large, in pixels; a larger one stays. What was drawn is gone. Returns
  /// false if the platform has no memory for it; there is none then.
  bool Fit(int width, int height);
  /// Gives its memory back, until the next Fit.
  void Release();

  /// Null before the first Fit.
  HDC context() const { return context_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }
  /// The row of pixels, after all that the platform has yet to draw (GdiFlush).
  std::uint32_t* RowOf(int y);

 private:
  UniqueContext context_;
  UniqueBitmap bitmap_;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace marl::win32
