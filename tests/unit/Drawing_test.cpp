#include "support/Drawing.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/memory/MemoryPictures.h"

namespace marl {
namespace {

constexpr std::array<Drawing, 3> kLogo = {
    {{MARL_PICTURE_ABOUT, 96}, {MARL_PICTURE_ABOUT_144, 144}, {MARL_PICTURE_ABOUT_192, 192}}};

TEST(Drawing, SmallestThatIsLargeEnoughIsTaken) {
  const struct {
    int dpi;
    int drawnFor;
  } rows[] = {{72, 96},   {96, 96},   {97, 144},  {120, 144}, {144, 144},
              {168, 192}, {192, 192}, {240, 192}, {384, 192}};
  for (const auto& row : rows) {
    EXPECT_EQ(DrawingFor(kLogo, row.dpi).dpi, row.drawnFor) << row.dpi;
  }
}

TEST(Drawing, IsAsLargeAsTheResolutionRequires) {
  MemoryPictures pictures;
  for (const int dpi : {96, 120, 144, 168, 192, 216, 240, 288}) {
    const PicturePtr picture = LoadDrawing(pictures, kLogo, dpi);
    ASSERT_TRUE(picture) << dpi;
    EXPECT_EQ(picture->width, 400 * dpi / 96) << dpi;
    EXPECT_EQ(picture->height, dpi) << dpi;
    for (const std::uint32_t pixel : picture->pixels) ASSERT_EQ(pixel, 0xFF808080u) << dpi;
  }
  EXPECT_EQ(pictures.loaded.size(), 8u);
}

TEST(Drawing, ThatIsMissingIsNull) {
  MemoryPictures pictures;
  pictures.missing = {MARL_PICTURE_ABOUT_144};
  EXPECT_EQ(LoadDrawing(pictures, kLogo, 120), nullptr);
}

TEST(Scaled, KeepsAnEvenSurfaceAndAveragesAnUnevenOne) {
  Picture even(4, 4, 0x80402010);
  for (const int size : {1, 2, 3, 5, 7}) {
    for (const std::uint32_t pixel : Scaled(even, size, size).pixels) EXPECT_EQ(pixel, 0x80402010u);
  }
  Picture halves(2, 1);
  halves.At(0, 0) = 0xFF000000;
  halves.At(1, 0) = 0xFFFFFFFF;
  EXPECT_EQ(Scaled(halves, 1, 1).At(0, 0), 0xFF808080u);
}

// Even areas are copied, not computed: next to each other and to uneven ones.
TEST(Scaled, HalfTheSizeIsTheMeanOfFourPixelsEvenOrNot) {
  constexpr std::array<std::uint32_t, 2> kColors = {0x80402010, 0xFE06A4F3};
  std::mt19937 random(5);
  Picture picture(64, 48);
  for (std::uint32_t& pixel : picture.pixels) pixel = kColors[random() % 2];
  const Picture half = Scaled(picture, 32, 24);
  int even = 0;
  for (int y = 0; y < half.height; ++y) {
    for (int x = 0; x < half.width; ++x) {
      std::uint32_t expected = 0;
      for (const int channel : {0, 8, 16, 24}) {
        std::uint32_t sum = 0;
        for (const int i : {0, 1, 2, 3}) {
          sum += picture.At(2 * x + i % 2, 2 * y + i / 2) >> channel & 0xFF;
        }
        expected |= (sum + 2) / 4 << channel;
      }
      ASSERT_EQ(half.At(x, y), expected) << x << ", " << y;
      if (expected == kColors[0] || expected == kColors[1]) ++even;
    }
  }
  EXPECT_GT(even, 30);
  EXPECT_LT(even, 400);
}

TEST(Scaled, LargerInterpolatesBetweenPixels) {
  Picture halves(2, 1);
  halves.At(0, 0) = 0xFF000000;
  halves.At(1, 0) = 0xFFFFFFFF;
  // The centres of the four pixels are at a quarter, three quarters and so on of the two.
  EXPECT_EQ(Scaled(halves, 4, 1).pixels,
            (std::vector<std::uint32_t>{0xFF000000, 0xFF404040, 0xFFBFBFBF, 0xFFFFFFFF}));
}

TEST(CutOut, BeyondThePictureIsTransparent) {
  const Picture picture(2, 2, 0xFFFFFFFF);
  const Picture cut = CutOut(picture, 1, 1, 2, 2);
  EXPECT_EQ(cut.pixels, (std::vector<std::uint32_t>{0xFFFFFFFF, 0, 0, 0}));
}

TEST(Drawing, ATileIsCutOutOfItsRowAndColumn) {
  Picture strip(4, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      strip.At(x, y) = 0xFF000000u + static_cast<std::uint32_t>(y / 2 * 2 + x / 2);
    }
  }
  for (const int size : {1, 2, 3, 5}) {
    for (int row = 0; row < 2; ++row) {
      for (int column = 0; column < 2; ++column) {
        const PicturePtr tile = TileOf(strip, column, row, 2, size);
        EXPECT_EQ(tile->width, size);
        EXPECT_EQ(tile->pixels, Picture(size, size, 0xFF000000u + row * 2 + column).pixels);
      }
    }
  }
}

}  // namespace
}  // namespace marl
