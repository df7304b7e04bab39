#include "platform/forms/CommonControls.h"

#include <gtest/gtest.h>

#include "platform/RuntimeError.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"

namespace marl {
namespace {

class CommonControls : public testing::Test {
 protected:
  MemoryDesktop desktop;
  Form form{desktop, "frmAny"};
};

TEST_F(CommonControls, PartsCountFromOne) {
  ListView list(form, "lvw");
  EXPECT_EQ(list.AddPart({u"a", u"", u""}), 1);
  EXPECT_EQ(list.AddPart({u"b", u"", u""}), 2);
  EXPECT_EQ(list.Part(2).Caption, u"b");
  for (const int part : {-1, 0, 3}) {
    EXPECT_THROW(list.Part(part), RuntimeError) << part;
    EXPECT_THROW(list.SetPartCaption(part, u"x"), RuntimeError) << part;
    EXPECT_THROW(list.SetPartToolTipText(part, u"x"), RuntimeError) << part;
  }
}

TEST_F(CommonControls, TheFirstTabIsSelectedAtOnceAndSilently) {
  TabStrip tabs(form, "tab");
  int clicks = 0;
  tabs.Click = [&] { ++clicks; };
  EXPECT_EQ(tabs.SelectedItem(), 0);
  tabs.AddPart({u"a", u"", u""});
  tabs.AddPart({u"b", u"", u""});
  EXPECT_EQ(tabs.SelectedItem(), 1);
  EXPECT_EQ(clicks, 0);
}

TEST_F(CommonControls, ATabStripClicksWhenAnotherTabIsSelected) {
  TabStrip tabs(form, "tab");
  int clicks = 0;
  tabs.Click = [&] { ++clicks; };
  tabs.AddPart({u"a", u"", u""});
  tabs.AddPart({u"b", u"", u""});
  tabs.SetSelectedItem(1);
  EXPECT_EQ(clicks, 0);
  tabs.SetSelectedItem(2);
  tabs.UserSelectTab(1);
  EXPECT_EQ(clicks, 2);
  tabs.UserSelectTab(3);
  tabs.SetEnabled(false);
  tabs.UserSelectTab(2);
  EXPECT_EQ(tabs.SelectedItem(), 1);
  EXPECT_EQ(clicks, 2);
  EXPECT_THROW(tabs.SetSelectedItem(0), RuntimeError);
  EXPECT_THROW(tabs.SetSelectedItem(3), RuntimeError);
}

TEST_F(CommonControls, ATabbedDialogHasOnePageAtLeast) {
  SSTab pages(form, "sst");
  EXPECT_EQ(pages.Tabs(), 1);
  EXPECT_THROW(pages.SetTabs(0), RuntimeError);
  pages.SetTabs(3);
  EXPECT_EQ(pages.Tabs(), 3);
  EXPECT_THROW(pages.TabCaption(3), RuntimeError);
  EXPECT_THROW(pages.TabCaption(-1), RuntimeError);
  EXPECT_THROW(pages.SetTabCaption(3, u"x"), RuntimeError);
}

}  // namespace
}  // namespace marl
