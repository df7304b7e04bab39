// What those learn of the forms who do not see them: names, states, places, and what they can do.

#include "platform/forms/Accessible.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "tests/unit/EveryForm.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

std::string InUtf8(const Text& text) { return std::filesystem::path(text).string(); }

class LabelledForm : public Form {
 public:
  explicit LabelledForm(Desktop& desktop) : Form(desktop, "frmLabelled") {
    Design = {6000, 4000};
    first.SetCaption(u"&Server && port");
    first.SetBounds({0, 0, 1000, 200});
    frame.SetCaption(u"&Group");
    tick.SetCaption(u"&Tick");
    hint.SetCaption(u"A hint");
    link.SetCaption(u"www.example.com");
    link.HandCursor = true;
    link.Click = [this] { ++clicks; };
    link.SetBounds({2000, 1000, 1000, 200});
    plain.Click = [this] { ++clicks; };
    plain.SetCaption(u"Plain");
    for (const TextView row : {u"one", u"two", u"three"}) ticks.AddItem(row);
    ticks.CheckBoxes = true;
    ticks.SetSelected(1, true);
    ticks.AccessibleName = u"Rows";
    hidden.SetCaption(u"Hidden");
    page.SetVisible(false);
  }
  Label first{*this, "lblFirst"};
  TextBox server{*this, "txtServer"};
  ComboBox port{*this, "cmbPort"};
  CheckBox tick{*this, "chkTick"};
  TextBox none{*this, "txtNone"};
  Label link{*this, "lblLink"};
  TextBox afterLink{*this, "txtAfterLink"};
  Label hint{*this, "lblHint"};
  Frame frame{*this, "fraGroup"};
  TextBox inFrame{*this, "txtInFrame", -1, &frame};
  ListBox ticks{*this, "lstTicks"};
  CommandButton plain{*this, "cmdPlain"};
  PictureBox page{*this, "picPage"};
  Label hidden{*this, "lblHidden", -1, &page};
  int clicks = 0;
};

class AccessibleForm : public testing::Test {
 protected:
  AccessibleForm() { form.Show(); }
  ~AccessibleForm() override { form.Unload(); }
  MemoryDesktop desktop;
  LabelledForm form{desktop};
};

TEST_F(AccessibleForm, FieldHasTheNameOfTheLabelBeforeIt) {
  EXPECT_EQ(NameOf(form.server), u"Server & port");
  EXPECT_EQ(NameOf(form.port), u"Server & port") << "with a field between them";
  form.first.SetCaption(u"Other");
  EXPECT_EQ(NameOf(form.server), u"Other") << "as the label says it now";
  EXPECT_EQ(NameOf(form.none), u"") << "a box ends what a label names";
  EXPECT_EQ(NameOf(form.afterLink), u"") << "a link names nothing";
  EXPECT_EQ(NameOf(form.inFrame), u"") << "labels outside its group name it not";
  EXPECT_EQ(NameOf(form.tick), u"Tick");
  EXPECT_EQ(NameOf(form.frame), u"Group");
  EXPECT_EQ(NameOf(form.ticks), u"Rows");
}

TEST_F(AccessibleForm, DescriptionIsTheTipUnlessTheDesignHasAnother) {
  form.server.SetToolTipText(u"tip");
  EXPECT_EQ(DescriptionOf(form.server), u"tip");
  form.server.AccessibleDescription = [] { return Text(u"other"); };
  EXPECT_EQ(DescriptionOf(form.server), u"other");
  EXPECT_EQ(ValueOf(form.server), std::nullopt);
  form.server.AccessibleValue = [] { return Text(u"7"); };
  EXPECT_EQ(ValueOf(form.server), u"7");
}

TEST_F(AccessibleForm, PartsAreTheShownLabelsAndLinks) {
  std::vector<std::string> seen;
  for (const AccessiblePart& part : form.AccessibleParts()) {
    seen.push_back((part.role == AccessibleRole::kLink ? "link " : "text ") + InUtf8(part.name));
    EXPECT_EQ(part.pressable, part.role == AccessibleRole::kLink);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"text Server & port", "link www.example.com",
                                            "text A hint"}));
  EXPECT_EQ(form.AccessibleParts()[1].place, (Box{2000, 1000, 1000, 200}));
}

