#include "appearance/frmFont.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFontList.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {
namespace {

constexpr Color kPlain = Rgb(10, 20, 30);

/// Two sample labels, a gradient from red to blue.
class Samples : public Form, public SampleForm {
 public:
  explicit Samples(Desktop& desktop) : Form(desktop, "frmSamples") {
    Put(0, u"Arial", 100000);
    Put(1, u"Tahoma", 120000);
    for (Label& label : labels_) label.SetForeColor(kPlain);
  }
  void Put(int index, TextView name, std::int64_t size, bool bold = false, bool italic = false,
           bool underline = false) {
    marl::Font font;
    font.Name = name;
    font.Size = size;
    font.Bold = bold;
    font.Italic = italic;
    font.Underline = underline;
    Sample(index).SetFont(font);
  }
  Label& Sample(int index) override { return labels_[index]; }
  Color GradientColor(int index) const override {
    return index == 0 ? Rgb(255, 0, 0) : Rgb(0, 0, 255);
  }
  int GradientAngle() const override { return angle; }

  int angle = 0;

 private:
  Label labels_[2] = {Label{*this, "lblSample", 0}, Label{*this, "lblSample", 1}};
};

class FontDialog : public testing::Test {
 protected:
  explicit FontDialog(std::string_view language = "en") : resource(language) {}

  /// Opens the dialog on a sample and lets `user` work in it.
  template <typename User>
  void Open(int index, User user) {
    desktop.whenModal["frmFont"] = [&](Form& form) { user(static_cast<frmFont&>(form)); };
    frmFont form({desktop, locale, strings, colors, fonts}, samples);
    form.SampleIndex = static_cast<std::int16_t>(index);
    form.SetInitialFont();
    form.ShowModal(&samples);
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_FALSE(desktop.ended());
  }
  static void Type(TextBox& field, TextView text) {
    field.UserEdit(text, static_cast<int>(text.size()), 0);
  }
  static void Choose(ComboBox& combo, TextView text) {
    for (int row = 0; row < combo.ListCount(); ++row) {
      if (combo.List(row) == text) return combo.UserSelectRow(row);
    }
    ADD_FAILURE() << "no such row";
  }
  const marl::Font& Result(int index = 0) { return samples.Sample(index).Font(); }

  MemoryDesktop desktop;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  MemoryColorDialog colors;
  MemoryFontList fonts;
  Samples samples{desktop};
};

class GermanFontDialog : public FontDialog {
 protected:
  GermanFontDialog() : FontDialog("de") { locale.threadLocale = 0x407; }
};

TEST_F(FontDialog, CaptionsComeFromTheTable) {
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.Caption(), u"Set Font");
    EXPECT_EQ(form.lblSample.Caption(), u"Sample");
    EXPECT_EQ(form.lblSize.Caption(), u"&Size");
    EXPECT_EQ(form.chkStyle[0]->Caption(), u"&Bold");
    EXPECT_EQ(form.chkStyle[1]->Caption(), u"&Italic");
    EXPECT_EQ(form.chkStyle[2]->Caption(), u"&Underline");
    EXPECT_EQ(form.cmdSetColor.Caption(), u"&Color");
    EXPECT_EQ(form.cmdDismiss[0]->Caption(), u"OK");
    EXPECT_EQ(form.cmdDismiss[1]->Caption(), u"Cancel");
  });
}

TEST_F(FontDialog, ListsHoldTheFontsAndTheEightSizes) {
  fonts.faces = {u"Tahoma", u"Arial", u"Courier New"};
  Open(0, [](frmFont& form) {
    std::vector<Text> names;
    for (int row = 0; row < form.cmbFont.ListCount(); ++row) {
      names.push_back(form.cmbFont.List(row));
    }
    EXPECT_EQ(names, (std::vector<Text>{u"Arial", u"Courier New", u"Tahoma"}));
    std::vector<Text> sizes;
    for (int row = 0; row < form.cmbSize.ListCount(); ++row) {
      sizes.push_back(form.cmbSize.List(row));
    }
    EXPECT_EQ(sizes, (std::vector<Text>{u"6", u"7", u"8", u"9", u"10", u"11", u"12", u"14"}));
    EXPECT_EQ(form.chkStyle[1]->Tag, u"I");
    EXPECT_EQ(form.chkStyle[2]->Tag, u"U");
  });
}

