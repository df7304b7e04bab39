#include "network/frmChangeServer.h"

#include <gtest/gtest.h>

#include "network/ServerTag.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {
namespace {

class ChangeServer : public testing::Test {
 protected:
  ~ChangeServer() override { form.Unload(); }

  void Load() { form.Load(); }
  static void Type(TextBox& field, TextView text) {
    field.UserEdit(text, static_cast<int>(text.size()), 0);
  }

  MemoryDesktop desktop;
  MemoryRegistryStore registry;
  MemoryLocale locale;
  MemoryPictures pictures;
  MemoryStrings resource;
  StringTable strings{resource};
  clsMRU list{registry, locale};
  frmChangeServer form{{desktop, locale, pictures, strings}, list};
};

TEST_F(ChangeServer, CaptionsComeFromTheTable) {
  Load();
  EXPECT_EQ(form.Caption(), u"Change server");
  EXPECT_EQ(form.lblServer.Caption(), u"&Server:");
  EXPECT_EQ(form.chkSSL.Caption(), u"The server &requires a secure connection (SSL)");
  EXPECT_EQ(form.chkUseDefault.Caption(), u"Use &default port number");
  EXPECT_EQ(form.lblPortNumber.Caption(), u"P&ort number:");
  EXPECT_EQ(form.cmdOK.Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
}

TEST_F(ChangeServer, ListShowsTheServersOfItsEntries) {
  list.AddMRU(ComposeServerTag(u"beta", true, u"443"));
  list.AddMRU(BareNameTag(u"R&D"));
  Load();
  ASSERT_EQ(form.cmbServer.ListCount(), 2);
  EXPECT_EQ(form.cmbServer.List(0), u"R&D");
  EXPECT_EQ(form.cmbServer.ItemData(0), 1);
  EXPECT_EQ(form.cmbServer.List(1), u"beta");
  EXPECT_EQ(form.cmbServer.ItemData(1), 2);
}

TEST_F(ChangeServer, BareNamesInTheListBecomeTagsWhateverTheUserDoes) {
  list.AddMRU(u"alpha");
  list.AddMRU(u"a<b");
  desktop.whenModal["frmChangeServer"] = [&](Form&) { form.cmdCancel.UserClick(); };
  form.ShowModal(nullptr);
  EXPECT_TRUE(form.Cancelled);
  EXPECT_EQ(list.Item(1), BareNameTag(u"a<b"));
  EXPECT_EQ(list.Item(2), BareNameTag(u"alpha"));
  EXPECT_EQ(form.cmbServer.List(0), u"a<b");
}

TEST_F(ChangeServer, EntriesThatAreNoServersAreShownAsFarAsPossible) {
  list.AddMRU(u"<");
  list.AddMRU(u"<project-tracking server=\"a\" server=\"b\"/>");
  Load();
  EXPECT_EQ(form.cmbServer.List(0), u"a");
  EXPECT_EQ(form.cmbServer.List(1), u"");
}

struct Fields {
  Text tag;
  TextView server;
  int ssl;
  int useDefault;
  TextView port;
  bool portEnabled;
  Text composed;  ///< what OK returns without a change
};

class ChangeServerFields : public ChangeServer, public testing::WithParamInterface<Fields> {};

TEST_P(ChangeServerFields, AreFilledFromTheTag) {
  const Fields& row = GetParam();
  Load();
  form.Server(row.tag);
  EXPECT_EQ(form.cmbServer.Text(), row.server);
  EXPECT_EQ(form.chkSSL.Value(), row.ssl);
  EXPECT_EQ(form.chkUseDefault.Value(), row.useDefault);
  EXPECT_EQ(form.txtPortNumber.Text(), row.port);
  EXPECT_EQ(form.txtPortNumber.Enabled(), row.portEnabled);
  EXPECT_EQ(form.lblPortNumber.Enabled(), row.portEnabled);
  EXPECT_EQ(form.Server(), row.composed);
}

Text Compose(TextView server, bool ssl, TextView port) {
  return ComposeServerTag(server, ssl, port);
}

INSTANTIATE_TEST_SUITE_P(
    Tags, ChangeServerFields,
    testing::Values(
        Fields{Compose(u"a", false, u"80"), u"a", 0, 1, u"", false, Compose(u"a", false, u"80")},
        Fields{Compose(u"a", true, u"443"), u"a", 1, 1, u"", false, Compose(u"a", true, u"443")},
        Fields{Compose(u"a", true, u"80"), u"a", 1, 0, u"80", true, Compose(u"a", true, u"80")},
        Fields{Compose(u"a", false, u"443"), u"a", 0, 0, u"443", true,
               Compose(u"a", false, u"443")},
        Fields{Compose(u"a", false, u"20000"), u"a", 0, 0, u"20000", true,
               Compose(u"a", false, u"20000")},
        // Above the filter's range: the field stays empty, and so does the port.
        Fields{Compose(u"a", false, u"65000"), u"a", 0, 0, u"", true, Compose(u"a", false, u"")},
        Fields{Compose(u"a", false, u"20001"), u"a", 0, 0, u"", true, Compose(u"a", false, u"")},
        Fields{Compose(u"a", false, u"0"), u"a", 0, 0, u"", true, Compose(u"a", false, u"")},
        Fields{Compose(u"a", false, u"x"), u"a", 0, 0, u"", true, Compose(u"a", false, u"")},
        // No port: the default of the scheme.
        Fields{u"<project-tracking server=\"a\" ssl=\"yes\"/>", u"a", 1, 1, u"", false,
               Compose(u"a", true, u"443")},
        Fields{Compose(u"a", false, u""), u"a", 0, 1, u"", false, Compose(u"a", false, u"80")},
        Fields{u"<project-tracking server=\"a\" ssl=\"YeS\" port=\"443\"/>", u"a", 1, 1, u"", false,
               Compose(u"a", true, u"443")},
        Fields{u"<project-tracking server=\"a\" ssl=\"true\" port=\"80\"/>", u"a", 0, 1, u"", false,
               Compose(u"a", false, u"80")},
        Fields{Compose(u"  a b ", false, u"80"), u"a b", 0, 1, u"", false,
               Compose(u"a b", false, u"80")},
        // Escaped in the tag, but not when it is composed again.
        Fields{BareNameTag(u"a\"&<b>"), u"a\"&<b>", 0, 1, u"", false,
               Compose(u"a\"&<b>", false, u"80")},
        Fields{u"", u"", 0, 1, u"", false, Compose(u"", false, u"80")}));

TEST_F(ChangeServer, NameIsComposedRawAndAQuoteCutsItShort) {
  Load();
  form.cmbServer.UserEdit(u"a\"b & <c>");
  EXPECT_EQ(form.Server(), u"<project-tracking server=\"a\"b & <c>\" ssl=\"no\" port=\"\"/>");
  clsXMLTag tag;
  ReadServerTag(form.Server(), tag);
  EXPECT_EQ(tag.AttributeValue(u"server"), u"a");
}

TEST_F(ChangeServer, NameKeepsItsBlanksWhenRead) {
  Load();
  form.cmbServer.UserEdit(u" a ");
  form.chkUseDefault.UserClick();
  EXPECT_EQ(form.Server(), Compose(u" a ", false, u"80"));
}

TEST_F(ChangeServer, DefaultPortFollowsSslWhenTheTagIsComposed) {
  Load();
  form.Server(Compose(u"a", false, u"80"));
  form.chkSSL.UserClick();
  EXPECT_EQ(form.txtPortNumber.Text(), u"") << "the field shows nothing of it";
  EXPECT_EQ(form.Server(), Compose(u"a", true, u"443"));
}

TEST_F(ChangeServer, DefaultBoxDisablesThePort) {
  Load();
  form.Server(Compose(u"a", false, u"8080"));
  form.chkUseDefault.UserClick();
  EXPECT_FALSE(form.lblPortNumber.Enabled());
  EXPECT_FALSE(form.txtPortNumber.Enabled());
  EXPECT_EQ(form.txtPortNumber.Text(), u"8080");
  EXPECT_EQ(form.Server(), Compose(u"a", false, u"80"));
  form.chkUseDefault.UserClick();
  EXPECT_TRUE(form.txtPortNumber.Enabled());
  EXPECT_EQ(form.Server(), Compose(u"a", false, u"8080"));
}

TEST_F(ChangeServer, ChosenEntrySetsAllFields) {
  list.AddMRU(Compose(u"alpha", false, u"80"));
  list.AddMRU(Compose(u"beta", true, u"8443"));
  Load();
  form.Server(Compose(u"alpha", false, u"80"));
  form.cmbServer.UserSelectRow(0);
  EXPECT_EQ(form.cmbServer.Text(), u"beta");
  EXPECT_EQ(form.chkSSL.Value(), 1);
  EXPECT_EQ(form.chkUseDefault.Value(), 0);
  EXPECT_EQ(form.txtPortNumber.Text(), u"8443");
  EXPECT_TRUE(form.txtPortNumber.Enabled());
  EXPECT_EQ(form.Server(), Compose(u"beta", true, u"8443"));
}

TEST_F(ChangeServer, EntryChosenAgainAfterTypingSetsAllFieldsAgain) {
  list.AddMRU(Compose(u"beta", true, u"8443"));
  Load();
  form.cmbServer.UserSelectRow(0);
  form.cmbServer.UserEdit(u"gamma");
  form.chkSSL.UserClick();
  form.cmbServer.UserSelectRow(0);
  EXPECT_EQ(form.Server(), Compose(u"beta", true, u"8443"));
}

TEST_F(ChangeServer, EntryThatIsChosenChosenAgainSetsAllFieldsAgain) {
  list.AddMRU(Compose(u"beta", true, u"8443"));
  Load();
  form.cmbServer.UserSelectRow(0);
  form.chkSSL.UserClick();
  Type(form.txtPortNumber, u"99");
  form.cmbServer.UserSelectRow(0);
  EXPECT_EQ(form.Server(), Compose(u"beta", true, u"8443"));
}

TEST_F(ChangeServer, RowWithoutAnEntryChangesNothing) {
  Load();
  form.Server(Compose(u"alpha", true, u"443"));
  form.cmbServer.AddItem(u"foreign");
  form.cmbServer.UserSelectRow(0);
  EXPECT_EQ(form.chkSSL.Value(), 1);
  EXPECT_EQ(form.cmbServer.Text(), u"foreign");
}

TEST_F(ChangeServer, DefaultPortLeavesTheLastGoodPortInTheDisabledField) {
  list.AddMRU(Compose(u"alpha", false, u"80"));
  Load();
  form.Server(Compose(u"beta", false, u"8080"));
  form.cmbServer.UserSelectRow(0);
  // The filter refuses the empty text, as if the user had typed it.
  EXPECT_EQ(form.txtPortNumber.Text(), u"8080");
  EXPECT_FALSE(form.txtPortNumber.Enabled());
  EXPECT_EQ(form.Server(), Compose(u"alpha", false, u"80"));
}

TEST_F(ChangeServer, PortTakesOneTo20000) {
  Load();
  form.Server(Compose(u"a", false, u"81"));
  Type(form.txtPortNumber, u"20000");
  EXPECT_EQ(form.txtPortNumber.Text(), u"20000");
  for (const TextView bad : {u"20001", u"0", u"", u"8o", u"-1"}) {
    Type(form.txtPortNumber, bad);
    EXPECT_EQ(form.txtPortNumber.Text(), u"20000");
  }
  Type(form.txtPortNumber, u"1");
  EXPECT_EQ(form.txtPortNumber.Text(), u"1");
}

TEST_F(ChangeServer, FocusSelectsTheWholeName) {
  Load();
  form.Server(Compose(u"alpha", false, u"80"));
  form.cmbServer.SetFocus();
  EXPECT_EQ(form.cmbServer.SelStart(), 0);
  EXPECT_EQ(form.cmbServer.SelLength(), 5);
}

TEST_F(ChangeServer, FocusThatComesBackLeavesTheSelectionAlone) {
  desktop.whenModal["frmChangeServer"] = [&](Form&) {
    form.Server(Compose(u"alpha", false, u"80"));
    form.cmbServer.SetFocus();
    form.cmbServer.Select(2, 1);
    desktop.SwitchAway();
    desktop.SwitchBack();
    EXPECT_EQ(form.cmbServer.SelStart(), 2);
    EXPECT_EQ(form.cmbServer.SelLength(), 1);
    form.cmdCancel.UserClick();
  };
  form.ShowModal(nullptr);
  EXPECT_EQ(desktop.modal.size(), 1u);
}

TEST_F(ChangeServer, ButtonsHideTheFormAndSetTheResult) {
  desktop.whenModal["frmChangeServer"] = [&](Form&) {
    form.cmdOK.UserClick();
    EXPECT_FALSE(form.Visible());
  };
  form.ShowModal(nullptr);
  EXPECT_FALSE(form.Cancelled);
  EXPECT_TRUE(form.loaded()) << "the caller reads it first";
  desktop.whenModal["frmChangeServer"] = [&](Form&) { form.cmdCancel.UserClick(); };
  form.ShowModal(nullptr);
  EXPECT_TRUE(form.Cancelled);
}

TEST_F(ChangeServer, ClosedOtherwiseCountsAsCancelled) {
  desktop.whenModal["frmChangeServer"] = [&](Form&) { form.UserClose(); };
  form.ShowModal(nullptr);
  EXPECT_TRUE(form.Cancelled);
}

TEST_F(ChangeServer, KeysReachEveryControl) {
  Load();
  EXPECT_EQ(form.DefaultButton(), &form.cmdOK);
  EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
  EXPECT_EQ(form.AccessKeyTarget(u's'), &form.cmbServer);
  EXPECT_EQ(form.AccessKeyTarget(u'O'), &form.txtPortNumber);
  form.chkUseDefault.UserClick();
  EXPECT_EQ(form.AccessKeyTarget(u'o'), nullptr) << "its field is disabled";
  std::vector<const Control*> order;
  for (const Control* control : form.controls()) {
    if (!control->windowless() && control->TabStop) order.push_back(control);
  }
  EXPECT_EQ(order,
            (std::vector<const Control*>{&form.cmbServer, &form.chkSSL, &form.chkUseDefault,
                                         &form.txtPortNumber, &form.cmdOK, &form.cmdCancel}));
}

TEST_F(ChangeServer, PictureComesInTheScreensSize) {
  Load();
  ASSERT_TRUE(form.Image1.Picture());
  EXPECT_EQ(form.Image1.Picture()->width, 48);
  EXPECT_EQ(form.Image1.Picture()->height, 48);
  for (const auto& [dpi, size] :
       {std::pair{120, 60}, {144, 72}, {168, 84}, {192, 96}, {240, 120}}) {
    MemoryDesktop finer;
    finer.dpi = {dpi, dpi};
    frmChangeServer other({finer, locale, pictures, strings}, list);
    other.Load();
    ASSERT_TRUE(other.Image1.Picture());
    EXPECT_EQ(other.Image1.Picture()->width, size);
    EXPECT_EQ(other.Image1.Picture()->height, size);
    EXPECT_EQ(other.Image1.PixelSize(), (Size{size, size}));
  }
}

TEST_F(ChangeServer, MissingPictureIsNoFailure) {
  pictures.missing = {MARL_PICTURE_SET1_48};
  Load();
  EXPECT_FALSE(form.Image1.Picture());
}

}  // namespace
}  // namespace marl
