#include "support/frmAbout2006.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {

namespace {

constexpr TextView kMaker = u"http://www.oru.example";
constexpr TextView kProduct = u"http://www.marl.example";
constexpr TextView kSupportPage = u"http://support.marl.example";

class About : public testing::Test {
 protected:
  struct Opened {
    Text verb;
    Text file;
    Text parameters;
    Text directory;
    int show = 0;
    bool operator==(const Opened&) const = default;
  };

  static Opened Link(TextView address) { return {u"Open", Text(address), u"0", u"0", 1}; }
  Label& At(int index) { return *form.lblLabel[static_cast<std::size_t>(index)]; }
  /// A mouse click in the middle of the control.
  void ClickOn(const Control& control) {
    const float x = static_cast<float>(control.Left() + control.Width() / 2);
    const float y = static_cast<float>(control.Top() + control.Height() / 2);
    form.UserMouseDown(1, x, y);
    form.UserMouseUp(1, x, y);
  }

  MemoryDesktop desktop;
  MemoryPictures pictures;
  MemoryLocale locales;
  MemoryStrings resource;
  StringTable strings{resource};
  std::vector<WindowHandle> iconsFor;
  std::vector<Opened> opened;
  frmAbout2006 form{
      {desktop, pictures, locales, strings,
       [this](WindowHandle window) { iconsFor.push_back(window); },
       [this](TextView verb, TextView file, TextView parameters, TextView directory, int show) {
         opened.push_back({Text(verb), Text(file), Text(parameters), Text(directory), show});
       }}};
};

}  // namespace

TEST_F(About, ShowsItsTextsItsVersionAndItsPicture) {
  form.Load();
  EXPECT_EQ(form.Caption(), u"About Marl");
  EXPECT_EQ(At(frmAbout2006::kSuite).Caption(), resource.texts.at(IDS_ABOUT_SUITE));
  EXPECT_EQ(At(frmAbout2006::kVersionLabel).Caption(), u"Marl 2007 SP3 (Build 7044)");
  EXPECT_EQ(At(frmAbout2006::kCopyright).Caption(), resource.texts.at(IDS_ABOUT_COPYRIGHT));
  EXPECT_EQ(At(5).Caption(), resource.texts.at(IDS_ABOUT_SITE));
  EXPECT_EQ(At(6).Caption(), resource.texts.at(IDS_ABOUT_SUPPORT));
  EXPECT_EQ(At(frmAbout2006::kWarning).Caption(), resource.texts.at(IDS_ABOUT_WARNING));
  EXPECT_EQ(form.cmdOK->Caption(), u"OK");
  ASSERT_TRUE(form.imgLogo.Picture());
  EXPECT_EQ(form.imgLogo.Picture()->width, 400);
  EXPECT_EQ(iconsFor, std::vector<WindowHandle>{form.hWnd()});
  EXPECT_TRUE(opened.empty());
}

TEST_F(About, PictureFillsItsAreaAtEveryResolution) {
  for (const int dpi : {96, 120, 144, 168, 192, 216, 240, 288}) {
    desktop.dpi = {dpi, dpi};
    form.Load();
    ASSERT_TRUE(form.imgLogo.Picture()) << dpi;
    EXPECT_EQ(form.imgLogo.Picture()->width, form.imgLogo.PixelSize().width) << dpi;
    EXPECT_EQ(form.imgLogo.Picture()->height, form.imgLogo.PixelSize().height) << dpi;
    EXPECT_EQ(form.imgLogo.Width(), form.Design.width);
    form.Unload();
  }
}

TEST_F(About, LinksOpenTheirSites) {
  form.Show();
  ClickOn(form.imgLogo);
  ClickOn(At(5));
  ClickOn(At(6));
  EXPECT_EQ(opened, (std::vector<Opened>{Link(kMaker), Link(kProduct), Link(kSupportPage)}));
  EXPECT_TRUE(form.loaded());
}

TEST_F(About, LabelsShowTheAddressesThatTheyOpen) {
  form.Load();
  const auto shows = [this](int index, TextView address) {
    constexpr TextView kScheme = u"http://";
    return At(index).Caption().find(address.substr(kScheme.size())) != Text::npos;
  };
  EXPECT_TRUE(shows(5, kProduct));
  EXPECT_TRUE(shows(6, kSupportPage));
}

