#include "appearance/PanelLayout.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>

#include "platform/RuntimeError.h"

namespace marl {
namespace {

constexpr Size kDesign{8790, 5430};

/// What the layout uses of the main form.
struct Panel {
  int columns = 5;
  Box bounds{100, 200, kDesign.width + 120, kDesign.height + 800};
  int clientHeight = kDesign.height;
  std::array<bool, kButtonCount> visible{};
  std::array<PanelCell, kButtonCount> cells{};

  /// As designed: all buttons in their order, five per row.
  Panel() {
    for (int b = 0; b < kButtonCount; ++b) {
      visible[At(b)] = true;
      cells[At(b)] = CellAt(b, 5);
    }
  }

  static std::size_t At(int b) { return static_cast<std::size_t>(b); }

  PanelLayout Set(const DisplayOrder& order, int newColumns) {
    std::array<LabelPlace, kButtonCount> labels;
    for (int b = 0; b < kButtonCount; ++b) {
      labels[At(b)] = {visible[At(b)], cells[At(b)].label.y};
    }
    const PanelLayout layout = ArrangePanel(order, newColumns, labels);
    for (const PanelStep& step : layout.steps) {
      visible[At(step.button)] = step.shown;
      if (step.shown) cells[At(step.button)] = step.cell;
    }
    const Size growth = PanelGrowth(layout, columns, newColumns);
    clientHeight += growth.height;
    bounds = Grown(bounds, growth);
    columns = newColumns;
    return layout;
  }
  /// Cells of the buttons that are shown, by index.
  std::map<int, PanelCell> ShownCells() const {
    std::map<int, PanelCell> shown;
    for (int b = 0; b < kButtonCount; ++b) {
      if (visible[At(b)]) shown[b] = cells[At(b)];
    }
    return shown;
  }
  /// Top of the lowest label that is shown, 0 if none is.
  int Bottom() const {
    int bottom = 0;
    for (int b = 0; b < kButtonCount; ++b) {
      if (visible[At(b)]) bottom = std::max(bottom, cells[At(b)].label.y);
    }
    return bottom;
  }
};

DisplayOrder AllShown() { return ParseDisplayIcons(SkinSettings().DisplayIcons); }

/// Shows the first `count` positions.
DisplayOrder Shown(int count) {
  DisplayOrder order = AllShown();
  for (int p = count; p < kButtonCount; ++p) order[static_cast<std::size_t>(p)].shown = 0;
  return order;
}

DisplayOrder Pattern(std::uint32_t bits) {
  DisplayOrder order = AllShown();
  for (std::size_t p = 0; p < order.size(); ++p) order[p].shown = static_cast<int>(bits >> p & 1);
  return order;
}

TEST(PanelLayout, CellsHoldFrameLabelAndPicture) {
  EXPECT_EQ(CellAt(0, 5), (PanelCell{{60, 60}, {60, 840}, {540, 120}}));
  EXPECT_EQ(CellAt(7, 5), (PanelCell{{3540, 1320}, {3540, 2100}, {4020, 1380}}));
  EXPECT_EQ(CellAt(17, 3), (PanelCell{{3540, 6360}, {3540, 7140}, {4020, 6420}}));
}

TEST(PanelLayout, EighteenButtonsFivePerRowMakeFourRowsTheLastOfThree) {
  Panel panel;
  panel.Set(AllShown(), 5);
  int last = 0;
  for (const PanelCell& cell : panel.cells) last += cell.frame.y == 60 + 3 * kRowPitch ? 1 : 0;
  EXPECT_EQ(last, 3);
  EXPECT_EQ(panel.Bottom(), 840 + 3 * kRowPitch);
}

TEST(PanelLayout, FirstCallLeavesTheDesignedSize) {
  Panel panel;
  panel.Set(AllShown(), 5);
  EXPECT_EQ(panel.bounds, Panel().bounds);
  EXPECT_EQ(panel.clientHeight, kDesign.height);
}

TEST(PanelLayout, SixPerRowIsOneColumnWiderAndOneRowShorterAndBackAgain) {
  Panel panel;
  panel.Set(AllShown(), 6);
  EXPECT_EQ(panel.bounds, (Box{100, 200, 8910 + 1740, 6230 - 1260}));
  EXPECT_EQ(panel.clientHeight, 5430 - 1260);
  panel.Set(AllShown(), 5);
  EXPECT_EQ(panel.bounds, Panel().bounds);
  EXPECT_EQ(panel.clientHeight, kDesign.height);
}

TEST(PanelLayout, HiddenButtonClosesTheGridAndKeepsItsPlace) {
  Panel panel;
  DisplayOrder order = AllShown();
  order[4].shown = 0;
  const PanelLayout layout = panel.Set(order, 5);
  EXPECT_EQ(layout.steps[4].button, 4);
  EXPECT_FALSE(panel.visible[4]);
  EXPECT_EQ(panel.cells[4], CellAt(4, 5));  // where it was before
  for (int b = 5; b < kButtonCount; ++b) EXPECT_EQ(panel.cells[Panel::At(b)], CellAt(b - 1, 5));
}

TEST(PanelLayout, OrderDecidesTheCells) {
  Panel panel;
  DisplayOrder order;
  for (int p = 0; p < kButtonCount; ++p) order[Panel::At(p)] = {17 - p, 1};
  panel.Set(order, 4);
  for (int b = 0; b < kButtonCount; ++b) EXPECT_EQ(panel.cells[Panel::At(b)], CellAt(17 - b, 4));
}

TEST(PanelLayout, PanelOfOneCell) {
  Panel panel;
  DisplayOrder order = Shown(0);
  order[9].shown = 1;
  panel.Set(order, 5);
  EXPECT_EQ(panel.cells[9], CellAt(0, 5));
  EXPECT_EQ(panel.bounds.height, 6230 - 3 * kRowPitch);
}

TEST(PanelLayout, PanelWithoutButtonsIsHigherByNothingAndComesBack) {
  Panel panel;
  EXPECT_EQ(panel.Set(Shown(0), 5).newBottom, 0);
  EXPECT_EQ(panel.bounds.height, 6230 - (840 + 3 * kRowPitch));
  panel.Set(AllShown(), 5);
  EXPECT_EQ(panel.bounds, Panel().bounds);
}

TEST(PanelLayout, EveryNumberOfButtonsAndColumnsAndBackRestoresTheSize) {
  for (int columns = 3; columns <= 6; ++columns) {
    for (int count = 0; count <= kButtonCount; ++count) {
      Panel start;
      start.Set(Shown(count), columns);
      EXPECT_EQ(start.bounds.width, 8910 + (columns - 5) * 1740);
      EXPECT_EQ(start.bounds.height, 6230 + start.Bottom() - 4620);
      for (int others = 3; others <= 6; ++others) {
        for (int otherCount = 0; otherCount <= kButtonCount; ++otherCount) {
          Panel panel = start;
          panel.Set(Shown(otherCount), others);
          EXPECT_EQ(panel.bounds.height, 6230 + panel.Bottom() - 4620);
          EXPECT_EQ(panel.clientHeight, 5430 + panel.Bottom() - 4620);
          panel.Set(Shown(count), columns);
          ASSERT_EQ(panel.bounds, start.bounds) << count << " " << columns;
          ASSERT_EQ(panel.clientHeight, start.clientHeight);
          ASSERT_EQ(panel.ShownCells(), start.ShownCells());
        }
      }
    }
  }
}

TEST(PanelLayout, PatternsOfHiddenButtonsAndBackRestoresTheSize) {
  const Panel start;
  for (std::uint32_t bits = 0; bits < 1u << kButtonCount; bits += 13) {
    const int columns = 3 + static_cast<int>(bits % 4);
    const int count = __builtin_popcount(bits);
    Panel panel = start;
    panel.Set(Pattern(bits), columns);
    const int rows = (count + columns - 1) / columns;
    const int bottom = rows == 0 ? 0 : 840 + (rows - 1) * kRowPitch;
    ASSERT_EQ(panel.bounds, (Box{100, 200, 8910 + (columns - 5) * 1740, 6230 + bottom - 4620}));
    panel.Set(AllShown(), 5);
    ASSERT_EQ(panel.bounds, start.bounds) << bits;
    ASSERT_EQ(panel.cells, start.cells) << bits;
  }
}

TEST(PanelLayout, LaterPositionOfARepeatedButtonWins) {
  Panel panel;
  DisplayOrder order = AllShown();
  order[17] = {0, 1};  // button 17 is nowhere
  panel.Set(order, 5);
  EXPECT_EQ(panel.cells[0], CellAt(17, 5));
  EXPECT_TRUE(panel.visible[17]);
  EXPECT_EQ(panel.cells[17], CellAt(17, 5));
  EXPECT_EQ(panel.bounds, Panel().bounds);

  order[17] = {0, 0};
  panel.Set(order, 5);
  EXPECT_FALSE(panel.visible[0]);
  EXPECT_EQ(panel.cells[0], CellAt(0, 5));

  panel.Set(AllShown(), 5);
  EXPECT_EQ(panel.cells, Panel().cells);
  EXPECT_EQ(panel.bounds, Panel().bounds);
}

TEST(PanelLayout, RepeatedButtonIsFoundWhereItsFirstVisitLeftIt) {
  // Buttons 0 to 4 again and again. At first all are in the first row; the last time they are in
  // the third row, and the form grows from that bottom.
  DisplayOrder order;
  for (int p = 0; p < kButtonCount; ++p) order[Panel::At(p)] = {p % 5, 1};
  Panel panel;
  const PanelLayout layout = panel.Set(order, 5);
  EXPECT_EQ(layout.oldBottom, 840 + 2 * kRowPitch);
  EXPECT_EQ(layout.newBottom, 840 + 3 * kRowPitch);
}

TEST(PanelLayout, RepeatedButtonsGoBackAndForthBetweenTheSameSizes) {
  std::mt19937 random(8);
  for (int i = 0; i < 2000; ++i) {
    DisplayOrder order = AllShown();
    for (DisplayPosition& position : order) {
      if (random() % 3 == 0)
        position = {static_cast<int>(random() % 18), static_cast<int>(random() % 2)};
    }
    const int columns = 3 + static_cast<int>(random() % 4);
    Panel panel;
    panel.Set(order, columns);
    panel.Set(order, columns);
    const Panel settled = panel;
    panel.Set(order, columns == 3 ? 6 : columns - 1);
    panel.Set(order, columns);
    ASSERT_EQ(panel.bounds.width, settled.bounds.width);
    ASSERT_EQ(panel.cells, settled.cells);
    ASSERT_EQ(panel.visible, settled.visible);
  }
}

TEST(PanelLayout, ButtonThatDoesNotExistIsOutOfRange) {
  for (const int button : {18, -1, 99, std::numeric_limits<int>::min()}) {
    for (const int shown : {0, 1}) {
      DisplayOrder order = AllShown();
      order[17] = {button, shown};
      try {
        Panel().Set(order, 5);
        ADD_FAILURE() << button;
      } catch (const RuntimeError& error) {
        EXPECT_EQ(error.text(), u"Subscript out of range");
      }
    }
  }
}

TEST(PanelLayout, NoColumnsIsADivisionByZero) {
  try {
    Panel().Set(AllShown(), 0);
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.text(), u"Division by zero");
  }
  EXPECT_NO_THROW(Panel().Set(Shown(0), 0));  // no division
}

TEST(PanelLayout, ColumnsOfAnyNumberDoNoMoreThanOverflow) {
  constexpr int kLeast = std::numeric_limits<int>::min();
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const int columns : {kLeast, kMost, -1, -5, 1, 2, 7, 18, 19, 100000, 2000000}) {
    Panel panel;
    const bool fits = Skip([&] { panel.Set(AllShown(), columns); });
    EXPECT_EQ(fits, columns > -2000000 && columns < 1200000) << columns;
  }
  EXPECT_THROW(Grown({0, 0, kMost, 0}, {1, 0}), RuntimeError);
  EXPECT_THROW(Grown({0, 0, 0, kLeast}, {0, -1}), RuntimeError);
}