TEST_F(AccessibleForm, RowsHaveTheirTicks) {
  form.ticks.SetListIndex(2);
  const std::vector<AccessiblePart> rows = RowsOf(form.ticks);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].name, u"one");
  EXPECT_FALSE(rows[0].state & kChecked);
  EXPECT_TRUE(rows[1].state & kChecked);
  EXPECT_TRUE(rows[2].state & kIsSelected);
  EXPECT_FALSE(rows[1].state & kIsSelected);
  form.ticks.SetEnabled(false);
  EXPECT_TRUE(RowsOf(form.ticks)[0].state & kUnavailable);
  EXPECT_TRUE(RowsOf(form.port).empty());
}

TEST_F(AccessibleForm, TickIsAnnounced) {
  auto& peer = *static_cast<MemoryPeer*>(form.peer());
  auto& announced = peer.announced;
  form.ticks.UserCheck(2);
  EXPECT_TRUE(announced.empty()) << "no client has asked";
  form.ticks.UserCheck(2);
  peer.listening = true;
  form.ticks.UserCheck(2);
  ASSERT_EQ(announced.size(), 1u);
  EXPECT_EQ(announced[0], (MemoryPeer::Announced{Announcement::kState, &form.ticks, 3}));
  form.ticks.SetSelected(2, true);
  EXPECT_EQ(announced.size(), 1u) << "it was ticked already";
}

TEST_F(AccessibleForm, OnlyPartsAndRowsCanBePressed) {
  form.UserPressPart(form.link, 0);
  EXPECT_EQ(form.clicks, 1);
  form.UserPressPart(form.plain, 0);
  form.UserPressPart(form.hint, 0);
  form.UserPressPart(form.tick, 1);
  EXPECT_EQ(form.clicks, 1) << "the platform presses buttons itself";
  form.UserPressPart(form.ticks, 1);
  EXPECT_TRUE(form.ticks.Selected(0));
  form.UserPressPart(form.ticks, 4);
  form.UserPressPart(form.ticks, 0);
  form.ticks.SetEnabled(false);
  form.UserPressPart(form.ticks, 1);
  EXPECT_TRUE(form.ticks.Selected(0));
  form.link.SetVisible(false);
  form.UserPressPart(form.link, 0);
  form.link.SetVisible(true);
  {
    const MemoryDesktop::Standing dialog(&desktop);
    form.UserPressPart(form.link, 0);
  }
  EXPECT_EQ(form.clicks, 1) << "behind a dialog no user could click";
}

TEST_F(AccessibleForm, RowCanGetTheFocus) {
  form.UserFocusPart(form.ticks, 3);
  EXPECT_EQ(form.ticks.ListIndex(), 2);
  EXPECT_EQ(static_cast<MemoryPeer*>(form.peer())->focus, &form.ticks);
  form.UserFocusPart(form.ticks, 9);
  form.UserFocusPart(form.server, 0);
  EXPECT_EQ(form.ticks.ListIndex(), 2);
}

TEST(AccessibleParts, NeighboursAreInTheRowAndInTheColumn) {
  std::vector<AccessiblePart> parts(5);
  for (int i = 0; i < 5; ++i) {
    parts[static_cast<std::size_t>(i)].place = {i % 3 * 100, i / 3 * 50, 90, 40};
  }
  const auto from = [&](std::size_t part, Neighbour direction) {
    const auto found = NeighbourOf(parts, part, direction);
    return found ? static_cast<int>(*found) : -1;
  };
  EXPECT_EQ(from(0, Neighbour::kNext), 1);
  EXPECT_EQ(from(2, Neighbour::kNext), 3);
  EXPECT_EQ(from(4, Neighbour::kNext), -1);
  EXPECT_EQ(from(0, Neighbour::kPrevious), -1);
  EXPECT_EQ(from(3, Neighbour::kPrevious), 2);
  EXPECT_EQ(from(0, Neighbour::kRight), 1);
  EXPECT_EQ(from(2, Neighbour::kRight), -1);
  EXPECT_EQ(from(2, Neighbour::kLeft), 1);
  EXPECT_EQ(from(3, Neighbour::kLeft), -1);
  EXPECT_EQ(from(1, Neighbour::kBelow), 4);
  EXPECT_EQ(from(2, Neighbour::kBelow), -1);
  EXPECT_EQ(from(3, Neighbour::kAbove), 0);
  EXPECT_EQ(from(0, Neighbour::kAbove), -1);
  EXPECT_EQ(from(9, Neighbour::kNext), -1);
  EXPECT_EQ(PartAt(parts, 100, 50), 4u);
  EXPECT_EQ(PartAt(parts, 95, 50), std::nullopt);
}

