#include "shell/frmPrjWiz.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {

namespace {

class PrjWiz : public testing::Test {
 protected:
  MemoryDesktop desktop;
  MemoryLocale locales;
  MemoryStrings resource;
  StringTable strings{resource};
  frmPrjWiz form{desktop, locales, strings};
};

}  // namespace

TEST_F(PrjWiz, ShowsItsTexts) {
  form.Load();
  EXPECT_EQ(form.Caption(), u"Select wizard mode");
  EXPECT_EQ(form.optWizardMode[0]->Caption(), u"&Import files in to a new project");
  EXPECT_EQ(form.optWizardMode[1]->Caption(), u"&Export files from an existing project");
  EXPECT_EQ(form.cmdOK->Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel->Caption(), u"Cancel");
}

TEST_F(PrjWiz, LoadCancelsAndComesToTheForeground) {
  form.Cancelled = false;
  form.Load();
  EXPECT_TRUE(form.Cancelled);
  EXPECT_EQ(desktop.foreground, &form);
}

TEST_F(PrjWiz, OkIsNotCancelledAndCloses) {
  form.Show();
  form.cmdOK->UserClick();
  EXPECT_FALSE(form.Cancelled);
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(form.DefaultButton(), form.cmdOK.get());
}

TEST_F(PrjWiz, CancelIsCancelledAndCloses) {
  form.Show();
  form.Cancelled = false;
  form.cmdCancel->UserClick();
  EXPECT_TRUE(form.Cancelled);
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(form.CancelButton(), form.cmdCancel.get());
}

TEST_F(PrjWiz, OptionsExcludeEachOther) {
  form.Show();
  EXPECT_TRUE(form.optWizardMode[0]->Value());
  form.optWizardMode[1]->UserClick();
  EXPECT_FALSE(form.optWizardMode[0]->Value());
  EXPECT_TRUE(form.optWizardMode[1]->Value());
}

}  // namespace marl
