// Balloon tips of the buttons.

#include <gtest/gtest.h>

#include "tests/unit/World.h"

namespace marl {

namespace {

class ButtonTips : public testing::Test {
 protected:
  /// The tool of a button's tip window.
  ToolInfo Tool(std::size_t button) {
    for (const auto& [window, tip] : world.tips.tips) {
      const auto& tool = std::get<ToolInfo>(tip.sent[0].lParam);
      if (tool.lpszText == world.main().TooltipTexts[button]) return tool;
    }
    return {};
  }

  World world;
};

}  // namespace

TEST_F(ButtonTips, EachVisibleButtonHasOneOnItsRectangle) {
  world.Start();
  ASSERT_EQ(world.tips.tips.size(), 18u);
  for (std::size_t i = 0; i < 18; ++i) {
    const Shape& shape = *world.main().shpRun[i];
    const ToolInfo tool = Tool(i);
    EXPECT_EQ(tool.hwnd, world.main().hWnd()) << i;
    EXPECT_EQ(tool.uFlags, 0x10u);
    // At 96 dpi a pixel is 15 twips.
    const PixelRect rect = {shape.Left() / 15, shape.Top() / 15,
                            shape.Width() / 15 + shape.Left() / 15 - 1,
                            shape.Height() / 15 + shape.Top() / 15 - 1};
    EXPECT_EQ(tool.rect, rect) << i;
    const clsTooltip& tip = *world.main().TooltipObjects[i];
    EXPECT_EQ(tip.Text(), world.strings.Get(IDS_TIP_ANALYSE + static_cast<int>(i)));
    EXPECT_EQ(tip.Title(), world.strings.Get(IDS_BUTTON_ANALYSE + static_cast<int>(i)));
    EXPECT_EQ(tip.Style(), 65);
    EXPECT_EQ(tip.Icon(), 1);
    EXPECT_FALSE(tip.Centered());
    EXPECT_EQ(tip.HoverTime(), -1);
    EXPECT_EQ(tip.PopupTime(), -1);
    EXPECT_EQ(tip.ForeCol(), world.desktop.SystemColorValue(0x12));
    EXPECT_EQ(tip.BackCol(), world.desktop.SystemColorValue(0x18));
  }
}

TEST_F(ButtonTips, RectanglesAreRoundedToTheEvenPixel) {
  world.desktop.dpi = {144, 144};  // a pixel is 10 twips
  world.Start();
  world.main().shpRun[0]->SetBounds({1805, 65, 1695, 1215});
  world.main().BindTooltips();
  // 180.5, 6.5, 169.5 + 180 - 1 and 121.5 + 6 - 1
  EXPECT_EQ(Tool(0).rect, (PixelRect{180, 6, 348, 126}));
}

TEST_F(ButtonTips, HiddenButtonHasNoneUntilItIsShownAgain) {
  world.Start();
  world.main().imgRun[3]->SetVisible(false);
  world.main().BindTooltips();
  EXPECT_EQ(world.tips.tips.size(), 17u);
  EXPECT_EQ(world.main().TooltipObjects[3]->Style(), -1);
  world.main().imgRun[3]->SetVisible(true);
  world.main().BindTooltips();
  EXPECT_EQ(world.tips.tips.size(), 18u);
  EXPECT_EQ(Tool(3).hwnd, world.main().hWnd());
}

TEST_F(ButtonTips, SwitchedOffThereAreNone) {
  world.settings.Put(u"Marl", u"Settings", u"Tooltips", u"False");
  world.Start();
  EXPECT_TRUE(world.tips.tips.empty());
  EXPECT_EQ(world.tips.created, 0);
}

TEST_F(ButtonTips, SwitchingOffRemovesThemWithTheNextBinding) {
  world.Start();
  world.main().TooltipsEnabled = false;
  EXPECT_EQ(world.tips.tips.size(), 18u);
  world.main().BindTooltips();
  EXPECT_TRUE(world.tips.tips.empty());
}

TEST_F(ButtonTips, EachBindingRecreatesAll) {
  world.Start();
  const int before = world.tips.created;
  world.main().BindTooltips();
  EXPECT_EQ(world.tips.created, before + 18);
  EXPECT_EQ(world.tips.tips.size(), 18u);
}

TEST_F(ButtonTips, EachLayoutRecreatesThem) {
  world.Start();
  SkinSettings skin;
  skin.DisplayIcons.replace(3 * 4, 3, u"030");
  WriteSkin(world.registry, skin);
  world.desktop.Event([&] { world.main().SetUI(); });
  EXPECT_EQ(world.tips.tips.size(), 17u);
  EXPECT_EQ(world.main().TooltipObjects[3]->Style(), -1);
  WriteSkin(world.registry, SkinSettings());
  world.desktop.Event([&] { world.main().SetUI(); });
  EXPECT_EQ(world.tips.tips.size(), 18u);
  EXPECT_EQ(Tool(3).hwnd, world.main().hWnd());
}

TEST_F(ButtonTips, AreDestroyedWithTheMainForm) {
  world.Start();
  world.application.reset();
  EXPECT_TRUE(world.tips.tips.empty());
}

}  // namespace marl
