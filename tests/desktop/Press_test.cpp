#include <algorithm>
#include <cstdint>

#include "tests/desktop/Component.h"
#include "tests/desktop/Switchboard.h"

// Real clicks on the panel, and the programs that they start.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr wchar_t kOddFolder[] = L"My  suite, \u00dcbung \u03a9 & co (1)";

class Press : public SwitchboardTest {};

/// Clicks each program's icon and then its label, and compares what was started.
void PressAll(const SuiteFolder& suite, const RunningMarl& marl, const std::wstring& directory) {
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const std::wstring folder = directory.ends_with(L'\\') ? directory : directory + L"\\";
  std::size_t count = 0;
  for (int button = 0; button < kExit; ++button) {
    const std::wstring tool = ToolOf(button);
    if (tool.empty()) continue;
    for (const POINT at : {IconOf(main, button), LabelOf(main, button)}) {
      Click(at);
      const Starts starts = suite.WaitForTools(++count);
      if (starts.size() != count) Screenshot("no-start");
      ASSERT_EQ(starts.size(), count) << "button " << button;
      EXPECT_EQ(starts.back(), (Started{tool, folder + tool, L"", directory, SW_SHOWNORMAL}));
    }
  }
  EXPECT_FALSE(marl.Box());
}

}  // namespace

TEST_F(Press, IconsAndLabelsStartTheirToolsFromAFolderWithBlanksAndForeignLetters) {
  const SuiteFolder suite(kOddFolder);
  const RunningMarl marl(suite);
  PressAll(suite, marl, suite.path());
  Screenshot("switchboard");
}

TEST_F(Press, IconsAndLabelsStartTheirToolsAtADriveRoot) {
  const SuiteFolder suite(kOddFolder);
  const DriveLetter drive(suite.path());
  ASSERT_TRUE(drive.made());
  ASSERT_TRUE(WaitUntil([&] {
    return GetFileAttributesW((drive.name() + L"\\Marl.exe").c_str()) != INVALID_FILE_ATTRIBUTES;
  }));
  const RunningMarl marl(suite, L"", drive.name() + L"\\Marl.exe");
  PressAll(suite, marl, drive.name() + L"\\");
}

TEST_F(Press, PressThatLosesTheMouseStartsNothing) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const auto captured = [&] {
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    return GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &thread) &&
           thread.hwndCapture == main;
  };
  // Each time on another button: a second press would be a double click.
  const auto lose = [&](int button, UINT message, WPARAM what) {
    const POINT at = IconOf(main, button);
    PressMouse(at);
    ASSERT_TRUE(WaitUntil(captured));
    SendMessageW(main, message, what, 0);
    EXPECT_FALSE(captured());
    ReleaseMouse(at);
  };
  lose(kEdit, WM_CANCELMODE, 0);
  lose(11, WM_POWERBROADCAST, PBT_APMSUSPEND);
  lose(13, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC);
  // The next press is one again, and the only one.
  Click(IconOf(main, 0));
  EXPECT_EQ(suite.WaitForTools(1), Starts{Start(suite, L"Q17Gauge.exe")});
  EXPECT_TRUE(Close(marl));
}

TEST_F(Press, MissingToolIsDisabledAndSilent) {
  // A colour that only labels have.
  constexpr COLORREF kPlain = RGB(255, 255, 0);
  settings.SetRegistryNumber(L"GUI", L"Text1", kPlain);
  // On a plain ground it fades to this one, which is readable (4.5 to 1).
  settings.SetRegistryNumber(L"GUI", L"Color1", RGB(0, 77, 57));
  settings.SetRegistryNumber(L"GUI", L"Color2", RGB(0, 77, 57));
  constexpr COLORREF kWeaker = RGB(167, 194, 20);
  // The mouse must be elsewhere: a button under it looks different.
  MoveMouse(0, 0);
  const auto has = [](HWND main, int button, COLORREF color) {
    RECT area = CellOf(main, button);
    area.top = LabelOf(main, button).y - PixelsOf(210);
    const Pixels label = Capture(area);
    return std::count(label.colors.begin(), label.colors.end(), color) > 5;
  };
  const auto painted = [&](HWND main, int except) {
    return WaitUntil([&] {
      for (int button = 0; button < 18; ++button) {
        if (button != except && !has(main, button, kPlain)) return false;
      }
      return true;
    });
  };
  {
    const SuiteFolder suite;
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(painted(main, kTrackProjects)) << "there is no server";
    ASSERT_TRUE(Close(marl));
  }
  const SuiteFolder suite(L"Suite", {L"Q17Kit.exe"});
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(WaitUntil([&] { return has(main, kEdit, kPlain) && has(main, 17, kPlain); }));
  EXPECT_TRUE(WaitUntil([&] { return has(main, kUtilities, kWeaker); }));
  EXPECT_FALSE(has(main, kUtilities, kPlain));
  Screenshot("missing-tool", main);

  Click(IconOf(main, kUtilities));
  Click(LabelOf(main, kUtilities));
  // The next button works, and its tool is the only one that was started.
  Click(IconOf(main, kEdit));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Bench.exe")}));
  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u);
  EXPECT_EQ(settings.Get(L"XtraFeatures"), L"1") << "disabled, but still visible";
}

