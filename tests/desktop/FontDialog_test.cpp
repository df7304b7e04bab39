#include <gtest/gtest.h>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The font dialog in the real program, opened from the display settings: font, size, styles and
// colour, changed by mouse and keys and read back from the registry.

namespace marl::desktop {

namespace {

constexpr wchar_t kSkinKey[] = L"Software\\Oru\\Marl\\GUI";

class FontDialog : public SwitchboardTest {
 protected:
  /// Starts the program and opens the dialog on the normal sample.
  Dialog Open() {
    marl.emplace(suite);
    EXPECT_TRUE(BringForward(marl->WaitForWindow()));
    Keys(L"setgui");
    display.emplace(*marl, L"Display settings");
    EXPECT_TRUE(*display && display->InFront());
    return Again();
  }
  Dialog Again() {
    EXPECT_TRUE(display->Press(L"Normal..."));
    Dialog dialog(*marl, L"Set Font");
    EXPECT_TRUE(dialog && dialog.InFront());
    return dialog;
  }
  /// Closes the display settings with OK, exits the program, and returns what is stored.
  StoredKey Finish() {
    EXPECT_TRUE(display->InFront());
    EXPECT_TRUE(display->Leave(L"OK"));
    EXPECT_FALSE(marl->Box());
    EXPECT_TRUE(Close(*marl));
    return ReadStored(kSkinKey).value_or(StoredKey());
  }

  static HWND Fonts(const Dialog& dialog) { return Combo(dialog, 0); }
  static HWND Sizes(const Dialog& dialog) { return Combo(dialog, 1); }
  static HWND SizeField(const Dialog& dialog) {
    for (const HWND field : dialog.FindAll(L"Edit")) {
      if (GetParent(field) == dialog.window()) return field;
    }
    return nullptr;
  }
  static bool DropsDown(HWND combo) {
    Click(MiddleOf(combo));
    return WaitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; });
  }
  static bool SizeIs(const Dialog& dialog, const wchar_t* size) {
    return WaitUntil([&] { return TextOf(SizeField(dialog)) == size; });
  }
  SuiteFolder suite;
  std::optional<RunningMarl> marl;
  std::optional<Dialog> display;

 private:
  static HWND Combo(const Dialog& dialog, std::size_t place) {
    const std::vector<HWND> combos = dialog.FindAll(L"ComboBox");
    return place < combos.size() ? combos[place] : nullptr;
  }
};

}  // namespace

TEST_F(FontDialog, FontSizeStylesAndColourAreStored) {
  const Dialog dialog = Open();
  ASSERT_TRUE(DropsDown(Fonts(dialog)));
  for (int i = 0; i < 3; ++i) Chord({}, VK_DOWN);
  Chord({}, VK_RETURN);
  ASSERT_TRUE(WaitUntil([&] { return SendMessageW(Fonts(dialog), CB_GETCURSEL, 0, 0) == 2; }));
  const std::string name = ToUtf8(TextOf(Fonts(dialog)));

  ASSERT_TRUE(DropsDown(Sizes(dialog)));
  Chord({}, VK_DOWN);
  Chord({}, VK_DOWN);
  Chord({}, VK_RETURN);
  EXPECT_TRUE(SizeIs(dialog, L"12"));
  EXPECT_TRUE(dialog.Check(L"&Bold", false));
  EXPECT_TRUE(dialog.Check(L"&Italic", true));
  EXPECT_TRUE(dialog.Check(L"&Underline", true));
  EXPECT_TRUE(dialog.Press(L"&Color"));
  EXPECT_TRUE(AnswerColor(*marl, 10, 200, 30, IDOK));
  EXPECT_TRUE(dialog.InFront());
  dialog.Picture("font-changed");
  EXPECT_TRUE(dialog.Leave(L"OK"));
  display->Picture("display-settings-font");

  StoredKey stored = Finish();
  EXPECT_EQ(stored["Font1"], Text(name + "|12|iu"));
  EXPECT_EQ(stored["Text1"], Number(RGB(10, 200, 30)));
  EXPECT_EQ(stored["Font2"], Text("Arial|10|bu"));
}

TEST_F(FontDialog, ChoosingTheSizeThatIsChosenAgainTakesIt) {
  const Dialog dialog = Open();
  const HWND list = Sizes(dialog);
  const auto choose = [&](int row, bool byKey) {
    if (!DropsDown(list)) return false;
    if (byKey) {
      Chord({}, VK_RETURN);
    } else {
      HWND open = nullptr;
      const auto visible = [&] {
        open = nullptr;
        while ((open = FindWindowExW(nullptr, open, L"ComboLBox", nullptr)) != nullptr) {
          if (IsWindowVisible(open)) return true;
        }
        return false;
      };
      if (!WaitUntil(visible)) return false;
      Screenshot("font-size-list");
      Click(RowOf(open, row));
    }
    return WaitUntil([&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) == 0; });
  };
  ASSERT_TRUE(choose(6, false));
  EXPECT_TRUE(SizeIs(dialog, L"12"));
  for (const bool byKey : {false, true}) {
    EXPECT_TRUE(dialog.Type(SizeField(dialog), L"33"));
    ASSERT_TRUE(choose(6, byKey));
    EXPECT_TRUE(SizeIs(dialog, L"12")) << byKey;
  }
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Finish()["Font1"], Text("Arial|12|b"));
}

