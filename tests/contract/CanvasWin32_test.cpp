#include "platform/win32/CanvasWin32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

// The pixels after drawing a picture on a canvas.

namespace marl {
namespace {

constexpr Size kArea{40, 30};

class CanvasDraw : public testing::Test {
 protected:
  CanvasDraw() {
    EXPECT_TRUE(shown_.Fit(kArea.width, kArea.height));
    Clear();
  }

  static constexpr std::uint32_t kGround = 0x404040;

  std::uint32_t At(int x, int y) { return shown_.RowOf(y)[x] & 0xFFFFFF; }
  win32::CanvasWin32 Paper() { return {shown_.context(), fonts_, 96}; }
  /// The pixels that are no longer the ground, and lie within the box.
  int Changed(const Box& box = {0, 0, kArea.width, kArea.height}) {
    int count = 0;
    for (int y = box.top; y < box.top + box.height; ++y) {
      for (int x = box.left; x < box.left + box.width; ++x) count += At(x, y) != kGround;
    }
    return count;
  }
  /// Draws the picture through both kinds of canvas, and compares.
  void ExpectDrawn(const Picture& picture, int x, int y, const Box& clip) {
    HRGN region =
        CreateRectRgn(clip.left, clip.top, clip.left + clip.width, clip.top + clip.height);
    SelectClipRgn(shown_.context(), region);
    DeleteObject(region);
    win32::CanvasWin32(shown_.context(), fonts_, 96).Draw(picture, x, y);
    SelectClipRgn(shown_.context(), nullptr);
    ExpectPixels(picture, x, y, clip);
    DrawOnSurface(clip, [&](win32::CanvasWin32& canvas) { canvas.Draw(picture, x, y); });
    ExpectPixels(picture, x, y, clip);
  }
  /// Paints the part of the area on a surface of its own, as windows do, and shows it.
  template <typename Paint>
  void DrawOnSurface(const Box& part, Paint paint) {
    Clear();
    win32::PixelSurface surface;
    ASSERT_TRUE(surface.Fit(part.width + 3, part.height));
    for (int y = 0; y < part.height; ++y) {
      std::fill_n(surface.RowOf(y), surface.width(), kGround);
    }
    SetViewportOrgEx(surface.context(), -part.left, -part.top, nullptr);
    const PixelRect area = {part.left, part.top, part.left + part.width, part.top + part.height};
    win32::CanvasWin32 canvas(surface, area, fonts_, 96);
    paint(canvas);
    BitBlt(shown_.context(), part.left, part.top, part.width, part.height, surface.context(),
           part.left, part.top, SRCCOPY);
  }
  /// Compares each pixel within `clip` with the picture there; outside nothing may have changed.
  void ExpectPixels(const Picture& picture, int x, int y, const Box& clip) {
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

  void Clear() { std::fill_n(shown_.RowOf(0), kArea.width * kArea.height, kGround); }

  win32::PixelSurface shown_;
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

TEST_F(CanvasDraw, FillColoursItsBoxAndNothingElse) {
  Paper().Fill({5, 6, 7, 8}, 0x2010F0);
  EXPECT_EQ(Changed(), 7 * 8);
  for (const Point at : {Point{5, 6}, Point{11, 13}}) EXPECT_EQ(At(at.x, at.y), 0xF01020u);
}

TEST_F(CanvasDraw, FillBeyondTheEdgesIsCutAndOfNothingDoesNothing) {
  Paper().Fill({5, 6, 0, 8}, 0);
  Paper().Fill({5, 6, 7, -1}, 0);
  EXPECT_EQ(Changed(), 0);
  Paper().Fill({-10, -10, 13, 12}, 0);
  Paper().Fill({kArea.width - 1, kArea.height - 1, 1000, 1000}, 0);
  EXPECT_EQ(Changed(), 3 * 2 + 1);
}

TEST_F(CanvasDraw, SystemColourIsThatOfTheSystem) {
  Paper().Fill({0, 0, 1, 1}, SystemColor(COLOR_HIGHLIGHT));
  const COLORREF color = GetSysColor(COLOR_HIGHLIGHT);
  EXPECT_EQ(At(0, 0),
            static_cast<std::uint32_t>(RGB(GetBValue(color), GetGValue(color), GetRValue(color))));
}

TEST_F(CanvasDraw, LineLeavesItsEndOut) {
  Paper().Line({3, 4}, {9, 4}, 0);
  EXPECT_EQ(Changed(), 6);
  EXPECT_EQ(At(3, 4), 0u);
  EXPECT_EQ(At(8, 4), 0u);
  Paper().Line({20, 20}, {20, 10}, 0);
  EXPECT_EQ(Changed(), 16);
  EXPECT_EQ(At(20, 20), 0u);
  EXPECT_EQ(At(20, 11), 0u);
  Paper().Line({30, 5}, {30, 5}, 0);
  EXPECT_EQ(Changed(), 16) << "of no length it is nothing";
}

TEST_F(CanvasDraw, TextStaysInItsBoxOnItsSide) {
  const Box box{4, 3, 30, 20};
  const int middle = box.left + box.width / 2;
  const auto left = [&] { return Changed({0, 0, middle, kArea.height}); };
  const auto right = [&] { return Changed({middle, 0, kArea.width - middle, kArea.height}); };
  TextStyle style;
  Paper().Write(u"", box, style);
  EXPECT_EQ(Changed(), 0);
  Paper().Write(u"I", box, style);
  EXPECT_GT(left(), 0);
  EXPECT_EQ(right(), 0);
  Paper().Fill({0, 0, kArea.width, kArea.height}, 0x404040);
  style.alignment = Alignment::kRight;
  Paper().Write(u"I", box, style);
  EXPECT_EQ(left(), 0);
  EXPECT_GT(right(), 0);
  Paper().Fill({0, 0, kArea.width, kArea.height}, 0x404040);
  Paper().Write(u"MMMMMMMM MMMM\nMMMM\nMMMM", box, style);
  EXPECT_EQ(Changed(), Changed(box)) << "what does not fit is cut";
}

TEST_F(CanvasDraw, SurfaceOfAPartShowsTheSameTextAndLines) {
  const auto paint = [](Canvas& canvas) {
    TextStyle style;
    style.color = Rgb(200, 20, 10);
    canvas.Fill({2, 2, 36, 26}, 0x806040);
    canvas.Write(u"Edit", {4, 3, 30, 20}, style);
    canvas.Line({3, 25}, {35, 5}, 0xFFFFFF);
  };
  const auto pixels = [&] {
    std::vector<std::uint32_t> all;
    for (int y = 6; y < 28; ++y) {
      for (int x = 5; x < 35; ++x) all.push_back(At(x, y));
    }
    return all;
  };
  auto paper = Paper();
  paint(paper);
  const std::vector<std::uint32_t> expected = pixels();
  DrawOnSurface({5, 6, 30, 22}, paint);
  EXPECT_EQ(pixels(), expected);
}

TEST(PixelSurface, GrowsAndStays) {
  win32::PixelSurface surface;
  EXPECT_FALSE(surface.context());
  ASSERT_TRUE(surface.Fit(10, 20));
  const HDC context = surface.context();
  ASSERT_TRUE(surface.Fit(5, 20));
  EXPECT_EQ(surface.context(), context);
  ASSERT_TRUE(surface.Fit(30, 5));
  EXPECT_EQ(surface.width(), 30);
  EXPECT_EQ(surface.height(), 20);
  for (int y = 0; y < 20; ++y) surface.RowOf(y)[29] = static_cast<std::uint32_t>(y);
  EXPECT_EQ(GetPixel(surface.context(), 29, 19), RGB(0, 0, 19));
  // More than the platform can give: there is none, and the next one works.
  EXPECT_FALSE(surface.Fit(0x7FFFFFF, 0x7FFFFFF));
  EXPECT_FALSE(surface.context());
  EXPECT_TRUE(surface.Fit(1, 1));
}

TEST_F(CanvasDraw, TextIsInItsColorAndNoOther) {
  TextStyle style;
  style.color = Rgb(10, 20, 200);
  style.font.Bold = true;
  style.font.Size = 140000;
  Paper().Write(u"H", {4, 3, 30, 20}, style);
  int text = 0;
  for (int y = 0; y < kArea.height; ++y) {
    for (int x = 0; x < kArea.width; ++x) text += At(x, y) == 0x0A14C8u;
  }
  EXPECT_GT(text, 0);
}

// A font without a name, as the table of code pages has it, is that of the platform's dialogs in
// each of its character sets.
TEST(FontCache, TakesTheDialogFontForAnEmptyName) {
  win32::FontCache fonts;
  const win32::ClientContext screen(nullptr);
  const auto face = [&](HFONT font) {
    wchar_t name[LF_FACESIZE] = {};
    const HGDIOBJ before = SelectObject(screen.get(), font);
    GetTextFaceW(screen.get(), LF_FACESIZE, name);
    SelectObject(screen.get(), before);
    return std::wstring(name);
  };
  for (const int charset : {222, 238, 204, 161, 162, 177, 178, 186, 163, 130, 1}) {
    Font none;
    none.Name.clear();
    none.Charset = charset;
    Font dialog = none;
    dialog.Name = u"MS Shell Dlg 2";
    EXPECT_EQ(face(fonts.Get(none, 96)), face(fonts.Get(dialog, 96))) << charset;
    LOGFONTW asked = {};
    ASSERT_GT(GetObjectW(fonts.Get(none, 96), sizeof asked, &asked), 0);
    EXPECT_STREQ(asked.lfFaceName, L"MS Shell Dlg 2") << charset;
    EXPECT_EQ(asked.lfCharSet, charset);
    EXPECT_EQ(asked.lfQuality, DEFAULT_QUALITY) << "smoothed as the user has set it";
  }
}

}  // namespace
}  // namespace marl
