// The program's windows when the system's colours, fonts, theme or cues change.

#include "tests/contract/MainWindowWin32.h"

// After <windows.h>.
#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "platform/forms/CommonControls.h"

namespace marl {

namespace {

class Looks : public MainWindow {};

/// A label with an access key, a list with boxes, a status bar.
class LooksForm : public Form {
 public:
  explicit LooksForm(Desktop& desktop) : Form(desktop, "frmLooks") {
    Design = {4500, 3000};
    label.SetBounds({150, 150, 1500, 300});
    label.SetCaption(u"&Name");
    list.SetBounds({150, 600, 3000, 1500});
    list.CheckBoxes = true;
    list.AddItem(u"row");
  }
  Label label{*this, "lblName"};
  ListBox list{*this, "lstRows"};
  StatusBar status{*this, "stbStatus"};
  int looks = 0;
  int resizes = 0;

 protected:
  void OnLookChanged() override { ++looks; }
  void OnResize() override { ++resizes; }
};

class LooksWindow : public testing::Test {
 protected:
  LooksWindow() {
    form.Load();
    form.Show();
    desktop.DoEvents();
  }
  ~LooksWindow() override { form.Unload(); }

  HWND Window() const { return static_cast<HWND>(LongToHandle(form.hWnd())); }
  HWND Window(const Control& control) const {
    return static_cast<HWND>(LongToHandle(form.peer()->HandleOf(control)));
  }

  win32::DesktopWin32 desktop;
  LooksForm form{desktop};
};

struct Heard {
  std::vector<UINT> messages;
  static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                               DWORD_PTR data) {
    reinterpret_cast<Heard*>(data)->messages.push_back(message);
    return DefSubclassProc(window, message, w, l);
  }
  bool Has(UINT message) const {
    return std::find(messages.begin(), messages.end(), message) != messages.end();
  }
};

}  // namespace

TEST_F(LooksWindow, ChangesReachFormAndControlsAtOnce) {
  for (const UINT message : {UINT{WM_SYSCOLORCHANGE}, UINT{WM_SETTINGCHANGE}, UINT{WM_THEMECHANGED},
                             UINT{WM_FONTCHANGE}}) {
    UpdateWindow(Window());
    desktop.DoEvents();
    form.looks = 0;
    Heard heard;
    SetWindowSubclass(Window(form.status), Heard::Proc, 1, reinterpret_cast<DWORD_PTR>(&heard));
    SendMessageW(Window(), message, 0, 0);
    EXPECT_EQ(form.looks, 1) << message;
    EXPECT_TRUE(heard.Has(message)) << message;
    EXPECT_TRUE(heard.Has(WM_SETFONT)) << message;
    EXPECT_TRUE(GetUpdateRect(Window(), nullptr, FALSE)) << message;
    EXPECT_TRUE(GetUpdateRect(Window(form.list), nullptr, FALSE)) << message;
    RemoveWindowSubclass(Window(form.status), Heard::Proc, 1);
  }
}

// Under some platforms it would cover what is painted above it.
TEST_F(LooksWindow, StatusBarIsNoHigherThanItsRoom) {
  const HWND bar = Window(form.status);
  const auto height = [&] {
    SendMessageW(Window(), WM_THEMECHANGED, 0, 0);
    RECT place;
    RECT inner;
    GetWindowRect(bar, &place);
    GetClientRect(Window(), &inner);
    MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.right, inner.right);
    EXPECT_EQ(place.bottom, inner.bottom);
    return place.bottom - place.top;
  };
  const LONG natural = height();
  ASSERT_GT(natural, 12);
  form.status.MaxHeight = 180;
  EXPECT_EQ(height(), form.resolution().PixelsY(180));
  EXPECT_EQ(height(), form.resolution().PixelsY(180)) << "it stays";
  form.status.MaxHeight = 30000;
  EXPECT_EQ(height(), natural);
  form.status.MaxHeight = 0;
  EXPECT_EQ(height(), natural);
}

