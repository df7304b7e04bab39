// The switchboard's real window at other resolutions: tips, highlight, press, handles and bytes.

#include "tests/contract/MainWindowWin32.h"

// After <windows.h>.
#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include "tests/contract/LiveBytes.h"

namespace marl {

namespace {

constexpr UINT kDpiChangedMessage = 0x02E0;
constexpr int kWay[] = {120, 144, 168, 192, 240, 96};
constexpr int kRounds = 10;
constexpr std::size_t kPerRound = 12;

class RescaledMain : public MainWindow {
 protected:
  void Rescale(int dpi) {
    const RECT place = {10, 20, 10, 20};
    SendMessageW(Window(), kDpiChangedMessage, MAKEWPARAM(dpi, dpi),
                 reinterpret_cast<LPARAM>(&place));
  }
  LPARAM MiddleOf(std::size_t button) const {
    const Box& place = main->imgRun[button]->bounds();
    const Resolution own = main->resolution();
    return MAKELPARAM(own.PixelsX(place.left + place.width / 2),
                      own.PixelsY(place.top + place.height / 2));
  }
  void MouseTo(std::size_t button) const {
    SendMessageW(Window(), WM_MOUSEMOVE, 0, MiddleOf(button));
  }
};

}  // namespace

TEST_F(RescaledMain, MessagesWithPointersThatOtherProgramsPostAreDropped) {
  Start();
  constexpr UINT kGetScaledSizeMessage = 0x02E4;
  const auto post = [this] {
    for (const UINT message :
         {kDpiChangedMessage, kGetScaledSizeMessage, UINT{WM_NOTIFY}, UINT{WM_DRAWITEM},
          UINT{WM_MEASUREITEM}, UINT{WM_COMPAREITEM}, UINT{WM_DELETEITEM}}) {
      for (const LPARAM number : {LPARAM{16}, LPARAM{-1}, LPARAM{0x12345678}}) {
        PostMessageW(Window(), message, MAKEWPARAM(144, 144), number);
      }
    }
  };
  post();
  desktop.DoEvents();
  // In the message loop of a message box or a menu.
  post();
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  EXPECT_EQ(main->resolution().x, 96);
}

TEST_F(RescaledMain, HighlightsPressesAndTipsFollowEachResolution) {
  for (const TextView tool : {u"Q17Bench.exe"}) {
    files.Put(u"C:\\Suite\\" + Text(tool), "MZ");
  }
  Start();
  SetForegroundWindow(Window());
  const LONG height = [&] {
    RECT inner;
    GetClientRect(Window(), &inner);
    return inner.bottom;
  }();
  for (const int dpi : kWay) {
    Rescale(dpi);
    const Resolution own = main->resolution();
    ASSERT_EQ(own.x, dpi);
    RECT inner;
    GetClientRect(Window(), &inner);
    EXPECT_EQ(inner.right, own.PixelsX(main->inner().width));
    EXPECT_EQ(inner.bottom, own.PixelsY(main->inner().height));
    EXPECT_EQ(main->ClientHeight, main->inner().height);
    ASSERT_TRUE(main->Background());
    EXPECT_EQ(main->Background()->width, inner.right);
    for (const std::size_t button : {0u, 5u, 17u}) {
      MouseTo(button);
      EXPECT_EQ(main->HoverButton, static_cast<int>(button)) << dpi;
    }
    shell.started.clear();
    SendMessageW(Window(), WM_LBUTTONDOWN, MK_LBUTTON, MiddleOf(5));
    SendMessageW(Window(), WM_LBUTTONUP, 0, MiddleOf(5));
    ASSERT_EQ(shell.started.size(), 1u) << dpi;
    EXPECT_EQ(shell.started[0].file, u"C:\\Suite\\Q17Bench.exe");
    EXPECT_TRUE(TipsSoFar().size() <= 18u);
    for (std::size_t button = 0; button < main->shpRun.size(); ++button) MouseTo(button);
    const std::vector<HWND> made = TipsSoFar();
    ASSERT_EQ(made.size(), 18u) << dpi;
    int right = 0;
    for (const HWND tip : made) {
      TTTOOLINFOW tool = {};
      tool.cbSize = sizeof tool;
      wchar_t text[200] = {};
      tool.lpszText = text;
      ASSERT_TRUE(SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)));
      for (const auto& shape : main->shpRun) {
        right += std::abs(tool.rect.left - own.PixelsX(shape->Left())) <= 1 &&
                 std::abs(tool.rect.top - own.PixelsY(shape->Top())) <= 1 &&
                 std::abs(tool.rect.right - own.PixelsX(shape->Left() + shape->Width()) + 1) <= 1;
      }
    }
    EXPECT_EQ(right, 18) << dpi;
  }
  RECT inner;
  GetClientRect(Window(), &inner);
  EXPECT_EQ(inner.bottom, height) << "back at the design's resolution";
}

TEST_F(RescaledMain, ManyChangesLoseNothing) {
  Start();
  struct State {
    std::int64_t bytes = 0;
    std::array<int, std::size(win32::g_liveHandles)> handles{};
  };
  std::array<State, kRounds> states;  // takes no memory while it is filled
  const Size inner = main->inner();
  for (State& state : states) {
    for (std::size_t i = 0; i < kPerRound; ++i) {
      Rescale(kWay[i % std::size(kWay)]);
      if (i % 4 == 0) UpdateWindow(Window());
    }
    Rescale(96);
    desktop.DoEvents();
    // The mouse may be on a button, whose tip then has a window.
    main->BindTooltips();
    EXPECT_EQ(main->inner(), inner);
    pictures.loaded = {};  // the log of the test's pictures
    state.bytes = LiveBytes();
    std::copy(std::begin(win32::g_liveHandles), std::end(win32::g_liveHandles),
              state.handles.begin());
  }
  ASSERT_GT(states[0].bytes, 0);
  // The first changes leave caches: the fonts of each resolution.
  for (std::size_t i = 2; i < states.size(); ++i) {
    EXPECT_EQ(states[i].bytes, states[1].bytes) << i;
    EXPECT_EQ(states[i].handles, states[1].handles) << i;
  }
}

TEST_F(RescaledMain, MovedTaskbarBringsTheWindowBackIntoReach) {
  Start();
  const Monitor monitor = desktop.MonitorAt({0, 0, 1, 1});
  SetWindowPos(Window(), nullptr, 100, -200, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
  RECT place;
  GetWindowRect(Window(), &place);
  EXPECT_EQ(place.top, monitor.work.top);
  EXPECT_EQ(place.left, 100);
}

}  // namespace marl