class PanelHits : public testing::Test {
 protected:
  std::array<HitArea, kButtonCount> areas;
  PanelHits() {
    for (int b = 0; b < kButtonCount; ++b) {
      const Point corner = CellAt(b, 5).frame;
      areas[Panel::At(b)] = {{corner.x, corner.y, 1695, 1215}, true};
    }
  }
};

TEST_F(PanelHits, EdgesOfAFrameBelongToIt) {
  EXPECT_EQ(ButtonAt(areas, 60, 60), 0);
  EXPECT_EQ(ButtonAt(areas, 1755, 1275), 0);
  EXPECT_EQ(ButtonAt(areas, 59.9F, 60), -1);
  EXPECT_EQ(ButtonAt(areas, 60, 59.9F), -1);
  EXPECT_EQ(ButtonAt(areas, 1755.5F, 100), -1);
  EXPECT_EQ(ButtonAt(areas, 100, 1275.5F), -1);
  EXPECT_EQ(ButtonAt(areas, 1800, 60), 1);
}

TEST_F(PanelHits, EveryMiddleIsItsButton) {
  for (int b = 0; b < kButtonCount; ++b) {
    const Box& frame = areas[Panel::At(b)].frame;
    EXPECT_EQ(
        ButtonAt(areas, static_cast<float>(frame.left + 800), static_cast<float>(frame.top + 600)),
        b);
  }
}