// ---- Every form

TEST(AccessibleForms, EveryControlThatCanHaveTheFocusHasAName) {
  for (const std::string& language : MemoryStrings::Languages()) {
    World world;
    world.resource.texts = MemoryStrings(language).texts;
    EveryForm forms(world);
    for (Form* form : forms.All()) {
      form->Load();
      for (const Control* control : form->controls()) {
        if (!control->TakesFocus() || control->kind() == ControlKind::kTabStrip) continue;
        // Created with its form, empty until a component fills it.
        EXPECT_NE(NameOf(*control), u"")
            << language << ' ' << form->name() << '.' << control->name() << control->index();
        EXPECT_EQ(NameOf(*control).find(u'&'), Text::npos);
      }
      form->Unload();
    }
  }
}

TEST(AccessibleForms, FieldsAreNamedByTheirLabelsInEveryLanguage) {
  struct Row {
    const char* field;
    Text english;
    Text german;
  };
  const Row rows[] = {
      {"frmOptions.lstRegEx", u"Hide segments matching these regular expressions:", u""},
      {"frmUI.hsbAngle", u"Angle", u"Winkel"},
      {"frmUI.cmbIconsPerRow", u"Icons per row", u""},
      {"frmUI.cmbIcons", u"Icon set", u"Symbolsatz"},
      {"frmUI.lstIcons", u"Buttons of the panel", u"Schaltflächen der Schalttafel"},
      {"frmFont.cmbFont", u"Font", u"Schriftart"},
      {"frmFont.txtSize", u"Size", u""},
      {"frmFont.cmbSize", u"Size", u""},
  };
  for (const char* const language : {"en", "de"}) {
    World world;
    world.resource.texts = MemoryStrings(language).texts;
    EveryForm forms(world);
    std::map<std::string, Text> names;
    for (Form* form : forms.All()) {
      form->Load();
      for (const Control* control : form->controls()) {
        names[form->name() + '.' + control->name()] = NameOf(*control);
      }
      form->Unload();
    }
    for (const Row& row : rows) {
      const Text& expected = language == std::string("en") ? row.english : row.german;
      if (!expected.empty()) {
        EXPECT_EQ(names[row.field], expected) << row.field;
      }
    }
  }
}

TEST(AccessibleForms, DisplaySettingsSayColoursAndDegrees) {
  World world;
  EveryForm forms(world);
  frmUI& form = forms.display;
  form.Load();
  form.shpColor(0).SetFillColor(Rgb(1, 20, 255));
  EXPECT_EQ(DescriptionOf(form.cmdSetColor(0)), u"Red 1, green 20, blue 255");
  form.shpColor(5).SetFillColor(Rgb(7, 8, 9));
  EXPECT_EQ(DescriptionOf(form.cmdSetColor(5)), u"Red 7, green 8, blue 9");
  form.hsbAngle.SetValue(217);
  EXPECT_EQ(ValueOf(form.hsbAngle), u"217\u00B0");
  EXPECT_EQ(RowsOf(form.lstIcons).size(), 18u);
  form.Unload();
}

