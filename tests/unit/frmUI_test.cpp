#include "appearance/frmUI.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "appearance/FontSpec.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryFontList.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryStrings.h"
#include "tests/unit/SuiteWorld.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

constexpr TextView kSkinPath = u"C:\\Suite\\Skins\\Mine.qsk";
constexpr TextView kOrder =
    u"171|000|011|021|031|041|051|061|071|081|090|101|111|121|131|141|151|161";

/// A skin that differs from the default in every parameter.
SkinSettings Different() {
  SkinSettings skin;
  skin.Angle = 135;
  skin.Color1 = 0x102030;
  skin.Color2 = 0x405060;
  skin.Border1 = 0x708090;
  skin.Border2 = 0x0A0B0C;
  skin.BorderWidth = 2;
  skin.Text1 = 0x112233;
  skin.Text2 = 0x445566;
  skin.Icons = 2;
  skin.TwoStateOffset = 18;
  skin.IconsPerRow = 6;
  skin.Font1 = u"Tahoma|9|i";
  skin.Font2 = u"Courier New|11.5|bu";
  skin.DisplayIcons = kOrder;
  return skin;
}

/// What the controls show, as a skin.
SkinSettings Shown(const frmUI& form) {
  SkinSettings skin;
  skin.Angle = form.hsbAngle.Value();
  skin.Color1 = form.shpColor(0).FillColor();
  skin.Color2 = form.shpColor(1).FillColor();
  skin.Border1 = form.shpColor(4).FillColor();
  skin.Border2 = form.shpColor(5).FillColor();
  skin.BorderWidth = form.chkThickBorder.Value() == 1 ? 2 : 1;
  skin.Text1 = form.lblSample[0].ForeColor();
  skin.Text2 = form.lblSample[1].ForeColor();
  skin.Icons = form.cmbIcons.ListIndex();
  skin.TwoStateOffset = form.chkUseTwoState.Value() == 1 ? 0 : 18;
  skin.IconsPerRow = form.cmbIconsPerRow.ListIndex() + 3;
  skin.Font1 = GetFontSpec(form.lblSample[0]);
  skin.Font2 = GetFontSpec(form.lblSample[1]);
  skin.DisplayIcons = form.GetDisplayIcons();
  return skin;
}

/// The sample for the dialog's values.
std::vector<std::uint32_t> ExpectedSample(Desktop& desktop, const frmUI& form) {
  clsGradient gradient(desktop);
  gradient.SetAngle(static_cast<float>(form.hsbAngle.Value()));
  gradient.SetColor1(form.shpColor(0).FillColor());
  gradient.SetColor2(form.shpColor(1).FillColor());
  GradientPicture target(form.picContainer.PixelSize());
  gradient.Draw(target);
  return target.picture().pixels;
}

void DropRows(frmUI& form, int from, const std::vector<int>& over) {
  form.lstIcons.UserMouseDown(from);
  for (const int row : over) form.lstIcons.UserMouseMove(row);
  form.lstIcons.UserMouseUp();
}

/// Button indexes of the rows, from the top.
std::vector<int> Buttons(const frmUI& form) {
  std::vector<int> buttons;
  for (int row = 0; row < form.lstIcons.ListCount(); ++row) {
    buttons.push_back(form.lstIcons.ItemData(row));
  }
  return buttons;
}

std::vector<int> InOrder() {
  std::vector<int> buttons;
  for (int button = 0; button < kButtonCount; ++button) buttons.push_back(button);
  return buttons;
}

class DisplaySettings : public testing::Test {
 protected:
  DisplaySettings() {
    for (int i = 0; i < kButtonCount; ++i) {
      captions[static_cast<std::size_t>(i)] = strings.Get(IDS_BUTTON_ANALYSE + i);
    }
    files.PutFolder(u"C:\\Suite");
  }
  frmUI::Ports ports() {
    return {desktop,  registry,
            files,    fileDialogs,
            colors,   fontList,
            pictures, locale,
            strings,  [this](WindowHandle window) {
              icons.push_back(window); }};
  }
  /// Opens the dialog and lets `user` work in it.
  template <typename User>
  void Open(User user) {
    desktop.whenModal["frmUI"] = [&](Form& form) { user(static_cast<frmUI&>(form)); };
    frmUI form(ports(), {screen, captions, u"C:\\Suite"});
    form.ShowModal(nullptr);
    cancelled = form.Cancelled;
    stayedLoaded = form.loaded();
    form.Unload();
  }
  void Store(const SkinSettings& skin) {
    WriteSkin(registry, skin);
    registry.written.clear();
  }
  /// Stores a single value.
  void Plant(const char* name, std::int32_t number) {
    registry.Plant(kCurrentUser, "Software\\Oru\\Marl\\GUI", name, kRegDword, DwordBytes(number));
  }
  void Plant(const char* name, const char* text) {
    registry.Plant(kCurrentUser, "Software\\Oru\\Marl\\GUI", name, kRegSz, NarrowText(text) + '\0');
  }
  void PutSkin(std::string_view parameters) {
    files.Put(kSkinPath, "<marlskin>" + std::string(parameters) + "</marlskin>");
    fileDialogs.Choose(kSkinPath);
  }

  MemoryDesktop desktop;
  WatchedRegistry registry;
  MemoryFileSystem files;
  MemoryFileDialogs fileDialogs;
  MemoryColorDialog colors;
  MemoryFontList fontList;
  MemoryPictures pictures;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  SkinSettings screen;
  std::array<Text, kButtonCount> captions;
  std::vector<WindowHandle> icons;
  bool cancelled = false;
  bool stayedLoaded = false;
};

// ---- Loading

TEST_F(DisplaySettings, CaptionsComeFromTheTable) {
  Open([&](frmUI& form) {
    const std::vector<std::pair<const Control*, TextView>> expected = {
        {&form.fraGradient, u"Gradient"},
        {&form.cmdSetColor(0), u"&Set gradient colour 1"},
        {&form.cmdSetColor(1), u"Set g&radient colour 2"},
        {&form.lblAngle, u"Angle"},
        {&form.fraText, u"Text"},
        {&form.lblSample[0], u"Normal"},
        {&form.lblSample[1], u"Highlighted"},
        {&form.fraBorder, u"Border"},
        {&form.cmdSetColor(4), u"Set &border colour 1"},
        {&form.cmdSetColor(5), u"Set b&order colour 2"},
        {&form.chkThickBorder, u"Display &wide border"},
        {&form.fraIcons, u""},
        {&form.cmdMove[0], u"&Up"},
        {&form.cmdMove[1], u"&Down"},
        {&form.chkUseTwoState, u"&Use two-state icons"},
        {&form.lblIconsPerRow, u"Icons per row"},
        {&form.cmdLoad, u"&Load..."},
        {&form.cmdSave, u"&Save..."},
        {&form.cmdDefault, u"Default"},
        {&form.cmdDismiss[0], u"OK"},
        {&form.cmdDismiss[1], u"Cancel"},
    };
    for (const auto& [control, caption] : expected) {
      EXPECT_EQ(control->Caption(), caption) << control->name();
    }
    EXPECT_EQ(form.Caption(), u"Display settings");
  });
}

