#include "settings/frmOptions.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryStrings.h"
#include "support/Numbers.h"
#include "tests/unit/StoredValues.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

const NarrowText kSegmentList = "Software\\Oru\\Marl\\HiddenSegments";

class Options : public testing::Test {
 protected:
  Options() {
    mainForm.Design = {9000, 6000};
    mainForm.Load();
    mainForm.Show();
    mainForm.Move(1200, 900);
  }

  void Plant(const NarrowText& name, const NarrowText& text) {
    registry.Plant(kCurrentUser, kSegmentList, name, kRegSz, text + '\0');
  }
  void PlantList(const std::vector<NarrowText>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) Plant("RegEx" + std::to_string(i + 1), rows[i]);
  }
  StoredValues List() { return ValuesOf(registry, kCurrentUser, kSegmentList); }
  static StoredValues Numbered(const std::vector<NarrowText>& rows) {
    StoredValues values;
    for (std::size_t i = 0; i < rows.size(); ++i)
      values["RegEx" + std::to_string(i + 1)] = Sz(rows[i]);
    return values;
  }

  /// Opens the dialog and lets `user` work in it. Returns its result.
  template <typename User>
  bool Open(User user) {
    desktop.whenModal["frmOptions"] = [&](Form& form) { user(static_cast<frmOptions&>(form)); };
    return Show();
  }
  bool Show() {
    frmOptions form({desktop, registry, locale, strings},
                    {[this](Form& owner) {
                       opened.push_back({"display", &owner});
                     },
                     [this](Form& owner) {
                       opened.push_back({"LAN", &owner});
                     },
                     [this](Form& owner) {
                       opened.push_back({"segmentation", &owner});
                     }},
                    mainForm);
    form.ShowModal(&mainForm);
    return form.Accepted;
  }
  static std::vector<Text> Rows(const ListBox& list) {
    std::vector<Text> rows;
    for (int row = 0; row < list.ListCount(); ++row) rows.push_back(list.List(row));
    return rows;
  }
  static void Type(TextBox& field, TextView text) {
    field.UserEdit(text, static_cast<int>(text.size()), 0);
  }
  static Control* FocusOf(const Form& form) {
    return static_cast<const MemoryPeer*>(form.peer())->focus;
  }

  MemoryDesktop desktop;
  WatchedRegistry registry;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
  Form mainForm{desktop, "frmMain"};
  std::vector<std::pair<std::string, Form*>> opened;
};

TEST_F(Options, CaptionsComeFromTheTable) {
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.Caption(), u"Options");
    const Text tabs[] = {u"&Switchboard", u"&General", u"&LAN Settings", u"&Hidden segments"};
    ASSERT_EQ(form.tabOptions.PartCount(), 4);
    for (int tab = 1; tab <= 4; ++tab) {
      EXPECT_EQ(form.tabOptions.Part(tab).Caption, tabs[tab - 1]);
    }
    const Text boxes[] = {u"&Display tooltips for switchboard buttons",
                          u"Show all applications in &tools menu",
                          u"Use Microsoft &Word style word counting",
                          u"Enable Marl items on &context menus",
                          u"Always start with translation &wizard",
                          u"&Hide \"number only\" segments",
                          u"For &XML/SGML, hide red bars at the beginning and end of a segment",
                          u"Hide &numbers in a numbered list",
                          u"Hide &bullet point characters (\u2022 and \u00B7)"};
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(form.chkOptions[i].Caption(), boxes[i]) << i;
    EXPECT_EQ(form.cmdDisplay.Caption(), u"&Change display settings...");
    EXPECT_EQ(form.cmdSegmentation.Caption(), u"Segmentation &rules...");
    EXPECT_EQ(form.cmdLanSettings.Caption(), u"L&AN settings...");
    EXPECT_EQ(form.cmdOK.Caption(), u"OK");
    EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
  });
}

