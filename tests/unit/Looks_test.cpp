// Contrast of texts, high contrast, and what follows the system's colours.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "appearance/PanelColors.h"
#include "appearance/SkinFile.h"
#include "platform/Contrast.h"
#include "support/frmAbout2006.h"
#include "tests/unit/SourceFolder.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

constexpr Color kBlack = Rgb(0, 0, 0);
constexpr Color kWhite = Rgb(255, 255, 255);

TEST(Contrast, IsThatOfTheGuidelines) {
  EXPECT_NEAR(ContrastOf(kBlack, kWhite), 21, 1e-9);
  EXPECT_NEAR(ContrastOf(kWhite, kBlack), 21, 1e-9);
  EXPECT_NEAR(ContrastOf(kWhite, kWhite), 1, 1e-9);
  // Grey 118 is the lightest on white that is readable, and 119 is not.
  EXPECT_GE(ContrastOf(Rgb(118, 118, 118), kWhite), kReadable);
  EXPECT_LT(ContrastOf(Rgb(119, 119, 119), kWhite), kReadable);
  EXPECT_NEAR(ContrastOf(Rgb(255, 0, 0), kWhite), 3.998, 0.001);
  EXPECT_NEAR(ContrastOf(Rgb(0, 0, 255), kWhite), 8.592, 0.001);
  EXPECT_NEAR(ContrastOf(Rgb(0, 128, 0), kWhite), 5.138, 0.001);
  const std::array<Color, 3> grounds = {kWhite, Rgb(255, 0, 0), kBlack};
  EXPECT_NEAR(ContrastOf(kBlack, grounds), 1, 1e-9) << "the worst counts";
}

TEST(Contrast, MixesChannelByChannel) {
  EXPECT_EQ(Mixed(Rgb(0, 100, 200), Rgb(200, 0, 201), 0), Rgb(0, 100, 200));
  EXPECT_EQ(Mixed(Rgb(0, 100, 200), Rgb(200, 0, 201), 1), Rgb(200, 0, 201));
  EXPECT_EQ(Mixed(Rgb(0, 100, 200), Rgb(200, 0, 201), 0.5), Rgb(100, 50, 201));
}

TEST(Contrast, MutesTextAsFarAsItStaysReadable) {
  const std::array<Color, 1> white = {kWhite};
  const Color grey = Muted(kBlack, white);
  EXPECT_NE(grey, kBlack);
  EXPECT_GE(ContrastOf(grey, white), kReadable);
  EXPECT_LT(ContrastOf(grey, white), ContrastOf(kBlack, white));
  // Nothing weaker than the limit is readable: it stays.
  const Color limit = Rgb(118, 118, 118);
  EXPECT_EQ(Muted(limit, white), limit);
  EXPECT_EQ(Muted(Rgb(200, 200, 200), white), Rgb(200, 200, 200));
}

TEST(Contrast, GreyIsReadableOnEveryPlainBackground) {
  for (int red = 0; red < 256; red += 15) {
    for (int green = 0; green < 256; green += 15) {
      for (int blue = 0; blue < 256; blue += 15) {
        const std::array<Color, 1> ground = {Rgb(red, green, blue)};
        for (const Color text : {kWhite, kBlack, Rgb(0, 95, 71), Rgb(128, 128, 128)}) {
          ASSERT_GE(ContrastOf(GreyOn(text, ground), ground), kReadable)
              << red << ' ' << green << ' ' << blue << ' ' << text;
        }
      }
    }
  }
}

TEST(Contrast, TakesTheFirstReadableColour) {
  const std::array<Color, 3> colors = {Rgb(200, 200, 200), Rgb(0, 0, 255), kBlack};
  EXPECT_EQ(ReadableOn(kWhite, colors), Rgb(0, 0, 255));
  EXPECT_EQ(ReadableOn(kBlack, colors), Rgb(200, 200, 200));
  const std::array<Color, 2> weak = {Rgb(200, 200, 200), Rgb(150, 150, 150)};
  EXPECT_EQ(ReadableOn(kWhite, weak), Rgb(150, 150, 150)) << "the best there is";
}

