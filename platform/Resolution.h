#pragma once

#include <cstdint>

#include "platform/Geometry.h"

namespace marl {

/// Pixels per inch, and the conversion between pixels and twips (1440 to an inch). Each form has
/// that of its monitor.
struct Resolution {
  int x = 96;  ///< dots per inch from left to right
  int y = 96;  ///< from top to bottom

  /// Size of a pixel: 15 by 15 twips at 96 dpi, 7.5 by 7.5 at 192. Callers round once, at the end
  /// of a computation.
  PixelTwips TwipsPerPixel() const { return {double{kTwips} / x, double{kTwips} / y}; }
  /// Twips to pixels and back, rounded to the nearest; halves away from zero.
  int PixelsX(int twips) const { return Scale(twips, x, kTwips); }
  int PixelsY(int twips) const { return Scale(twips, y, kTwips); }
  int TwipsX(int pixels) const { return Scale(pixels, kTwips, x); }
  int TwipsY(int pixels) const { return Scale(pixels, kTwips, y); }
  /// A mouse position in pixels, in twips, not rounded.
  float TwipsAtX(int pixels) const { return static_cast<float>(TwipsPerPixel().x * pixels); }
  float TwipsAtY(int pixels) const { return static_cast<float>(TwipsPerPixel().y * pixels); }

  bool operator==(const Resolution&) const = default;

 private:
  static constexpr int kTwips = 1440;

  static int Scale(int value, int factor, int divisor) {
    const std::int64_t product = std::int64_t{value} * factor;
    const std::int64_t half = divisor / 2;
    return static_cast<int>((product >= 0 ? product + half : product - half) / divisor);
  }
};

/// One of the user's screens. The primary one has its corner at 0, 0; those to its left and above
/// it have negative coordinates.
struct Monitor {
  PixelRect bounds;
  PixelRect work;  ///< without the taskbar and other bars
  Resolution resolution;

  bool operator==(const Monitor&) const = default;
};

}  // namespace marl