TEST_F(Options, TextsOfTheFourthTabAreThoseOfTheLanguage) {
  const auto expectTexts = [this](const std::array<TextView, 4>& texts) {
    Open([&](frmOptions& form) {
      EXPECT_EQ(form.lblRegEx.Caption(), texts[0]);
      EXPECT_EQ(form.cmdAddRegEx.Caption(), texts[1]);
      EXPECT_EQ(form.cmdRemoveRegEx.Caption(), texts[2]);
      EXPECT_EQ(form.cmdClearRegEx.Caption(), texts[3]);
    });
  };
  expectTexts(
      {u"Hide segments matching these regular expressions:", u"&Add", u"&Remove", u"&Clear"});
  resource = MemoryStrings("de");
  expectTexts({u"Segmente ausblenden, auf die diese regulären Ausdrücke zutreffen:", u"&Hinzufügen",
               u"&Entfernen", u"Alle e&ntfernen"});
}

TEST_F(Options, ANewExpressionIsTheSameInEveryLanguage) {
  for (const std::string& language : MemoryStrings::Languages()) {
    resource = MemoryStrings(language);
    Open([&](frmOptions& form) {
      form.cmdClearRegEx.UserClick();
      form.cmdAddRegEx.UserClick();
      EXPECT_EQ(form.lstRegEx.List(0), u"[New Expression]");
      form.cmdOK.UserClick();
    });
    EXPECT_EQ(List(), Numbered({"[New Expression]"}));
  }
}

TEST_F(Options, AMissingTextEndsTheProgramWithItsId) {
  resource.texts.erase(IDS_OPTIONS_TAB_SWITCHBOARD);
  desktop.Event([this] { Show(); });
  ASSERT_EQ(desktop.messages.size(), 1u);
  EXPECT_EQ(desktop.messages[0].text, u"Resource with identifier '4013' not found");
  EXPECT_TRUE(desktop.ended());
  EXPECT_TRUE(desktop.modal.empty());
}

TEST_F(Options, EachControlIsOnItsTab) {
  Open([&](frmOptions& form) {
    const std::vector<std::vector<const Control*>> tabs = {
        {&form.chkOptions[1], &form.chkOptions[4], &form.chkOptions[0], &form.cmdDisplay},
        {&form.chkOptions[8], &form.chkOptions[7], &form.chkOptions[6], &form.chkOptions[2],
         &form.chkOptions[3], &form.chkOptions[5], &form.cmdSegmentation},
        {&form.cmdLanSettings},
        {&form.lblRegEx, &form.lstRegEx, &form.txtRegEx, &form.cmdAddRegEx, &form.cmdRemoveRegEx,
         &form.cmdClearRegEx}};
    for (std::size_t tab = 0; tab < 4; ++tab) {
      for (const Control* control : tabs[tab]) {
        EXPECT_EQ(control->container(), &form.picTab[tab]) << control->name() << control->index();
      }
    }
    EXPECT_EQ(form.cmdOK.container(), nullptr);
    EXPECT_EQ(form.cmdCancel.container(), nullptr);
  });
}

TEST_F(Options, SelectedTabShowsItsPanelAlone) {
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.tabOptions.SelectedItem(), 1);
    for (const int tab : {1, 2, 3, 4, 2, 1}) {
      form.tabOptions.UserSelectTab(tab);
      for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(form.picTab[i].Visible(), static_cast<int>(i) == tab - 1) << tab << ' ' << i;
        EXPECT_EQ(form.picTab[i].index(), static_cast<int>(i));
      }
    }
  });
}

TEST_F(Options, NothingOfAPanelIsCutOff) {
  Open([&](frmOptions& form) {
    for (const Control* control : form.controls()) {
      const Control* const outer = control->container();
      const Size room = outer ? Size{outer->Width(), outer->Height()} : form.inner();
      EXPECT_GE(control->Left(), 0) << control->name();
      EXPECT_GE(control->Top(), 0) << control->name();
      EXPECT_LE(control->Left() + control->Width(), room.width) << control->name();
      EXPECT_LE(control->Top() + control->Height(), room.height) << control->name();
    }
  });
}

TEST_F(Options, OpensOverTheCentreOfTheMainForm) {
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.Left(), CLng(mainForm.Left() + (mainForm.Width() - form.Width()) / 2.0));
    EXPECT_EQ(form.Top(), CLng(mainForm.Top() + (mainForm.Height() - form.Height()) / 2.0));
  });
}

