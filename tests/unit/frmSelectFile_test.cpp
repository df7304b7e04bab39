#include "documents/frmSelectFile.h"

#include <gtest/gtest.h>

#include "tests/unit/ProjectWorld.h"

namespace marl {
namespace {

class SelectFile : public testing::Test, protected ProjectWorld {
 protected:
  ~SelectFile() override { form.Unload(); }

  void Show(std::function<void()> user) {
    desktop.whenModal["frmSelectFile"] = [user](Form&) { user(); };
    form.ShowModal(nullptr);
  }

  std::vector<WindowHandle> iconsSet;
  frmSelectFile form{
      {desktop, locale, strings, [this](WindowHandle window) { iconsSet.push_back(window); }}};
};

TEST_F(SelectFile, CaptionsComeFromTheTable) {
  form.Load();
  EXPECT_EQ(form.Caption(), u"Select language and file name");
  EXPECT_EQ(form.lblLanguage.Caption(), u"Translation language");
  EXPECT_EQ(form.lblFile.Caption(), u"Translation file");
  EXPECT_EQ(form.cmdOK.Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
}

TEST_F(SelectFile, LoadingSetsIconAndFontAndCentres) {
  locale.UseCodePage("932");
  form.Load();
  EXPECT_EQ(iconsSet, std::vector<WindowHandle>{form.hWnd()});
  EXPECT_NE(form.cmbFile.Font(), Font());
  EXPECT_NEAR(form.Left(), (desktop.screen.width - form.Width()) / 2, 1);
  EXPECT_NEAR(form.Top(), (desktop.screen.height - form.Height()) / 2, 1);
}

TEST_F(SelectFile, IsNotAcceptedUntilOk) {
  form.Accepted = true;
  form.Load();
  EXPECT_FALSE(form.Accepted);
  Show([this] { form.cmdOK.UserClick(); });
  EXPECT_TRUE(form.Accepted);
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(form.loaded()) << "the caller reads it first";
}

TEST_F(SelectFile, CancelHidesItUnaccepted) {
  Show([this] { form.cmdCancel.UserClick(); });
  EXPECT_FALSE(form.Accepted);
  EXPECT_FALSE(form.Visible());
  EXPECT_TRUE(form.loaded());
}

TEST_F(SelectFile, CloseBoxIsNotAccepted) {
  Show([this] { form.UserClose(); });
  EXPECT_FALSE(form.Accepted);
}

TEST_F(SelectFile, EnterIsOkAndEscIsCancel) {
  EXPECT_EQ(form.DefaultButton(), &form.cmdOK);
  EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
}

TEST_F(SelectFile, ListsAreIndependent) {
  form.Load();
  for (const TextView text : {u"a", u"b"}) {
    form.cmbLanguage.AddItem(text);
    form.cmbFile.AddItem(text);
  }
  form.cmbFile.SetListIndex(0);
  form.cmbLanguage.UserSelectRow(1);
  EXPECT_EQ(form.cmbFile.ListIndex(), 0);
  EXPECT_EQ(form.cmbFile.ListCount(), 2);
}

}  // namespace
}  // namespace marl
