#include "platform/Painting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace marl {
namespace {

std::uint32_t Pixel(std::uint32_t alpha, std::uint32_t channel) {
  return alpha << 24 | channel << 16 | channel << 8 | channel;
}

// Every alpha, and every value of a channel under it, with the smallest and the largest on top.
TEST(BlendPixels, RoundsEachChannelToTheNearest) {
  int wrong = 0;
  for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
    for (std::uint32_t under = 0; under < 256; ++under) {
      for (const std::uint32_t over : {0u, alpha / 2, alpha}) {
        std::uint32_t result = Pixel(0, under);
        const std::uint32_t top = Pixel(alpha, over);
        BlendPixels(&result, &top, 1);
        const auto expected =
            over + static_cast<std::uint32_t>(std::lround(under * (255 - alpha) / 255.0));
        if ((result & 0xFFFFFF) != Pixel(0, expected)) ++wrong;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
}

TEST(BlendPixels, KeepsChannelsApart) {
  std::uint32_t under = 0x00FF00FF;
  const std::uint32_t over = 0x80004000;
  BlendPixels(&under, &over, 1);
  EXPECT_EQ(under & 0xFFFFFF, 0x7F407Fu);
}

TEST(BlendPixels, TouchesNoPixelBeyond) {
  std::vector<std::uint32_t> under(5, 0x112233);
  const std::vector<std::uint32_t> over(5, 0xFF445566);
  BlendPixels(under.data() + 1, over.data(), 3);
  EXPECT_EQ(under,
            (std::vector<std::uint32_t>{0x112233, 0xFF445566, 0xFF445566, 0xFF445566, 0x112233}));
  BlendPixels(under.data(), over.data(), 0);
  EXPECT_EQ(under[0], 0x112233u);
}

using Areas = std::vector<PixelRect>;

TEST(AreasToPaint, TwoDistantButtonsAreTwoAreas) {
  const Areas buttons = {{4, 88, 117, 170}, {120, 172, 235, 255}};
  EXPECT_EQ(AreasToPaint(buttons, {4, 88, 235, 255}), buttons);
}

TEST(AreasToPaint, RectanglesThatFillTheirBoundsAreOneArea) {
  const PixelRect bounds = {0, 0, 100, 100};
  EXPECT_EQ(AreasToPaint(Areas{{0, 0, 100, 50}, {0, 50, 100, 100}}, bounds), Areas{bounds});
  EXPECT_EQ(AreasToPaint(Areas{bounds}, bounds), Areas{bounds});
}

TEST(AreasToPaint, ManyRectanglesAreOneArea) {
  Areas nine;
  for (int i = 0; i < 9; ++i) nine.push_back({i * 10, i * 10, i * 10 + 5, i * 10 + 5});
  EXPECT_EQ(AreasToPaint(nine, {0, 0, 85, 85}), (Areas{{0, 0, 85, 85}}));
  nine.pop_back();
  EXPECT_EQ(AreasToPaint(nine, {0, 0, 75, 75}), nine);
}

// What has to be painted can grow between the two questions to the platform.
TEST(AreasToPaint, BoundsThatAreLargerOrSmallerThanTheRegionHold) {
  const Areas region = {{10, 10, 20, 20}, {50, 50, 60, 60}};
  for (const PixelRect& bounds :
       {PixelRect{0, 0, 60, 60}, PixelRect{10, 10, 61, 60}, PixelRect{10, 10, 55, 60}}) {
    EXPECT_EQ(AreasToPaint(region, bounds), Areas{bounds});
  }
  EXPECT_EQ(AreasToPaint({}, {1, 2, 3, 4}), (Areas{{1, 2, 3, 4}}));
}

// The sum of two areas of 2^31 pixels each does not overflow.
TEST(AreasToPaint, LargestRectanglesAreAdded) {
  const PixelRect bounds = {0, 0, 0x7FFFFFFF, 0x7FFFFFFF};
  EXPECT_EQ(AreasToPaint(Areas{bounds}, bounds), Areas{bounds});
}

}  // namespace
}  // namespace marl