TEST_F(Options, MayBeOffTheScreenIfTheMainFormIs) {
  mainForm.Move({-3000, -2000, 1500, 1201});
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.Left(), CLng(-3000 + (1500 - form.Width()) / 2.0));
    EXPECT_LT(form.Top(), -2000);
  });
}

TEST_F(Options, HalfATwipIsRoundedToEven) {
  int width = 0;
  Open([&](frmOptions& form) { width = form.Width(); });
  // Positions n + 1/2 and n + 1 + 1/2: one is rounded up, the other down, both to an even twip.
  for (const int left : {1200, 1201}) {
    mainForm.Move({left, 900, width + 1, 6000});
    Open([&](frmOptions& form) { EXPECT_EQ(form.Left(), left == 1200 ? 1200 : 1202); });
  }
}

TEST_F(Options, OkAndCancelAreTheResult) {
  EXPECT_TRUE(Open([](frmOptions& form) {
    form.cmdOK.UserClick();
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(form.loaded()) << "the caller reads the boxes and unloads it";
  }));
  EXPECT_FALSE(Open([](frmOptions& form) {
    form.cmdCancel.UserClick();
    EXPECT_FALSE(form.Visible());
    EXPECT_TRUE(form.loaded());
  }));
  EXPECT_FALSE(Open([](frmOptions& form) { form.UserClose(); })) << "the close box";
}

TEST_F(Options, EnterIsOkAndEscapeIsCancel) {
  Open([](frmOptions& form) {
    EXPECT_EQ(form.DefaultButton(), &form.cmdOK);
    EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
  });
}

TEST_F(Options, ButtonsOpenTheirDialogsAboveTheOptions) {
  Open([&](frmOptions& form) {
    form.cmdDisplay.UserClick();
    form.cmdLanSettings.UserClick();
    form.cmdSegmentation.UserClick();
    EXPECT_EQ(opened, (std::vector<std::pair<std::string, Form*>>{
                          {"display", &form}, {"LAN", &form}, {"segmentation", &form}}));
    EXPECT_TRUE(form.Visible());
  });
}

// The list of expressions.

TEST_F(Options, ListShowsTheStoredExpressionsInTheirOrder) {
  PlantList({"^\\d+$", "b", "a"});
  Open([&](frmOptions& form) {
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"^\\d+$", u"b", u"a"}));
    EXPECT_TRUE(form.lstRegEx.MultiSelect);
    EXPECT_EQ(form.lstRegEx.ListIndex(), -1);
    EXPECT_EQ(form.lstRegEx.SelCount(), 0);
    EXPECT_EQ(form.txtRegEx.Text(), u"");
  });
}

TEST_F(Options, AGapHidesAllRowsAfterIt) {
  Plant("RegEx1", "a");
  Plant("RegEx3", "c");
  Open([&](frmOptions& form) { EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a"})); });
}

TEST_F(Options, AnEmptyExpressionHidesAllRowsAfterIt) {
  PlantList({"a", "", "c"});
  Open([&](frmOptions& form) { EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a"})); });
}

TEST_F(Options, NumbersAreNotPadded) {
  Plant("RegEx01", "a");
  Plant("RegEx0", "a");
  Open([&](frmOptions& form) { EXPECT_EQ(form.lstRegEx.ListCount(), 0); });
}

TEST_F(Options, EachLoadingReadsTheListAgain) {
  PlantList({"a", "b"});
  desktop.whenModal["frmOptions"] = [](Form& form) {
    static_cast<frmOptions&>(form).cmdCancel.UserClick();
  };
  frmOptions form({desktop, registry, locale, strings}, {}, mainForm);
  form.ShowModal(&mainForm);
  form.Unload();
  Plant("RegEx1", "changed");
  form.ShowModal(&mainForm);
  EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"changed", u"b"}));
}

TEST_F(Options, AddAppendsARowThatIsReadyToBeTypedOver) {
  PlantList({"a"});
  Open([&](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a", u"[New Expression]"}));
    EXPECT_EQ(form.lstRegEx.ListIndex(), 1);
    EXPECT_TRUE(form.lstRegEx.Selected(1));
    EXPECT_EQ(form.txtRegEx.Text(), u"[New Expression]");
    EXPECT_EQ(form.txtRegEx.SelStart(), 0);
    EXPECT_EQ(form.txtRegEx.SelLength(), 16);
    EXPECT_EQ(FocusOf(form), &form.txtRegEx);
    Type(form.txtRegEx, u"^x");
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a", u"^x"}));
  });
}

TEST_F(Options, AddKeepsTheSelectionOfTheOtherRowsAndRemoveTakesThemAll) {
  PlantList({"a", "b", "c"});
  Open([&](frmOptions& form) {
    form.lstRegEx.UserSelectRows({0, 2}, 2);
    form.cmdAddRegEx.UserClick();
    EXPECT_TRUE(form.lstRegEx.Selected(0));
    EXPECT_FALSE(form.lstRegEx.Selected(1));
    EXPECT_TRUE(form.lstRegEx.Selected(2));
    EXPECT_TRUE(form.lstRegEx.Selected(3));
    EXPECT_EQ(form.lstRegEx.ListIndex(), 3);
    form.cmdRemoveRegEx.UserClick();
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"b"}));
  });
}

