#include <windows.h>
#include <shellapi.h>

#include <algorithm>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The switchboard in the notification area, with real clicks on its icon.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr UINT kDoubleClick = 0x203;

class Tray : public SwitchboardTest {
 protected:
  Tray() { GiveIcons(suite); }

  /// The icon library is beside the program, wherever that was built.
  static void GiveIcons(const SuiteFolder& folder) {
    const std::wstring& marl = g_programs.marl;
    const std::wstring library = marl.substr(0, marl.rfind(L'\\') + 1) + L"q17icl.oru";
    CopyFileW(library.c_str(), (folder.path() + L"\\q17icl.oru").c_str(), FALSE);
  }

  static UINT MenuMessage() { return RegisterWindowMessageW(L"msgMarlMenu"); }

  /// The id of the tray icon: the handle of the window's icon, the large one if there is one.
  static UINT IconNumber(HWND main) {
    for (const WPARAM which : {WPARAM{ICON_BIG}, WPARAM{ICON_SMALL}}) {
      if (const LRESULT icon = SendMessageW(main, WM_GETICON, which, 0)) {
        return static_cast<UINT>(icon);
      }
    }
    return static_cast<UINT>(GetClassLongPtrW(main, GCLP_HICON));
  }

  /// Position of the icon: asked from the shell, or the end of a taskbar that cannot answer.
  static RECT IconArea(HWND main) {
    NOTIFYICONIDENTIFIER icon = {};
    icon.cbSize = sizeof icon;
    icon.hWnd = main;
    icon.uID = IconNumber(main);
    RECT area = {};
    using GetRect = HRESULT(WINAPI*)(const NOTIFYICONIDENTIFIER*, RECT*);
    const auto getRect = reinterpret_cast<GetRect>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"shell32.dll"), "Shell_NotifyIconGetRect")));
    if (getRect && SUCCEEDED(getRect(&icon, &area)) && area.right > area.left) return area;
    area = AreaOf(FindWindowW(L"Shell_TrayWnd", nullptr));
    area.left = area.right - (area.bottom - area.top);
    return area;
  }
  static POINT IconPlace(HWND main) {
    const RECT area = IconArea(main);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  }
  /// True if there is more than one colour at the icon's position.
  static bool IconSeen(HWND main) {
    const Pixels pixels = Capture(IconArea(main));
    return std::any_of(pixels.colors.begin(), pixels.colors.end(),
                       [&](COLORREF color) { return color != pixels.colors.front(); });
  }

  /// Double-clicks the icon and waits until the window is back.
  static bool BringBack(HWND main) {
    DoubleClick(IconPlace(main));
    return WaitUntil([&] { return IsWindowVisible(main) && !IsIconic(main); });
  }

  struct Tip {
    DWORD except;
    std::wstring text;
  };
  static BOOL CALLBACK TakeTip(HWND window, LPARAM argument) {
    auto& tip = *reinterpret_cast<Tip*>(argument);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == tip.except || !IsWindowVisible(window) ||
        _wcsicmp(ClassOf(window).c_str(), L"tooltips_class32") != 0) {
      return TRUE;
    }
    tip.text = TextOf(window);
    return tip.text.empty();
  }
  /// The shell's tip when the mouse rests on the icon.
  static std::wstring TipOfIcon(HWND main) {
    Tip tip;
    GetWindowThreadProcessId(main, &tip.except);
    const POINT at = IconPlace(main);
    MoveMouse(at.x - 2, at.y);
    MoveMouse(at);
    WaitUntil([&] {
      EnumWindows(TakeTip, reinterpret_cast<LPARAM>(&tip));
      return !tip.text.empty();
    });
    return tip.text;
  }

  /// The menu that is open, if any.
  static HWND OpenMenu() {
    const HWND menu = FindWindowW(L"#32768", nullptr);
    return menu && IsWindowVisible(menu) ? menu : nullptr;
  }
  /// Waits until no menu is open and the program has left the menu's own message loop.
  static bool MenuGone(HWND main) {
    return WaitUntil([&] {
      GUITHREADINFO thread = {};
      thread.cbSize = sizeof thread;
      if (OpenMenu()) return false;
      if (!GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &thread)) return true;
      return !thread.hwndCapture && !(thread.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE));
    });
  }
  static bool OpenTrayMenu(HWND main) {
    // It is visible before it accepts the mouse.
    const auto isOpen = [&] {
      GUITHREADINFO thread = {};
      thread.cbSize = sizeof thread;
      return OpenMenu() && GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &thread) &&
             thread.hwndCapture;
    };
    RightClick(IconPlace(main));
    return WaitUntil(isOpen);
  }
  /// Goes down to an item of the open menu, from 1, and presses it.
  static bool Choose(HWND main, int item) {
    for (int i = 0; i < item; ++i) Chord({}, VK_DOWN);
    Chord({}, VK_RETURN);
    return MenuGone(main);
  }

  /// The middle of the title bar's minimise button.
  static std::optional<POINT> MinimiseBoxOf(HWND window) {
    const RECT frame = AreaOf(window);
    const int y =
        frame.top + GetSystemMetrics(SM_CYFIXEDFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
    std::optional<int> first;
    int last = 0;
    for (int x = frame.right - 1; x > frame.left; --x) {
      if (SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) != HTMINBUTTON) continue;
      if (!first) first = x;
      last = x;
    }
    if (!first) return {};
    return POINT{(*first + last) / 2, y};
  }
  static testing::AssertionResult Minimise(HWND main) {
    const auto box = MinimiseBoxOf(main);
    if (!box) return testing::AssertionFailure() << "there is no minimise button";
    Click(*box);
    if (!WaitUntil([&] { return !IsWindowVisible(main); })) {
      return testing::AssertionFailure() << "the window stays";
    }
    return testing::AssertionSuccess();
  }
  static SIZE SizeOf(const RECT& area) { return {area.right - area.left, area.bottom - area.top}; }
  /// The size of the window of a start in the normal state.
  SIZE SizeOfAWindow() const {
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    const SIZE size = main ? SizeOf(AreaOf(main)) : SIZE{};
    EXPECT_TRUE(Close(marl));
    return size;
  }
  /// Waits until the window has come back, and compares its size.
  static testing::AssertionResult IsBackAs(HWND main, const SIZE& expected) {
    // Coming to the front is the last of it; sizes have been reported before.
    if (!WaitUntil([&] { return GetForegroundWindow() == main; })) {
      return testing::AssertionFailure() << "it is not in front";
    }
    SendMessageW(main, WM_NULL, 0, 0);
    const SIZE size = SizeOf(AreaOf(main));
    if (size.cx == expected.cx && size.cy == expected.cy) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it has " << size.cx << " by " << size.cy << " pixels";
  }
  static bool Visible(HWND main) {
    return WaitUntil([&] { return IsWindowVisible(main) && !IsIconic(main); });
  }

  SuiteFolder suite;
};

}  // namespace

