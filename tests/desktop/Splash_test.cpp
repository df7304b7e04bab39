#include <algorithm>
#include <vector>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The splash, the about box and the icons of the windows.

namespace marl::desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSplashWidth = 7200;  // twips
constexpr int kSplashHeight = 4500;
// Until then it does not close without the user.
constexpr std::chrono::milliseconds kByItself{4900};

HWND WaitForSplash(const RunningMarl& marl) {
  HWND splash = nullptr;
  WaitUntil([&] { return (splash = marl.Splash()) != nullptr || !marl.Running(); });
  return splash;
}

/// Waits until start-up has reached the point where the splash may close: the main form has its
/// position and title by then.
bool WaitUntilItMayGo(const RunningMarl& marl) {
  return WaitUntil([&] { return marl.Window() != nullptr; }) && marl.WaitForIdle();
}

std::size_t CountColors(const Pixels& pixels, COLORREF color) {
  return static_cast<std::size_t>(std::count(pixels.colors.begin(), pixels.colors.end(), color));
}

/// Number of pixels in the application icon's gold at the left of the title bar.
std::size_t GoldInTitle(HWND window) {
  const RECT place = AreaOf(window);
  const int height = GetSystemMetrics(SM_CYFIXEDFRAME) + GetSystemMetrics(SM_CYCAPTION);
  const Pixels title =
      Capture({place.left, place.top, place.left + 2 * height, place.top + height});
  return static_cast<std::size_t>(
      std::count_if(title.colors.begin(), title.colors.end(), [](COLORREF color) {
        return GetRValue(color) > GetBValue(color) + 90 && GetGValue(color) > GetBValue(color) + 60;
      }));
}

class Splash : public SwitchboardTest {
 protected:
  /// True if `act` closes the splash before it would have closed by itself. If the start takes too
  /// long to tell, it is repeated.
  testing::AssertionResult EndsEarly(
      const std::function<bool(const RunningMarl& marl, HWND splash)>& act) {
    for (int attempt = 0; attempt < 10; ++attempt) {
      const auto start = Clock::now();
      const RunningMarl marl(suite);
      const HWND splash = WaitForSplash(marl);
      if (!splash || !WaitUntilItMayGo(marl)) return testing::AssertionFailure() << "no start";
      if (!act(marl, splash)) return testing::AssertionFailure() << "no input";
      if (!WaitUntil([&] { return !IsWindow(splash); })) {
        return testing::AssertionFailure() << "it stays";
      }
      const auto gone = Clock::now();
      if (!WaitUntil([&] { return IsWindowVisible(marl.Window()) != FALSE; })) {
        return testing::AssertionFailure() << "the main form does not show";
      }
      if (const auto closed = Close(marl); !closed) return closed;
      if (gone - start < kByItself) return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "it never went before its time";
  }

  SuiteFolder suite;
};

/// The about box, opened by its shortcut.
class About : public SwitchboardTest {
 protected:
  void SetUp() override {
    main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, VK_F1);
    ASSERT_TRUE(WaitUntil([&] { return (about = Find()) != nullptr; }));
  }

  HWND Find() const {
    const HWND window = FindWindowW(L"MarlForm", L"About Marl");
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return window && process == marl.id() && IsWindowVisible(window) ? window : nullptr;
  }

  SuiteFolder suite;
  RunningMarl marl{suite};
  HWND main = nullptr;
  HWND about = nullptr;
};

}  // namespace

