#include "shell/frmRunningApps.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {

namespace {

class RunningApps : public testing::Test {
 protected:
  void Add(TextView text, int data) {
    const int row = form.lstRunningApplications.AddItem(text);
    form.lstRunningApplications.SetItemData(row, data);
  }

  MemoryDesktop desktop;
  MemoryLocale locales;
  MemoryStrings resource;
  StringTable strings{resource};
  frmRunningApps form{desktop, locales, strings};
};

}  // namespace

TEST_F(RunningApps, ShowsItsTexts) {
  form.Load();
  EXPECT_EQ(form.Caption(), u"Running Applications");
  EXPECT_EQ(form.lblWarning.Caption(), resource.texts.at(IDS_RUNNING_WARNING));
  EXPECT_EQ(form.cmdSwitchTo.Caption(), u"Switch To");
  EXPECT_EQ(form.cmdExit.Caption(), u"Exit");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
}

TEST_F(RunningApps, SwitchToIsEnabledWhileAnEntryIsSelected) {
  form.Show();
  Add(u"Analyse", 4711);
  EXPECT_FALSE(form.cmdSwitchTo.Enabled());
  form.lstRunningApplications.UserSelectRow(0);
  EXPECT_TRUE(form.cmdSwitchTo.Enabled());
  form.lstRunningApplications.Clear();
  form.lstRunningApplications.Click();
  EXPECT_FALSE(form.cmdSwitchTo.Enabled());
}

TEST_F(RunningApps, SwitchToGivesTheEntrysValueAndHides) {
  form.Show();
  Add(u"Analyse", 4711);
  Add(u"Edit", -2147483647 - 1);
  form.lstRunningApplications.UserSelectRow(1);
  form.cmdSwitchTo.UserClick();
  EXPECT_EQ(form.Result, -2147483647 - 1);
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(form.loaded()) << "the caller reads the result and unloads the form";
}

TEST_F(RunningApps, SwitchToWithoutAnEntryDoesNothing) {
  form.Show();
  form.cmdSwitchTo.SetEnabled(true);
  form.cmdSwitchTo.UserClick();
  EXPECT_TRUE(form.Visible());
  EXPECT_EQ(form.Result, frmRunningApps::kStay);
  Add(u"Analyse", 4711);
  form.cmdSwitchTo.UserClick();
  EXPECT_TRUE(form.Visible()) << "there is an entry, and none is selected";
}

TEST_F(RunningApps, ExitGivesZeroAndHides) {
  form.Show();
  form.cmdExit.UserClick();
  EXPECT_EQ(form.Result, 0);
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(form.loaded());
}

TEST_F(RunningApps, CancelGivesOneAndHides) {
  form.Show();
  form.Result = 77;
  form.cmdCancel.UserClick();
  EXPECT_EQ(form.Result, 1);
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(form.DefaultButton(), &form.cmdSwitchTo);
  EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
}

TEST_F(RunningApps, CloseBoxMeansStay) {
  form.Show();
  form.UserClose();
  EXPECT_EQ(form.Result, frmRunningApps::kStay);
}

}  // namespace marl