TEST_F(Press, ToolInstalledLaterStaysDeadUntilTheNextStart) {
  const SuiteFolder suite(L"Suite", {L"Q17Kit.exe"});
  const std::wstring tool = suite.path() + L"\\Q17Kit.exe";
  {
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), tool.c_str(), TRUE));
    Click(IconOf(main, kUtilities));
    Click(IconOf(main, kEdit));
    EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Bench.exe")}));
    ASSERT_TRUE(Close(marl));
  }
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  Click(IconOf(main, kUtilities));
  EXPECT_EQ(suite.WaitForTools(2),
            (Starts{Start(suite, L"Q17Bench.exe"), Start(suite, L"Q17Kit.exe")}));
}

TEST_F(Press, ToolRemovedLaterIsComplainedAbout) {
  const SuiteFolder suite(kOddFolder);
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  suite.Remove(L"Q17Bench.exe");
  Click(LabelOf(main, kEdit));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  Screenshot("file-not-found");
  EXPECT_EQ(box.Title(), L"Marl");
  EXPECT_EQ(box.Text(), L"File not found : " + suite.path() + L"\\Q17Bench.exe");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_TRUE(marl.Running());
}

TEST_F(Press, QaCheckWithoutItsComponentShowsAMessage) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  for (int time = 0; time < 2; ++time) {
    Click(IconOf(main, kQaCheck));
    const MessageBoxWindow box = marl.WaitForBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box.Text(), L"This tool is not installed. Please run the setup of the suite again.");
    EXPECT_TRUE(box.Press(IDOK));
  }
  EXPECT_TRUE(Close(marl));
}

TEST_F(Press, QaCheckWhoseComponentCannotBeMadeEndsTheProgramWithTheSystemsText) {
  const SuiteFolder suite;
  const RegisteredComponent qa(L"Marl.QaComponent", suite.path() + L"\\nowhere.dll");
  ASSERT_TRUE(qa.made());
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  // By the menu: the button's tip could cover the message.
  ASSERT_TRUE(marl.PressMenu(L'O', L'Q'));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  Screenshot("component-broken");
  EXPECT_EQ(box.Title(), L"Marl");
  EXPECT_NE(box.Text(), L"");
  EXPECT_EQ(box.Text().find(L"not installed"), std::wstring::npos) << ToUtf8(box.Text());
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(marl.WaitForExit(), 1u);
}

// A second click within the time of a double click is not a second press.
TEST_F(Press, DoubleClickPressesOnce) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  DoubleClick(IconOf(main, kEdit));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Bench.exe")}));
  Click(IconOf(main, kUtilities));
  EXPECT_EQ(suite.WaitForTools(2),
            (Starts{Start(suite, L"Q17Bench.exe"), Start(suite, L"Q17Kit.exe")}));
}

TEST_F(Press, TwoHundredPressesLeakNothing) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  std::size_t pressed = 0;
  const auto press = [&](std::size_t times) {
    for (std::size_t i = 0; i < times; ++i) {
      // Alternately, so that no two clicks make a double click.
      Click(pressed % 2 ? IconOf(main, kEdit) : LabelOf(main, kUtilities));
      ++pressed;
      const std::size_t started = suite.WaitForTools(pressed).size();
      if (started != pressed) {
        return testing::AssertionFailure() << started << " starts after press " << pressed;
      }
    }
    return testing::AssertionSuccess();
  };
  // What the platform loads at the first starts stays loaded.
  ASSERT_TRUE(press(20));
  const std::size_t handles = marl.Handles();
  DWORD graphics = marl.GraphicsObjects();
  DWORD leastGraphics = MAXDWORD;
  const DWORD objects = marl.UserObjects();
  ASSERT_GT(handles, 0u);
  ASSERT_GT(graphics, 0u);
  ASSERT_GT(objects, 0u);
  // A leak grows with every batch; the platform's own allocations come only now and then.
  std::vector<std::size_t> bytes = {marl.PrivateBytes()};
  ASSERT_GT(bytes.front(), 0u);
  std::size_t leastGrowth = SIZE_MAX;
  for (int batch = 0; batch < 4; ++batch) {
    ASSERT_TRUE(press(50));
    const std::size_t before = bytes.back();
    bytes.push_back(marl.PrivateBytes());
    leastGrowth = std::min(leastGrowth, bytes.back() > before ? bytes.back() - before : 0);
    const DWORD now = marl.GraphicsObjects();
    leastGraphics = std::min(leastGraphics, now > graphics ? now - graphics : 0);
    graphics = now;
  }
  EXPECT_TRUE(WaitUntil([&] { return marl.Handles() <= handles + 2; }))
      << handles << " handles before, " << marl.Handles() << " after";
  EXPECT_LE(leastGraphics, 2u);
  EXPECT_TRUE(WaitUntil([&] { return marl.UserObjects() <= objects + 2; }))
      << objects << " windows and menus before, " << marl.UserObjects() << " after";
  EXPECT_LE(leastGrowth, 8192u) << testing::PrintToString(bytes);
  RecordProperty("handles", std::to_string(handles) + " to " + std::to_string(marl.Handles()));
  RecordProperty("bytes", testing::PrintToString(bytes));
}

}  // namespace marl::desktop