// ---- A shell that is not up yet

/// Takes the place of the taskbar, which programs find by its class, and refuses every icon.
class RefusingTaskbar {
 public:
  RefusingTaskbar() {
    WNDCLASSW description = {};
    description.lpfnWndProc = Entry;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"Shell_TrayWnd";
    RegisterClassW(&description);
    window_ =
        CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, description.lpszClassName, L"", WS_POPUP,
                        0, 0, 1, 1, nullptr, nullptr, description.hInstance, nullptr);
    SetWindowPos(window_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  ~RefusingTaskbar() {
    if (window_) DestroyWindow(window_);
    UnregisterClassW(L"Shell_TrayWnd", GetModuleHandleW(nullptr));
  }
  RefusingTaskbar(const RefusingTaskbar&) = delete;
  RefusingTaskbar& operator=(const RefusingTaskbar&) = delete;
  bool made() const { return window_ && FindWindowW(L"Shell_TrayWnd", nullptr) == window_; }
  int refused() const { return refused_; }

 private:
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_COPYDATA) {
      ++refused_;
      return FALSE;
    }
    return DefWindowProcW(window, message, w, l);
  }
  inline static int refused_ = 0;
  HWND window_ = nullptr;
};

TEST_F(Tray, IconThatTheShellRefusesIsTriedAgainAndTheWindowStaysReachable) {
  auto shell = std::make_unique<RefusingTaskbar>();
  ASSERT_TRUE(shell->made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_GT(shell->refused(), 0);
  const auto box = MinimiseBoxOf(main);
  ASSERT_TRUE(box);
  Click(*box);
  ASSERT_TRUE(WaitUntil([&] { return IsIconic(main) != FALSE; }));
  const int before = shell->refused();
  ASSERT_TRUE(WaitUntil([&] { return shell->refused() >= before + 2; })) << "it is tried again";
  EXPECT_TRUE(IsWindowVisible(main)) << "there is no icon to bring it back";
  // The taskbar comes up.
  shell.reset();
  EXPECT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); })) << "its icon is there";
  EXPECT_TRUE(BringBack(main));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Tray, DoubleClickBringsBackWhatTheTitleBarButtonHid) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(WaitUntil([&] { return IconSeen(main); }));
  const RECT before = AreaOf(main);
  ASSERT_TRUE(Minimise(main));
  EXPECT_TRUE(IconSeen(main));
  Screenshot("tray-hidden");
  EXPECT_TRUE(BringBack(main));
  EXPECT_TRUE(IsBackAs(main, SizeOf(before)));
  const RECT after = AreaOf(main);
  EXPECT_TRUE(EqualRect(&before, &after));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Tray, SingleClickDoesNothing) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  Click(IconPlace(main));
  // Two clicks that are too slow for a double click: later messages are handled after them.
  ASSERT_TRUE(WaitUntil(
      [start = GetTickCount()] { return GetTickCount() - start > GetDoubleClickTime(); }));
  EXPECT_FALSE(IsWindowVisible(main));
  EXPECT_FALSE(OpenMenu());
  EXPECT_TRUE(BringBack(main));
}

