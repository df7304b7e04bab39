#include "tests/desktop/Switchboard.h"

// Balloon tips of the buttons, shown by the mouse.

namespace marl::desktop {

namespace {

class Balloon : public SwitchboardTest {
 protected:
  struct Search {
    DWORD process;
    int count;
    HWND shown;
  };
  static BOOL CALLBACK Take(HWND window, LPARAM argument) {
    auto& search = *reinterpret_cast<Search*>(argument);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || _wcsicmp(ClassOf(window).c_str(), L"tooltips_class32") != 0) {
      return TRUE;
    }
    ++search.count;
    if (IsWindowVisible(window)) search.shown = window;
    return TRUE;
  }
  /// The program's tip windows, and the visible one.
  static Search Tips(const RunningMarl& marl) {
    Search search = {marl.id(), 0, nullptr};
    EnumWindows(Take, reinterpret_cast<LPARAM>(&search));
    return search;
  }
  /// Moves the mouse to a button, and then once more on it.
  static void Hover(HWND main, int button) {
    const POINT at = LabelOf(main, button);
    MoveMouse(at.x - 3, at.y);
    MoveMouse(at.x, at.y);
  }
};

}  // namespace

TEST_F(Balloon, ShowsOverTheButtonUnderTheMouse) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  // A tip's window is created when the mouse first moves over its button.
  MoveMouse(0, 0);
  const int before = Tips(marl).count;
  EXPECT_LE(before, 1) << "the button where the mouse was at the start";
  for (int button = 0; button < 18; ++button) {
    Hover(main, button);
    ASSERT_TRUE(WaitUntil([&] { return Tips(marl).count >= button + 1; })) << button;
    // A balloon over the next button would take the mouse from it.
    MoveMouse(0, 0);
    ASSERT_TRUE(WaitUntil([&] { return Tips(marl).shown == nullptr; })) << button;
  }
  EXPECT_EQ(Tips(marl).count, 18);
  for (const int button : {0, kEdit}) {
    Hover(main, button);
    ASSERT_TRUE(WaitUntil([&] { return Tips(marl).shown != nullptr; })) << button;
    Screenshot("balloon");
    MoveMouse(0, 0);
    ASSERT_TRUE(WaitUntil([&] { return Tips(marl).shown == nullptr; })) << button;
  }
}

TEST_F(Balloon, NoneWithTooltipsSwitchedOff) {
  settings.Set(L"Tooltips", L"False");
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  // With a server no button is disabled: each shows in the status bar that the mouse is on it, and
  // at that moment its tip would be created.
  const HWND status = FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr);
  std::wstring before;
  for (int button = 0; button < 18; ++button) {
    Hover(main, button);
    ASSERT_TRUE(WaitUntil([&] {
      const std::wstring now = TextOf(status);
      return !now.empty() && now != before;
    })) << button;
    before = TextOf(status);
  }
  SettleInput();
  EXPECT_EQ(Tips(marl).count, 0);
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(settings.Get(L"Tooltips"), L"False");
}

}  // namespace marl::desktop