TEST(AccessibleForms, LinksAndPicturesOfTheAboutBoxAndTheSplashHaveNames) {
  World world;
  EveryForm forms(world);
  forms.about.Load();
  std::vector<std::string> links;
  for (const AccessiblePart& part : forms.about.AccessibleParts()) {
    if (part.pressable) links.push_back(InUtf8(part.name));
  }
  EXPECT_EQ(links, (std::vector<std::string>{"The maker's web site"}));
  for (std::size_t i = 0; i < forms.about.cmdShell.size(); ++i) {
    const Control& link = *forms.about.cmdShell[i];
    EXPECT_EQ(RoleOf(link), AccessibleRole::kLink) << "in place of the painted one";
    EXPECT_EQ(NameOf(link), WithoutAccessKeys(forms.about.lblLabel[5 + i]->Caption()));
  }
  forms.about.Unload();
  forms.splash.Load();
  const auto parts = forms.splash.AccessibleParts();
  ASSERT_EQ(parts.size(), 2u);
  EXPECT_EQ(parts[0].name, u"Marl");
  EXPECT_EQ(parts[1].name, forms.splash.lblVersion.Caption());
  EXPECT_FALSE(parts[0].pressable);
  EXPECT_EQ(forms.splash.AccessibleName, u"Marl");
  forms.splash.Unload();
}

TEST(AccessibleForms, LinksOfTheAboutBoxAreOpenedOnce) {
  World world;
  std::vector<std::string> opened;
  frmAbout2006 about({world.desktop, world.pictures, world.locales, world.strings,
                      [](WindowHandle) {},
                      [&](TextView, TextView address, TextView, TextView, int) {
                        opened.push_back(InUtf8(Text(address)));
                      }});
  about.Show();
  about.UserPressPart(about.imgLogo, 0);
  about.UserPressPart(*about.cmdShell[0], 0);
  about.UserPressPart(*about.cmdShell[1], 0);
  EXPECT_EQ(opened, (std::vector<std::string>{"http://www.oru.example", "http://www.marl.example",
                                              "http://support.marl.example"}));
  about.UserPressPart(*about.lblLabel[frmAbout2006::kSite], 0);
  about.UserPressPart(*about.lblLabel[frmAbout2006::kWarning], 0);
  about.UserPressPart(*about.cmdOK, 0);
  about.lblLabel[frmAbout2006::kSite]->SetEnabled(false);
  about.UserPressPart(*about.cmdShell[0], 0);
  EXPECT_EQ(opened.size(), 3u) << "they are no elements of their own, or cannot be clicked";
  about.Unload();
}

TEST(AccessibleForms, PartsBelongToTheGroupThatTheyAreIn) {
  World world;
  EveryForm forms(world);
  frmUI& form = forms.display;
  form.Load();
  const auto names = [&](const Control* container) {
    std::vector<std::string> all;
    for (const AccessiblePart& part : form.AccessibleParts(container)) {
      all.push_back(InUtf8(part.name));
    }
    return all;
  };
  using Texts = std::vector<std::string>;
  EXPECT_EQ(names(&form.fraGradient), (Texts{"Angle", "90"}));
  EXPECT_EQ(names(&form.picContainer), (Texts{"Normal", "Highlighted"}));
  EXPECT_EQ(names(&form.fraText), (Texts{}));
  EXPECT_EQ(names(&form.fraIcons), (Texts{"Icons per row"}));
  const AccessiblePart angle = form.AccessibleParts(&form.fraGradient)[0];
  EXPECT_EQ(angle.place, (Box{120 + 180, 90 + 810, 1050, 225})) << "from the corner of the form";
  EXPECT_EQ(NameOf(form.picContainer), u"Sample");
  form.Unload();
}

TEST(AccessibleForms, SamplesSayFontAndColourAndAreOpenedByTheirButtons) {
  World world;
  EveryForm forms(world);
  frmUI& form = forms.display;
  form.Load();
  const auto samples = form.AccessibleParts(&form.picContainer);
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(samples[0].role, AccessibleRole::kText);
  EXPECT_FALSE(samples[0].pressable);
  EXPECT_EQ(samples[0].description, u"Arial, 10, Bold, Red 255, green 255, blue 255");
  EXPECT_EQ(samples[1].description, u"Arial, 10, Bold, Underline, Red 222, green 181, blue 41");
  EXPECT_EQ(DescriptionOf(form.cmdSample[1]), samples[1].description);
  Font font = form.lblSample[0].Font();
  font.Bold = false;
  font.Italic = true;
  font.Size = 82500;
  form.lblSample[0].SetFont(font);
  form.lblSample[0].SetForeColor(Rgb(1, 2, 3));
  EXPECT_EQ(DescriptionOf(form.cmdSample[0]), u"Arial, 8.25, Italic, Red 1, green 2, blue 3");
  form.Unload();
}

