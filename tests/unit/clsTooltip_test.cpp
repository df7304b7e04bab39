#include "appearance/clsTooltip.h"

#include <gtest/gtest.h>

#include "platform/forms/Controls.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryTipWindows.h"

namespace marl {

namespace {

constexpr WindowHandle kParent = 0x777;
constexpr Color kTextReference = SystemColor(0x12);
constexpr Color kBackReference = SystemColor(0x18);

using Sent = MemoryTipWindows::Sent;

class Tooltip : public testing::Test {
 protected:
  /// A valid tip, apart from what the test changes.
  WindowHandle Create(TextView text = u"text", int style = 65, int icon = 1,
                      TextView title = u"title", Color fore = 0x112233, Color back = 0x445566) {
    return tip.Create(kParent, 1, 2, 3, 4, text, style, false, icon, title, fore, back, 5, 6);
  }

  MemoryDesktop desktop;
  MemoryTipWindows tips;
  clsTooltip tip{tips, desktop};
};

struct OneField : marl::Form {
  explicit OneField(Desktop& desktop) : Form(desktop, "OneField") { Design = {3000, 2000}; }
  TextBox txtName{*this, "txtName"};
  Label lblName{*this, "lblName"};
};

}  // namespace

TEST_F(Tooltip, BeginsWithoutATip) {
  EXPECT_EQ(tips.initialised, 1);
  EXPECT_EQ(tip.Style(), -1);
  EXPECT_EQ(tip.Icon(), 0);
  EXPECT_EQ(tip.ForeCol(), 0);
  EXPECT_EQ(tip.BackCol(), 0);
  EXPECT_EQ(tip.HoverTime(), 0);
  EXPECT_EQ(tip.PopupTime(), 0);
  EXPECT_EQ(tip.Title(), u"");
  EXPECT_EQ(tip.Text(), u"");
  EXPECT_EQ(tip.InitialText(), u"");
  EXPECT_EQ(tip.InitialTitle(), u"");
  EXPECT_FALSE(tip.Centered());
  tip.Reset();
  EXPECT_EQ(tip.Style(), -1);
  EXPECT_EQ(tips.created, 0);
}

TEST_F(Tooltip, CreateSendsItsMessagesInTheirOrder) {
  const WindowHandle window = tip.Create(kParent, 10, 20, 110, 100, u"what it does", 65, true, 2,
                                         u"Name", 0x112233, 0x445566, 700, 9000);
  ASSERT_TRUE(tips.tips.contains(window));
  const MemoryTipWindows::Tip& made = tips.tips[window];
  EXPECT_EQ(made.style, 65u | 2u);
  EXPECT_EQ(made.parent, kParent);
  EXPECT_TRUE(made.topmost);
  const ToolInfo tool = {
      44, 0x12, kParent, 0, {10, 20, 110, 100}, MemoryTipWindows::kInstance, u"what it does"};
  const std::vector<Sent> sent = {
      {1028, 0, tool},
      {1056, 2, Text(u"Name")},
      {1044, 0x112233, std::intptr_t{0}},
      {1043, 0x445566, std::intptr_t{0}},
      {1027, 3, std::intptr_t{700}},
      {1027, 2, std::intptr_t{9000}},
  };
  EXPECT_EQ(made.sent, sent);
  EXPECT_TRUE(tip.Centered());
  EXPECT_EQ(tip.Style(), 65);
  EXPECT_EQ(tip.Icon(), 2);
  EXPECT_EQ(tip.ForeCol(), 0x112233);
  EXPECT_EQ(tip.BackCol(), 0x445566);
  EXPECT_EQ(tip.HoverTime(), 700);
  EXPECT_EQ(tip.PopupTime(), 9000);
  EXPECT_EQ(tip.Title(), u"Name");
}

TEST_F(Tooltip, TimesOfMinusOneArePassedOnUnchanged) {
  const WindowHandle window = tip.Create(kParent, 0, 0, 1, 1, u"", 65, false, 1, u"", 0, 1, -1, -1);
  const std::vector<Sent>& sent = tips.tips[window].sent;
  EXPECT_EQ(sent[4], (Sent{1027, 3, std::intptr_t{-1}}));
  EXPECT_EQ(sent[5], (Sent{1027, 2, std::intptr_t{-1}}));
}

TEST_F(Tooltip, FourStylesAndFourIconsAreAllowed) {
  for (const int style : {0, 1, 64, 65}) {
    EXPECT_NE(Create(u"text", style), 0) << style;
    EXPECT_EQ(tip.Style(), style);
  }
  for (const int icon : {0, 1, 2, 3}) {
    EXPECT_NE(Create(u"text", 65, icon), 0) << icon;
    EXPECT_EQ(tip.Icon(), icon);
  }
}

TEST_F(Tooltip, OtherStylesAreRefusedAndNoWindowExistsAfterwards) {
  for (const int style : {2, 3, -1, 63, 66, 67, 128, 0x41000000}) {
    Create();
    EXPECT_EQ(Create(u"text", style), 0) << style;
    EXPECT_TRUE(tips.tips.empty()) << style;
    EXPECT_EQ(tip.Style(), -1) << style;
  }
}

TEST_F(Tooltip, OtherIconsAreRefusedAndNoWindowExistsAfterwards) {
  for (const int icon : {-1, 4, 65}) {
    Create();
    EXPECT_EQ(Create(u"new", 65, icon), 0) << icon;
    EXPECT_TRUE(tips.tips.empty()) << icon;
    EXPECT_EQ(tip.Style(), -1) << icon;
    EXPECT_EQ(tip.Text(), u"text") << "what was there before is not replaced";
  }
}

TEST_F(Tooltip, BarStartsALineWithATitleAndIsABlankWithout) {
  Create(u"first|second");
  EXPECT_EQ(tip.Text(), u"first\r\nsecond");
  Create(u"first|second", 65, 1, u"");
  EXPECT_EQ(tip.Text(), u"first second");
  Create(u"a\r\nb|c||d", 65, 1, u"");
  EXPECT_EQ(tip.Text(), u"a b c  d");
  Create(u"|", 65, 1, u"T");
  EXPECT_EQ(tip.Text(), u"\r\n");
}

TEST_F(Tooltip, SystemColoursAreResolved) {
  Create(u"", 65, 1, u"", kTextReference, kBackReference);
  EXPECT_EQ(tip.ForeCol(), desktop.SystemColorValue(0x12));
  EXPECT_EQ(tip.BackCol(), desktop.SystemColorValue(0x18));
}

TEST_F(Tooltip, EqualColoursFallBackToTheReferences) {
  const struct {
    Color fore;
    Color back;
  } cases[] = {
      {kBackReference, kBackReference},      // as references
      {0x123456, 0x123456},                  // in values
      {kBackReference, Rgb(255, 255, 225)},  // a reference and its value
      {0, kTextReference},
  };
  for (const auto& c : cases) {
    const WindowHandle window = Create(u"", 65, 1, u"", c.fore, c.back);
    EXPECT_EQ(tip.ForeCol(), kTextReference);
    EXPECT_EQ(tip.BackCol(), kBackReference);
    EXPECT_EQ(tips.tips[window].sent[2], (Sent{1044, 0x80000012u, std::intptr_t{0}}));
    EXPECT_EQ(tips.tips[window].sent[3], (Sent{1043, 0x80000018u, std::intptr_t{0}}));
  }
}

TEST_F(Tooltip, SecondCreateKeepsTheInitialTextAndGivesTheNewOne) {
  Create(u"one", 65, 1, u"first");
  const WindowHandle second = Create(u"two", 65, 1, u"second");
  EXPECT_EQ(tip.InitialText(), u"one");
  EXPECT_EQ(tip.InitialTitle(), u"first");
  EXPECT_EQ(tip.Text(), u"two");
  EXPECT_EQ(tip.Title(), u"second");
  EXPECT_EQ(tips.created, 2);
  EXPECT_EQ(tips.tips.size(), 1u);
  EXPECT_TRUE(tips.tips.contains(second));
}

TEST_F(Tooltip, InitialTextIsTheFirstThatIsNotEmptyAsItWasShown) {
  Create(u"", 65, 1, u"");
  EXPECT_EQ(tip.InitialText(), u"");
  Create(u"a|b", 65, 1, u"");
  Create(u"c", 65, 1, u"T");
  EXPECT_EQ(tip.InitialText(), u"a b");
  EXPECT_EQ(tip.InitialTitle(), u"T");
}

TEST_F(Tooltip, ResetDestroysTheTipAndKeepsTheRest) {
  Create();
  tip.Reset();
  EXPECT_TRUE(tips.tips.empty());
  EXPECT_EQ(tip.Style(), -1);
  EXPECT_EQ(tip.Text(), u"text");
  tip.Reset();
  EXPECT_EQ(tip.Style(), -1);
}

TEST_F(Tooltip, EndOfTheObjectDestroysTheTip) {
  {
    clsTooltip passing(tips, desktop);
    passing.Create(kParent, 0, 0, 1, 1, u"x", 0, false, 0, u"", 0, 1, 0, 0);
    EXPECT_EQ(tips.tips.size(), 1u);
  }
  EXPECT_TRUE(tips.tips.empty());
}

TEST_F(Tooltip, WindowThatCannotBeMadeGivesNothing) {
  tips.fails = true;
  EXPECT_EQ(Create(), 0);
  EXPECT_TRUE(tips.tips.empty());
}

TEST_F(Tooltip, ForControlCoversItsClientArea) {
  OneField form(desktop);
  form.Load();
  const WindowHandle window = form.peer()->HandleOf(form.txtName);
  ASSERT_NE(window, 0);
  tips.clients[window] = {0, 0, 80, 17};
  const WindowHandle made =
      tip.CreateForControl(form.txtName, u"a|b", 64, true, 3, u"Name", 0x010203, 0x040506, 7, 8);
  ASSERT_TRUE(tips.tips.contains(made));
  EXPECT_EQ(tips.tips[made].parent, window);
  const ToolInfo tool = {44,       0x12, window, 0, {0, 0, 80, 17}, MemoryTipWindows::kInstance,
                         u"a\r\nb"};
  EXPECT_EQ(tips.tips[made].sent[0], (Sent{1028, 0, tool}));
  EXPECT_EQ(tip.Style(), 64);
  EXPECT_EQ(tip.Icon(), 3);
  EXPECT_EQ(tip.HoverTime(), 7);
  EXPECT_EQ(tip.PopupTime(), 8);
}

TEST_F(Tooltip, ForAControlWithoutAWindowIsRefused) {
  OneField form(desktop);
  const auto refused = [&](const Control& control) {
    return tip.CreateForControl(control, u"t", 65, false, 1, u"", 0, 1, 0, 0) == 0 &&
           tips.created == 0;
  };
  EXPECT_TRUE(refused(form.txtName)) << "the form is not loaded";
  form.Load();
  EXPECT_TRUE(refused(form.lblName)) << "a label is painted by its form";
}

}  // namespace marl