// ---- Labels that cannot be used

class GreyForm : public Form {
 public:
  explicit GreyForm(Desktop& desktop) : Form(desktop, "frmGrey") { label.SetEnabled(false); }
  Label label{*this, "lblText"};
};

TEST(GreyLabel, HasTheSystemsGreyWhereThatIsReadable) {
  MemoryDesktop desktop;
  GreyForm form(desktop);
  EXPECT_EQ(form.label.TextColor(), kGrayText);
  form.label.SetEnabled(true);
  form.label.SetForeColor(Rgb(1, 2, 3));
  EXPECT_EQ(form.label.TextColor(), Rgb(1, 2, 3));
}

TEST(GreyLabel, IsReadableOnOtherSystemColours) {
  MemoryDesktop desktop;
  GreyForm form(desktop);
  // Grey on beige, as in older colour schemes, and a dark scheme.
  for (const auto& [grey, face, text] : {std::array{Rgb(128, 128, 128), Rgb(212, 208, 200), kBlack},
                                         std::array{Rgb(109, 109, 109), Rgb(32, 32, 32), kWhite}}) {
    desktop.systemColors = {{17, grey}, {15, face}, {18, text}};
    EXPECT_NE(form.label.TextColor(), kGrayText);
    EXPECT_GE(ContrastOf(form.label.TextColor(), face), kReadable);
    desktop.highContrast = true;
    EXPECT_EQ(form.label.TextColor(), kGrayText) << "the user's own choice";
    desktop.highContrast = false;
  }
}

TEST(GreyLabel, TakesAColourOfItsOwn) {
  MemoryDesktop desktop;
  GreyForm form(desktop);
  form.label.SetDisabledColor(Rgb(4, 5, 6));
  EXPECT_EQ(form.label.TextColor(), Rgb(4, 5, 6));
}

// ---- Access keys

TEST(Cues, HideAndShowUnderlinesOfLabelsAtOnce) {
  MemoryDesktop desktop;
  GreyForm form(desktop);
  form.Load();
  EXPECT_TRUE(form.ShowsAccessKeys());
  auto& peer = *static_cast<MemoryPeer*>(form.peer());
  peer.invalidated.clear();
  form.PeerCues(false);
  EXPECT_FALSE(form.ShowsAccessKeys());
  EXPECT_EQ(peer.invalidated.size(), 1u);
  form.PeerCues(false);
  EXPECT_EQ(peer.invalidated.size(), 1u) << "nothing has changed";
  form.PeerCues(true);
  EXPECT_TRUE(form.ShowsAccessKeys());
  EXPECT_EQ(peer.invalidated.size(), 2u);
  form.Unload();
}

// ---- The panel

class PanelLooks : public testing::Test {
 protected:
  frmMain& form() { return world.main(); }
  void MouseTo(int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    world.desktop.Event([&] {
      form().UserMouseMove(0, 0, static_cast<float>(frame.left + 600),
                           static_cast<float>(frame.top + 600));
    });
  }
  /// What the labels, shapes and lines of all buttons are painted in.
  std::vector<Color> Painted() {
    std::vector<Color> colors;
    for (std::size_t i = 0; i < kButtonCount; ++i) {
      colors.push_back(form().lblRun[i]->TextColor());
      colors.push_back(form().shpRun[i]->Transparent() ? -1 : form().shpRun[i]->FillColor());
    }
    for (const auto& line : form().linRun) {
      if (line->Visible()) colors.push_back(line->BorderColor());
    }
    return colors;
  }

  SuiteWorld world;
};