TEST_F(FontDialog, OpensOnTheSampleOfItsIndex) {
  samples.Put(1, u"Times New Roman", 140000, true, false, true);
  samples.Sample(1).SetForeColor(Rgb(1, 2, 3));
  Open(1, [](frmFont& form) {
    EXPECT_EQ(form.cmbFont.Text(), u"Times New Roman");
    EXPECT_EQ(form.txtSize.Text(), u"14");
    EXPECT_EQ(form.cmbSize.Text(), u"14");
    EXPECT_EQ(form.chkStyle[0]->Value(), 1);
    EXPECT_EQ(form.chkStyle[1]->Value(), 0);
    EXPECT_EQ(form.chkStyle[2]->Value(), 1);
    EXPECT_EQ(form.lblSample.Font().Name, u"Times New Roman");
    EXPECT_EQ(form.lblSample.ForeColor(), Rgb(1, 2, 3));
  });
}

TEST_F(FontDialog, OkCopiesFontAndColourAndCancelDoesNot) {
  colors.Choose(Rgb(200, 100, 50));
  const auto change = [](frmFont& form) {
    Choose(form.cmbFont, u"Courier New");
    Choose(form.cmbSize, u"12");
    form.chkStyle[1]->UserClick();
    form.cmdSetColor.UserClick();
  };
  const marl::Font before = Result();
  Open(0, [&](frmFont& form) {
    change(form);
    form.cmdDismiss[1]->UserClick();
    EXPECT_FALSE(form.loaded());
  });
  EXPECT_EQ(Result(), before);
  EXPECT_EQ(samples.Sample(0).ForeColor(), kPlain);

  const marl::Font other = Result(1);
  Open(0, [&](frmFont& form) {
    change(form);
    form.cmdDismiss[0]->UserClick();
    EXPECT_FALSE(form.loaded());
  });
  EXPECT_EQ(Result().Name, u"Courier New");
  EXPECT_EQ(Result().Size, 120000);
  EXPECT_FALSE(Result().Bold);
  EXPECT_TRUE(Result().Italic);
  EXPECT_FALSE(Result().Underline);
  EXPECT_EQ(samples.Sample(0).ForeColor(), Rgb(200, 100, 50));
  EXPECT_EQ(Result(1), other);
}

TEST_F(FontDialog, ClosingTheWindowIsCancel) {
  Open(0, [](frmFont& form) {
    Choose(form.cmbFont, u"Courier New");
    form.UserClose();
  });
  EXPECT_EQ(Result().Name, u"Arial");
}

TEST_F(FontDialog, AFontThatIsNotInstalledLeavesTheListUnset) {
  samples.Put(0, u"No Such Font", 100000);
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.cmbFont.ListIndex(), -1);
    EXPECT_EQ(form.cmbFont.Text(), u"");
    EXPECT_EQ(form.lblSample.Font().Name, u"No Such Font");
    EXPECT_EQ(form.txtSize.Text(), u"10");
    form.cmdDismiss[0]->UserClick();
  });
  EXPECT_EQ(Result().Name, u"No Such Font");
}

TEST_F(FontDialog, ListWithoutAChoiceDoesNotTakeTheFirstFocus) {
  samples.Put(0, u"Missing", 100000);
  Open(0, [&](frmFont& form) {
    auto& peer = static_cast<MemoryPeer&>(*form.peer());
    EXPECT_EQ(peer.focus, &form.txtSize);
    // Back from another window the focus is where it was.
    peer.focus = nullptr;
    form.UserActivate();
    EXPECT_EQ(peer.focus, nullptr);
  });
  Open(1, [&](frmFont& form) {
    EXPECT_EQ(static_cast<MemoryPeer&>(*form.peer()).focus, nullptr) << "the first field's";
  });
}

TEST_F(FontDialog, ASecondInitialFontThatIsNotInstalledUnsetsTheList) {
  samples.Put(1, u"No Such Font", 100000);
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.cmbFont.Text(), u"Arial");
    form.SampleIndex = 1;
    form.SetInitialFont();
    EXPECT_EQ(form.cmbFont.ListIndex(), -1);
    EXPECT_EQ(form.lblSample.Font().Name, u"No Such Font");
  });
}