TEST_F(About, TheNameIsBoldAndTheLinksAreUnderlined) {
  form.Load();
  const auto style = [this](int index) {
    const Font& font = At(index).Font();
    return std::array{font.Bold, font.Italic, font.Underline};
  };
  EXPECT_EQ(style(frmAbout2006::kSuite), (std::array{true, false, false}));
  for (const int link : {5, 6}) {
    EXPECT_EQ(style(link), (std::array{false, false, true})) << link;
    EXPECT_TRUE(At(link).HandCursor) << link;
    EXPECT_EQ(At(link).ForeColor(), Rgb(0, 95, 71)) << link;
  }
  EXPECT_EQ(style(frmAbout2006::kCopyright), (std::array{false, false, false}));
  EXPECT_FALSE(At(frmAbout2006::kCopyright).HandCursor);
  EXPECT_TRUE(form.imgLogo.HandCursor);
}

TEST_F(About, OtherLabelsOpenNothing) {
  form.Show();
  for (const int index : {0, 1, 2, 3}) ClickOn(At(index));
  form.UserClick();
  EXPECT_TRUE(opened.empty());
}

TEST_F(About, FocusOnTheHiddenButtonsFollowsTheirLinks) {
  form.Show();
  form.cmdShell[0]->SetFocus();
  EXPECT_EQ(opened, std::vector<Opened>{Link(kProduct)});
  form.cmdShell[1]->SetFocus();
  EXPECT_EQ(opened.back(), Link(kSupportPage));
  EXPECT_EQ(opened.size(), 2u);
}

TEST_F(About, AccessKeyOfALinkPutsTheFocusOnItsHiddenButtonAndOpensIt) {
  form.Show();
  const struct {
    char16_t key;
    int button;
    TextView address;
  } table[] = {{u'I', 0, kProduct}, {u'i', 0, kProduct}, {u'S', 1, kSupportPage}};
  for (const auto& row : table) {
    Control* const target = form.AccessKeyTarget(row.key);
    ASSERT_EQ(target, form.cmdShell[static_cast<std::size_t>(row.button)].get());
    form.cmdOK->SetFocus();
    opened.clear();
    target->SetFocus();
    EXPECT_EQ(opened, std::vector<Opened>{Link(row.address)});
  }
}

TEST_F(About, ReturnToTheProgramOpensNoLinkAgain) {
  form.Show();
  EXPECT_TRUE(form.UserAccessKey(u's', form.cmdOK.get()));
  EXPECT_EQ(opened, std::vector<Opened>{Link(kSupportPage)});
  for (int time = 0; time < 2; ++time) {
    desktop.SwitchAway();
    desktop.SwitchBack();
  }
  EXPECT_EQ(opened.size(), 1u);
  EXPECT_TRUE(form.UserAccessKey(u'i', form.cmdShell[1].get()));
  EXPECT_TRUE(form.UserAccessKey(u's', form.cmdShell[0].get()));
  EXPECT_EQ(opened.size(), 3u);
}

TEST_F(About, HiddenButtonsFollowTheirLabelsInTheTabOrderBeyondTheEdgeOfTheForm) {
  for (std::size_t i = 0; i < 2; ++i) {
    const CommandButton& button = *form.cmdShell[i];
    EXPECT_EQ(button.TabIndex, At(5 + static_cast<int>(i)).TabIndex + 1);
    EXPECT_LE(button.Left() + button.Width(), 0);
    EXPECT_FALSE(button.TabStop) << "moving through the fields opens nothing";
    EXPECT_TRUE(button.Visible() && button.Enabled());
  }
}

TEST_F(About, OkUnloadsTheFormByEnterAndByEsc) {
  EXPECT_EQ(form.DefaultButton(), form.cmdOK.get());
  EXPECT_EQ(form.CancelButton(), form.cmdOK.get());
  form.Show();
  form.cmdOK->UserClick();
  EXPECT_FALSE(form.loaded());
}

TEST_F(About, FontsAreSetBeforeTheStrings) {
  locales.UseCodePage("1251");
  form.Load();
  EXPECT_EQ(At(frmAbout2006::kWarning).Font().Charset, 204);
  EXPECT_EQ(form.Caption(), u"About Marl");
}

}  // namespace marl
