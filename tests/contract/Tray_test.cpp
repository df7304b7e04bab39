#include "platform/Tray.h"

#include <functional>
#include <memory>
#include <vector>

#include "platform/memory/MemoryTray.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/Handle.h"
#include "platform/win32/TrayWin32.h"
#endif

namespace marl {
namespace {

/// The notification area and a window whose icon is there.
class TrayContract : public BackendTest {
 protected:
  TrayContract() {
#ifdef _WIN32
    if (real()) {
      tray = std::make_unique<win32::TrayWin32>();
      window_ = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9,
                                nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
      SetForegroundWindow(window_);
      window = HandleToLong(window_);
      return;
    }
#endif
    tray = std::make_unique<MemoryTray>();
    window = 501;
  }
  ~TrayContract() override {
#ifdef _WIN32
    if (window_) DestroyWindow(window_);
#endif
  }

  MemoryTray& memory() { return static_cast<MemoryTray&>(*tray); }

  /// A system icon.
  static IconHandle AnyIcon() {
#ifdef _WIN32
    return HandleToLong(LoadIconW(nullptr, IDI_APPLICATION));
#else
    return 7;
#endif
  }
  /// Another one.
  static IconHandle OtherIcon() {
#ifdef _WIN32
    return HandleToLong(LoadIconW(nullptr, IDI_ERROR));
#else
    return 8;
#endif
  }
  NotifyIconData IconNumber(std::int32_t number) const {
    NotifyIconData data;
    data.cbSize = kNotifyIconDataSize;
    data.hWnd = window;
    data.uID = number;
    data.uFlags = kNotifyMessage | kNotifyIcon | kNotifyTip;
    data.uCallbackMessage = 0xC001;
    data.hIcon = AnyIcon();
    data.szTip = u"Contract";
    return data;
  }
  /// Gives the window these icons.
  void GiveIcons([[maybe_unused]] IconHandle big, [[maybe_unused]] IconHandle small) {
#ifdef _WIN32
    if (real()) {
      SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(LongToHandle(big)));
      SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(LongToHandle(small)));
      return;
    }
#endif
    memory().windowIcons[window] = big != 0 ? big : small;
  }
  void MoveMouse(Point at) {
#ifdef _WIN32
    if (real()) {
      SetCursorPos(at.x, at.y);
      return;
    }
#endif
    memory().cursor = at;
  }

  /// Shows the menu; the user goes down to this item and presses Enter, then Escape if the menu is
  /// still open. 0 is Escape alone.
  void ShowAndChoose(PopupMenu& menu, int item) {
#ifdef _WIN32
    if (real()) {
      const UINT_PTR timer = SetTimer(nullptr, 0, 20, PressKeys);
      choice_ = item;
      pressed_ = false;
      menu.Show({40, 40});
      KillTimer(nullptr, timer);
      return;
    }
#endif
    memory().choice = item;
    menu.Show({40, 40});
  }

  std::unique_ptr<Tray> tray;
  WindowHandle window = 0;

 private:
#ifdef _WIN32
  // The menu's message loop takes the keys of its owner.
  static void CALLBACK PressKeys(HWND, UINT, UINT_PTR, DWORD) {
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &thread) || !(thread.flags & GUI_INMENUMODE)) {
      return;
    }
    // Enter becomes a character message after the keys, so Escape is sent at the next tick.
    if (pressed_) PostMessageW(thread.hwndMenuOwner, WM_KEYDOWN, VK_ESCAPE, 0);
    pressed_ = true;
    for (int i = 0; i < choice_; ++i) PostMessageW(thread.hwndMenuOwner, WM_KEYDOWN, VK_DOWN, 0);
    if (choice_ > 0) PostMessageW(thread.hwndMenuOwner, WM_KEYDOWN, VK_RETURN, 0);
    choice_ = 0;
  }
  inline static int choice_ = 0;
  inline static bool pressed_ = false;
  HWND window_ = nullptr;
#endif
};
MARL_OVER_ALL_BACKENDS(TrayContract);

TEST_P(TrayContract, WindowAndNumberNameAnIcon) {
  EXPECT_TRUE(tray->NotifyIcon(kNotifyAdd, IconNumber(1)));
  EXPECT_FALSE(tray->NotifyIcon(kNotifyAdd, IconNumber(1))) << "it is there";
  EXPECT_TRUE(tray->NotifyIcon(kNotifyAdd, IconNumber(2)));
  EXPECT_TRUE(tray->NotifyIcon(kNotifyDelete, IconNumber(1)));
  EXPECT_FALSE(tray->NotifyIcon(kNotifyDelete, IconNumber(1))) << "it has gone";
  EXPECT_FALSE(tray->NotifyIcon(kNotifyDelete, IconNumber(3))) << "it never was";
  EXPECT_TRUE(tray->NotifyIcon(kNotifyAdd, IconNumber(1))) << "and back again";
  EXPECT_TRUE(tray->NotifyIcon(kNotifyDelete, IconNumber(1)));
  EXPECT_TRUE(tray->NotifyIcon(kNotifyDelete, IconNumber(2)));
}