TEST(AccessibleForms, TabsAreElementsAndNameTheirPages) {
  World world;
  EveryForm forms(world);
  frmOptions& form = forms.options;
  form.Load();
  const std::vector<AccessiblePart> tabs = RowsOf(form.tabOptions);
  ASSERT_EQ(tabs.size(), 4u);
  for (std::size_t i = 0; i < tabs.size(); ++i) {
    EXPECT_EQ(tabs[i].role, AccessibleRole::kTab);
    EXPECT_TRUE(tabs[i].pressable);
    EXPECT_EQ(tabs[i].control, nullptr);
    EXPECT_EQ(NameOf(form.picTab[i]), tabs[i].name);
    EXPECT_FALSE(tabs[i].name.empty());
    EXPECT_EQ(tabs[i].state,
              kCanHaveFocus | kCanBeSelected | (i == 0 ? unsigned{kIsSelected} : 0U));
  }
  EXPECT_TRUE(ListsItsParts(form.tabOptions));
  form.Show();
  auto& peer = *static_cast<MemoryPeer*>(form.peer());
  peer.listening = true;
  form.UserPressPart(form.tabOptions, 3);
  EXPECT_EQ(form.tabOptions.SelectedItem(), 3);
  EXPECT_TRUE(form.picTab[2].Visible());
  ASSERT_EQ(peer.announced.size(), 1u);
  EXPECT_EQ(peer.announced[0],
            (MemoryPeer::Announced{Announcement::kSelection, &form.tabOptions, 3}));
  form.UserFocusPart(form.tabOptions, 2);
  EXPECT_EQ(form.tabOptions.SelectedItem(), 2);
  EXPECT_EQ(peer.focus, &form.tabOptions);
  form.UserPressPart(form.tabOptions, 5);
  form.UserPressPart(form.tabOptions, 0);
  EXPECT_EQ(form.tabOptions.SelectedItem(), 2);
  form.tabOptions.SetEnabled(false);
  form.UserPressPart(form.tabOptions, 1);
  EXPECT_EQ(form.tabOptions.SelectedItem(), 2);
  EXPECT_TRUE(RowsOf(form.tabOptions)[0].state & kUnavailable);
  form.Unload();
}

// ---- The panel

class AccessiblePanel : public testing::Test {
 protected:
  frmMain& form() { return world.main(); }
  auto& Announced() { return static_cast<MemoryPeer*>(form().peer())->announced; }
  /// The announcements since the last call, as "what control index".
  std::vector<std::string> Heard() {
    static_cast<MemoryPeer*>(form().peer())->listening = true;
    static constexpr const char* kWhat[] = {"focus", "state", "name", "order"};
    std::vector<std::string> heard;
    for (const auto& each : Announced()) {
      heard.push_back(std::string(kWhat[static_cast<int>(each.what)]) + ' ' +
                      (!each.control               ? "form"
                       : each.control->index() < 0 ? each.control->name()
                                                   : std::to_string(each.control->index())));
    }
    Announced().clear();
    return heard;
  }
  void Key(int key) {
    world.desktop.Event([&] { form().UserKeyDown(key, 0); });
  }
  void MouseTo(int button) {
    const Box& frame = form().shpRun[static_cast<std::size_t>(button)]->bounds();
    world.desktop.Event([&] {
      form().UserMouseMove(0, 0, static_cast<float>(frame.left + 600),
                           static_cast<float>(frame.top + 600));
    });
  }

  SuiteWorld world;
};

using Texts = std::vector<std::string>;