TEST_F(PanelLooks, HighContrastTakesTheSystemsColours) {
  world.Uninstall(u"Q17Xlf.exe");
  world.Start();
  world.desktop.SetHighContrast(true);
  EXPECT_FALSE(form().lblRun[16]->Enabled());
  EXPECT_FALSE(form().Background());
  EXPECT_EQ(form().BackColor(), kWindowBackground);
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    const bool usable = form().lblRun[i]->Enabled();
    EXPECT_EQ(form().lblRun[i]->TextColor(), usable ? kWindowText : kGrayText) << i;
    EXPECT_TRUE(form().shpRun[i]->Transparent());
  }
  MouseTo(3);
  EXPECT_EQ(form().lblRun[3]->TextColor(), kHighlightText);
  EXPECT_FALSE(form().shpRun[3]->Transparent());
  EXPECT_EQ(form().shpRun[3]->FillColor(), kHighlight);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_TRUE(form().linRun[i]->Visible());
    EXPECT_EQ(form().linRun[i]->BorderColor(), kWindowText);
  }
  MouseTo(4);
  EXPECT_TRUE(form().shpRun[3]->Transparent());
  EXPECT_EQ(form().lblRun[3]->TextColor(), kWindowText);
}

TEST_F(PanelLooks, SkinIsBackWhenHighContrastGoesOffAndNothingIsStored) {
  world.Uninstall(u"Q17Xlf.exe");
  world.Start();
  MouseTo(3);
  const std::vector<Color> before = Painted();
  const std::vector<std::uint32_t> pixels = form().Background()->pixels;
  const auto stored = [&] { return ReadSkin(world.registry, 5, {}); };
  const SkinSettings skin = stored();
  world.desktop.SetHighContrast(true);
  EXPECT_NE(Painted(), before);
  EXPECT_EQ(form().HoverButton, 3);
  EXPECT_EQ(form().lblRun[3]->TextColor(), kHighlightText) << "the highlight stays";
  world.desktop.Event([&] { form().SetUI(); });
  EXPECT_FALSE(form().Background()) << "a new layout does not bring the skin back";
  MouseTo(3);
  world.desktop.SetHighContrast(false);
  EXPECT_EQ(Painted(), before);
  ASSERT_TRUE(form().Background());
  EXPECT_EQ(form().Background()->pixels, pixels);
  EXPECT_EQ(stored(), skin);
  EXPECT_EQ(form().Skin, skin);
}

TEST_F(PanelLooks, StartsInHighContrast) {
  world.desktop.highContrast = true;
  world.Start();
  EXPECT_FALSE(form().Background());
  EXPECT_EQ(form().lblRun[0]->TextColor(), kWindowText);
}

TEST_F(PanelLooks, TipsFollowTheSystemsColours) {
  world.Start();
  world.desktop.systemColors = {{24, Rgb(1, 2, 3)}, {18, Rgb(4, 5, 6)}};
  world.desktop.Event([&] { form().PeerLookChanged(); });
  ASSERT_EQ(world.tips.tips.size(), 18u);
  for (const auto& tip : form().TooltipObjects) {
    EXPECT_EQ(tip->BackCol(), Rgb(1, 2, 3));
    EXPECT_EQ(tip->ForeCol(), Rgb(4, 5, 6));
  }
}

TEST_F(PanelLooks, ChangesBeforeThePanelIsLaidOutAreHarmless) {
  world.desktop.posted.push_back([&] { world.desktop.SetHighContrast(true); });
  world.Start();
  EXPECT_FALSE(form().Background());
  EXPECT_EQ(form().lblRun[0]->TextColor(), kWindowText);
}

// ---- Shipped skins

class LoadedSkin : public SkinTarget {
 public:
  SkinSettings skin;
  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    skin.*field = number;
  }
  void SetText(Text SkinSettings::*field, TextView text) override { skin.*field = text; }
};