TEST_P(TrayContract, TipOfAnyLengthIsTaken) {
  for (const std::size_t length : {0u, 1u, 62u, 63u, 64u, 65u, 5000u}) {
    NotifyIconData data = IconNumber(4);
    data.szTip = Text(length, u'\u4E2D');
    EXPECT_TRUE(tray->NotifyIcon(kNotifyAdd, data)) << length;
    EXPECT_TRUE(tray->NotifyIcon(kNotifyDelete, data)) << length;
  }
}

TEST_P(TrayContract, IconOfAWindowIsItsBigOneOrElseItsSmallOne) {
  EXPECT_EQ(tray->IconOf(window), 0);
  EXPECT_EQ(tray->IconOf(0x7FFFFFF0), 0);
  GiveIcons(0, AnyIcon());
  EXPECT_EQ(tray->IconOf(window), AnyIcon());
  GiveIcons(AnyIcon(), 0);
  EXPECT_EQ(tray->IconOf(window), AnyIcon());
  GiveIcons(AnyIcon(), OtherIcon());
  EXPECT_EQ(tray->IconOf(window), AnyIcon());
  GiveIcons(0, OtherIcon());
  EXPECT_EQ(tray->IconOf(window), OtherIcon());
}

#ifdef _WIN32
TEST(TrayWin32, WindowWithoutIconsHasThatOfItsClass) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(nullptr, IDI_ERROR);
  windowClass.lpszClassName = L"MarlContractWithIcon";
  ASSERT_TRUE(RegisterClassW(&windowClass));
  const HWND bare = CreateWindowW(L"MarlContractWithIcon", L"", WS_POPUP, 0, 0, 9, 9, nullptr,
                                  nullptr, windowClass.hInstance, nullptr);
  EXPECT_EQ(win32::TrayWin32().IconOf(HandleToLong(bare)), HandleToLong(windowClass.hIcon));
  DestroyWindow(bare);
  UnregisterClassW(L"MarlContractWithIcon", windowClass.hInstance);
}
#endif

TEST_P(TrayContract, MouseIsWhereItWasPut) {
  for (const Point at : {Point{10, 20}, Point{300, 200}}) {
    MoveMouse(at);
    EXPECT_EQ(tray->CursorPosition().x, at.x);
    EXPECT_EQ(tray->CursorPosition().y, at.y);
  }
}

class PopupMenuContract : public TrayContract {
 protected:
  PopupMenuContract() : menu(tray->CreatePopup()) {
    menu->SetImageList(std::make_shared<const Picture>(48, 16, 0xFF808080));
    menu->SetOwner(window);
    menu->AddItem(u"First", 0, false, true);
    menu->AddItem(u"Second && &third", 1, true, true);
    menu->AddItem(u"Fourth", 2, false, false);
    menu->AddItem(u"", 99, false, true);
    menu->Click = [this](int item) { clicked.push_back(item); };
  }
  std::unique_ptr<PopupMenu> menu;
  std::vector<int> clicked;
};
MARL_OVER_ALL_BACKENDS(PopupMenuContract);

TEST_P(PopupMenuContract, ChosenItemIsClickedByItsNumberFromOne) {
  ShowAndChoose(*menu, 1);
  EXPECT_EQ(clicked, std::vector<int>({1}));
  ShowAndChoose(*menu, 2);
  EXPECT_EQ(clicked, std::vector<int>({1, 2})) << "the items stay for the next time";
  ShowAndChoose(*menu, 4);
  EXPECT_EQ(clicked, std::vector<int>({1, 2, 4})) << "also without a text and with no such picture";
}

TEST_P(PopupMenuContract, WhoLeavesItClicksNothing) {
  ShowAndChoose(*menu, 0);
  EXPECT_EQ(clicked, std::vector<int>());
}

TEST_P(PopupMenuContract, DisabledItemIsNotClicked) {
  ShowAndChoose(*menu, 3);
  EXPECT_EQ(clicked, std::vector<int>());
}

// Exiting from the menu destroys the menu during its click.
TEST_P(PopupMenuContract, ClickMayDropTheMenu) {
  menu->Click = [this](int item) {
    auto& log = clicked;
    menu.reset();
    log.push_back(item);
  };
  ShowAndChoose(*menu, 2);
  EXPECT_EQ(clicked, std::vector<int>({2}));
  EXPECT_FALSE(menu);
}

TEST_P(PopupMenuContract, FailureInAClickReachesTheCaller) {
  menu->Click = [](int item) { throw item; };
  EXPECT_THROW(ShowAndChoose(*menu, 1), int);
}

TEST_P(PopupMenuContract, WithoutAListenerNothingHappens) {
  menu->Click = nullptr;
  ShowAndChoose(*menu, 1);
  EXPECT_EQ(clicked, std::vector<int>());
}

}  // namespace
}  // namespace marl