TEST_F(Options, AddAfterAddStartsAnotherRow) {
  Open([&](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    form.cmdAddRegEx.UserClick();
    Type(form.txtRegEx, u"second");
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"[New Expression]", u"second"}));
  });
}

TEST_F(Options, ClickOnARowPutsItIntoTheField) {
  PlantList({"first", "second"});
  Open([&](frmOptions& form) {
    form.lstRegEx.SetSelected(1, true);
    EXPECT_EQ(form.txtRegEx.Text(), u"second");
    EXPECT_EQ(form.txtRegEx.SelStart(), 0);
    EXPECT_EQ(form.txtRegEx.SelLength(), 6);
    EXPECT_EQ(FocusOf(form), &form.txtRegEx);
    form.lstRegEx.SetSelected(0, true);
    EXPECT_EQ(form.txtRegEx.Text(), u"first");
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"first", u"second"}));
  });
}

TEST_F(Options, ClickWithoutACurrentRowLeavesTheField) {
  PlantList({"a"});
  Open([&](frmOptions& form) {
    Type(form.txtRegEx, u"typed");
    form.lstRegEx.UserClick();
    EXPECT_EQ(form.txtRegEx.Text(), u"typed");
    EXPECT_EQ(FocusOf(form), nullptr);
  });
}

TEST_F(Options, RowFollowsTheFieldAtEachKeystroke) {
  PlantList({"ab", "x"});
  Open([&](frmOptions& form) {
    form.lstRegEx.SetSelected(0, true);
    for (const TextView typed : {u"a", u"ab", u"abc", u""}) {
      Type(form.txtRegEx, typed);
      EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{Text(typed), u"x"}));
    }
  });
}

TEST_F(Options, TypingWithoutACurrentRowChangesNoRow) {
  PlantList({"a"});
  Open([&](frmOptions& form) {
    Type(form.txtRegEx, u"typed");
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a"}));
  });
}

TEST_F(Options, RemoveTakesAllSelectedRowsAndKeepsTheOrderOfTheOthers) {
  PlantList({"a", "b", "c", "d", "e", "f"});
  Open([&](frmOptions& form) {
    for (const int row : {0, 2, 3, 5}) form.lstRegEx.SetSelected(row, true);
    form.cmdRemoveRegEx.UserClick();
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"b", u"e"}));
    EXPECT_EQ(form.lstRegEx.SelCount(), 0);
    form.cmdRemoveRegEx.UserClick();
    EXPECT_EQ(form.lstRegEx.ListCount(), 2) << "without a selection nothing is removed";
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List(), Numbered({"b", "e"}));
}

TEST_F(Options, TypingAfterTheCurrentRowWasRemovedChangesNoOther) {
  PlantList({"a", "b"});
  Open([&](frmOptions& form) {
    form.lstRegEx.SetSelected(0, true);
    form.cmdRemoveRegEx.UserClick();
    Type(form.txtRegEx, u"typed");
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"b"}));
  });
}