TEST_F(DisplaySettings, ListsOfferTheFourSetsAndThreeToSixColumns) {
  Open([&](frmUI& form) {
    const auto rows = [](const ItemList& list) {
      std::vector<Text> texts;
      for (int row = 0; row < list.ListCount(); ++row) texts.push_back(list.List(row));
      return texts;
    };
    EXPECT_EQ(rows(form.cmbIcons),
              (std::vector<Text>{u"White/Gold Application Icons", u"Green/Gold Bevelled Icons",
                                 u"Windows XP Style Icons", u"Bonus Icons"}));
    EXPECT_EQ(rows(form.cmbIconsPerRow), (std::vector<Text>{u"3", u"4", u"5", u"6"}));
    EXPECT_EQ(rows(form.lstIcons), std::vector<Text>(captions.begin(), captions.end()));
  });
}

TEST_F(DisplaySettings, TheFormGetsItsIconOnce) {
  Open([&](frmUI& form) { EXPECT_EQ(icons, std::vector<WindowHandle>{form.hWnd()}); });
}

TEST_F(DisplaySettings, TheBarRunsFrom0To359InStepsOf30) {
  Open([&](frmUI& form) {
    EXPECT_EQ(form.hsbAngle.Min, 0);
    EXPECT_EQ(form.hsbAngle.Max, 359);
    EXPECT_EQ(form.hsbAngle.LargeChange, 30);
  });
}

TEST_F(DisplaySettings, AMissingKeyShowsThePanelsLook) {
  screen = Different();
  Open([&](frmUI& form) {
    EXPECT_EQ(Shown(form), Different());
    EXPECT_EQ(form.lblAngleValue.Caption(), u"135");
  });
  EXPECT_TRUE(registry.written.empty());
}

TEST_F(DisplaySettings, StoredValuesAreShown) {
  Store(Different());
  Open([&](frmUI& form) {
    EXPECT_EQ(Shown(form), Different());
    EXPECT_EQ(form.lblAngleValue.Caption(), u"135");
    EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form));
  });
}

TEST_F(DisplaySettings, AMissingValueComesFromThePanelsLook) {
  screen = Different();
  Plant("Angle", 7);
  Plant("Font1", "Arial|20|");
  SkinSettings expected = Different();
  expected.Angle = 7;
  expected.Font1 = u"Arial|20|";
  Open([&](frmUI& form) { EXPECT_EQ(Shown(form), expected); });
}

struct Mapping {
  const char* value;
  std::int32_t stored;
  int control;
};

class DisplaySettingsMapping : public DisplaySettings,
                               public testing::WithParamInterface<Mapping> {};

TEST_P(DisplaySettingsMapping, FromStoredNumberToControl) {
  const auto& [value, stored, control] = GetParam();
  Plant(value, stored);
  Open([&](frmUI& form) {
    const std::map<std::string, int> shown = {
        {"BorderWidth", form.chkThickBorder.Value()},
        {"TwoState", form.chkUseTwoState.Value()},
        {"IconsPerRow", form.cmbIconsPerRow.ListIndex()},
        {"Icons", form.cmbIcons.ListIndex()},
        {"Angle", form.hsbAngle.Value()},
    };
    EXPECT_EQ(shown.at(value), control);
  });
}

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Numbers, DisplaySettingsMapping,
    testing::Values(
        Mapping{"BorderWidth", 1, 0}, Mapping{"BorderWidth", 2, 1}, Mapping{"BorderWidth", 0, 1},
        Mapping{"BorderWidth", -5, 1}, Mapping{"TwoState", 0, 1}, Mapping{"TwoState", 18, 0},
        Mapping{"TwoState", 1, 0}, Mapping{"TwoState", kLow, 0}, Mapping{"IconsPerRow", 3, 0},
        Mapping{"IconsPerRow", 6, 3}, Mapping{"Icons", 0, 0}, Mapping{"Icons", 3, 3},
        Mapping{"Icons", 7, 1}, Mapping{"Icons", -1, 1}, Mapping{"Angle", 0, 0},
        Mapping{"Angle", 359, 359},
        // If a control refuses a value, the panel's present one stays: 90 degrees, five columns.
        Mapping{"Angle", 360, 90}, Mapping{"Angle", -1, 90}, Mapping{"Angle", kLow, 90},
        Mapping{"IconsPerRow", 2, 2}, Mapping{"IconsPerRow", 7, 2}, Mapping{"IconsPerRow", kLow, 2},
        Mapping{"IconsPerRow", kHigh, 2}, Mapping{"IconsPerRow", 0, 2}));

TEST_F(DisplaySettings, AStoredOrderThatThePanelCannotUseLeavesThePanelsOrder) {
  screen = Different();
  for (const char* const order : {"", "001", "001|011", "rubbish", "|||||||||||||||||"}) {
    Plant("DisplayIcons", order);
    Open([&](frmUI& form) { EXPECT_EQ(form.GetDisplayIcons(), kOrder) << order; });
  }
}

TEST_F(DisplaySettings, EachOpeningStartsFromTheStoredValues) {
  Store(Different());
  frmUI form(ports(), {screen, captions, u"C:\\Suite"});
  desktop.whenModal["frmUI"] = [&](Form&) {
    form.cmdDefault.UserClick();
    form.cmdDismiss[1].UserClick();
  };
  form.ShowModal(nullptr);
  EXPECT_TRUE(form.Cancelled);
  form.Unload();
  desktop.whenModal["frmUI"] = [&](Form&) {
    EXPECT_FALSE(form.Cancelled);
    EXPECT_EQ(Shown(form), Different());
    EXPECT_EQ(form.cmbIcons.ListCount(), 4);
    EXPECT_EQ(form.cmbIconsPerRow.ListCount(), 4);
    EXPECT_EQ(form.lstIcons.ListCount(), 18);
  };
  form.ShowModal(nullptr);
}

// ---- The display order's text

