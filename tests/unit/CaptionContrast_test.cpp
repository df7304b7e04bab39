// Whether captions can be read on the panel: the figures, against the painted panel, and the hint
// in the display settings.

#include "appearance/CaptionContrast.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "platform/Contrast.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

constexpr Color kBlack = Rgb(0, 0, 0);
constexpr Color kWhite = Rgb(255, 255, 255);

SkinSettings Skin(int angle, Color color1, Color color2, int columns = 5) {
  SkinSettings skin;
  skin.Angle = angle;
  skin.Color1 = color1;
  skin.Color2 = color2;
  skin.IconsPerRow = columns;
  return skin;
}

/// The first buttons are shown, the others are not.
Text OrderWith(int shown) {
  std::vector<DisplayPosition> order;
  for (int button = 0; button < kButtonCount; ++button) {
    order.push_back({button, button < shown ? 1 : 0});
  }
  return FormatDisplayIcons(order);
}

class CaptionsOnThePanel : public testing::Test {
 protected:
  CaptionsOnThePanel() { world.Start(); }
  frmMain& form() { return world.main(); }
  /// The weakest contrast with any painted pixel behind a label.
  CaptionContrast Painted(const SkinSettings& skin) {
    WriteSkin(world.registry, skin);
    world.desktop.Event([&] { form().SetUI(); });
    std::vector<Color> grounds;
    for (const auto& label : form().lblRun) {
      if (label->Visible()) AddGrounds(*label, grounds);
    }
    return {ContrastOf(skin.Text1, grounds), ContrastOf(skin.Text2, grounds)};
  }

  SuiteWorld world;

 private:
  void AddGrounds(const Label& label, std::vector<Color>& grounds) {
    const Picture& gradient = *form().Background();
    const Resolution own = form().resolution();
    std::uint32_t last = ~0U;
    for (int y = own.PixelsY(label.Top()); y < own.PixelsY(label.Top() + label.Height()); ++y) {
      for (int x = own.PixelsX(label.Left()); x < own.PixelsX(label.Left() + label.Width()); ++x) {
        const std::uint32_t pixel = gradient.At(x, y);
        if (pixel == last) continue;
        last = pixel;
        grounds.push_back(Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF));
      }
    }
  }
};

TEST_F(CaptionsOnThePanel, FiguresAreThoseOfThePaintedPixels) {
  const std::array<std::array<Color, 2>, 4> gradients = {
      {{kBlack, kWhite},
       {Rgb(182, 203, 197), Rgb(0, 77, 57)},
       {Rgb(255, 0, 0), Rgb(0, 160, 0)},  // darkest in the middle
       {Rgb(40, 40, 40), Rgb(90, 20, 60)}}};
  int turn = 0;
  for (const auto& [color1, color2] : gradients) {
    for (const int angle : {0, 33, 90, 135, 200, 315}) {
      const int shown = std::array{18, 7, 1}[static_cast<std::size_t>(turn % 3)];
      SkinSettings skin = Skin(angle, color1, color2, 3 + turn++ % 4);
      skin.DisplayIcons = OrderWith(shown);
      const CaptionContrast painted = Painted(skin);
      const CaptionContrast computed = ContrastOfCaptions(world.desktop, skin, shown);
      // Two steps of the gradient more or less.
      EXPECT_NEAR(computed.normal / painted.normal, 1, 0.06) << angle << ' ' << shown;
      EXPECT_NEAR(computed.highlighted / painted.highlighted, 1, 0.06) << angle << ' ' << shown;
    }
  }
}

TEST(CaptionContrast, OnlyWhatIsUnderShownLabelsCounts) {
  MemoryDesktop desktop;
  const auto normal = [&](int angle, Color color1, Color color2, int columns, int shown) {
    return ContrastOfCaptions(desktop, Skin(angle, color1, color2, columns), shown).normal;
  };
  // From black on the left to white on the right.
  EXPECT_LT(normal(0, kBlack, kWhite, 5, 18), 1.1);
  EXPECT_GT(normal(0, kBlack, kWhite, 5, 1), 10);
  EXPECT_GT(normal(0, kBlack, kWhite, 5, 1), normal(0, kBlack, kWhite, 5, 2));
  EXPECT_GT(normal(0, kBlack, kWhite, 6, 2), normal(0, kBlack, kWhite, 3, 2));
  EXPECT_GT(normal(180, kWhite, kBlack, 5, 1), 10);
  EXPECT_LT(normal(180, kBlack, kWhite, 5, 1), 1.5);
  const CaptionContrast none = ContrastOfCaptions(desktop, Skin(0, kWhite, kWhite), 0);
  EXPECT_EQ(none.normal, 21);
  EXPECT_EQ(none.highlighted, 21);
}

