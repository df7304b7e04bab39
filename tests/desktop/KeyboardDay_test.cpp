#include "tests/desktop/KeyboardDay.h"

// From the first start to the exit, with every button of the panel. The dialogs are used in
// KeyboardForms_test, every entry of the menu bar in Menu_test.

namespace marl::desktop {

TEST_P(KeyboardDay, EverythingIsReachedWithoutAMouse) {
  settings.Set(L"FirstRun", L"Y");
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, IDS_ASK_DEMONSTRATION, true));
  ASSERT_TRUE(Answer(marl, IDS_ASK_WIZARD, true));
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  std::size_t count = 1;  // Q17Shell.exe, for the context menu
  ASSERT_EQ(suite.WaitForTools(count).size(), count);

  // Every button of the panel, one after the other.
  for (int button = 0; button < kExit; ++button) {
    ASSERT_TRUE(FocusOn(main, VK_TAB, button)) << button;
    const std::wstring tool = ToolOf(button);
    if (!tool.empty()) {
      Chord({}, button % 2 ? VK_RETURN : VK_SPACE);
      const auto starts = suite.WaitForTools(++count);
      ASSERT_EQ(starts.size(), count);
      const bool server = button == kAdministrator;
      EXPECT_EQ(starts.back(), Start(suite, tool, server ? L"tracking.example.com /port=80" : L""));
    } else if (button == kChangeServer) {
      Chord({}, VK_SPACE);
      const Dialog dialog(marl, words(IDS_SERVER_TITLE).c_str());
      ASSERT_TRUE(dialog);
      ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
      Keys(L"tracking.example.com");
      Chord({}, VK_RETURN);
      ASSERT_TRUE(dialog.Gone());
      EXPECT_TRUE(WaitUntil(
          [&] { return TextOf(main).find(L"tracking.example.com") != std::wstring::npos; }));
    } else if (button == kQaCheck) {
      Chord({}, VK_SPACE);
      const MessageBoxWindow box = marl.WaitForBox();
      ASSERT_TRUE(box) << "its component is not installed";
      ASSERT_TRUE(Press(box.window(), {}, VK_RETURN));
      ASSERT_TRUE(WaitUntil([&] { return !IsWindow(box.window()); }));
    }
  }
  Screenshot("keyboard-" + GetParam() + "-panel", main);

  // The display settings: by the hidden word, their fields by Tab, and OK by Enter.
  ASSERT_TRUE(BringForward(main));
  Keys(L"setgui");
  {
    const Dialog dialog(marl, words(IDS_UI_TITLE).c_str());
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    ASSERT_TRUE(dialog.TabTo(dialog.Find(L"ScrollBar")));
    const HWND bar = dialog.Focus();
    const int angle = GetScrollPos(bar, SB_CTL);
    for (int step = 1; step <= 3; ++step) {
      Chord({}, VK_RIGHT);
      ASSERT_TRUE(WaitUntil([&] { return GetScrollPos(bar, SB_CTL) == angle + step; })) << step;
    }
    // The first row's tick off: the first button is hidden.
    ASSERT_TRUE(dialog.TabTo(dialog.Find(L"ListBox")));
    Chord({}, VK_HOME);
    Chord({}, VK_SPACE);
    Screenshot("keyboard-" + GetParam() + "-look", dialog.window());
    Chord({}, VK_RETURN);
    ASSERT_TRUE(dialog.Gone());
    const auto look = ReadStored(L"Software\\Oru\\Marl\\GUI");
    ASSERT_TRUE(look && look->contains("Angle"));
    EXPECT_EQ(look->at("Angle"), Number(static_cast<std::uint32_t>(angle + 3)));
    EXPECT_EQ(look->at("DisplayIcons").bytes.substr(0, 8), "000|011|");
  }

  // The options: the pages by Ctrl+Tab and by access keys, a box by its key, a dialog of theirs.
  ASSERT_TRUE(Press(main, {VK_SHIFT}, VK_F6));
  {
    const Dialog dialog(marl, words(IDS_OPTIONS_TITLE).c_str());
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    ASSERT_TRUE(PressAccessKey(dialog.window(), IDS_OPTIONS_TOOLS_MENU));
    EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(words(IDS_OPTIONS_TOOLS_MENU).c_str()); }));
    for (const int page : {IDS_OPTIONS_SEGMENTATION, IDS_OPTIONS_LAN, IDS_OPTIONS_EXPRESSIONS_ADD,
                           IDS_OPTIONS_DISPLAY}) {
      ASSERT_TRUE(Press(dialog.window(), {VK_CONTROL}, VK_TAB));
      EXPECT_TRUE(WaitUntil([&] { return dialog.Button(words(page).c_str()) != nullptr; })) << page;
    }
    ASSERT_TRUE(Press(dialog.window(), {VK_CONTROL}, VK_TAB));
    ASSERT_TRUE(Press(dialog.window(), {VK_CONTROL}, VK_TAB));
    ASSERT_TRUE(PressAccessKey(dialog.window(), IDS_OPTIONS_LAN));
    {
      const Dialog lan(marl, words(IDS_LAN_TITLE).c_str());
      ASSERT_TRUE(lan);
      ASSERT_TRUE(WaitUntil([&] { return lan.InFront(); }));
      Chord({}, VK_ESCAPE);
      ASSERT_TRUE(lan.Gone());
    }
    ASSERT_TRUE(Press(dialog.window(), {}, VK_RETURN));
    ASSERT_TRUE(dialog.Gone());
  }
  // The first program of the Tools menu, which is now shown, by F10, arrows and Enter.
  ASSERT_TRUE(Press(main, {}, VK_F10));
  for (const int key : {VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_DOWN, VK_RETURN}) {
    Chord({}, static_cast<WORD>(key));
  }
  const auto starts = suite.WaitForTools(++count);
  ASSERT_EQ(starts.size(), count);
  EXPECT_EQ(starts.back(), Start(suite, L"FaceMap.exe"));

  // About, and out.
  ASSERT_TRUE(Press(main, {VK_CONTROL}, VK_F1));
  {
    const Dialog about(marl, words(IDS_ABOUT_TITLE).c_str());
    ASSERT_TRUE(about);
    ASSERT_TRUE(WaitUntil([&] { return about.InFront(); }));
    Chord({}, VK_ESCAPE);
    ASSERT_TRUE(about.Gone());
  }
  ASSERT_TRUE(FocusOn(main, VK_END, kExit));
  Chord({}, VK_SPACE);
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(suite.WaitForTools(count).size(), count);
}

INSTANTIATE_TEST_SUITE_P(Languages, KeyboardDay, testing::ValuesIn(MemoryStrings::Languages()));

}  // namespace marl::desktop