TEST_F(FontDialog, OpeningOn825MakesTheSample8AndOkStoresIt) {
  samples.Put(0, u"Arial", 82500);
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.txtSize.Text(), u"8");
    EXPECT_EQ(form.lblSample.Font().Size, 80000);
    form.cmdDismiss[0]->UserClick();
  });
  EXPECT_EQ(Result().Size, 80000);
}

TEST_F(FontDialog, OpeningOn825AndCancelKeeps825) {
  samples.Put(0, u"Arial", 82500);
  Open(0, [](frmFont& form) { form.cmdDismiss[1]->UserClick(); });
  EXPECT_EQ(Result().Size, 82500);
}

TEST_F(FontDialog, TheSameFormOpenedAgainRoundsAgain) {
  samples.Put(0, u"Arial", 82500);
  frmFont form({desktop, locale, strings, colors, fonts}, samples);
  for (int time = 0; time < 2; ++time) {
    form.SetInitialFont();
    EXPECT_EQ(form.lblSample.Font().Size, 80000) << time;
    EXPECT_EQ(form.cmbFont.ListCount(), 4) << time;
    EXPECT_EQ(form.cmbSize.ListCount(), 8) << time;
    form.Unload();
  }
}

TEST_F(FontDialog, ChoosingAFontAt105PointsMakesIt11) {
  Open(0, [](frmFont& form) {
    Type(form.txtSize, u"10.5");
    EXPECT_EQ(form.lblSample.Font().Size, 105000);
    EXPECT_EQ(form.cmbSize.Text(), u"10");
    Choose(form.cmbFont, u"Tahoma");
    EXPECT_EQ(form.lblSample.Font().Name, u"Tahoma");
    EXPECT_EQ(form.txtSize.Text(), u"11");
    EXPECT_EQ(form.cmbSize.Text(), u"11");
    EXPECT_EQ(form.lblSample.Font().Size, 110000);
  });
}

TEST_F(FontDialog, HalfUpNotHalfEven) {
  for (const auto& [size, shown] : std::vector<std::pair<std::int64_t, TextView>>{
           {105000, u"11"}, {84999, u"8"}, {85000, u"9"}, {95000, u"10"}, {4000, u"0"}}) {
    samples.Put(0, u"Arial", size);
    Open(0, [&](frmFont& form) { EXPECT_EQ(form.txtSize.Text(), shown) << size; });
  }
}

TEST_F(FontDialog, ASizeThatRoundsToNothingStaysAsItIs) {
  samples.Put(0, u"Arial", 4000);
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.txtSize.Text(), u"0");
    EXPECT_EQ(form.lblSample.Font().Size, 4000);
  });
}

TEST_F(FontDialog, TheGuardKeepsTheStylesFromBeingWrittenBackHalfWay) {
  // Bold is cleared first: without the guard, its click would also clear the other styles of the
  // sample.
  samples.Put(0, u"Arial", 100000, true, false, false);
  samples.Put(1, u"Arial", 100000, false, true, true);
  Open(0, [](frmFont& form) {
    form.SampleIndex = 1;
    form.SetInitialFont();
    EXPECT_FALSE(form.lblSample.Font().Bold);
    EXPECT_TRUE(form.lblSample.Font().Italic);
    EXPECT_TRUE(form.lblSample.Font().Underline);
    EXPECT_EQ(form.chkStyle[2]->Value(), 1);
    // The guard is gone, and so is the letter that was there.
    EXPECT_EQ(form.chkStyle[0]->Tag, u"");
  });
}

TEST_F(FontDialog, TheProgramsTicksDoRaiseTheClick) {
  samples.Put(1, u"Arial", 100000, true, true, true);
  Open(0, [](frmFont& form) {
    std::vector<Text> guards;
    for (auto& style : form.chkStyle) {
      style->Click = [&form, &guards, own = style->Click] {
        guards.push_back(form.chkStyle[0]->Tag);
        own();
      };
    }
    form.SampleIndex = 1;
    form.SetInitialFont();
    EXPECT_EQ(guards, (std::vector<Text>{u"*", u"*", u"*"}));
  });
}