TEST_F(DisplaySettings, OrderGivesRowsWithCaptionIndexAndTick) {
  Open([&](frmUI& form) {
    form.SetDisplayIcons(kOrder);
    EXPECT_EQ(form.lstIcons.List(0), u"Exit");
    EXPECT_EQ(form.lstIcons.ItemData(0), 17);
    EXPECT_TRUE(form.lstIcons.Selected(0));
    EXPECT_EQ(form.lstIcons.List(1), u"Analyse");
    EXPECT_EQ(form.lstIcons.ItemData(1), 0);
    EXPECT_FALSE(form.lstIcons.Selected(1));
    EXPECT_EQ(form.GetDisplayIcons(), kOrder);
  });
}

TEST_F(DisplaySettings, TheOrdersTextIsAlwaysInItsNormalForm) {
  Open([&](frmUI& form) {
    // Blanks, flags of any size and sign, one-digit buttons.
    form.SetDisplayIcons(
        u"17 1|00-1|0100|02 0 |039999999|04+0|05.4|06.6|071|081|091|101|111|121|131|141|151|161");
    EXPECT_EQ(form.GetDisplayIcons(),
              u"171|001|010|020|031|040|050|061|071|081|091|101|111|121|131|141|151|161");
  });
}

TEST_F(DisplaySettings, AButtonMayOccurTwiceAndMoreThan18RowsAreKept) {
  const Text order = Text(kOrder) + u"|051|050";
  Open([&](frmUI& form) {
    form.SetDisplayIcons(order);
    EXPECT_EQ(form.lstIcons.ListCount(), 20);
    EXPECT_EQ(form.GetDisplayIcons(), order);
  });
}

TEST_F(DisplaySettings, AnOrderOfAThousandEntriesIsTakenAndALongerOneRefused) {
  Text order = u"051";
  for (int i = 1; i < 1000; ++i) order += u"|051";
  Open([&](frmUI& form) {
    form.SetDisplayIcons(order);
    EXPECT_EQ(form.lstIcons.ListCount(), 1000);
    form.SetDisplayIcons(kOrder);
    EXPECT_THROW(form.SetDisplayIcons(order + u"|051"), RuntimeError);
    EXPECT_EQ(form.GetDisplayIcons(), kOrder);
  });
}

class DisplaySettingsHostileOrder : public DisplaySettings,
                                    public testing::WithParamInterface<TextView> {};

TEST_P(DisplaySettingsHostileOrder, LeavesTheListAsItWas) {
  Open([&](frmUI& form) {
    form.SetDisplayIcons(kOrder);
    form.lstIcons.UserSelectRow(4);
    EXPECT_THROW(form.SetDisplayIcons(GetParam()), RuntimeError);
    EXPECT_EQ(form.GetDisplayIcons(), kOrder);
    EXPECT_EQ(form.lstIcons.ListIndex(), 4);
  });
}

#define SEVENTEEN u"001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161"
INSTANTIATE_TEST_SUITE_P(Texts, DisplaySettingsHostileOrder,
                         testing::Values(u"", u"|", u"001", u"001|011", SEVENTEEN, SEVENTEEN u"|",
                                         SEVENTEEN u"|17", SEVENTEEN u"|181", SEVENTEEN u"|991",
                                         SEVENTEEN u"|-11", SEVENTEEN u"|ab1", SEVENTEEN u"|17x",
                                         SEVENTEEN u"|17999999999999", SEVENTEEN u"|171|",
                                         SEVENTEEN u"|171|x", SEVENTEEN u"|&H1",
                                         u"|||||||||||||||||", u"0,0,1|0,1,1"));

// ---- What changes live

TEST_F(DisplaySettings, TheAngleRepaintsTheSampleAtOnce) {
  Open([&](frmUI& form) {
    for (const int angle : {0, 1, 45, 200, 359}) {
      const PicturePtr before = form.picContainer.Picture();
      form.hsbAngle.UserScroll(angle);
      EXPECT_EQ(form.lblAngleValue.Caption(), NumberText(angle));
      EXPECT_NE(form.picContainer.Picture(), before);
      EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form)) << angle;
    }
  });
}

TEST_F(DisplaySettings, AGradientColourRepaintsTheSampleAndABevelColourDoesNot) {
  Open([&](frmUI& form) {
    for (const int index : {0, 1, 4, 5}) {
      const PicturePtr before = form.picContainer.Picture();
      colors.Choose(0x123456 + index);
      form.cmdSetColor(index).UserClick();
      EXPECT_EQ(form.shpColor(index).FillColor(), 0x123456 + index);
      EXPECT_EQ(form.picContainer.Picture() != before, index < 2) << index;
      EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form)) << index;
    }
  });
}

TEST_F(DisplaySettings, TheColourDialogStartsFromTheSwatchFullyOpen) {
  screen = Different();
  Open([&](frmUI& form) {
    for (const int index : {0, 1, 4, 5}) form.cmdSetColor(index).UserClick();
    ASSERT_EQ(colors.shown.size(), 4u);
    const Color swatches[] = {0x102030, 0x405060, 0x708090, 0x0A0B0C};
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(colors.shown[i].owner, &form);
      EXPECT_EQ(colors.shown[i].flags, 3);
      EXPECT_EQ(colors.shown[i].color, swatches[i]);
    }
  });
}

TEST_F(DisplaySettings, ACancelledColourDialogChangesNothing) {
  Open([&](frmUI& form) {
    const SkinSettings before = Shown(form);
    const PicturePtr sample = form.picContainer.Picture();
    for (const int index : {0, 1, 4, 5}) form.cmdSetColor(index).UserClick();
    EXPECT_EQ(Shown(form), before);
    EXPECT_EQ(form.picContainer.Picture(), sample);
  });
}

TEST_F(DisplaySettings, AClickOnASampleEditsItsFont) {
  for (const bool byButton : {false, true}) {
    Open([&](frmUI& form) {
      form.hsbAngle.UserScroll(17);
      for (const int index : {0, 1}) {
        const auto i = static_cast<std::size_t>(index);
        desktop.whenModal["frmFont"] = [&](Form& opened) {
          auto& font = static_cast<frmFont&>(opened);
          EXPECT_EQ(font.SampleIndex, index);
          EXPECT_EQ(GetFontSpec(font.lblSample), index == 0 ? u"Arial|10|b" : u"Arial|10|bu");
          clsGradient gradient(desktop);
          gradient.SetAngle(17);
          gradient.SetColor1(SkinSettings().Color1);
          gradient.SetColor2(SkinSettings().Color2);
          GradientPicture target(font.picGrad.PixelSize());
          gradient.Draw(target);
          EXPECT_EQ(font.picGrad.Picture()->pixels, target.picture().pixels) << "not confirmed yet";
          colors.Choose(0x010203 + index);
          font.cmdSetColor.UserClick();
          font.chkStyle[1]->UserClick();
          font.cmdDismiss[0]->UserClick();
        };
        (byButton ? static_cast<Control&>(form.cmdSample[i]) : form.lblSample[i]).UserClick();
        EXPECT_EQ(form.lblSample[i].ForeColor(), 0x010203 + index);
      }
      EXPECT_EQ(GetFontSpec(form.lblSample[0]), u"Arial|10|bi");
      EXPECT_EQ(GetFontSpec(form.lblSample[1]), u"Arial|10|biu");
      form.cmdDismiss[1].UserClick();
    });
  }
  EXPECT_EQ(desktop.modal, (std::vector<std::string>{"frmUI", "frmFont", "frmFont", "frmUI",
                                                     "frmFont", "frmFont"}));
}

