#pragma once

#include <cstdint>

namespace marl {

/// A rectangle on a form, in twips from the top left corner of its client area (for a form, of the
/// screen).
struct Box {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  bool operator==(const Box&) const = default;
};

/// Width and height, in the unit that the context names.
struct Size {
  std::int32_t width = 0;
  std::int32_t height = 0;

  bool operator==(const Size&) const = default;
};

/// A position, in the unit that the context names.
struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;

  bool operator==(const Point&) const = default;
};

/// A rectangle in pixels, of the screen or of a window's client area; right and bottom are outside.
struct PixelRect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  std::int32_t width() const { return right - left; }
  std::int32_t height() const { return bottom - top; }

  bool operator==(const PixelRect&) const = default;
};

/// Width and height of a pixel in twips: 1440 / dpi, a fraction on many screens.
struct PixelTwips {
  double x = 15;
  double y = 15;

  bool operator==(const PixelTwips&) const = default;
};

/// 0x00BBGGRR, or negative: 0x80000000 and the index of a system colour.
using Color = std::int32_t;

constexpr Color Rgb(int red, int green, int blue) { return red | green << 8 | blue << 16; }
constexpr Color SystemColor(int index) { return static_cast<Color>(0x80000000u | index); }

constexpr Color kWindowBackground = SystemColor(5);
constexpr Color kWindowText = SystemColor(8);
constexpr Color kHighlight = SystemColor(13);
constexpr Color kHighlightText = SystemColor(14);
constexpr Color kButtonFace = SystemColor(15);
constexpr Color kGrayText = SystemColor(17);
constexpr Color kButtonText = SystemColor(18);
constexpr Color kHotLight = SystemColor(26);  ///< links

}  // namespace marl