TEST_F(AccessiblePanel, HasItsVisibleButtonsInTheirOrder) {
  world.Uninstall(u"Q17Pair.exe");
  SkinSettings skin;
  skin.DisplayIcons = u"171|000|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161";
  WriteSkin(world.registry, skin);
  world.Start();
  const std::vector<AccessiblePart> parts = form().AccessibleParts();
  ASSERT_EQ(parts.size(), 17u);
  EXPECT_EQ(parts[0].name, u"Exit");
  EXPECT_EQ(parts[0].description, u"Exit the application");
  EXPECT_EQ(parts[0].state, unsigned{kCanHaveFocus});
  EXPECT_EQ(parts[0].place, (Box{60, 60, 1695, 1215}));
  EXPECT_EQ(parts[0].role, AccessibleRole::kButton);
  EXPECT_TRUE(parts[0].pressable);
  EXPECT_EQ(parts[1].name, u"Align");
  EXPECT_EQ(parts[1].state, kCanHaveFocus | kUnavailable) << "its tool is missing";
  EXPECT_EQ(parts[5].place, form().shpRun[5]->bounds());
}

TEST_F(AccessiblePanel, StatesFollowKeyboardAndMouse) {
  world.Start();
  MouseTo(3);
  Key(kKeyTab);
  Key(kKeyTab);
  auto parts = form().AccessibleParts();
  EXPECT_EQ(parts[1].state, kCanHaveFocus | kHasFocus);
  EXPECT_EQ(parts[3].state, kCanHaveFocus | kUnderMouse);
  EXPECT_EQ(FocusedPart(parts), 1u);
  world.desktop.SwitchAway();
  EXPECT_EQ(FocusedPart(form().AccessibleParts()), std::nullopt);
}

TEST_F(AccessiblePanel, IsPressedAsByAClick) {
  world.Uninstall(u"Q17Pair.exe");
  world.Start();
  form().UserPressPart(*form().imgRun[0], 0);
  ASSERT_EQ(world.Tools().size(), 1u);
  EXPECT_TRUE(world.Tools()[0].file.ends_with(u"Q17Gauge.exe"));
  Heard();
  form().UserPressPart(*form().imgRun[1], 0);
  EXPECT_EQ(world.Tools().size(), 1u);
  EXPECT_EQ(Heard(), (Texts{"state 1"})) << "a dead one says so";
  form().UserPressPart(*form().lblRun[0], 0);
  form().UserPressPart(form().stbMain, 0);
  form().UserPressPart(*form().mnuMarl[0], 0);
  EXPECT_EQ(world.Tools().size(), 1u) << "they are no parts";
}

TEST_F(AccessiblePanel, AnnouncesFocusStateNameAndOrder) {
  world.Start();
  Heard();
  Key(kKeyTab);
  EXPECT_EQ(Heard(), (Texts{"name stbMain", "focus 0"}));
  MouseTo(3);
  EXPECT_EQ(Heard(), (Texts{"state 3"}));
  MouseTo(3);
  EXPECT_EQ(Heard(), (Texts{}));
  MouseTo(4);
  EXPECT_EQ(Heard(), (Texts{"state 3", "state 4"}));
  Key(kKeyEscape);
  EXPECT_EQ(Heard(), (Texts{"focus form"}));
  Key(kKeyTab);
  Heard();
  world.desktop.SwitchAway();
  EXPECT_EQ(Heard(), (Texts{}));
  world.desktop.SwitchBack();
  EXPECT_EQ(Heard(), (Texts{"focus 0"}));
  world.desktop.Event([&] { form().SetUI(); });
  EXPECT_EQ(Heard(), (Texts{"state 4", "order form", "focus 0"}));
}

TEST_F(AccessiblePanel, ClientCanMoveTheFocus) {
  world.Start();
  form().UserFocusPart(*form().imgRun[6], 0);
  EXPECT_EQ(form().FocusButton, 6);
  EXPECT_TRUE(form().imgFocus->Visible());
  form().UserFocusPart(*form().lblRun[7], 0);
  form().UserFocusPart(form().stbMain, 0);
  EXPECT_EQ(form().FocusButton, 6);
}

TEST_F(AccessiblePanel, ActionsAreInTheLanguageOfTheProgram) {
  world.resource.texts = MemoryStrings("de").texts;
  world.Start();
  EXPECT_EQ(world.desktop.Actions.press, u"Drücken");
  EXPECT_EQ(form().AccessibleParts()[0].name, form().lblRun[0]->Caption());
}

}  // namespace
}  // namespace marl
