// The panel at every resolution: all ways to find the button under the mouse agree.

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <sstream>
#include <vector>

#include "appearance/PanelLayout.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

constexpr int kNone = -1;
constexpr int kResolutions[] = {96, 120, 144, 168, 192, 216, 240, 288, 384};

class PanelResolutions : public testing::TestWithParam<int> {
 protected:
  PanelResolutions() {
    world.desktop.dpi = {GetParam(), GetParam()};
    world.Start();
    for (std::size_t i = 0; i < kButtonCount; ++i) areas_[i] = {form().shpRun[i]->bounds(), true};
    for (const auto& [window, tip] : world.tips.tips) {
      const auto& tool = std::get<ToolInfo>(tip.sent[0].lParam);
      for (std::size_t i = 0; i < kButtonCount; ++i) {
        if (tool.lpszText == form().TooltipTexts[i]) tips_[i] = tool.rect;
      }
    }
  }

  frmMain& form() { return world.main(); }
  int PixelsX(int twips) const { return world.desktop.resolution().PixelsX(twips); }
  int PixelsY(int twips) const { return world.desktop.resolution().PixelsY(twips); }

  /// The button that is highlighted after a mouse event at this pixel.
  int ByEvent(Point at) {
    Leave();
    form().UserMouseMove(0, 0, world.desktop.resolution().TwipsAtX(at.x),
                         world.desktop.resolution().TwipsAtY(at.y));
    return form().HoverButton;
  }
  /// The same, after a tick of the timer.
  int ByTimer(Point at) {
    Leave();
    const Point origin = form().ClientOrigin();
    world.tray.cursor = {origin.x + at.x, origin.y + at.y};
    form().tmrOver.Tick();
    return form().HoverButton;
  }
  /// The button that a click there presses, with no mouse event before.
  int ByClick(Point at) {
    const int hovered = ByEvent(at);
    const Control* const hit = form().HitTest(world.desktop.resolution().TwipsAtX(at.x),
                                              world.desktop.resolution().TwipsAtY(at.y));
    return hit ? hit->index() : hovered;
  }
  /// The button whose tip shows there.
  int ByTip(Point at) const {
    for (std::size_t i = 0; i < kButtonCount; ++i) {
      const PixelRect& rect = tips_[i];
      if (at.x >= rect.left && at.x < rect.right && at.y >= rect.top && at.y < rect.bottom) {
        return static_cast<int>(i);
      }
    }
    return kNone;
  }
  /// True at the right and the lower edge of a frame, which are outside the rectangle of a tip.
  bool BeyondTheTip(Point at, int button) const {
    const PixelRect& tip = tips_[static_cast<std::size_t>(button)];
    const auto edge = [](int place, int end) { return place >= end && place <= end + 1; };
    return edge(at.x, tip.right) || edge(at.y, tip.bottom);
  }
  /// By the rule, at a position in twips.
  int ByRule(float x, float y) const { return ButtonAt(areas_, x, y); }

  SuiteWorld world;

 private:
  void Leave() { form().UserMouseMove(0, 0, -1, -1); }

  std::array<HitArea, kButtonCount> areas_;
  std::array<PixelRect, kButtonCount> tips_;
};

/// Pixels where something differs: their number and the first one.
struct Differences {
  int count = 0;
  std::string first;

  void Add(const char* what, Point at, int expected, int got) {
    if (count++ > 0) return;
    std::ostringstream text;
    text << what << " at " << at.x << "," << at.y << ": " << got << " in place of " << expected;
    first = text.str();
  }
};