TEST_F(FontDialog, EveryClickOnAStyleSetsAllThree) {
  Open(0, [](frmFont& form) {
    // Something other than the boxes.
    marl::Font font = form.lblSample.Font();
    font.Underline = true;
    form.lblSample.SetFont(font);
    form.chkStyle[0]->UserClick();
    EXPECT_TRUE(form.lblSample.Font().Bold);
    EXPECT_FALSE(form.lblSample.Font().Italic);
    EXPECT_FALSE(form.lblSample.Font().Underline);
    form.chkStyle[0]->UserClick();
    form.chkStyle[2]->UserClick();
    EXPECT_FALSE(form.lblSample.Font().Bold);
    EXPECT_TRUE(form.lblSample.Font().Underline);
  });
}

TEST_F(FontDialog, AStyleClickedDirectlyAfterLoadingCounts) {
  frmFont form({desktop, locale, strings, colors, fonts}, samples);
  form.Load();
  EXPECT_EQ(form.chkStyle[0]->Tag, u"B");
  form.chkStyle[0]->UserClick();
  EXPECT_TRUE(form.lblSample.Font().Bold);
}

TEST_F(FontDialog, ASizeChosenOrTypedInTheListGoesToTheField) {
  Open(0, [](frmFont& form) {
    Choose(form.cmbSize, u"14");
    EXPECT_EQ(form.txtSize.Text(), u"14");
    EXPECT_EQ(form.lblSample.Font().Size, 140000);
    form.cmbSize.UserEdit(u"13");
    EXPECT_EQ(form.txtSize.Text(), u"13");
    EXPECT_EQ(form.lblSample.Font().Size, 130000);
  });
}

TEST_F(FontDialog, ChoosingTheSizeOrFontThatIsChosenCountsAgain) {
  fonts.faces = {u"Arial", u"Courier New"};
  Open(0, [](frmFont& form) {
    Choose(form.cmbSize, u"12");
    Type(form.txtSize, u"10.5");
    EXPECT_EQ(form.cmbSize.Text(), u"12");
    Choose(form.cmbSize, u"12");
    EXPECT_EQ(form.txtSize.Text(), u"12");
    EXPECT_EQ(form.lblSample.Font().Size, 120000);
    Choose(form.cmbFont, u"Courier New");
    Type(form.txtSize, u"10.5");
    form.cmbFont.SetListIndex(1);
    EXPECT_EQ(form.txtSize.Text(), u"10.5") << "the program's own writing is no choice";
    Choose(form.cmbFont, u"Courier New");
    EXPECT_EQ(form.txtSize.Text(), u"11");
  });
}

TEST_F(FontDialog, FractionsKeepFourPlaces) {
  Open(0, [](frmFont& form) {
    Type(form.txtSize, u"8.12345");
    form.cmdDismiss[0]->UserClick();
  });
  EXPECT_EQ(Result().Size, 81234);
}

TEST_F(FontDialog, TextThatIsNoSizeLeavesTheLastGoodOne) {
  Open(0, [](frmFont& form) {
    Type(form.txtSize, u"9");
    for (const TextView text : {u"", u" ", u"x", u"9pt", u"1e", u"--1", u"0", u"-8", u"1e9",
                                u"2049", u"1e999", u"999999999999999999999999", u"\u0669", u"&H"}) {
      Type(form.txtSize, text);
      EXPECT_EQ(form.lblSample.Font().Size, 90000) << std::string(text.begin(), text.end());
    }
    Type(form.txtSize, Text(100000, u'9'));
    EXPECT_EQ(form.lblSample.Font().Size, 90000);
    form.cmdDismiss[0]->UserClick();
  });
  EXPECT_EQ(Result().Size, 90000);
}

TEST_F(FontDialog, SizesUpTo2048PointsAreTheFontSystemsAffair) {
  Open(0, [](frmFont& form) {
    Type(form.txtSize, u"2048");
    EXPECT_EQ(form.lblSample.Font().Size, 20480000);
    EXPECT_EQ(form.lblSample.Top(), 0);
    Type(form.txtSize, u"0.0001");
    EXPECT_EQ(form.lblSample.Font().Size, 1);
  });
}

