#include "support/frmSplash.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "support/Version.h"

namespace marl {

namespace {

class Splash : public testing::Test {
 protected:
  MemoryDesktop desktop;
  MemoryPictures pictures;
  MemoryLocale locales;
  frmSplash form{desktop, pictures, locales};
};

/// The ways in which the user or the timer can close the splash.
struct Act {
  const char* name;
  void (*run)(frmSplash&, MemoryDesktop&);
};

const Act kActs[] = {
    {"ClickOnTheForm", [](frmSplash& form, MemoryDesktop&) { form.UserClick(); }},
    {"ClickOnThePicture",
     [](frmSplash& form, MemoryDesktop&) {
       form.UserMouseDown(1, 100, 100);
       form.UserMouseUp(1, 100, 100);
     }},
    {"KeyPress", [](frmSplash& form, MemoryDesktop&) { form.UserKey(u' '); }},
    {"TimerFires", [](frmSplash&, MemoryDesktop& desktop) { desktop.Advance(5000); }},
};

class SplashDismissal : public Splash, public testing::WithParamInterface<Act> {};

}  // namespace

TEST_F(Splash, VersionIsWrittenInWhiteInTheFontOfTheDesign) {
  form.Load();
  Font font;
  font.Name = u"Tahoma";
  font.Size = 112500;
  EXPECT_EQ(form.lblVersion.Font(), font);
  EXPECT_EQ(form.lblVersion.ForeColor(), Rgb(255, 255, 255));
  EXPECT_EQ(form.lblVersion.Alignment, Alignment::kCenter);
  EXPECT_FALSE(form.lblVersion.WordWrap);
  form.Unload();
}

TEST_P(SplashDismissal, ClosesTheSplashOnceItMayClose) {
  form.Show();
  form.SetCanDismiss(true);
  ASSERT_TRUE(form.loaded());
  desktop.Event([&] { GetParam().run(form, desktop); });
  EXPECT_FALSE(form.loaded());
  EXPECT_TRUE(desktop.forms().empty());
}

TEST_P(SplashDismissal, KeepsTheSplashUntilThen) {
  form.Show();
  desktop.Event([&] { GetParam().run(form, desktop); });
  EXPECT_TRUE(form.loaded());
  EXPECT_TRUE(form.Visible());
  EXPECT_FALSE(form.CanDismiss());
}

TEST_P(SplashDismissal, KeepsASplashThatMayNoLongerClose) {
  form.Show();
  form.SetCanDismiss(true);
  form.SetCanDismiss(false);
  desktop.Event([&] { GetParam().run(form, desktop); });
  EXPECT_TRUE(form.loaded());
}

INSTANTIATE_TEST_SUITE_P(Acts, SplashDismissal, testing::ValuesIn(kActs),
                         [](const auto& act) { return std::string(act.param.name); });

TEST_F(Splash, StaysForExactlyFiveSeconds) {
  form.Show();
  form.SetCanDismiss(true);
  desktop.Advance(4999);
  EXPECT_TRUE(form.loaded());
  desktop.Advance(1);
  EXPECT_FALSE(form.loaded());
}

TEST_F(Splash, ClosesAtOnceIfStartUpTookLongerThanTheTimer) {
  form.Show();
  desktop.Advance(5000);
  EXPECT_TRUE(form.loaded());
  form.SetCanDismiss(true);
  EXPECT_FALSE(form.loaded());
}

TEST_F(Splash, StaysAfterTheTimerUntilItMayClose) {
  form.Show();
  desktop.Advance(60000);
  EXPECT_TRUE(form.loaded());
  form.SetCanDismiss(false);
  EXPECT_TRUE(form.loaded());
  form.UserClick();
  form.UserKey(u'x');
  EXPECT_TRUE(form.loaded());
}

TEST_F(Splash, KeyBeforeTheTimerClosesASplashThatMayClose) {
  form.Show();
  form.SetCanDismiss(true);
  desktop.Advance(1200);
  ASSERT_TRUE(form.loaded());
  form.UserKey(u'\x1b');
  EXPECT_FALSE(form.loaded());
  desktop.Advance(10000);
}

TEST_F(Splash, ClickOnTheVersionIsNoClickOnThePicture) {
  form.Show();
  form.SetCanDismiss(true);
  const float x = static_cast<float>(form.lblVersion.Left() + 10);
  const float y = static_cast<float>(form.lblVersion.Top() + 10);
  form.UserMouseDown(1, x, y);
  form.UserMouseUp(1, x, y);
  EXPECT_TRUE(form.loaded());
}

TEST_F(Splash, FlagsAreFreshAtEachLoad) {
  form.Show();
  desktop.Advance(5000);
  desktop.Event([&] { form.SetCanDismiss(true); });
  ASSERT_FALSE(form.loaded());
  form.Show();
  EXPECT_FALSE(form.CanDismiss());
  form.SetCanDismiss(true);
  EXPECT_TRUE(form.loaded()) << "the timer of the first showing does not count";
}

TEST_F(Splash, FormFitsThePictureInTheMiddleOfTheScreen) {
  desktop.frame = {90, 60};
  form.Show();
  EXPECT_EQ(form.img2006.bounds(), (Box{0, 0, 7200, 4500}));
  EXPECT_EQ(form.inner(), (Size{7200, 4500}));
  EXPECT_EQ(form.bounds(), (Box{(15360 - 7290) / 2, (11520 - 4560) / 2, 7290, 4560}));
  EXPECT_EQ(form.lblVersion.bounds(), (Box{60, 2700, 7080, 300}));
}

TEST_F(Splash, IsAsLargeAtEveryResolution) {
  const std::map<int, int> drawings = {
      {96, MARL_PICTURE_SPLASH},      {120, MARL_PICTURE_SPLASH_144},
      {144, MARL_PICTURE_SPLASH_144}, {168, MARL_PICTURE_SPLASH_192},
      {192, MARL_PICTURE_SPLASH_192}, {240, MARL_PICTURE_SPLASH_192}};
  for (const auto& [dpi, drawing] : drawings) {
    desktop.dpi = {dpi, dpi};
    pictures.loaded.clear();
    form.Show();
    EXPECT_EQ(pictures.loaded, std::vector<int>{drawing});
    EXPECT_EQ(form.inner(), (Size{7200, 4500})) << dpi;
    EXPECT_EQ(form.lblVersion.bounds(), (Box{60, 2700, 7080, 300})) << dpi;
    EXPECT_EQ(form.img2006.Picture()->width, form.img2006.PixelSize().width) << dpi;
    EXPECT_EQ(form.img2006.Picture()->height, form.img2006.PixelSize().height) << dpi;
    form.Unload();
  }
}

TEST_F(Splash, VersionIsAtSixTenthsOfThePictureRoundedToAWholeTwip) {
  struct Odd : Pictures {
    PicturePtr Load(int) override { return std::make_shared<const Picture>(301, 207); }
    void Prepare(int) override {}
  } odd;
  frmSplash other(desktop, odd, locales);
  other.Show();
  EXPECT_EQ(other.inner(), (Size{301 * 15, 207 * 15}));
  EXPECT_EQ(other.lblVersion.bounds(), (Box{60, 1863, 301 * 15 - 120, 300}));
  desktop.dpi = {97, 97};
  frmSplash uneven(desktop, odd, locales);
  uneven.Show();
  // The drawing for 144, 207 pixels high there, is 139 high here.
  EXPECT_EQ(uneven.img2006.Height(), 2064) << "2063.5";
  EXPECT_EQ(uneven.lblVersion.Top(), 1238) << "1238.4";
}

TEST_F(Splash, MissingPictureLeavesTheDesignsSize) {
  pictures.missing = {MARL_PICTURE_SPLASH};
  form.Show();
  EXPECT_EQ(form.inner(), (Size{7200, 4500}));
  EXPECT_EQ(form.lblVersion.Caption(), u"SP3 (Build 7044)");
}

TEST_F(Splash, ShowsThePartOfTheVersionFromTheServicePackOn) {
  form.Show();
  EXPECT_EQ(kVersion, u"2007 SP3 (Build 7044)");
  EXPECT_EQ(form.lblVersion.Caption(), u"SP3 (Build 7044)");
}

TEST(SplashVersion, IsShownFromTheFirstSOrBracketOn) {
  const struct {
    TextView version;
    TextView shown;
  } table[] = {
      {u"2007 SP3 (Build 7044)", u"SP3 (Build 7044)"},
      {u"2007 (Build 7044) SP3", u"(Build 7044) SP3"},
      {u"2007 (Build 7044)", u"(Build 7044)"},
      {u"2007 SP3", u"SP3"},
      {u"S", u"S"},
      {u"2007", u"2007"},
      {u"2007 sp3", u"2007 sp3"},
      {u"", u""},
  };
  for (const auto& row : table) EXPECT_EQ(frmSplash::ShownVersion(row.version), row.shown);
}

TEST(SplashVersion, OfTheResourceNamesAServicePackOnlyWhenThereIsOne) {
  EXPECT_EQ(frmSplash::ResourceVersion(2007, 3, 7044), u"Version 2007 SP3 Build 7044");
  EXPECT_EQ(frmSplash::ResourceVersion(2007, 0, 7044), u"Version 2007 Build 7044");
}

TEST_F(Splash, FontsFollowTheLocale) {
  locales.UseCodePage("932");
  form.Show();
  EXPECT_EQ(form.lblVersion.Font().Charset, 128);
}

}  // namespace marl