TEST_F(Options, ClearTakesAllRows) {
  PlantList({"a", "b"});
  Open([&](frmOptions& form) {
    form.cmdClearRegEx.UserClick();
    EXPECT_EQ(form.lstRegEx.ListCount(), 0);
    form.cmdOK.UserClick();
  });
  EXPECT_FALSE(HasKey(registry, kCurrentUser, kSegmentList))
      << "an empty list leaves no key at all";
}

TEST_F(Options, OkWithoutRowsAndWithoutKeyCreatesNone) {
  Open([](frmOptions& form) { form.cmdOK.UserClick(); });
  EXPECT_FALSE(HasKey(registry, kCurrentUser, kSegmentList));
}

TEST_F(Options, OkRewritesTheKeyWithNothingElseInIt) {
  PlantList({"a", "b", "", "d"});
  registry.Plant(kCurrentUser, kSegmentList, "Other", kRegDword, DwordBytes(1));
  EXPECT_TRUE(Open([](frmOptions& form) { form.cmdOK.UserClick(); }));
  EXPECT_EQ(List(), Numbered({"a", "b"}))
      << "rows that the list did not show are deleted with the key";
}

TEST_F(Options, OkWritesTheRowsInTheirOrder) {
  PlantList({"a", "b", "c"});
  Open([](frmOptions& form) { form.cmdOK.UserClick(); });
  std::vector<NarrowText> names;
  for (const auto& row : registry.written) {
    EXPECT_EQ(row.path, kSegmentList);
    EXPECT_EQ(row.root, kCurrentUser);
    names.push_back(row.name);
  }
  EXPECT_EQ(names, (std::vector<NarrowText>{"RegEx1", "RegEx2", "RegEx3"}));
}

TEST_F(Options, CancelAndTheCloseBoxStoreNothing) {
  PlantList({"a"});
  Open([](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    form.cmdCancel.UserClick();
  });
  Open([](frmOptions& form) {
    form.cmdClearRegEx.UserClick();
    form.UserClose();
  });
  EXPECT_EQ(List(), Numbered({"a"}));
  EXPECT_TRUE(registry.written.empty());
}

TEST_F(Options, NewRowIsStoredWithItsText) {
  Open([](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List(), Numbered({"[New Expression]"}));
}

TEST_F(Options, EmptyRowIsStoredAndStopsTheListTheNextTime) {
  PlantList({"a", "b", "c"});
  Open([](frmOptions& form) {
    form.lstRegEx.SetSelected(1, true);
    Type(form.txtRegEx, u"");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List(), Numbered({"a", "", "c"}));
  Open([](frmOptions& form) { EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"a"})); });
}

TEST_F(Options, ExpressionWithANameBetweenPercentSignsIsExpandable) {
  registry.SetEnvironment("d", "expanded");
  Open([](frmOptions& form) {
    for (const TextView text : {u"%d%", u"100%", u"%%", u"%unknown%"}) {
      form.cmdAddRegEx.UserClick();
      Type(form.txtRegEx, text);
    }
    form.cmdOK.UserClick();
  });
  StoredValues expected = Numbered({"%d%", "100%", "%%", "%unknown%"});
  expected["RegEx1"].kind = kRegExpandSz;
  expected["RegEx4"].kind = kRegExpandSz;
  EXPECT_EQ(List(), expected);
  Open([](frmOptions& form) {
    EXPECT_EQ(Rows(form.lstRegEx), (std::vector<Text>{u"expanded", u"100%", u"%%", u"%unknown%"}));
  });
}