// Each column of pixels in the middle of every row of buttons and in a gap, each row of pixels in
// the middle of every column and in a gap. Frames are rectangles, so these represent all pixels.
TEST_P(PanelResolutions, TimerMouseEventClickAndTipFindTheSameButton) {
  const int width = PixelsX(form().inner().width);
  const int height = PixelsY(form().inner().height);
  std::vector<Point> pixels;
  for (const int y : {30, 660, 1920, 3180, 4440}) {
    for (int x = 0; x < width; ++x) pixels.push_back({x, PixelsY(y)});
  }
  for (const int x : {30, 900, 2640, 4380, 6120, 7860}) {
    for (int y = 0; y < height; ++y) pixels.push_back({PixelsX(x), y});
  }
  Differences differences;
  int hovered = 0;
  for (const Point& at : pixels) {
    const int button = ByEvent(at);
    hovered += button != kNone;
    if (const int got = ByTimer(at); got != button) differences.Add("timer", at, button, got);
    if (const int got = ByClick(at); got != button) differences.Add("click", at, button, got);
    const int tip = ByTip(at);
    if (tip != button && (tip != kNone || !BeyondTheTip(at, button))) {
      differences.Add("tip", at, button, tip);
    }
  }
  EXPECT_EQ(differences.count, 0) << differences.first;
  EXPECT_GT(hovered, static_cast<int>(pixels.size()) / 2);
}

TEST_P(PanelResolutions, EveryPixelOfThePanelBelongsToTheSameButtonByEventAndByTimer) {
  const int width = PixelsX(form().inner().width);
  const int height = PixelsY(form().inner().height);
  const PixelTwips pixel = world.desktop.resolution().TwipsPerPixel();
  std::vector<std::pair<float, float>> columns;  // by event, by timer
  for (int x = 0; x < width; ++x) {
    columns.push_back(
        {world.desktop.resolution().TwipsAtX(x), static_cast<float>(CLng(pixel.x * x))});
  }
  Differences differences;
  for (int y = 0; y < height; ++y) {
    const float byEvent = world.desktop.resolution().TwipsAtY(y);
    const auto byTimer = static_cast<float>(CLng(pixel.y * y));
    for (int x = 0; x < width; ++x) {
      const auto& column = columns[static_cast<std::size_t>(x)];
      if (column.first == column.second && byEvent == byTimer) continue;  // the same position
      const int button = ByRule(column.first, byEvent);
      const int got = ByRule(column.second, byTimer);
      if (got != button) differences.Add("timer", {x, y}, button, got);
    }
  }
  EXPECT_EQ(differences.count, 0) << differences.first;
}

TEST_P(PanelResolutions, InnerSquareOfTheBevelIsOnePixelSmallerOnEverySide) {
  for (const auto& shape : form().shpRun) {
    const auto lines = BevelLines(shape->bounds(), world.desktop.resolution().TwipsPerPixel());
    const auto at = [&](Point twips) { return Point{PixelsX(twips.x), PixelsY(twips.y)}; };
    const Point corner = at(lines[1].from), end = at(lines[2].to);
    const Box& frame = shape->bounds();
    EXPECT_EQ(corner, at({frame.left, frame.top}));
    EXPECT_EQ(end.x, PixelsX(frame.left + frame.width) - 1);
    EXPECT_EQ(end.y, PixelsY(frame.top + frame.height) - 1);
    EXPECT_EQ(at(lines[5].from), (Point{corner.x + 1, corner.y + 1}));
    EXPECT_EQ(at(lines[6].to), (Point{end.x - 1, end.y - 1}));
  }
}

INSTANTIATE_TEST_SUITE_P(Dpi, PanelResolutions, testing::ValuesIn(kResolutions),
                         testing::PrintToStringParamName());

TEST(Resolution, OfAPixelIs1440TwipsByTheDpi) {
  MemoryDesktop desktop;
  for (const int dpi : kResolutions) {
    desktop.dpi = {dpi, 96};
    EXPECT_EQ(desktop.resolution().TwipsPerPixel(), (PixelTwips{1440.0 / dpi, 15}));
    EXPECT_EQ(desktop.resolution().TwipsAtX(dpi), 1440.0F);
    EXPECT_EQ(desktop.resolution().TwipsAtX(-3 * dpi), -4320.0F);
    EXPECT_EQ(desktop.resolution().TwipsAtX(1), static_cast<float>(1440.0 / dpi)) << "not rounded";
    desktop.dpi = {96, dpi};
    EXPECT_EQ(desktop.resolution().TwipsPerPixel(), (PixelTwips{15, 1440.0 / dpi}));
    EXPECT_EQ(desktop.resolution().TwipsAtY(2 * dpi), 2880.0F);
    EXPECT_EQ(desktop.resolution().TwipsAtY(1), static_cast<float>(1440.0 / dpi)) << "not rounded";
  }
}

}  // namespace
}  // namespace marl