TEST_F(FontDialog, CancelAndEscAndACancelledColourChangeNothing) {
  for (const bool byKey : {false, true}) {
    const Dialog dialog = byKey ? Again() : Open();
    EXPECT_TRUE(dialog.Type(SizeField(dialog), L"14"));
    EXPECT_TRUE(dialog.Check(L"&Italic", true));
    EXPECT_TRUE(dialog.Press(L"&Color"));
    EXPECT_TRUE(AnswerColor(*marl, 1, 2, 3, byKey ? IDCANCEL : IDOK));
    EXPECT_TRUE(dialog.InFront());
    if (byKey) {
      Chord({}, VK_ESCAPE);
      EXPECT_TRUE(dialog.Gone());
    } else {
      EXPECT_TRUE(dialog.Leave(L"Cancel"));
    }
    EXPECT_TRUE(display->InFront());
  }
  StoredKey stored = Finish();
  EXPECT_EQ(stored["Font1"], Text("Arial|10|b"));
  EXPECT_EQ(stored["Text1"], Number(RGB(255, 255, 255)));
}

TEST_F(FontDialog, OpeningOn825PointsAndOkStores8) {
  PutStored(kSkinKey, "Font1", Text("Arial|8.25|"));
  {
    const Dialog dialog = Open();
    EXPECT_TRUE(SizeIs(dialog, L"8"));
    EXPECT_TRUE(dialog.Leave(L"Cancel"));
    EXPECT_EQ(Finish()["Font1"], Text("Arial|8.25|"));
  }
  const Dialog dialog = Open();
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Finish()["Font1"], Text("Arial|8|"));
}

TEST_F(FontDialog, InvalidSizesAreSkippedSilently) {
  const Dialog dialog = Open();
  EXPECT_TRUE(dialog.Type(SizeField(dialog), L"9.5"));
  for (const wchar_t* const text : {L"0", L"-8", L"1e9", L"abc", L"99999999999999999999", L""}) {
    Chord({VK_MENU}, 'S');  // selects the field's text
    if (*text) {
      Keys(text);
    } else {
      Chord({}, VK_DELETE);
    }
    EXPECT_TRUE(SizeIs(dialog, text)) << ToUtf8(text);
    EXPECT_FALSE(marl->Box());
  }
  Chord({}, VK_RETURN);
  EXPECT_TRUE(dialog.Gone());
  // The intermediate digits were sizes too: 99 and 999 points.
  EXPECT_EQ(Finish()["Font1"], Text("Arial|999|b"));
}

TEST_F(FontDialog, AFontThatIsNotInstalledIsInNoList) {
  PutStored(kSkinKey, "Font1", Text("Xqz Antiqua|11|i"));
  const Dialog dialog = Open();
  EXPECT_EQ(SendMessageW(Fonts(dialog), CB_GETCURSEL, 0, 0), CB_ERR);
  EXPECT_TRUE(dialog.FocusGoesTo(SizeField(dialog)));
  EXPECT_TRUE(SizeIs(dialog, L"11"));
  EXPECT_TRUE(dialog.Checked(L"&Italic"));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Finish()["Font1"], Text("Xqz Antiqua|11|i"));
}

TEST_F(FontDialog, TheKeyboardAloneDoesIt) {
  PutStored(kSkinKey, "Font1", Text("Tahoma|10|b"));
  const Dialog dialog = Open();
  EXPECT_TRUE(dialog.FocusGoesTo(Fonts(dialog)));
  Chord({VK_MENU}, 'S');
  EXPECT_TRUE(dialog.FocusGoesTo(SizeField(dialog)));
  Keys(L"13");
  EXPECT_TRUE(SizeIs(dialog, L"13"));
  Chord({VK_MENU}, 'I');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(L"&Italic"); }));
  Chord({VK_MENU}, 'U');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(L"&Underline"); }));
  Chord({VK_MENU}, 'C');
  EXPECT_TRUE(AnswerColor(*marl, 0, 0, 128, IDOK));
  EXPECT_TRUE(dialog.InFront());
  Chord({}, VK_RETURN);
  EXPECT_TRUE(dialog.Gone());
  StoredKey stored = Finish();
  EXPECT_EQ(stored["Font1"], Text("Tahoma|13|biu"));
  EXPECT_EQ(stored["Text1"], Number(RGB(0, 0, 128)));
}

}  // namespace marl::desktop