TEST_F(Tray, MenuStartsToolsWithTheWindowHidden) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  const struct {
    int index;
    const wchar_t* program;
  } cases[] = {{0, L"Q17Gauge.exe"}, {5, L"Q17Bench.exe"}, {16, L"Q17Xlf.exe"}};
  std::size_t count = 0;
  for (const auto& c : cases) {
    ASSERT_TRUE(OpenTrayMenu(main));
    if (c.index == 0) Screenshot("tray-menu");
    ASSERT_TRUE(Choose(main, c.index + 1));
    const Starts starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count) << c.index;
    EXPECT_EQ(starts.back(), Start(suite, c.program));
    EXPECT_FALSE(IsWindowVisible(main));
  }
}

TEST_F(Tray, DeadToolIsInTheMenuAndStaysDead) {
  const SuiteFolder poor(L"Suite", {L"Q17Kit.exe"});
  GiveIcons(poor);
  const RunningMarl marl(poor);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kUtilities + 1));
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kEdit + 1));
  EXPECT_EQ(poor.WaitForTools(1), (Starts{Start(poor, L"Q17Bench.exe")}));
  EXPECT_FALSE(marl.Box());
}

TEST_F(Tray, MenuClosesWhenTheUserClicksElsewhereOrPressesEsc) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  ASSERT_TRUE(OpenTrayMenu(main));
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(MenuGone(main));
  ASSERT_TRUE(OpenTrayMenu(main));
  Click(200, 200);
  EXPECT_TRUE(MenuGone(main));
  EXPECT_FALSE(IsWindowVisible(main));
  EXPECT_TRUE(suite.Starts().size() <= 1) << "nothing but the registrar";
}