TEST(CaptionContrast, LargeBoldTextNeedsLess) {
  Font font;
  font.Size = 140000;
  EXPECT_EQ(NeededContrast(font), 4.5);
  font.Bold = true;
  EXPECT_EQ(NeededContrast(font), 3.0);
  font.Size = 139999;
  EXPECT_EQ(NeededContrast(font), 4.5);
}

// So the hint needs no word for the caption of a dead button.
TEST(CaptionContrast, DeadCaptionIsReadableWhereTheNormalOneIs) {
  std::minstd_rand random(20);
  const auto any = [&] { return static_cast<Color>(random() & 0xFFFFFF); };
  int readable = 0;
  for (int turn = 0; turn < 4000; ++turn) {
    const Color text = turn % 2 ? any() : turn % 4 ? kWhite : kBlack;
    // Under one label: up to a third of the way.
    const Color from = any();
    const Color to = Mixed(from, any(), 0.33);
    std::vector<Color> samples, all;
    for (int i = 0; i <= 8; ++i) samples.push_back(Mixed(from, to, i / 8.0));
    for (int i = 0; i <= 64; ++i) all.push_back(Mixed(from, to, i / 64.0));
    for (const double needed : {kDistinct, kReadable}) {
      if (ContrastOf(text, all) < needed) continue;
      ++readable;
      EXPECT_GE(ContrastOf(GreyOn(text, samples), all), needed)
          << std::hex << text << ' ' << from << ' ' << to;
    }
  }
  EXPECT_GT(readable, 500);
}

class ContrastHint : public testing::Test {
 protected:
  ContrastHint() { world.Start(); }
  /// Opens the display settings with a look, and lets `user` work in them.
  template <typename User>
  void Open(const SkinSettings& skin, User user) {
    WriteSkin(world.registry, skin);
    world.desktop.whenModal["frmUI"] = [&](Form& form) {
      static_cast<MemoryPeer*>(form.peer())->listening = true;
      user(static_cast<frmUI&>(form));
    };
    world.Type(u"setgui");
  }
  void Pick(frmUI& form, int index, Color color) {
    world.colorDialog.Choose(color);
    form.cmdSetColor(index).UserClick();
  }
  SuiteWorld world;
};

constexpr TextView kBoth = u"Hard to read: Normal, Highlighted";
constexpr TextView kNormal = u"Hard to read: Normal";
constexpr TextView kHighlighted = u"Hard to read: Highlighted";

TEST_F(ContrastHint, FollowsTheColours) {
  Open({}, [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), kBoth) << "the default look";
    Pick(form, 0, kBlack);
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    Pick(form, 1, kWhite);
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    Pick(form, 4, kBlack);
    EXPECT_EQ(form.lblContrast.Caption(), kBoth) << "the border does not count";
    Pick(form, 1, Rgb(60, 60, 60));
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    form.cmdDefault.UserClick();
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
  });
}

TEST_F(ContrastHint, FollowsTheTexts) {
  Open(Skin(90, kBlack, kBlack), [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    int style = -1;
    const auto edit = [&](std::size_t sample, Color color) {
      world.desktop.whenModal["frmFont"] = [&](Form& opened) {
        auto& font = static_cast<frmFont&>(opened);
        world.colorDialog.Choose(color);
        font.cmdSetColor.UserClick();
        if (style >= 0) font.chkStyle[static_cast<std::size_t>(style)]->UserClick();
        font.cmdDismiss[0]->UserClick();
      };
      form.cmdSample[sample].UserClick();
    };
    edit(0, Rgb(90, 90, 90));
    EXPECT_EQ(form.lblContrast.Caption(), kNormal) << "3.0 to 1";
    edit(1, kBlack);
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    edit(0, kWhite);
    EXPECT_EQ(form.lblContrast.Caption(), kHighlighted);
    edit(1, Rgb(100, 100, 100));
    EXPECT_EQ(form.lblContrast.Caption(), kHighlighted);
    Font large = form.lblSample[1].Font();
    large.Size = 140000;
    form.lblSample[1].SetFont(large);
    edit(1, Rgb(100, 100, 100));
    EXPECT_EQ(form.lblContrast.Caption(), u"") << "large and bold";
    style = 0;
    edit(1, Rgb(100, 100, 100));
    EXPECT_EQ(form.lblContrast.Caption(), kHighlighted) << "large, but not bold";
  });
}