TEST_F(PanelHits, HiddenButtonIsSkippedThoughItsFrameStays) {
  areas[3].pictureVisible = false;
  EXPECT_EQ(ButtonAt(areas, static_cast<float>(areas[3].frame.left + 10), 100), -1);
  areas[9].frame = areas[3].frame;  // the grid has no gaps
  EXPECT_EQ(ButtonAt(areas, static_cast<float>(areas[3].frame.left + 10), 100), 9);
}

TEST_F(PanelHits, FirstOfTwoAtTheSamePlaceWins) {
  areas[9].frame = areas[3].frame;
  EXPECT_EQ(ButtonAt(areas, static_cast<float>(areas[3].frame.left + 10), 100), 3);
}

TEST_F(PanelHits, NoPositionHitsNothing) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(ButtonAt(areas, -1, -1), -1);
  EXPECT_EQ(ButtonAt(areas, kNan, kNan), -1);
  EXPECT_EQ(ButtonAt(areas, 1e30F, 100), -1);
}

TEST(PanelHover, OuterSizeCountsAndOnlyInTheForeground) {
  const Size outer{8910, 6230};
  EXPECT_TRUE(OverForm(0, 0, outer, true));
  EXPECT_TRUE(OverForm(8910, 6230, outer, true));
  EXPECT_FALSE(OverForm(8910.5F, 0, outer, true));
  EXPECT_FALSE(OverForm(0, 6230.5F, outer, true));
  EXPECT_FALSE(OverForm(-1, 0, outer, true));
  EXPECT_FALSE(OverForm(0, -0.5F, outer, true));
  EXPECT_FALSE(OverForm(100, 100, outer, false));
}

