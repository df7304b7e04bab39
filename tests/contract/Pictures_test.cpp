#include "platform/Pictures.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/memory/MemoryPictures.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include <objbase.h>

#include "platform/win32/PictureLoader.h"
#endif

namespace marl {
namespace {

/// The pictures of the program, which are also resources of this test on Windows.
class PicturesContract : public BackendTest {
 protected:
  PicturesContract() {
#ifdef _WIN32
    if (real()) {
      ready_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
      pictures = std::make_unique<win32::PicturesWin32>();
    }
#endif
    if (!pictures) pictures = std::make_unique<MemoryPictures>();
  }
  ~PicturesContract() override {
    pictures.reset();
#ifdef _WIN32
    if (ready_) CoUninitialize();
#endif
  }

  std::unique_ptr<Pictures> pictures;

 private:
  bool ready_ = false;
};
MARL_OVER_ALL_BACKENDS(PicturesContract);

TEST_P(PicturesContract, EachHasTheSizeThatItsPlaceAsksFor) {
  const auto expectSize = [this](int id, int width, int height) {
    const PicturePtr picture = pictures->Load(id);
    ASSERT_TRUE(picture) << id;
    EXPECT_EQ(picture->width, width) << id;
    EXPECT_EQ(picture->height, height) << id;
    EXPECT_EQ(picture->pixels.size(), static_cast<std::size_t>(width) * height) << id;
  };
  const struct {
    int id;
    int dpi;
  } splashes[] = {{MARL_PICTURE_SPLASH, 96},
                  {MARL_PICTURE_SPLASH_144, 144},
                  {MARL_PICTURE_SPLASH_192, 192}},
    abouts[] = {
        {MARL_PICTURE_ABOUT, 96}, {MARL_PICTURE_ABOUT_144, 144}, {MARL_PICTURE_ABOUT_192, 192}};
  for (const auto& splash : splashes) {
    expectSize(splash.id, 480 * splash.dpi / 96, 300 * splash.dpi / 96);
  }
  for (const auto& about : abouts) {
    expectSize(about.id, 400 * about.dpi / 96, 96 * about.dpi / 96);
  }
  for (int set = 0; set < 4; ++set) {
    int id = MARL_PICTURE_SET0_48 + set * 3;
    for (const int side : {48, 72, 96}) expectSize(id++, MARL_STRIP_PICTURES * side, 2 * side);
  }
  expectSize(MARL_PICTURE_MENU_16, MARL_STRIP_PICTURES * 16, 16);
  expectSize(MARL_PICTURE_MENU_24, MARL_STRIP_PICTURES * 24, 24);
}

TEST_P(PicturesContract, OtherNumbersHaveNone) {
  for (const int id : {-1, 0, 1, 199, 209, 222, 229, 232, 65535}) {
    EXPECT_FALSE(pictures->Load(id)) << id;
    pictures->Prepare(id);
    EXPECT_FALSE(pictures->Load(id)) << id;
  }
}

// Colours are premultiplied: none is above the pixel's alpha.
TEST_P(PicturesContract, ColoursAreMultipliedWithTheirAlpha) {
  for (const int id : {MARL_PICTURE_SET0_48, MARL_PICTURE_MENU_16, MARL_PICTURE_SPLASH}) {
    const PicturePtr picture = pictures->Load(id);
    ASSERT_TRUE(picture);
    bool visible = false;
    for (const std::uint32_t pixel : picture->pixels) {
      const std::uint32_t alpha = pixel >> 24;
      visible |= alpha != 0;
      ASSERT_LE(pixel & 255, alpha) << id;
      ASSERT_LE(pixel >> 8 & 255, alpha) << id;
      ASSERT_LE(pixel >> 16 & 255, alpha) << id;
    }
    EXPECT_TRUE(visible) << id;
  }
}

TEST_P(PicturesContract, WhatWasPreparedIsTheSamePicture) {
  const PicturePtr plain = pictures->Load(MARL_PICTURE_ABOUT);
  ASSERT_TRUE(plain);
  const Picture before = *plain;
  pictures->Prepare(MARL_PICTURE_SPLASH);
  pictures->Prepare(MARL_PICTURE_SPLASH);
  EXPECT_TRUE(pictures->Load(MARL_PICTURE_SPLASH));
  EXPECT_TRUE(pictures->Load(MARL_PICTURE_SPLASH)) << "also for who comes later";
  pictures->Prepare(MARL_PICTURE_ABOUT);
  const PicturePtr again = pictures->Load(MARL_PICTURE_ABOUT);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->pixels, before.pixels);
}

TEST_P(PicturesContract, PictureOutlivesItsLoader) {
  const PicturePtr picture = pictures->Load(MARL_PICTURE_MENU_16);
  pictures->Prepare(MARL_PICTURE_SPLASH);
  pictures.reset();
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->height, 16);
}

#ifdef _WIN32
/// A bitmap file with 24 bits a pixel.
std::vector<std::uint8_t> BitmapFile(int width, int height) {
  const auto row = (static_cast<std::uint32_t>(width) * 3 + 3) & ~3u;
  const auto pixels = row * static_cast<std::uint32_t>(height);
  std::vector<std::uint8_t> file;
  const auto put = [&](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  };
  put(0x4D42, 2);
  put(54 + pixels, 4);
  put(0, 4);
  put(54, 4);
  put(40, 4);
  put(static_cast<std::uint32_t>(width), 4);
  put(static_cast<std::uint32_t>(height), 4);
  put(1, 2);
  put(24, 2);
  put(0, 4);
  put(pixels, 4);
  for (int i = 0; i < 4; ++i) put(0, 4);
  file.resize(file.size() + pixels, 0x55);
  return file;
}

class DecodedPicture : public testing::Test {
 protected:
  DecodedPicture() : ready_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~DecodedPicture() override {
    if (ready_) CoUninitialize();
  }
  static PicturePtr Decode(const std::vector<std::uint8_t>& file) {
    return win32::DecodePicture(file.data(), file.size());
  }

 private:
  bool ready_;
};

TEST_F(DecodedPicture, IsOpaqueWithoutAlpha) {
  const PicturePtr picture = Decode(BitmapFile(3, 2));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 3);
  EXPECT_EQ(picture->height, 2);
  EXPECT_EQ(picture->pixels, std::vector<std::uint32_t>(6, 0xFF555555));
}

TEST_F(DecodedPicture, LargestSideHasALimit) {
  for (const int side : {16384, 16385}) {
    const PicturePtr wide = Decode(BitmapFile(side, 1));
    const PicturePtr high = Decode(BitmapFile(1, side));
    EXPECT_EQ(wide != nullptr, side == 16384) << side;
    EXPECT_EQ(high != nullptr, side == 16384) << side;
  }
}

TEST_F(DecodedPicture, WhatIsNoPictureIsNone) {
  EXPECT_FALSE(win32::DecodePicture(nullptr, 5));
  EXPECT_FALSE(Decode({}));
  EXPECT_FALSE(Decode(std::vector<std::uint8_t>(1000, 0x42)));
  std::vector<std::uint8_t> file = BitmapFile(40, 40);
  file.resize(60);
  EXPECT_FALSE(Decode(file)) << "cut off";
}
#endif

}  // namespace
}  // namespace marl