TEST_F(DisplaySettings, ACancelledFontDialogChangesNothing) {
  Open([&](frmUI& form) {
    desktop.whenModal["frmFont"] = [&](Form& opened) {
      auto& font = static_cast<frmFont&>(opened);
      font.chkStyle[0]->UserClick();
      font.cmdDismiss[1]->UserClick();
    };
    form.lblSample[0].UserClick();
    EXPECT_EQ(Shown(form), SkinSettings());
  });
}

TEST_F(DisplaySettings, SizesAreReadAndWrittenAsTheUserWritesThem) {
  locale.threadLocale = 0x407;
  screen.Font1 = u"Arial|8,25|";
  fileDialogs.Choose(kSkinPath);
  Open([&](frmUI& form) {
    EXPECT_EQ(form.lblSample[0].Font().Size, 82500);
    form.cmdSave.UserClick();
    form.cmdDefault.UserClick();
    form.cmdLoad.UserClick();
    EXPECT_EQ(form.lblSample[0].Font().Size, 82500);
    form.cmdDismiss[0].UserClick();
  });
  EXPECT_EQ(ReadSkinValues(registry, {}).Font1, u"Arial|8,25|");
}

TEST_F(DisplaySettings, TheSamplePicturesFollowSetAndStates) {
  Open([&](frmUI& form) {
    std::set<const Picture*> normal;
    for (const int set : {1, 2, 3, 0}) {
      form.cmbIcons.UserSelectRow(set);
      form.chkUseTwoState.SetValue(1);
      EXPECT_NE(form.imgSample[0].Picture(), form.imgSample[1].Picture());
      normal.insert(form.imgSample[0].Picture().get());
      form.chkUseTwoState.SetValue(0);
      EXPECT_EQ(form.imgSample[0].Picture(), form.imgSample[1].Picture()) << "always highlighted";
      ASSERT_TRUE(form.imgSample[0].Picture());
      EXPECT_EQ(form.imgSample[0].Picture()->width, 48);
    }
  });
}

TEST_F(DisplaySettings, WithoutPicturesTheSampleHasNone) {
  for (int id = MARL_PICTURE_SET0_48; id <= MARL_PICTURE_SET3_96; ++id) pictures.missing.insert(id);
  Open([&](frmUI& form) {
    EXPECT_FALSE(form.imgSample[0].Picture());
    EXPECT_TRUE(form.picContainer.Picture());
  });
}

TEST_F(DisplaySettings, DefaultSetsEveryParameter) {
  Store(Different());
  Open([&](frmUI& form) {
    form.lstIcons.UserSelectRow(3);
    form.cmdDefault.UserClick();
    EXPECT_EQ(Shown(form), SkinSettings());
    EXPECT_EQ(form.hsbAngle.Value(), 90);
    EXPECT_EQ(form.lblAngleValue.Caption(), u"90");
    EXPECT_EQ(form.chkThickBorder.Value(), 0);
    EXPECT_EQ(form.cmbIcons.ListIndex(), 0);
    EXPECT_EQ(form.chkUseTwoState.Value(), 1);
    EXPECT_EQ(form.cmbIconsPerRow.ListIndex(), 2);
    EXPECT_EQ(GetFontSpec(form.lblSample[0]), u"Arial|10|b");
    EXPECT_EQ(GetFontSpec(form.lblSample[1]), u"Arial|10|bu");
    EXPECT_EQ(Buttons(form), InOrder());
    EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form));
  });
  EXPECT_TRUE(registry.written.empty());
}

// ---- The order of the buttons

TEST_F(DisplaySettings, UpMovesTheRowWithItsTickAndTheHighlightFollows) {
  Open([&](frmUI& form) {
    form.lstIcons.UserCheck(3);
    form.lstIcons.UserSelectRow(3);
    form.cmdMove[0].UserClick();
    EXPECT_EQ(form.GetDisplayIcons(),
              u"001|011|030|021|041|051|061|071|081|091|101|111|121|131|141|151|161|171");
    EXPECT_EQ(form.lstIcons.List(2), captions[3]);
    EXPECT_EQ(form.lstIcons.ListIndex(), 2);
    form.cmdMove[0].UserClick();
    form.cmdMove[0].UserClick();
    EXPECT_EQ(form.lstIcons.ItemData(0), 3);
    EXPECT_EQ(form.lstIcons.ListIndex(), 0);
  });
}

TEST_F(DisplaySettings, DownMovesTheRowWithItsTickAndTheHighlightDoesNotFollow) {
  Open([&](frmUI& form) {
    form.lstIcons.UserCheck(3);
    form.lstIcons.UserSelectRow(3);
    form.cmdMove[1].UserClick();
    EXPECT_EQ(form.GetDisplayIcons(),
              u"001|011|021|041|030|051|061|071|081|091|101|111|121|131|141|151|161|171");
    EXPECT_EQ(form.lstIcons.List(4), captions[3]);
    EXPECT_EQ(form.lstIcons.ListIndex(), -1) << "the row that was selected has been removed";
    form.cmdMove[1].UserClick();
    EXPECT_EQ(form.lstIcons.ItemData(4), 3) << "nothing is selected";
  });
}

TEST_F(DisplaySettings, DownTakesTheLastButOneToTheEnd) {
  Open([&](frmUI& form) {
    form.lstIcons.UserSelectRow(16);
    form.cmdMove[1].UserClick();
    EXPECT_EQ(form.lstIcons.ItemData(16), 17);
    EXPECT_EQ(form.lstIcons.ItemData(17), 16);
    EXPECT_EQ(form.lstIcons.ListCount(), 18);
  });
}