TEST_F(FontDialog, AColourStartsFromTheSamplesOwn) {
  colors.Choose(Rgb(9, 8, 7));
  Open(0, [&](frmFont& form) {
    form.cmdSetColor.UserClick();
    ASSERT_EQ(colors.shown.size(), 1U);
    EXPECT_EQ(colors.shown[0].owner, &form);
    EXPECT_EQ(colors.shown[0].flags, 3);
    EXPECT_EQ(colors.shown[0].color, kPlain);
    EXPECT_EQ(form.lblSample.ForeColor(), Rgb(9, 8, 7));
  });
}

TEST_F(FontDialog, ACancelledColourChangesNothing) {
  Open(0, [&](frmFont& form) {
    form.cmdSetColor.UserClick();
    EXPECT_EQ(colors.shown.size(), 1U);
    EXPECT_EQ(form.lblSample.ForeColor(), kPlain);
  });
}

TEST_F(FontDialog, TheSampleStandsOnTheGradientOfTheCaller) {
  const auto edges = [&] {
    std::pair<std::uint32_t, std::uint32_t> ends;
    Open(0, [&](frmFont& form) {
      ASSERT_TRUE(form.picGrad.Picture());
      const Picture& picture = *form.picGrad.Picture();
      EXPECT_EQ((Size{picture.width, picture.height}), form.picGrad.PixelSize());
      ends = {picture.At(0, picture.height / 2) & 0xFFFFFF,
              picture.At(picture.width - 1, picture.height / 2) & 0xFFFFFF};
    });
    return ends;
  };
  const auto forward = edges();
  EXPECT_GT(forward.first >> 16, 0xF0U);
  EXPECT_GT(forward.second & 0xFF, 0xF0U);
  samples.angle = 180;
  const auto back = edges();
  EXPECT_GT(back.first & 0xFF, 0xF0U);
  EXPECT_GT(back.second >> 16, 0xF0U);
}

TEST_F(FontDialog, TheSampleIsInTheMiddleWhateverItsSize) {
  Open(0, [](frmFont& form) {
    for (const TextView size : {u"6", u"14", u"40"}) {
      Type(form.txtSize, size);
      const int line = static_cast<int>(form.lblSample.Font().Size * 24 / 10000);
      EXPECT_NEAR(form.lblSample.Top() * 2 + line, form.picGrad.Height(), 2);
    }
  });
}

TEST_F(GermanFontDialog, SizesAreWrittenAsTheUserWritesNumbers) {
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.Caption(), u"Schriftart festlegen");
    Type(form.txtSize, u"10,5");
    EXPECT_EQ(form.lblSample.Font().Size, 105000);
  });
}

std::set<char16_t> AccessKeys(const frmFont& form) {
  std::set<char16_t> keys;
  for (const Control* control : form.controls()) {
    const std::size_t mark = control->Caption().find(u'&');
    if (mark == Text::npos) continue;
    EXPECT_TRUE(keys.insert(control->Caption()[mark + 1] | 0x20).second) << control->name();
  }
  return keys;
}

TEST_F(FontDialog, AccessKeysDoNotClash) {
  Open(0, [](frmFont& form) { EXPECT_EQ(AccessKeys(form).size(), 5U); });
}

TEST_F(GermanFontDialog, AccessKeysDoNotClash) {
  Open(0, [](frmFont& form) { EXPECT_EQ(AccessKeys(form).size(), 5U); });
}

TEST_F(FontDialog, TheSizesAccessKeyLeadsToTheField) {
  Open(0, [](frmFont& form) {
    EXPECT_EQ(form.AccessKeyTarget(u's'), &form.txtSize);
    EXPECT_EQ(form.DefaultButton(), form.cmdDismiss[0].get());
    EXPECT_EQ(form.CancelButton(), form.cmdDismiss[1].get());
  });
}

TEST_F(FontDialog, TabGoesFromTopToBottom) {
  Open(0, [](frmFont& form) {
    std::vector<Control*> order;
    for (Control* control : form.controls()) {
      if (control->TakesFocus() && control->TabStop) order.push_back(control);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](Control* a, Control* b) { return a->TabIndex < b->TabIndex; });
    EXPECT_EQ(order, (std::vector<Control*>{&form.cmbFont, &form.txtSize, form.chkStyle[0].get(),
                                            form.chkStyle[1].get(), form.chkStyle[2].get(),
                                            &form.cmdSetColor, form.cmdDismiss[0].get(),
                                            form.cmdDismiss[1].get()}));
  });
}

}  // namespace
}  // namespace marl