TEST(PanelPictures, TwoStateIconsChangeOnlyTheNormalPicture) {
  EXPECT_EQ(DullImage(0, true), 1);
  EXPECT_EQ(DullImage(17, true), 18);
  EXPECT_EQ(BrightImage(0), 19);
  EXPECT_EQ(BrightImage(17), 36);
  for (int b = 0; b < kButtonCount; ++b) EXPECT_EQ(DullImage(b, false), BrightImage(b));
}

TEST(PanelBevel, TwoSquaresTheInnerOnePixelSmaller) {
  const std::array<BevelLine, 8> expected = {{{{60, 1260}, {60, 60}, true},
                                              {{60, 60}, {1740, 60}, true},
                                              {{1740, 60}, {1740, 1260}, false},
                                              {{1740, 1260}, {60, 1260}, false},
                                              {{75, 1245}, {75, 75}, true},
                                              {{75, 75}, {1725, 75}, true},
                                              {{1725, 75}, {1725, 1245}, false},
                                              {{1725, 1245}, {75, 1245}, false}}};
  EXPECT_EQ(BevelLines({60, 60, 1695, 1215}, {15, 15}), expected);
}

TEST(PanelBevel, PlacesAreRoundedToTheEvenTwip) {
  // At 192 dpi.
  const auto lines = BevelLines({60, 60, 1695, 1215}, {7.5, 7.5});
  EXPECT_EQ(lines[1], (BevelLine{{60, 60}, {1748, 60}, true}));       // 1747.5
  EXPECT_EQ(lines[2], (BevelLine{{1748, 60}, {1748, 1268}, false}));  // 1267.5
  EXPECT_EQ(lines[5], (BevelLine{{68, 68}, {1740, 68}, true}));       // 67.5, 1740.5
  EXPECT_EQ(lines[6], (BevelLine{{1740, 68}, {1740, 1260}, false}));  // 1260.5
}

TEST(PanelBevel, PixelsThatAreNotSquareMoveTheTopByTheirWidth) {
  const auto lines = BevelLines({0, 0, 1000, 1000}, {10, 20});
  EXPECT_EQ(lines[0], (BevelLine{{0, 980}, {0, 0}, true}));
  EXPECT_EQ(lines[2], (BevelLine{{990, 0}, {990, 980}, false}));
  EXPECT_EQ(lines[4], (BevelLine{{10, 960}, {10, 10}, true}));
  EXPECT_EQ(lines[6], (BevelLine{{970, 10}, {970, 960}, false}));
}

}  // namespace
}  // namespace marl
