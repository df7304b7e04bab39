#include "platform/win32/CanvasWin32.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

// The pixels after drawing a picture on a canvas.

namespace marl {
namespace {

constexpr Size kArea{40, 30};

class CanvasDraw : public testing::Test {
 protected:
  CanvasDraw() : context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = kArea.width;
    info.bmiHeader.biHeight = -kArea.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = win32::UniqueBitmap(
        CreateDIBSection(context_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    bits_ = static_cast<std::uint32_t*>(bits);
    before_ = SelectObject(context_.get(), bitmap_.get());
    for (int i = 0; i < kArea.width * kArea.height; ++i) bits_[i] = kGround;
  }
  ~CanvasDraw() override { SelectObject(context_.get(), before_); }

  static constexpr std::uint32_t kGround = 0x404040;

  std::uint32_t At(int x, int y) {
    GdiFlush();
    return bits_[y * kArea.width + x] & 0xFFFFFF;
  }
  /// Draws the picture and compares each pixel within `clip`; outside it nothing may change.
  void ExpectDrawn(const Picture& picture, int x, int y, const Box& clip) {
    HRGN region =
        CreateRectRgn(clip.left, clip.top, clip.left + clip.width, clip.top + clip.height);
    SelectClipRgn(context_.get(), region);
    DeleteObject(region);
    win32::CanvasWin32(context_.get(), fonts_, 96).Draw(picture, x, y);
    SelectClipRgn(context_.get(), nullptr);
    for (int row = 0; row < kArea.height; ++row) {
      for (int column = 0; column < kArea.width; ++column) {
        const bool inClip = column >= clip.left && column < clip.left + clip.width &&
                            row >= clip.top && row < clip.top + clip.height;
        const bool inPicture =
            column >= x && column < x + picture.width && row >= y && row < y + picture.height;
        const std::uint32_t over = inPicture ? picture.At(column - x, row - y) : 0;
        const std::uint32_t expected = inClip && inPicture ? Over(over) : kGround;
        for (int shift = 0; shift < 24; shift += 8) {
          // Platforms round blended values differently.
          const int difference = static_cast<int>(At(column, row) >> shift & 255) -
                                 static_cast<int>(expected >> shift & 255);
          ASSERT_LE(std::abs(difference), over >> 24 == 255 || !inPicture ? 0 : 1)
              << column << "," << row;
        }
      }
    }
  }

 private:
  static std::uint32_t Over(std::uint32_t pixel) {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const std::uint32_t ground = kGround >> shift & 255;
      const std::uint32_t part =
          (pixel >> shift & 255) + (ground * (255 - (pixel >> 24)) + 127) / 255;
      result |= part << shift;
    }
    return result;
  }

  win32::UniqueContext context_;
  win32::UniqueBitmap bitmap_;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* bits_ = nullptr;
  win32::FontCache fonts_;
};

/// Each pixel differs from the others; with `alpha`, some are translucent.
Picture Pattern(int width, int height, bool alpha) {
  Picture picture(width, height);
  std::mt19937 random(3);
  for (std::uint32_t& pixel : picture.pixels) {
    const std::uint32_t a = alpha ? random() & 255 : 255;
    pixel = a << 24;
    for (int shift = 0; shift < 24; shift += 8) pixel |= (a ? random() % (a + 1) : 0) << shift;
  }
  return picture;
}

constexpr Box kAll{0, 0, kArea.width, kArea.height};

TEST_F(CanvasDraw, OpaquePictureReplacesWhatIsThere) {
  ExpectDrawn(Pattern(20, 10, false), 5, 7, kAll);
}

TEST_F(CanvasDraw, OpaquePictureBeyondAllEdgesIsCut) {
  ExpectDrawn(Pattern(60, 50, false), -7, -11, kAll);
}

TEST_F(CanvasDraw, OpaquePictureKeepsWithinTheClip) {
  ExpectDrawn(Pattern(40, 30, false), 0, 0, {9, 4, 13, 17});
}

TEST_F(CanvasDraw, OpaquePictureIsCutByEdgeAndClip) {
  ExpectDrawn(Pattern(35, 25, false), -3, 9, {1, 6, 20, 20});
}

TEST_F(CanvasDraw, TransparentPictureIsLaidOver) { ExpectDrawn(Pattern(20, 10, true), 5, 7, kAll); }

TEST_F(CanvasDraw, TransparentPictureIsCutByEdgeAndClip) {
  ExpectDrawn(Pattern(35, 25, true), -3, 9, {1, 6, 20, 20});
}

TEST_F(CanvasDraw, PictureOutsideTheClipIsNotDrawn) {
  ExpectDrawn(Pattern(5, 5, false), 30, 20, {0, 0, 10, 10});
  ExpectDrawn(Picture(), 0, 0, kAll);
}

}  // namespace
}  // namespace marl