TEST_F(Tray, ExitFromTheMenuEndsTheProgramWithoutShowingTheWindow) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  const RECT area = IconArea(main);
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kExit + 1));
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(settings.Get(L"WindowState"), L"1");
  EXPECT_NE(settings.Get(L"Left"), std::nullopt);
  EXPECT_TRUE(WaitUntil([&] {
    const Pixels pixels = Capture(area);
    return std::all_of(pixels.colors.begin(), pixels.colors.end(),
                       [&](COLORREF color) { return color == pixels.colors.front(); });
  })) << "the icon is removed with the program";
}

TEST_F(Tray, WindowStateOfOneStartsInTheTray) {
  const SIZE normal = SizeOfAWindow();
  settings.Set(L"WindowState", L"1");
  const RunningMarl marl(suite);
  ASSERT_TRUE(WaitUntil([&] { return marl.Window() != nullptr; }));
  const HWND main = marl.Window();
  marl.DismissSplash();
  ASSERT_TRUE(WaitUntil([&] { return IconSeen(main) && !marl.Splash(); }));
  EXPECT_FALSE(IsWindowVisible(main));
  EXPECT_TRUE(BringBack(main));
  EXPECT_TRUE(IsBackAs(main, normal));
  Screenshot("tray-first-shown", main);
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(settings.Get(L"WindowState"), L"0");
}

TEST_F(Tray, RestartedTaskbarShowsTheIconOnceAndItsMessagesArrive) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(WaitUntil([&] { return IconSeen(main); }));
  // The icon and the position beside it, where a second one would be.
  RECT area = IconArea(main);
  area.left -= area.right - area.left;
  const Pixels before = Capture(area);
  NOTIFYICONDATAW icon = {};
  icon.cbSize = sizeof icon;
  icon.hWnd = main;
  icon.uID = IconNumber(main);
  EXPECT_EQ(TipOfIcon(main), L"Marl");
  MoveMouse(0, 0);
  // The icon was copied from its library, which is closed.
  EXPECT_TRUE(DeleteFileW((suite.path() + L"\\q17icl.oru").c_str()));
  const auto taskbarCreated = [&] {
    SendMessageTimeoutW(main, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0, SMTO_NORMAL, 5000,
                        nullptr);
  };
  // Not every window tells another program its icon. If it does, the shell's tray icon is deleted,
  // as if the shell had restarted. Otherwise another icon is added beside it: a recreated icon
  // comes after that one.
  const bool known = Shell_NotifyIconW(NIM_MODIFY, &icon);
  if (known) {
    ASSERT_TRUE(Shell_NotifyIconW(NIM_DELETE, &icon));
    ASSERT_TRUE(WaitUntil([&] { return Capture(area) != before; }));
    taskbarCreated();
  } else {
    const RECT first = IconArea(main);
    const RECT second = {area.left, area.top, first.left, area.bottom};
    const Pixels own = Capture(first);
    NOTIFYICONDATAW other = {};
    other.cbSize = sizeof other;
    other.hWnd = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr,
                                 nullptr);
    other.uID = 1;
    other.uFlags = NIF_ICON;
    other.hIcon = LoadIconW(nullptr, IDI_WARNING);
    const Pixels empty = Capture(second);
    ASSERT_TRUE(Shell_NotifyIconW(NIM_ADD, &other));
    EXPECT_TRUE(WaitUntil([&] { return Capture(second) != empty; }));
    EXPECT_EQ(Capture(first), own);
    taskbarCreated();
    EXPECT_TRUE(WaitUntil([&] { return Capture(second) == own && Capture(first) != own; }))
        << "it was not recreated";
    EXPECT_TRUE(Shell_NotifyIconW(NIM_DELETE, &other));
    DestroyWindow(other.hWnd);
    // Newer versions of Wine move the icon to the free place without painting it there.
    RedrawWindow(FindWindowW(L"Shell_TrayWnd", nullptr), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  }
  EXPECT_TRUE(WaitUntil([&] { return Capture(area) == before; }));
  EXPECT_EQ(TipOfIcon(main), L"Marl");
  if (known) {
    EXPECT_TRUE(Shell_NotifyIconW(NIM_MODIFY, &icon)) << "it has another number now";
  }
  ASSERT_TRUE(Minimise(main));
  EXPECT_TRUE(BringBack(main));
}

