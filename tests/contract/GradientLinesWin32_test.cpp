#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "appearance/GradientRect.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/win32/CanvasWin32.h"
#include "platform/win32/PixelSurface.h"

// Compares the computed gradient with the one that the platform draws, line by line.

namespace marl {
namespace {

/// The context of the surface, once it has this size.
HDC ContextOf(win32::PixelSurface& surface, Size size) {
  EXPECT_TRUE(surface.Fit(size.width, size.height));
  return surface.context();
}

/// A target with 32-bit pixels on which the platform draws the lines.
class Surface : public GradientTarget {
 public:
  explicit Surface(Size size) : size_(size) {}

  bool GetClientRect(Size& size) override {
    size = size_;
    return true;
  }
  void Line(Point from, Point to, Color color) override { canvas_.Line(from, to, color); }
  /// The drawn pixels, in the layout of a picture; clears the surface.
  std::vector<std::uint32_t> Take() {
    std::uint32_t* const begin = surface_.RowOf(0);
    std::uint32_t* const end = begin + static_cast<std::size_t>(size_.width) * size_.height;
    std::vector<std::uint32_t> pixels(begin, end);
    for (std::uint32_t& pixel : pixels) pixel |= 0xFF000000u;
    std::fill(begin, end, 0);
    return pixels;
  }

 private:
  Size size_;
  win32::PixelSurface surface_;
  win32::FontCache fonts_;
  win32::CanvasWin32 canvas_{ContextOf(surface_, size_), fonts_, 96};
};

constexpr Size kSurface{64, 48};
constexpr Color kPen = Rgb(255, 200, 100);

void ExpectSameLine(Surface& surface, Point from, Point to) {
  GradientPicture computed(kSurface);
  computed.Line(from, to, kPen);
  surface.Line(from, to, kPen);
  ASSERT_EQ(surface.Take(), computed.picture().pixels)
      << from.x << "," << from.y << " to " << to.x << "," << to.y;
}

TEST(GradientLines, EverySlopeGivesThePlatformsPixels) {
  Surface surface(kSurface);
  for (int dx = -20; dx <= 20; ++dx) {
    for (int dy = -20; dy <= 20; ++dy) {
      ASSERT_NO_FATAL_FAILURE(ExpectSameLine(surface, {30, 24}, {30 + dx, 24 + dy}));
    }
  }
}

TEST(GradientLines, LinesFarBeyondTheAreaGiveThePlatformsPixels) {
  Surface surface(kSurface);
  std::mt19937 random(1);
  const auto place = [&] { return static_cast<int>(random() % 3000) - 1500; };
  for (int i = 0; i < 2000; ++i) {
    const Point from{place(), place()};
    const Point to{place(), place()};
    ASSERT_NO_FATAL_FAILURE(ExpectSameLine(surface, from, to));
  }
}

TEST(GradientLines, WholePicturesAreThoseOfThePlatformsLines) {
  MemoryDesktop desktop;
  clsGradient gradient(desktop);
  gradient.SetColor1(Rgb(182, 203, 197));
  gradient.SetColor2(Rgb(0, 77, 57));
  for (const Size size : {Size{586, 362}, Size{97, 211}, Size{2, 2}}) {
    Surface surface(size);
    for (const float angle : {0.F, 30.F, 45.F, 90.F, 100.F, 135.F, 160.5F, 217.F, 270.F, 300.F}) {
      gradient.SetAngle(angle);
      GradientPicture computed(size);
      EXPECT_TRUE(gradient.Draw(computed));
      EXPECT_TRUE(gradient.Draw(surface));
      ASSERT_EQ(surface.Take(), computed.picture().pixels) << angle << " on " << size.width;
    }
  }
}

}  // namespace
}  // namespace marl