TEST_F(DisplaySettings, UpOnTheFirstRowAndDownOnTheLastDoNothing) {
  Open([&](frmUI& form) {
    form.lstIcons.UserSelectRow(0);
    form.cmdMove[0].UserClick();
    EXPECT_EQ(Buttons(form), InOrder());
    EXPECT_EQ(form.lstIcons.ListIndex(), 0);
    form.lstIcons.UserSelectRow(17);
    form.cmdMove[1].UserClick();
    EXPECT_EQ(Buttons(form), InOrder());
    EXPECT_EQ(form.lstIcons.ListIndex(), 17);
  });
}

TEST_F(DisplaySettings, UpAndDownWithoutASelectedRowDoNothing) {
  Open([&](frmUI& form) {
    EXPECT_EQ(form.lstIcons.ListIndex(), -1);
    form.cmdMove[0].UserClick();
    form.cmdMove[1].UserClick();
    EXPECT_EQ(Buttons(form), InOrder());
  });
}

/// `from` moved to `to`.
std::vector<int> Moved(int from, int to) {
  std::vector<int> buttons = InOrder();
  buttons.erase(buttons.begin() + from);
  buttons.insert(buttons.begin() + to, from);
  return buttons;
}

TEST_F(DisplaySettings, ADragTakesTheRowAlongRowByRow) {
  Open([&](frmUI& form) {
    form.lstIcons.UserCheck(2);
    DropRows(form, 2, {3, 4, 5, 6});
    EXPECT_EQ(Buttons(form), Moved(2, 6));
    EXPECT_EQ(form.lstIcons.ListIndex(), 6);
    EXPECT_FALSE(form.lstIcons.Selected(6)) << "its tick moves with it";
    EXPECT_TRUE(form.lstIcons.Selected(2));
    EXPECT_EQ(form.lstIcons.List(6), captions[2]);
    DropRows(form, 6, {5, 4, 3, 2});
    EXPECT_EQ(Buttons(form), InOrder());
    EXPECT_FALSE(form.lstIcons.Selected(2));
  });
}

TEST_F(DisplaySettings, ADragOverSeveralRowsAtOnceGoesInBothDirections) {
  Open([&](frmUI& form) {
    for (int from = 0; from < kButtonCount; ++from) {
      for (int to = 0; to < kButtonCount; ++to) {
        form.SetDisplayIcons(SkinSettings().DisplayIcons);
        DropRows(form, from, {to});
        ASSERT_EQ(Buttons(form), Moved(from, to)) << from << " to " << to;
        ASSERT_EQ(form.lstIcons.ListIndex(), to);
        ASSERT_EQ(form.lstIcons.ListCount(), 18);
      }
    }
  });
}

TEST_F(DisplaySettings, ADragForthAndBackChangesNothing) {
  Open([&](frmUI& form) {
    DropRows(form, 5, {9, 17, 0, 3, 5});
    EXPECT_EQ(Buttons(form), InOrder());
  });
}

TEST_F(DisplaySettings, AMoveWithoutTheButtonDragsNothing) {
  Open([&](frmUI& form) {
    form.lstIcons.UserMouseMove(4);
    DropRows(form, 2, {2});
    form.lstIcons.UserMouseMove(9);
    // The keyboard has changed the selection; the mouse only moves over the list.
    form.lstIcons.UserSelectRow(12);
    form.lstIcons.UserMouseMove(3);
    EXPECT_EQ(Buttons(form), InOrder());
  });
}

TEST_F(DisplaySettings, ADragFromBelowTheRowsWithoutASelectionTakesNothing) {
  Open([&](frmUI& form) {
    DropRows(form, -1, {4, 5});
    EXPECT_EQ(Buttons(form), Moved(4, 5)) << "the first row that it meets is taken hold of";
    EXPECT_EQ(form.lstIcons.ListCount(), 18);
    EXPECT_TRUE(desktop.messages.empty());
  });
}

// ---- Skin files

TEST_F(DisplaySettings, TheSkinDialogsHaveTitleFilterAndFolder) {
  Open([&](frmUI& form) {
    form.cmdLoad.UserClick();
    form.cmdSave.UserClick();
    ASSERT_EQ(fileDialogs.shown.size(), 2u);
    for (const auto& shown : fileDialogs.shown) {
      EXPECT_EQ(shown.owner, &form);
      EXPECT_EQ(shown.settings.Filter, u"Marl skins|*.qsk|All files (*.*)|*.*");
      EXPECT_EQ(shown.settings.FileName, u"");
      EXPECT_EQ(shown.settings.Folder, u"C:\\Suite\\Skins");
    }
    EXPECT_FALSE(fileDialogs.shown[0].save);
    EXPECT_EQ(fileDialogs.shown[0].settings.Flags, 0x1004);
    EXPECT_TRUE(fileDialogs.shown[1].save);
    EXPECT_EQ(fileDialogs.shown[1].settings.Flags, 2);
  });
}

TEST_F(DisplaySettings, TheSkinsFolderIsMadeWhenItIsMissing) {
  for (const bool save : {false, true}) {
    Open([&](frmUI& form) {
      files.Erase(u"C:\\Suite\\Skins");
      (save ? form.cmdSave : form.cmdLoad).UserClick();
      EXPECT_TRUE(files.FolderExists(u"C:\\Suite\\Skins"));
    });
  }
}

TEST_F(DisplaySettings, WithoutASkinsFolderThePlatformChoosesOne) {
  files.FailNext(FileAction::kMakeFolder, kAccessDenied);
  Open([&](frmUI& form) {
    form.cmdLoad.UserClick();
    ASSERT_EQ(fileDialogs.shown.size(), 1u);
    EXPECT_EQ(fileDialogs.shown[0].settings.Folder, u"");
  });
}

TEST_F(DisplaySettings, ACancelledSkinDialogChangesNothing) {
  Store(Different());
  for (const auto result : {FileDialogResult::kCancelled, FileDialogResult::kFailed}) {
    fileDialogs.whenShown = [&](Text& path) {
      path = kSkinPath;
      return result;
    };
    PutSkin("<parameter name=\"angle\" value=\"1\"/>");
    fileDialogs.whenShown = [&](Text&) { return result; };
    Open([&](frmUI& form) {
      const PicturePtr sample = form.picContainer.Picture();
      form.cmdLoad.UserClick();
      form.cmdSave.UserClick();
      EXPECT_EQ(Shown(form), Different());
      EXPECT_EQ(form.picContainer.Picture(), sample);
    });
    EXPECT_EQ(files.Files(), std::vector<Text>{Text(kSkinPath)});
  }
}