TEST_F(Splash, IsInTheMiddleOfTheScreenWhileTheMainFormIsHidden) {
  const RunningMarl marl(suite);
  const HWND splash = WaitForSplash(marl);
  ASSERT_TRUE(splash);
  const RECT place = AreaOf(splash);
  EXPECT_NEAR(place.right - place.left, PixelsOf(kSplashWidth), 1);
  EXPECT_NEAR(place.bottom - place.top, PixelsOf(kSplashHeight), 1);
  EXPECT_NEAR(place.left, GetSystemMetrics(SM_CXSCREEN) - place.right, 2);
  EXPECT_NEAR(place.top, GetSystemMetrics(SM_CYSCREEN) - place.bottom, 2);
  EXPECT_FALSE(IsWindowVisible(marl.Window()));

  ASSERT_TRUE(WaitUntilItMayGo(marl));
  Screenshot("splash", splash);
  // The version, white on the plain band at six tenths of the height.
  const int top = place.top + PixelsOf(kSplashHeight) * 6 / 10;
  const RECT band = {place.left, top, place.right, top + PixelsOf(300)};
  EXPECT_GT(CountColors(Capture(band), RGB(255, 255, 255)), 60u);
}

TEST_F(Splash, ClosesByItselfAfterFiveSeconds) {
  const auto start = Clock::now();
  const RunningMarl marl(suite);
  const HWND splash = WaitForSplash(marl);
  ASSERT_TRUE(splash);
  ASSERT_TRUE(WaitUntilItMayGo(marl));
  const auto ready = Clock::now();
  ASSERT_TRUE(WaitUntil([&] { return !IsWindow(splash); }));
  const auto gone = Clock::now();
  EXPECT_GE(gone - start, kByItself);
  // The exact time is checked by a unit test with its own clock.
  EXPECT_LE(gone - ready, std::chrono::seconds(15));
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(marl.Window()) != FALSE; }));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Splash, ClickOnItClosesIt) {
  EXPECT_TRUE(EndsEarly([](const RunningMarl&, HWND splash) {
    const RECT place = AreaOf(splash);
    Click(place.left + 40, place.top + 40);
    return true;
  }));
}

TEST_F(Splash, KeyClosesIt) {
  EXPECT_TRUE(EndsEarly([](const RunningMarl&, HWND splash) {
    if (BringForward(splash)) Keys(L" ");
    return true;
  }));
}

TEST_F(Splash, SecondStartDuringItShowsAMessage) {
  const RunningMarl first(suite);
  ASSERT_TRUE(WaitForSplash(first));
  const RunningMarl second(suite);
  const MessageBoxWindow box = second.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"Marl is already running");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(second.WaitForExit(), 0u);
  EXPECT_TRUE(first.WaitForWindow());
}

TEST_F(Splash, CommandsOfOtherProgramsAreTakenMeanwhile) {
  const RunningMarl marl(suite);
  ASSERT_TRUE(WaitForSplash(marl));
  ASSERT_TRUE(WaitUntilItMayGo(marl));
  DdeClient client(DdeClient::Kind::kWide);
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  EXPECT_TRUE(client.Execute(L"PRJ C:\\x.qprx"));
  EXPECT_TRUE(marl.Splash());
}

TEST_F(Splash, ClosingTheMainFormMeanwhileEndsTheProgram) {
  const RunningMarl marl(suite);
  ASSERT_TRUE(WaitForSplash(marl));
  ASSERT_TRUE(WaitUntilItMayGo(marl));
  EXPECT_TRUE(Close(marl)) << "the splash closes too";
}

TEST_F(Splash, MainFormHasItsIconFromTheLibrary) {
  const RunningMarl marl(suite);
  const HWND window = marl.WaitForWindow();
  ASSERT_TRUE(window);
  EXPECT_TRUE(WaitUntil([&] { return GoldInTitle(window) > 5; }));
}

TEST_F(Splash, MissingIconLibraryIsSilent) {
  DeleteFileW((suite.path() + L"\\q17icl.oru").c_str());
  const RunningMarl marl(suite);
  const HWND window = marl.WaitForWindow();
  ASSERT_TRUE(window);
  Screenshot("main-without-icons", window);
  EXPECT_EQ(GoldInTitle(window), 0u);
  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
}