TEST_F(Options, CharactersBeyondTheCodePageAreLost) {
  Open([](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    Type(form.txtRegEx, u"\u20AC\u4E2D");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List(), Numbered({"\x80?"}));
}

TEST_F(Options, LongExpressionsComeBackWhole) {
  const NarrowText longText(60000, 'x');
  PlantList({longText, "b"});
  Open([&](frmOptions& form) {
    EXPECT_EQ(form.lstRegEx.List(0), Text(60000, u'x'));
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List(), Numbered({longText, "b"}));
}

TEST_F(Options, ForeignKindsInTheListAreReadAsText) {
  registry.Plant(kCurrentUser, kSegmentList, "RegEx1", kRegDword, DwordBytes(-42));
  registry.Plant(kCurrentUser, kSegmentList, "RegEx2", kRegDwordBigEndian,
                 NarrowText("\0\0\0\7", 4));
  registry.Plant(kCurrentUser, kSegmentList, "RegEx3", kRegBinary, NarrowText("a\0b\0", 4));
  registry.Plant(kCurrentUser, kSegmentList, "RegEx4", kRegExpandSz, NarrowText("%none%x\0", 8));
  registry.Plant(kCurrentUser, kSegmentList, "RegEx5", kRegSz, "bare");
  registry.Plant(kCurrentUser, kSegmentList, "regex6", 11, NarrowText("12345678"));
  registry.Plant(kCurrentUser, kSegmentList, "RegEx7", kRegBinary, "");
  Plant("RegEx8", "behind");
  Open([](frmOptions& form) {
    const std::vector<Text> rows = Rows(form.lstRegEx);
    ASSERT_EQ(rows.size(), 6u) << "bytes of none are no text and end the list";
    EXPECT_EQ(rows[0], u"-42");
    EXPECT_EQ(rows[1], u"7");
    EXPECT_EQ(rows[2], u"ab");
    EXPECT_EQ(rows[3], u"%none%x");
    EXPECT_EQ(rows[4], u"bar") << "the last byte counts as the terminator";
    EXPECT_EQ(rows[5], u"\u3231\u3433\u3635\u3837");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(List().at("RegEx1"), Sz("-42"));
}

TEST_F(Options, HostileDataInTheListDoesNoHarm) {
  const NarrowText data[] = {"",
                             "x",
                             NarrowText("\0", 1),
                             NarrowText("\0\0\0", 3),
                             NarrowText("\xFF\xFE\x00", 3),
                             NarrowText("a\0b\0\0", 5)};
  for (const std::uint32_t kind : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 11u, 0xFFFFFFFFu}) {
    for (const NarrowText& bytes : data) {
      registry.Plant(kCurrentUser, kSegmentList, "RegEx1", kind, bytes);
      EXPECT_TRUE(Open([](frmOptions& form) {
        for (int row = 0; row < form.lstRegEx.ListCount(); ++row) {
          EXPECT_FALSE(form.lstRegEx.List(row).empty());
        }
        form.cmdOK.UserClick();
      }));
    }
  }
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Options, ARegistryThatRefusesIsSilent) {
  PlantList({"a"});
  registry.refusedRoot = kCurrentUser;
  EXPECT_TRUE(Open([](frmOptions& form) {
    form.cmdAddRegEx.UserClick();
    form.cmdOK.UserClick();
  }));
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_TRUE(registry.written.empty());
}

TEST_F(Options, KeyWithASubKeyCannotGoAndKeepsWhatIsNotOverwritten) {
  PlantList({"a", "b"});
  registry.Plant(kCurrentUser, kSegmentList + "\\Sub", "x", kRegSz, NarrowText("x\0", 2));
  EXPECT_TRUE(Open([](frmOptions& form) {
    form.lstRegEx.SetSelected(1, true);
    form.cmdRemoveRegEx.UserClick();
    form.lstRegEx.SetSelected(0, true);
    Type(form.txtRegEx, u"new");
    form.cmdOK.UserClick();
  }));
  EXPECT_EQ(List(), Numbered({"new", "b"}));
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Options, TenThousandExpressionsAreHeld) {
  constexpr int kMany = 10000;
  for (int n = 1; n <= kMany; ++n) Plant("RegEx" + std::to_string(n), "row" + std::to_string(n));
  Open([&](frmOptions& form) {
    ASSERT_EQ(form.lstRegEx.ListCount(), kMany);
    for (int row = 0; row < kMany; row += 2) form.lstRegEx.SetSelected(row, true);
    form.cmdRemoveRegEx.UserClick();
    EXPECT_EQ(form.lstRegEx.ListCount(), kMany / 2);
    form.lstRegEx.SetSelected(kMany / 2 - 1, true);
    Type(form.txtRegEx, u"last");
    form.cmdOK.UserClick();
  });
  const StoredValues stored = List();
  EXPECT_EQ(stored.size(), static_cast<std::size_t>(kMany / 2));
  EXPECT_EQ(stored.at("RegEx1"), Sz("row2"));
  EXPECT_EQ(stored.at("RegEx5000"), Sz("last"));
}

// Keys.

TEST_F(Options, F4OpensTheDisplaySettingsOnEveryTab) {
  Open([&](frmOptions& form) {
    for (int tab = 1; tab <= 4; ++tab) {
      form.tabOptions.UserSelectTab(tab);
      EXPECT_TRUE(form.UserKeyDown(kKeyF4, 0));
      EXPECT_EQ(opened.size(), static_cast<std::size_t>(tab));
      EXPECT_EQ(opened.back(), (std::pair<std::string, Form*>{"display", &form}));
    }
  });
}

TEST_F(Options, OtherKeysGoToTheirControls) {
  Open([&](frmOptions& form) {
    for (const int key : {kKeyF4 - 1, kKeyF4 + 1, static_cast<int>(u'A')}) {
      EXPECT_FALSE(form.UserKeyDown(key, 0));
    }
    EXPECT_TRUE(opened.empty());
  });
}

TEST_F(Options, AccessKeysOfTheTabsSelectThem) {
  Open([&](frmOptions& form) {
    for (const auto& [key, tab] : std::initializer_list<std::pair<char16_t, int>>{
             {u'g', 2}, {u'L', 3}, {u'h', 4}, {u'S', 1}}) {
      EXPECT_TRUE(form.UserAccessKey(key, &form.cmdOK));
      EXPECT_EQ(form.tabOptions.SelectedItem(), tab);
      EXPECT_TRUE(form.picTab[static_cast<std::size_t>(tab) - 1].Visible());
    }
  });
}

// The English texts give Alt+H to the tab of the hidden segments and to a box of the general page.
TEST_F(Options, TheSharedAccessKeyGoesToTheBoxAndThenToTheTab) {
  Open([&](frmOptions& form) {
    form.tabOptions.UserSelectTab(2);
    EXPECT_TRUE(form.UserAccessKey(u'h', &form.tabOptions));
    EXPECT_EQ(FocusOf(form), &form.chkOptions[5]);
    EXPECT_EQ(form.chkOptions[5].Value(), 1);
    EXPECT_EQ(form.tabOptions.SelectedItem(), 2);
    EXPECT_TRUE(form.UserAccessKey(u'h', FocusOf(form)));
    EXPECT_EQ(form.chkOptions[5].Value(), 1);
    EXPECT_EQ(form.tabOptions.SelectedItem(), 4);
    EXPECT_TRUE(form.UserAccessKey(u'h', &form.tabOptions)) << "the box is not seen any more";
    EXPECT_EQ(form.chkOptions[5].Value(), 1);
    EXPECT_EQ(form.tabOptions.SelectedItem(), 4);
  });
}

TEST_F(Options, TabKeyGoesFromTheTabsThroughThePanelsToTheButtons) {
  Open([](frmOptions& form) {
    std::vector<const Control*> order(form.controls().begin(), form.controls().end());
    std::stable_sort(order.begin(), order.end(),
                     [](const Control* a, const Control* b) { return a->TabIndex < b->TabIndex; });
    std::erase_if(order, [](const Control* c) { return !c->TakesFocus() || !c->TabStop; });
    EXPECT_EQ(
        order,
        (std::vector<const Control*>{
            &form.tabOptions,     &form.chkOptions[0], &form.chkOptions[1], &form.chkOptions[4],
            &form.cmdDisplay,     &form.chkOptions[2], &form.chkOptions[3], &form.chkOptions[5],
            &form.chkOptions[6],  &form.chkOptions[7], &form.chkOptions[8], &form.cmdSegmentation,
            &form.cmdLanSettings, &form.lstRegEx,      &form.txtRegEx,      &form.cmdAddRegEx,
            &form.cmdRemoveRegEx, &form.cmdClearRegEx, &form.cmdOK,         &form.cmdCancel}));
  });
}

}  // namespace
}  // namespace marl