TEST_F(DisplaySettings, SavingWritesOneLinePerParameter) {
  Store(Different());
  fileDialogs.Choose(kSkinPath);
  Open([&](frmUI& form) { form.cmdSave.UserClick(); });
  const std::string expected =
      "<?xml version=\"1.0\"?>\r\n"
      "<marlskin>\r\n"
      " <parameter name=\"colour1\" value=\"1056816\"/>\r\n"
      " <parameter name=\"colour2\" value=\"4214880\"/>\r\n"
      " <parameter name=\"angle\" value=\"135\"/>\r\n"
      " <parameter name=\"text1\" value=\"1122867\"/>\r\n"
      " <parameter name=\"text2\" value=\"4478310\"/>\r\n"
      " <parameter name=\"border1\" value=\"7372944\"/>\r\n"
      " <parameter name=\"border2\" value=\"658188\"/>\r\n"
      " <parameter name=\"borderwidth\" value=\"2\"/>\r\n"
      " <parameter name=\"icons\" value=\"2\"/>\r\n"
      " <parameter name=\"twostate\" value=\"18\"/>\r\n"
      " <parameter name=\"iconsperrow\" value=\"6\"/>\r\n"
      " <parameter name=\"font1\" value=\"Tahoma|9|i\"/>\r\n"
      " <parameter name=\"font2\" value=\"Courier New|11.5|bu\"/>\r\n"
      " <parameter name=\"displayicons\" value=\"171|000|011|021|031|041|051|061|071|081|090|101|"
      "111|121|131|141|151|161\"/>\r\n"
      "</marlskin>\r\n";
  const Bytes content = *files.Content(kSkinPath);
  EXPECT_EQ(std::string(content.begin(), content.end()), expected);
  EXPECT_EQ(files.OpenFiles(), 0);
  EXPECT_TRUE(registry.written.empty());
}

TEST_F(DisplaySettings, SavingOverAFileReplacesIt) {
  files.Put(kSkinPath, std::string(5000, 'x'));
  fileDialogs.Choose(kSkinPath);
  Open([&](frmUI& form) { form.cmdSave.UserClick(); });
  const Bytes content = *files.Content(kSkinPath);
  EXPECT_TRUE(std::string(content.begin(), content.end()).ends_with("</marlskin>\r\n"));
  EXPECT_LT(content.size(), 2000u);
}

TEST_F(DisplaySettings, SaveFollowedByLoadReturnsAllFourteenValues) {
  SkinSettings skin = Different();
  skin.Font1 = u"A & B <\"C\"> \u00E4\u4E2D|8.25|biu";
  Store(skin);
  fileDialogs.Choose(kSkinPath);
  Open([&](frmUI& form) {
    form.cmdSave.UserClick();
    form.cmdDefault.UserClick();
    EXPECT_EQ(Shown(form), SkinSettings());
    form.cmdLoad.UserClick();
    SkinSettings expected = skin;
    // The registry is 8-bit: characters that it cannot represent were lost before.
    expected.Font1 = u"A & B <\"C\"> \u00E4?|8.25|biu";
    EXPECT_EQ(Shown(form), expected);
    EXPECT_EQ(form.lblAngleValue.Caption(), u"135");
    EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form));
  });
  const Bytes content = *files.Content(kSkinPath);
  EXPECT_NE(std::string(content.begin(), content.end()).find("A &amp; B &lt;&quot;C&quot;&gt;"),
            std::string::npos);
}