TEST_F(Tray, DoubleClickOnTheIconOfAVisibleWindowBringsItToTheFront) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(WaitUntil([&] { return IconSeen(main); }));
  SetForegroundWindow(GetDesktopWindow());
  DoubleClick(IconPlace(main));
  EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == main; }));
}

TEST_F(Tray, DoubleClickSetsAMaximisedWindowToNormal) {
  const SIZE normal = SizeOfAWindow();
  settings.Set(L"WindowState", L"2");
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(IsZoomed(main));
  // The window covers the icon.
  PostMessageW(main, MenuMessage(), 0, kDoubleClick);
  EXPECT_TRUE(WaitUntil([&] { return !IsZoomed(main); }));
  EXPECT_TRUE(IsWindowVisible(main));
  EXPECT_TRUE(IsBackAs(main, normal));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(settings.Get(L"WindowState"), L"0");
}

TEST_F(Tray, MinimisedByCodeHidesAndAMaximisedWindowComesBackInItsNormalSize) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const RECT before = AreaOf(main);
  ShowWindow(main, SW_MINIMIZE);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
  ASSERT_TRUE(BringBack(main));
  ShowWindow(main, SW_SHOWMAXIMIZED);
  ASSERT_TRUE(WaitUntil([&] { return IsZoomed(main) != FALSE; }));
  ASSERT_TRUE(Minimise(main));
  ASSERT_TRUE(BringBack(main));
  EXPECT_TRUE(IsBackAs(main, SizeOf(before)));
  EXPECT_FALSE(IsZoomed(main));
  const RECT after = AreaOf(main);
  EXPECT_TRUE(EqualRect(&before, &after));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Tray, DialogsMessagesAndDeadEntriesOfTheMenuLeaveTheWindowHidden) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(Minimise(main));
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kChangeServer + 1));
  const HWND dialog = marl.WaitForWindow(L"MarlForm", L"Change server");
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(BringForward(dialog));
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
  EXPECT_FALSE(IsWindowVisible(main));

  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kQaCheck + 1));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"This tool is not installed. Please run the setup of the suite again.");
  ASSERT_TRUE(box.Press(IDOK));
  EXPECT_FALSE(IsWindowVisible(main));

  // There is no server to track.
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kTrackProjects + 1));
  ASSERT_TRUE(OpenTrayMenu(main));
  ASSERT_TRUE(Choose(main, kEdit + 1));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Bench.exe")}));
  EXPECT_FALSE(marl.Box());
  EXPECT_FALSE(IsWindowVisible(main));
}

TEST_F(Tray, FiftyCyclesLeakNoHandle) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const auto cycle = [&] {
    SendMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
    PostMessageW(main, MenuMessage(), 0, kDoubleClick);
    ASSERT_TRUE(Visible(main));
  };
  const auto cycles = [&](int count) {
    for (int i = 0; i < count && !HasFatalFailure(); ++i) cycle();
  };
  cycles(5);
  const std::size_t handles = marl.Handles();
  // A leak grows with every batch; the platform's own allocations come only now and then.
  std::vector<std::size_t> bytes = {marl.PrivateBytes()};
  std::size_t leastGrowth = SIZE_MAX;
  for (int batch = 0; batch < 5; ++batch) {
    cycles(10);
    const std::size_t before = bytes.back();
    bytes.push_back(marl.PrivateBytes());
    leastGrowth = std::min(leastGrowth, bytes.back() > before ? bytes.back() - before : 0);
  }
  EXPECT_LE(marl.Handles(), handles + 2);
  EXPECT_LE(leastGrowth, 8192u) << testing::PrintToString(bytes);
  EXPECT_TRUE(Close(marl));
}

}  // namespace marl::desktop