/// The colours behind a label, from its box in the panel's picture: every third pixel.
std::vector<Color> Behind(const frmMain& form, const Label& label) {
  std::vector<Color> colors;
  const Picture& picture = *form.Background();
  const Resolution own = form.resolution();
  const int right = own.PixelsX(label.Left() + label.Width());
  const int bottom = own.PixelsY(label.Top() + label.Height());
  for (int y = own.PixelsY(label.Top()); y < bottom; y += 3) {
    for (int x = own.PixelsX(label.Left()); x < right; x += 3) {
      const std::uint32_t pixel = picture.At(x, y);
      colors.push_back(Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF));
    }
  }
  return colors;
}

TEST_F(PanelLooks, LabelsOfMissingToolsAreReadableOnEveryShippedSkin) {
  for (const TextView tool : kTools) world.Uninstall(tool);
  world.Start();
  std::set<std::string> skins;
  for (const auto& entry :
       std::filesystem::directory_iterator(SourceFolder() / "resources/skins")) {
    std::ifstream stream(entry.path(), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), {});
    world.files.Put(u"C:\\Skins\\one.qsk", bytes);
    LoadedSkin loaded;
    ASSERT_TRUE(LoadSkinFile(world.files, u"C:\\Skins\\one.qsk", loaded));
    WriteSkin(world.registry, loaded.skin);
    world.desktop.Event([&] { form().SetUI(); });
    for (const auto& label : form().lblRun) {
      if (label->Enabled() || !label->Visible()) continue;
      const std::vector<Color> behind = Behind(form(), *label);
      // Where the middle of a long gradient is behind a label, no colour at all may be readable.
      const double best = std::max(ContrastOf(kBlack, behind), ContrastOf(kWhite, behind));
      EXPECT_GE(ContrastOf(label->TextColor(), behind), std::min(kReadable, best))
          << entry.path().stem() << ' ' << label->index();
      EXPECT_GE(best, entry.path().stem() == "Marl" ? 4.4 : kReadable);
    }
    skins.insert(entry.path().stem().string());
  }
  EXPECT_GE(skins.size(), 8u);
}

// ---- The about box

TEST(AboutLooks, LinksAreReadableWhateverTheSystemsColours) {
  World world;
  MemoryDesktop& desktop = world.desktop;
  desktop.systemColors = {{26, Rgb(0, 102, 204)}};
  frmAbout2006 form({desktop, world.pictures, world.locales, world.strings, [](WindowHandle) {},
                     [](TextView, TextView, TextView, TextView, int) {}});
  form.Load();
  const auto link = [&](std::size_t label) {
    const Color color = form.lblLabel[label]->ForeColor();
    return color < 0 ? desktop.SystemColorValue(color & 0x7FFFFFFF) : color;
  };
  EXPECT_EQ(link(5), Rgb(0, 95, 71)) << "the program's own";
  const struct {
    Color face;
    Color hotLight;
    Color text;
    bool highContrast;
  } schemes[] = {{Rgb(240, 240, 240), Rgb(0, 102, 204), kBlack, false},
                 {Rgb(212, 208, 200), Rgb(0, 0, 128), kBlack, false},
                 {Rgb(32, 32, 32), Rgb(90, 170, 255), kWhite, false},
                 {kBlack, Rgb(255, 255, 0), kWhite, true},
                 {kWhite, Rgb(0, 0, 159), kBlack, true},
                 {Rgb(32, 32, 32), Rgb(60, 60, 60), kWhite, false}};
  for (const auto& scheme : schemes) {
    desktop.highContrast = scheme.highContrast;
    desktop.systemColors = {{15, scheme.face}, {26, scheme.hotLight}, {18, scheme.text}};
    desktop.Event([&] { form.PeerLookChanged(); });
    for (const std::size_t label : {5u, 6u}) {
      EXPECT_GE(ContrastOf(link(label), scheme.face), kReadable);
      if (scheme.highContrast) {
        EXPECT_EQ(link(label), scheme.hotLight);
      }
    }
  }
  form.Unload();
}

}  // namespace
}  // namespace marl
