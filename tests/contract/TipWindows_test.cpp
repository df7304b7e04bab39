#include "platform/TipWindows.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/memory/MemoryTipWindows.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on
#include "platform/win32/Handle.h"
#include "platform/win32/TipWindowsWin32.h"
#endif

namespace marl {
namespace {

constexpr std::uint32_t kStyle = 1 | 2;  // also on inactive windows, no access keys

/// Tip windows and a window with areas for tools.
class TipContract : public BackendTest {
 protected:
  TipContract() {
#ifdef _WIN32
    if (real()) {
      tips = std::make_unique<win32::TipWindowsWin32>();
      tips->InitCommonControls();
      return;
    }
#endif
    tips = std::make_unique<MemoryTipWindows>();
    tips->InitCommonControls();
  }
  ~TipContract() override {
    tips.reset();
#ifdef _WIN32
    if (window_) DestroyWindow(window_);
#endif
  }

  MemoryTipWindows& memory() { return static_cast<MemoryTipWindows&>(*tips); }

  /// A window with a client area of this size.
  WindowHandle NewWindow(int width, int height) {
#ifdef _WIN32
    if (real()) {
      window_ = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 70, 90, width, height,
                                nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
      return HandleToLong(window_);
    }
#endif
    memory().clients[501] = {0, 0, width, height};
    return 501;
  }
  WindowHandle NewTip(WindowHandle parent, const PixelRect& place, TextView text) {
    const WindowHandle tip = tips->CreateTip(kStyle, parent);
    tips->SetTopmost(tip);
    ToolInfo tool;
    tool.cbSize = kToolInfoSize;
    tool.uFlags = kToolSubclass;
    tool.hwnd = parent;
    tool.rect = place;
    tool.hinst = tips->Instance();
    tool.lpszText = text;
    tips->Send(tip, kTipAddTool, 0, tool);
    return tip;
  }
  /// The texts of all tips of the window, after the mouse has been at the position.
  std::vector<Text> TextsAfterMouseAt([[maybe_unused]] WindowHandle parent, [[maybe_unused]] int x,
                                      [[maybe_unused]] int y) {
    std::vector<Text> texts;
#ifdef _WIN32
    if (real()) {
      SendMessageW(window_, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
      EnumThreadWindows(GetCurrentThreadId(), TakeText, reinterpret_cast<LPARAM>(&texts));
      std::sort(texts.begin(), texts.end());
      return texts;
    }
#endif
    for (const auto& [handle, tip] : memory().tips) {
      for (const auto& sent : tip.sent) {
        const auto* const tool = std::get_if<ToolInfo>(&sent.lParam);
        if (tool && tip.parent == parent && x >= tool->rect.left && x < tool->rect.right &&
            y >= tool->rect.top && y < tool->rect.bottom) {
          texts.push_back(tool->lpszText);
        }
      }
    }
    return texts;
  }

  std::unique_ptr<TipWindows> tips;

 private:
#ifdef _WIN32
  static BOOL CALLBACK TakeText(HWND window, LPARAM argument) {
    wchar_t name[40] = {};
    GetClassNameW(window, name, 40);
    if (_wcsicmp(name, TOOLTIPS_CLASSW) != 0) return TRUE;
    wchar_t text[200] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = GetWindow(window, GW_OWNER);
    tool.lpszText = text;
    SendMessageW(window, TTM_GETTEXTW, 200, reinterpret_cast<LPARAM>(&tool));
    reinterpret_cast<std::vector<Text>*>(argument)->push_back(win32::FromWide(text, wcslen(text)));
    return TRUE;
  }
  HWND window_ = nullptr;
#endif
};
MARL_OVER_ALL_BACKENDS(TipContract);

TEST_P(TipContract, ClientAreaBeginsAtNothing) {
  const WindowHandle window = NewWindow(200, 100);
  PixelRect area{1, 2, 3, 4};
  EXPECT_TRUE(tips->ClientRect(window, area));
  EXPECT_EQ(area, (PixelRect{0, 0, 200, 100}));
}

TEST_P(TipContract, NoWindowHasNoClientArea) {
  PixelRect area{1, 2, 3, 4};
  EXPECT_FALSE(tips->ClientRect(0x7FFFFFF0, area));
  EXPECT_FALSE(tips->ClientRect(0, area));
  EXPECT_EQ(area, (PixelRect{1, 2, 3, 4})) << "it stays as it was";
}

TEST_P(TipContract, InstanceIsThatOfTheProgram) {
  EXPECT_NE(tips->Instance(), 0);
  EXPECT_EQ(tips->Instance(), tips->Instance());
}

TEST_P(TipContract, EachTipHasItsOwnHandleAndText) {
  const WindowHandle window = NewWindow(200, 100);
  const WindowHandle first = NewTip(window, {0, 0, 50, 50}, u"First \u4E2D");
  const WindowHandle second = NewTip(window, {100, 0, 150, 50}, u"Second");
  EXPECT_NE(first, 0);
  EXPECT_NE(second, 0);
  EXPECT_NE(first, second);
  EXPECT_EQ(TextsAfterMouseAt(window, 20, 20), std::vector<Text>({u"First \u4E2D"}));
}

TEST_P(TipContract, TipThatWasDestroyedIsNeverMade) {
  const WindowHandle window = NewWindow(200, 100);
  const WindowHandle tip = NewTip(window, {0, 0, 50, 50}, u"Gone");
  tips->Destroy(tip);
  EXPECT_EQ(TextsAfterMouseAt(window, 20, 20), std::vector<Text>());
  // Its handle is no window's.
  tips->Send(tip, kTipSetTextColor, 0, std::intptr_t{0});
  tips->SetTopmost(tip);
  tips->Destroy(tip);
  const WindowHandle next = NewTip(window, {0, 0, 50, 50}, u"Next");
  EXPECT_NE(next, tip);
  EXPECT_EQ(TextsAfterMouseAt(window, 20, 20), std::vector<Text>({u"Next"}));
  tips->Destroy(next);
  EXPECT_EQ(TextsAfterMouseAt(window, 20, 20), std::vector<Text>());
}

TEST_P(TipContract, HandlesOfNothingAreIgnored) {
  for (const WindowHandle nothing : {0, 0x7FFFFFF0}) {
    tips->Destroy(nothing);
    tips->SetTopmost(nothing);
    tips->Send(nothing, kTipSetTitle, 0, Text(u"x"));
  }
  const WindowHandle window = NewWindow(200, 100);
  EXPECT_EQ(TextsAfterMouseAt(window, 20, 20), std::vector<Text>());
}

}  // namespace
}  // namespace marl