TEST_F(ContrastHint, FollowsAngleColumnsAndTicks) {
  SkinSettings skin = Skin(0, kBlack, kWhite, 6);
  skin.Text2 = kWhite;
  Open(skin, [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    for (int row = 2; row < kButtonCount; ++row) form.lstIcons.UserCheck(row);
    EXPECT_EQ(form.lblContrast.Caption(), u"") << "only the dark end is under labels";
    form.cmbIconsPerRow.UserSelectRow(0);
    EXPECT_EQ(form.lblContrast.Caption(), kBoth) << "two of three columns";
    form.lstIcons.UserCheck(1);
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    form.hsbAngle.UserScroll(180);
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    form.lstIcons.UserCheck(0);
    EXPECT_EQ(form.lblContrast.Caption(), u"") << "without a label";
  });
}

TEST_F(ContrastHint, FollowsALoadedSkin) {
  world.files.Put(u"C:\\Suite\\Skins\\Mine.qsk",
                  R"(<marlskin><parameter name="colour1" value="0"/>)"
                  R"(<parameter name="colour2" value="0"/></marlskin>)");
  world.fileDialogs.Choose(u"C:\\Suite\\Skins\\Mine.qsk");
  Open({}, [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    form.cmdLoad.UserClick();
    EXPECT_EQ(form.shpColor(0).FillColor(), kBlack);
    EXPECT_EQ(form.lblContrast.Caption(), u"");
  });
}

TEST_F(ContrastHint, KnowsTheSystemsColours) {
  world.desktop.systemColors = {{5, kWhite}, {8, kBlack}};
  Open(Skin(90, SystemColor(5), SystemColor(5)), [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), kBoth);
    form.lblSample[0].SetForeColor(SystemColor(8));
    form.hsbAngle.UserScroll(1);
    EXPECT_EQ(form.lblContrast.Caption(), kHighlighted);
  });
}

TEST_F(ContrastHint, IsReadToThoseWhoDoNotSeeItOnceItChanges) {
  Open({}, [&](frmUI& form) {
    auto& announced = static_cast<MemoryPeer*>(form.peer())->announced;
    const auto alerts = [&] {
      return std::count_if(announced.begin(), announced.end(), [&](const auto& each) {
        return each.what == Announcement::kAlert && each.control == &form.lblContrast;
      });
    };
    form.hsbAngle.UserScroll(100);
    EXPECT_EQ(alerts(), 0) << "it is the same";
    Pick(form, 0, kBlack);
    EXPECT_EQ(alerts(), 1);
    form.cmdDefault.UserClick();
    EXPECT_EQ(alerts(), 2) << "not for the steps on the way";
    form.lstIcons.SetListIndex(3);
    form.cmdMove[0].UserClick();
    form.cmdMove[1].UserClick();
    EXPECT_EQ(alerts(), 2);
    const std::vector<AccessiblePart> parts = form.AccessibleParts();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].role, AccessibleRole::kAlert);
    EXPECT_EQ(parts[0].name, kBoth);
    EXPECT_FALSE(parts[0].pressable);
  });
}

TEST_F(ContrastHint, SaysNothingOfTheStepsOfALoadedSkin) {
  // After its angle alone the labels would be on the bright end.
  world.files.Put(u"C:\\Suite\\Skins\\Mine.qsk",
                  R"(<marlskin><parameter name="angle" value="180"/>)"
                  R"(<parameter name="colour1" value="0"/>)"
                  R"(<parameter name="colour2" value="0"/></marlskin>)");
  world.fileDialogs.Choose(u"C:\\Suite\\Skins\\Mine.qsk");
  SkinSettings skin = Skin(0, kBlack, kWhite, 6);
  skin.Text2 = kWhite;
  skin.DisplayIcons = u"001|011|020|030|040|050|060|070|080|090|100|110|120|130|140|150|160|170";
  Open(skin, [&](frmUI& form) {
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    auto& announced = static_cast<MemoryPeer*>(form.peer())->announced;
    announced.clear();
    form.cmdLoad.UserClick();
    EXPECT_EQ(form.hsbAngle.Value(), 180);
    EXPECT_EQ(form.lblContrast.Caption(), u"");
    EXPECT_TRUE(std::none_of(announced.begin(), announced.end(),
                             [](const auto& each) { return each.what == Announcement::kAlert; }));
  });
}

TEST_F(ContrastHint, ChangesNothingElse) {
  Open({}, [&](frmUI& form) {
    const Box place = form.lblContrast.bounds();
    const Size size = {form.Width(), form.Height()};
    Pick(form, 0, kBlack);
    EXPECT_EQ(form.lblContrast.bounds(), place);
    EXPECT_EQ(form.Width(), size.width);
    EXPECT_EQ(form.Height(), size.height);
    form.cmdDismiss[0].UserClick();
  });
  SkinSettings stored = ReadSkin(world.registry, 5);
  EXPECT_EQ(stored.Color1, kBlack) << "a look that is hard to read can be chosen, too";
}

}  // namespace
}  // namespace marl