// The main form, back from the notification area, took the height of the maximised window for its
// own.
TEST_F(LooksWindow, HiddenMaximisedWindowHasNoSizeForTheNormalState) {
  form.SetState(WindowState::kMaximised);
  desktop.DoEvents();
  ASSERT_TRUE(IsZoomed(Window()));
  form.Hide();
  desktop.DoEvents();
  form.SetState(WindowState::kNormal);
  const Size inner = form.inner();
  form.resizes = 0;
  SendMessageW(Window(), WM_MOVE, 0, 0);
  SendMessageW(Window(), WM_SIZE, SIZE_MAXIMIZED, 0);
  EXPECT_EQ(form.resizes, 0);
  EXPECT_EQ(form.inner(), inner);
  form.Show();
  desktop.DoEvents();
  EXPECT_FALSE(IsZoomed(Window()));
  EXPECT_EQ(form.inner(), (Size{4500, 3000}));
}

TEST_F(LooksWindow, MovedTaskbarChangesNoLook) {
  form.looks = 0;
  SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
  EXPECT_EQ(form.looks, 0);
}

TEST_F(LooksWindow, ThousandChangesLoseNoHandle) {
  const auto handles = [] {
    std::vector<int> live;
    for (const auto& count : win32::g_liveHandles) live.push_back(count);
    return live;
  };
  SendMessageW(Window(), WM_THEMECHANGED, 0, 0);
  desktop.DoEvents();
  const std::vector<int> before = handles();
  for (int i = 0; i < 250; ++i) {
    for (const UINT message : {UINT{WM_SYSCOLORCHANGE}, UINT{WM_SETTINGCHANGE},
                               UINT{WM_THEMECHANGED}, UINT{WM_FONTCHANGE}}) {
      SendMessageW(Window(), message, 0, 0);
    }
  }
  desktop.DoEvents();
  EXPECT_EQ(handles(), before);
  // The fonts that the controls have exist.
  for (const Control* control :
       {static_cast<const Control*>(&form.list), static_cast<const Control*>(&form.status)}) {
    LOGFONTW font = {};
    const auto handle = reinterpret_cast<HFONT>(SendMessageW(Window(*control), WM_GETFONT, 0, 0));
    EXPECT_GT(GetObjectW(handle, sizeof font, &font), 0) << control->name();
  }
}

TEST_F(LooksWindow, CuesFollowTheUsersState) {
  SendMessageW(Window(), WM_UPDATEUISTATE, MAKEWPARAM(UIS_SET, UISF_HIDEACCEL), 0);
  EXPECT_FALSE(form.ShowsAccessKeys());
  SendMessageW(Window(), WM_UPDATEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
  EXPECT_FALSE(form.ShowsAccessKeys()) << "that is about focus rectangles";
  SendMessageW(Window(), WM_UPDATEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS),
               0);
  EXPECT_TRUE(form.ShowsAccessKeys());
}

TEST_F(Looks, SystemColoursAreThoseOfTipsAtOnce) {
  Start();
  const int which = COLOR_INFOBK;
  const COLORREF before = GetSysColor(which);
  const COLORREF other = RGB(12, 34, 56);
  ASSERT_TRUE(SetSysColors(1, &which, &other));
  SendMessageW(Window(), WM_SYSCOLORCHANGE, 0, 0);
  std::vector<LRESULT> colors;
  for (const HWND tip : Tips()) colors.push_back(SendMessageW(tip, TTM_GETTIPBKCOLOR, 0, 0));
  ASSERT_TRUE(SetSysColors(1, &which, &before));
  EXPECT_EQ(colors, std::vector<LRESULT>(18, static_cast<LRESULT>(other)));
  SendMessageW(Window(), WM_SYSCOLORCHANGE, 0, 0);
}

}  // namespace marl