TEST_F(DisplaySettings, ASkinThatCannotBeOpenedOnlyRepaintsTheSample) {
  fileDialogs.Choose(u"C:\\Suite\\Skins\\gone.qsk");
  Open([&](frmUI& form) {
    const SkinSettings before = Shown(form);
    const PicturePtr sample = form.picContainer.Picture();
    form.cmdLoad.UserClick();
    EXPECT_EQ(Shown(form), before);
    EXPECT_NE(form.picContainer.Picture(), sample);
  });
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(DisplaySettings, ASkinThatCannotBeWrittenIsSilent) {
  fileDialogs.Choose(u"C:\\Suite\\no such folder\\x.qsk");
  Open([&](frmUI& form) {
    form.cmdSave.UserClick();
    EXPECT_TRUE(form.Visible());
  });
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(DisplaySettings, TheRootElementMayHaveAnyName) {
  files.Put(kSkinPath, "<x><parameter name=\"angle\" value=\"12\"/></x>");
  fileDialogs.Choose(kSkinPath);
  Open([&](frmUI& form) {
    form.cmdLoad.UserClick();
    EXPECT_EQ(form.hsbAngle.Value(), 12);
  });
}

struct HostileSkin {
  const char* parameters;
  SkinSettings expected;
  TextView angleText = u"90";
};

SkinSettings With(std::int32_t SkinSettings::*field, std::int32_t value) {
  SkinSettings skin;
  skin.*field = value;
  return skin;
}

class DisplaySettingsSkin : public DisplaySettings,
                            public testing::WithParamInterface<HostileSkin> {};

// Each skin is followed by a valid parameter: a refused one does not stop the reading.
TEST_P(DisplaySettingsSkin, WhatAControlRefusesIsSkipped) {
  PutSkin(std::string(GetParam().parameters) + "<parameter name=\"border2\" value=\"77\"/>");
  SkinSettings expected = GetParam().expected;
  expected.Border2 = 77;
  Open([&](frmUI& form) {
    form.cmdLoad.UserClick();
    EXPECT_EQ(Shown(form), expected);
    EXPECT_EQ(form.lblAngleValue.Caption(), GetParam().angleText);
  });
  EXPECT_TRUE(desktop.messages.empty());
}

#define SEVENTEEN_8 "001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161"
#define PARAMETER(name, value) "<parameter name=\"" name "\" value=\"" value "\"/>"
INSTANTIATE_TEST_SUITE_P(
    Files, DisplaySettingsSkin,
    testing::Values(
        HostileSkin{PARAMETER("iconsperrow", "2"), {}},
        HostileSkin{PARAMETER("iconsperrow", "7"), {}},
        HostileSkin{PARAMETER("iconsperrow", "-2147483648"), {}},
        HostileSkin{PARAMETER("iconsperrow", "2147483647"), {}},
        HostileSkin{PARAMETER("iconsperrow", "99999999999"), {}},
        // The refused direction is shown anyway.
        HostileSkin{PARAMETER("angle", "360"), {}, u"360"},
        HostileSkin{PARAMETER("angle", "-1"), {}, u"-1"},
        HostileSkin{PARAMETER("angle", "2147483647"), {}, u"2147483647"},
        HostileSkin{PARAMETER("angle", "north"), {}},
        HostileSkin{PARAMETER("displayicons", "001"), {}},
        HostileSkin{PARAMETER("displayicons", "001|011"), {}},
        HostileSkin{PARAMETER("displayicons", SEVENTEEN_8 "|991"), {}},
        HostileSkin{PARAMETER("displayicons", ""), {}}, HostileSkin{PARAMETER("font1", "12"), {}},
        HostileSkin{PARAMETER("colour1", "red"), {}}, HostileSkin{PARAMETER("Colour1", "1"), {}},
        HostileSkin{PARAMETER("colour3", "1"), {}},
        HostileSkin{"<parameter name=\"colour1\" value=\"1\"></parameter>", {}},
        HostileSkin{"<Parameter name=\"colour1\" value=\"1\"/>", {}},
        HostileSkin{PARAMETER("icons", "9"), With(&SkinSettings::Icons, 1)},
        HostileSkin{PARAMETER("icons", "-1"), With(&SkinSettings::Icons, 1)},
        HostileSkin{PARAMETER("borderwidth", "0"), With(&SkinSettings::BorderWidth, 2)},
        HostileSkin{PARAMETER("twostate", "5"), With(&SkinSettings::TwoStateOffset, 18)},
        HostileSkin{PARAMETER("colour1", "-2147483633"), With(&SkinSettings::Color1, kButtonFace)},
        HostileSkin{PARAMETER("text1", "2147483647"), With(&SkinSettings::Text1, kHigh)}));

TEST_F(DisplaySettings, ASkinChangesTheSampleOnceItIsLoaded) {
  PutSkin(PARAMETER("colour1", "255") PARAMETER("icons", "3") PARAMETER("angle", "10"));
  Open([&](frmUI& form) {
    const PicturePtr icon = form.imgSample[0].Picture();
    form.cmdLoad.UserClick();
    EXPECT_EQ(form.picContainer.Picture()->pixels, ExpectedSample(desktop, form));
    EXPECT_NE(form.imgSample[0].Picture(), icon);
  });
}

// ---- Leaving

TEST_F(DisplaySettings, OkWritesTheFourteenValuesInTheirOrderAndKinds) {
  screen = Different();
  Open([&](frmUI& form) { form.cmdDismiss[0].UserClick(); });
  using Written = WatchedRegistry::Written;
  const auto root = static_cast<std::uint32_t>(kCurrentUser);
  const char* const key = "Software\\Oru\\Marl\\GUI";
  const auto number = [&](const char* name, std::int32_t value) {
    return Written{root, key, name, kRegDword, DwordBytes(value)};
  };
  const auto text = [&](const char* name, const char* value) {
    return Written{root, key, name, kRegSz, NarrowText(value) + '\0'};
  };
  const std::vector<Written> expected = {
      number("Angle", 135),
      number("Color1", 0x102030),
      number("Color2", 0x405060),
      number("Border1", 0x708090),
      number("Border2", 0x0A0B0C),
      number("BorderWidth", 2),
      number("Text1", 0x112233),
      number("Text2", 0x445566),
      number("Icons", 2),
      number("TwoState", 18),
      number("IconsPerRow", 6),
      text("Font1", "Tahoma|9|i"),
      text("Font2", "Courier New|11.5|bu"),
      text("DisplayIcons",
           "171|000|011|021|031|041|051|061|071|081|090|101|111|121|131|141|151|161"),
  };
  EXPECT_EQ(registry.written, expected);
  EXPECT_FALSE(cancelled);
  EXPECT_TRUE(stayedLoaded);
}

TEST_F(DisplaySettings, OkWritesWhatTheControlsShow) {
  Open([&](frmUI& form) {
    form.hsbAngle.UserScroll(1000);
    form.chkThickBorder.UserClick();
    form.chkUseTwoState.UserClick();
    form.cmbIcons.UserSelectRow(3);
    form.cmbIconsPerRow.UserSelectRow(0);
    form.lstIcons.UserCheck(0);
    form.cmdDismiss[0].UserClick();
  });
  SkinSettings expected;
  expected.Angle = 359;
  expected.BorderWidth = 2;
  expected.TwoStateOffset = 18;
  expected.Icons = 3;
  expected.IconsPerRow = 3;
  expected.DisplayIcons.replace(2, 1, u"0");
  EXPECT_EQ(ReadSkinValues(registry, Different()), expected);
}

TEST_F(DisplaySettings, CancelAfterChangingEverythingWritesNothing) {
  Open([&](frmUI& form) {
    colors.Choose(1);
    for (const int index : {0, 1, 4, 5}) form.cmdSetColor(index).UserClick();
    PutSkin(PARAMETER("angle", "12"));
    form.cmdLoad.UserClick();
    form.chkThickBorder.UserClick();
    form.lstIcons.UserCheck(0);
    form.cmdDismiss[1].UserClick();
    EXPECT_FALSE(form.Visible());
  });
  EXPECT_TRUE(registry.written.empty());
  EXPECT_TRUE(cancelled);
  EXPECT_TRUE(stayedLoaded);
}

TEST_F(DisplaySettings, TheCloseBoxWritesNothingButIsNotCancelled) {
  Open([&](frmUI& form) {
    form.chkThickBorder.UserClick();
    form.UserClose();
  });
  EXPECT_TRUE(registry.written.empty());
  EXPECT_FALSE(cancelled);
  EXPECT_FALSE(stayedLoaded);
}

TEST_F(DisplaySettings, ARefusingRegistryIsSilent) {
  registry.refuseWriting = true;
  Open([&](frmUI& form) {
    form.cmdDismiss[0].UserClick();
    EXPECT_FALSE(form.Visible());
  });
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_FALSE(cancelled);
}

// ---- Design

TEST_F(DisplaySettings, TabVisitsEveryControlGroupByGroup) {
  Open([&](frmUI& form) {
    std::vector<Control*> order;
    for (Control* const control : form.controls()) {
      if (control->TakesFocus() && control->TabStop) order.push_back(control);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Control* a, const Control* b) { return a->TabIndex < b->TabIndex; });
    const std::vector<Control*> expected = {
        &form.cmdSetColor(0), &form.cmdSetColor(1), &form.hsbAngle,       &form.cmdSample[0],
        &form.cmdSample[1],   &form.cmdSetColor(4), &form.cmdSetColor(5), &form.chkThickBorder,
        &form.lstIcons,       &form.cmdMove[0],     &form.cmdMove[1],     &form.cmbIcons,
        &form.chkUseTwoState, &form.cmbIconsPerRow, &form.cmdLoad,        &form.cmdSave,
        &form.cmdDefault,     &form.cmdDismiss[0],  &form.cmdDismiss[1]};
    EXPECT_EQ(order, expected);
    EXPECT_EQ(form.DefaultButton(), &form.cmdDismiss[0]);
    EXPECT_EQ(form.CancelButton(), &form.cmdDismiss[1]);
  });
}

TEST_F(DisplaySettings, NothingLeavesItsGroupOrCoversItsNeighbour) {
  for (const Size& dpi : {Size{96, 96}, Size{144, 144}}) {
    desktop.dpi = dpi;
    Open([&](frmUI& form) {
      for (const Control* const a : form.controls()) {
        const Size room =
            a->container() ? Size{a->container()->Width(), a->container()->Height()} : form.Design;
        EXPECT_GE(a->Left(), 0) << a->name();
        EXPECT_GE(a->Top(), 0) << a->name();
        EXPECT_GT(a->Width(), 0) << a->name();
        EXPECT_LE(a->Left() + a->Width(), room.width) << a->name();
        EXPECT_LE(a->Top() + a->Height(), room.height) << a->name();
        for (const Control* const b : form.controls()) {
          if (a == b || a->container() != b->container()) continue;
          const bool apart =
              a->Left() + a->Width() <= b->Left() || b->Left() + b->Width() <= a->Left() ||
              a->Top() + a->Height() <= b->Top() || b->Top() + b->Height() <= a->Top();
          EXPECT_TRUE(apart) << a->name() << a->index() << " and " << b->name() << b->index();
        }
      }
    });
  }
}

// ---- On the switchboard

class DisplaySettingsOnTheSwitchboard : public testing::Test {
 protected:
  DisplaySettingsOnTheSwitchboard() { world.Start(); }
  /// Types the hidden word and lets `user` work in the dialog.
  template <typename User>
  void Type(TextView keys, User user) {
    world.desktop.whenModal["frmUI"] = [&](Form& form) { user(static_cast<frmUI&>(form)); };
    world.Type(keys);
  }
  int Openings() const {
    return static_cast<int>(
        std::count(world.desktop.modal.begin(), world.desktop.modal.end(), "frmUI"));
  }

  SuiteWorld world;
};

TEST_F(DisplaySettingsOnTheSwitchboard, TheHiddenWordOpensThem) {
  for (const TextView keys : {u"setgui", u"SETGUI", u"xSeTgUi"}) {
    Type(keys, [&](frmUI& form) {
      EXPECT_EQ(form.Caption(), u"Display settings");
      form.cmdDismiss[1].UserClick();
    });
    EXPECT_EQ(world.main().HiddenKeys.position(), 1);
  }
  EXPECT_EQ(Openings(), 3);
  world.Type(u"setguC");
  world.Type(u"i");
  EXPECT_EQ(Openings(), 3);
  EXPECT_EQ(world.desktop.forms().size(), 1u) << "it has been unloaded";
}

TEST_F(DisplaySettingsOnTheSwitchboard, TheyShowThePanelAsItIs) {
  world.main().Skin.Angle = 33;
  Type(u"setgui", [&](frmUI& form) {
    EXPECT_EQ(form.hsbAngle.Value(), 33);
    for (int row = 0; row < kButtonCount; ++row) {
      EXPECT_EQ(form.lstIcons.List(row), world.strings.Get(IDS_BUTTON_ANALYSE + row));
    }
    EXPECT_EQ(world.icons.given.back().window, form.hWnd());
    form.cmdLoad.UserClick();
    EXPECT_EQ(world.fileDialogs.shown.back().settings.Folder, u"C:\\Suite\\Skins");
  });
}

TEST_F(DisplaySettingsOnTheSwitchboard, OkAppliesTheSkin) {
  Type(u"setgui", [&](frmUI& form) {
    form.cmbIconsPerRow.UserSelectRow(3);
    form.hsbAngle.UserScroll(0);
    form.cmdDismiss[0].UserClick();
    EXPECT_EQ(world.main().IconsPerRow, 5) << "not before the dialog has closed";
  });
  EXPECT_EQ(world.main().IconsPerRow, 6);
  EXPECT_EQ(world.main().Skin.Angle, 0);
}

TEST_F(DisplaySettingsOnTheSwitchboard, CancelLeavesThePanelAlone) {
  const PicturePtr background = world.main().Background();
  const SkinSettings skin = world.main().Skin;
  const Box bounds = world.main().bounds();
  Type(u"setgui", [&](frmUI& form) {
    form.cmbIconsPerRow.UserSelectRow(3);
    form.hsbAngle.UserScroll(0);
    form.lstIcons.UserCheck(0);
    // Other programs write here too: their changes are not used either.
    SkinSettings foreign;
    foreign.IconsPerRow = 4;
    WriteSkin(world.registry, foreign);
    form.cmdDismiss[1].UserClick();
  });
  EXPECT_EQ(world.main().Background(), background) << "no SetUI";
  EXPECT_EQ(world.main().Skin, skin);
  EXPECT_EQ(world.main().bounds(), bounds);
}

TEST_F(DisplaySettingsOnTheSwitchboard, ASwitchboardMayHaveNoButtons) {
  const int height = world.main().Height();
  Type(u"setgui", [&](frmUI& form) {
    for (int row = 0; row < kButtonCount; ++row) form.lstIcons.UserCheck(row);
    form.cmdDismiss[0].UserClick();
  });
  for (const auto& picture : world.main().imgRun) EXPECT_FALSE(picture->Visible());
  EXPECT_LT(world.main().Height(), height);
  Type(u"setgui", [&](frmUI& form) {
    form.cmdDefault.UserClick();
    form.cmdDismiss[0].UserClick();
  });
  EXPECT_EQ(world.main().Height(), height);
  for (const auto& picture : world.main().imgRun) EXPECT_TRUE(picture->Visible());
}

TEST_F(DisplaySettingsOnTheSwitchboard, ALoadedSkinIsThePanelsAfterOk) {
  world.files.Put(u"C:\\Suite\\Skins\\Mine.qsk",
                  PARAMETER("angle", "45") PARAMETER("iconsperrow", "3")
                      PARAMETER("font1", "Tahoma|12|") PARAMETER("text1", "255"));
  world.fileDialogs.Choose(u"C:\\Suite\\Skins\\Mine.qsk");
  Type(u"setgui", [&](frmUI& form) {
    form.cmdLoad.UserClick();
    form.cmdDismiss[0].UserClick();
  });
  EXPECT_EQ(world.main().IconsPerRow, 3);
  EXPECT_EQ(world.main().Skin.Angle, 45);
  EXPECT_EQ(world.main().lblRun[0]->ForeColor(), 255);
  EXPECT_EQ(world.main().lblRun[0]->Font().Name, u"Tahoma");
}

}  // namespace
}  // namespace marl
