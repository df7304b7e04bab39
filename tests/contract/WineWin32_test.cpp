// The few places where the program does something else under Wine than on Windows: both ways are
// run here, wherever the tests run.

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/win32/Handle.h"
#include "platform/win32/TipWindowsWin32.h"
#include "platform/win32/TrayWin32.h"
#include "platform/win32/Wine.h"

namespace marl::win32 {
namespace {

HWND NewWindow() {
  return CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 70, 90, 200, 100,
                         nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

// ---- The pictures of the menu

/// What an open menu has been given.
struct SeenMenu {
  DWORD style = 0;
  HBITMAP picture = nullptr;
  BITMAP bitmap = {};
  std::uint32_t pixel = 0;
};
SeenMenu* g_seen;

// Looks at the first item of the menu that is open, and presses it.
void CALLBACK LookAtMenu(HWND, UINT, UINT_PTR, DWORD) {
  GUITHREADINFO thread = {};
  thread.cbSize = sizeof thread;
  if (!GetGUIThreadInfo(GetCurrentThreadId(), &thread) || !(thread.flags & GUI_INMENUMODE)) return;
  const HWND window = FindWindowW(L"#32768", nullptr);
  if (!window || !g_seen) return;
  SeenMenu& seen = *std::exchange(g_seen, nullptr);
  const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0));
  MENUINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = MIM_STYLE;
  GetMenuInfo(menu, &info);
  seen.style = info.dwStyle;
  MENUITEMINFOW item = {};
  item.cbSize = sizeof item;
  item.fMask = MIIM_BITMAP;
  GetMenuItemInfoW(menu, 0, TRUE, &item);
  seen.picture = item.hbmpItem;
  if (item.hbmpItem != HBMMENU_CALLBACK) {
    DIBSECTION section = {};
    if (GetObjectW(item.hbmpItem, sizeof section, &section)) {
      seen.bitmap = section.dsBm;
      seen.pixel = *static_cast<const std::uint32_t*>(section.dsBm.bmBits);
    }
  }
  PostMessageW(thread.hwndMenuOwner, WM_KEYDOWN, VK_DOWN, 0);
  PostMessageW(thread.hwndMenuOwner, WM_KEYDOWN, VK_RETURN, 0);
}

SeenMenu Show(bool menusBlend, int& chosen) {
  const HWND owner = NewWindow();
  SetForegroundWindow(owner);
  TrayWin32 tray(menusBlend);
  const std::unique_ptr<PopupMenu> menu = tray.CreatePopup();
  // Half transparent, and multiplied by that already.
  menu->SetImageList(std::make_shared<const Picture>(32, 16, 0x80402010));
  menu->SetOwner(HandleToLong(owner));
  menu->AddItem(u"First", 0, false, true);
  menu->AddItem(u"Second", 1, false, true);
  menu->Click = [&](int item) { chosen = item; };
  SeenMenu seen;
  g_seen = &seen;
  const UINT_PTR timer = SetTimer(nullptr, 0, 20, LookAtMenu);
  menu->Show({40, 40});
  KillTimer(nullptr, timer);
  DestroyWindow(owner);
  return seen;
}

TEST(WineWin32, MenusOfWindowsGetThePicturesAndBlendThem) {
  int chosen = 0;
  const SeenMenu seen = Show(true, chosen);
  EXPECT_EQ(chosen, 1);
  EXPECT_TRUE(seen.style & MNS_CHECKORBMP) << "one column for marks and pictures";
  ASSERT_NE(seen.picture, nullptr);
  ASSERT_NE(seen.picture, HBMMENU_CALLBACK);
  EXPECT_EQ(seen.bitmap.bmWidth, 16);
  EXPECT_EQ(seen.bitmap.bmHeight, 16);
  EXPECT_EQ(seen.bitmap.bmBitsPixel, 32);
  EXPECT_EQ(seen.pixel, 0x80402010u) << "menus expect colours multiplied by alpha";
}

TEST(WineWin32, MenusOfWineHaveTheirPicturesDrawnByTheOwner) {
  int chosen = 0;
  const SeenMenu seen = Show(false, chosen);
  EXPECT_EQ(chosen, 1);
  EXPECT_FALSE(seen.style & MNS_CHECKORBMP);
  EXPECT_EQ(seen.picture, HBMMENU_CALLBACK);
}

// ---- The mouse messages of the tips

int g_relayed;

LRESULT CALLBACK CountRelays(int code, WPARAM w, LPARAM l) {
  if (code == HC_ACTION && reinterpret_cast<const CWPSTRUCT*>(l)->message == TTM_RELAYEVENT) {
    ++g_relayed;
  }
  return CallNextHookEx(nullptr, code, w, l);
}

/// How often mouse messages are passed on to tips: for the one that creates the first of two tips,
/// for the next one, for the one that creates the second, and for the last.
std::array<int, 4> Relays(bool relayAll) {
  const HWND window = NewWindow();
  std::array<int, 4> relays = {};
  {
    TipWindowsWin32 tips(relayAll);
    tips.InitCommonControls();
    for (const int left : {0, 100}) {
      const WindowHandle tip = tips.CreateTip(1 | 2, HandleToLong(window));
      ToolInfo tool;
      tool.cbSize = kToolInfoSize;
      tool.uFlags = kToolSubclass;
      tool.hwnd = HandleToLong(window);
      tool.rect = {left, 0, left + 50, 50};
      tool.hinst = tips.Instance();
      tool.lpszText = u"tip";
      tips.Send(tip, kTipAddTool, 0, tool);
    }
    const HHOOK hook =
        SetWindowsHookExW(WH_CALLWNDPROC, CountRelays, nullptr, GetCurrentThreadId());
    for (std::size_t i = 0; i < relays.size(); ++i) {
      g_relayed = 0;
      SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(i < 2 ? 10 : 110, 10));
      relays[i] = g_relayed;
    }
    UnhookWindowsHookEx(hook);
  }
  DestroyWindow(window);
  return relays;
}

TEST(WineWin32, TipsOfWindowsGetOneMouseMessageEachAndThenSeeThemAll) {
  EXPECT_EQ(Relays(false), (std::array<int, 4>{1, 0, 1, 0}));
}

TEST(WineWin32, TipsOfWineGetEveryMouseMessage) {
  EXPECT_EQ(Relays(true), (std::array<int, 4>{1, 1, 2, 2}));
}

}  // namespace
}  // namespace marl::win32