TEST(ProgramFile, CarriesItsIconAsGroupOneWithFourImages) {
  const HMODULE program =
      LoadLibraryExW(g_programs.marl.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_TRUE(program);
  const auto read = [&](int id, LPCWSTR kind) {
    std::vector<BYTE> bytes;
    const HRSRC found = FindResourceW(program, MAKEINTRESOURCEW(id), kind);
    if (!found) return bytes;
    const auto* const data = static_cast<const BYTE*>(LockResource(LoadResource(program, found)));
    bytes.assign(data, data + SizeofResource(program, found));
    return bytes;
  };
  // A header of three words, then fourteen bytes per image: width, height, colours, reserved,
  // planes, depth, size and number.
  const std::vector<BYTE> group = read(1, RT_GROUP_ICON);
  ASSERT_EQ(group.size(), 6u + 4 * 14);
  EXPECT_EQ(group[2], 1) << "icons";
  EXPECT_EQ(group[4], 4);
  for (std::size_t i = 0; i < 4; ++i) {
    const BYTE* const entry = &group[6 + 14 * i];
    const int id = entry[12] | entry[13] << 8;
    EXPECT_EQ(id, 30001 + static_cast<int>(i));
    const std::vector<BYTE> image = read(id, RT_ICON);
    EXPECT_FALSE(image.empty()) << id;
    EXPECT_EQ(image.size(),
              std::size_t{entry[8]} | std::size_t{entry[9]} << 8 | std::size_t{entry[10]} << 16);
  }
  FreeLibrary(program);
}

TEST_F(About, IsModalAndClosesByItsButton) {
  Screenshot("about", about);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindowEnabled(main); }));
  EXPECT_EQ(GetWindow(about, GW_OWNER), main);
  EXPECT_TRUE(WaitUntil([&] { return GoldInTitle(about) > 5; }));
  const HWND ok = FindWindowExW(about, nullptr, L"BUTTON", L"OK");
  ASSERT_TRUE(ok);
  const RECT place = AreaOf(ok);
  Click((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(about); }));
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) && GetForegroundWindow() == main; }));
  EXPECT_TRUE(Close(marl));
}

TEST_F(About, EnterAndEscCloseIt) {
  for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}}) {
    ASSERT_TRUE(WaitUntil([&] { return (about = Find()) != nullptr; }));
    ASSERT_TRUE(BringForward(about));
    Chord({}, key);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(about); })) << key;
    ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == main; }));
    if (key == VK_RETURN) {
      ASSERT_TRUE(BringForward(main));
      Chord({VK_CONTROL}, VK_F1);
    }
  }
}

TEST_F(About, LinksOpenTheirSitesByClickAndByAccessKey) {
  const WebAddresses web(suite.path() + L"\\Q17Bench.exe");
  if (!web.made()) GTEST_SKIP() << "web addresses belong to the user here";
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == about; }));
  const auto opened = [&](std::size_t count) {
    std::vector<std::wstring> addresses;
    for (const Started& started : suite.WaitForTools(count)) addresses.push_back(started.arguments);
    return addresses;
  };
  RECT inner = {};
  GetClientRect(about, &inner);
  POINT corner = {0, 0};
  ClientToScreen(about, &corner);
  Click(corner.x + 20, corner.y + 20);
  EXPECT_EQ(opened(1), (std::vector<std::wstring>{L"\"http://www.oru.example\""}));
  ASSERT_TRUE(BringForward(about));
  Chord({VK_MENU}, 'I');
  EXPECT_EQ(opened(2).back(), L"\"http://www.marl.example\"");
  ASSERT_TRUE(BringForward(about));
  Chord({VK_MENU}, 'S');
  EXPECT_EQ(opened(3).back(), L"\"http://support.marl.example\"");
  EXPECT_TRUE(IsWindow(about));

  // The focus is on the link's hidden button now. Coming back from another program opens nothing;
  // the key still does.
  for (int time = 0; time < 2; ++time) {
    const HWND other = CreateWindowExW(0, L"STATIC", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                       0, 200, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(BringForward(other));
    DestroyWindow(other);
    ASSERT_TRUE(BringForward(about));
  }
  Chord({VK_MENU}, 'I');
  EXPECT_EQ(opened(4).size(), 4u);
  EXPECT_EQ(opened(4).back(), L"\"http://www.marl.example\"");
}

}  // namespace marl::desktop
