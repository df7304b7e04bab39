// A form whose monitor gets another resolution, in a real window and in memory.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/contract/Backends.h"
#include "tests/contract/LiveBytes.h"
#ifdef _WIN32
// clang-format off
#include "platform/win32/DesktopWin32.h"
#include <commctrl.h>
// clang-format on
#endif

namespace marl {
namespace {

constexpr int kDpis[] = {120, 144, 168, 192, 240, 96, 240, 96};

/// One of each control.
class EveryControl : public Form {
 public:
  explicit EveryControl(Desktop& desktop) : Form(desktop, "frmEvery") {
    Design = {6605, 6395};
    SetCaption(u"Every control");
    mnuFile.SetCaption(u"&File");
    mnuOpen.SetCaption(u"&Open");
    label.SetBounds({125, 95, 1505, 285});
    label.SetCaption(u"&Name");
    label.Click = [this] { heard += 'L'; };
    text.SetBounds({1805, 95, 1805, 315});
    combo.SetBounds({3805, 95, 1805, 315});
    combo.AddItem(u"first");
    button.SetBounds({125, 505, 1505, 345});
    button.SetCaption(u"&Press");
    check.SetBounds({1805, 505, 1505, 285});
    check.SetCaption(u"&Tick");
    frame.SetBounds({125, 905, 3005, 1005});
    frame.SetCaption(u"Group");
    option.SetBounds({125, 305, 1505, 285});
    option.SetCaption(u"&One");
    bar.SetBounds({3305, 905, 2005, 255});
    bar.LargeChange = 10;
    tabs.SetBounds({125, 2005, 6005, 3505});
    tabs.AddPart({u"&First", u"", u""});
    page.SetBounds({205, 2405, 5805, 3005});
    list.SetBounds({125, 125, 2005, 2005});
    list.CheckBoxes = true;
    for (const TextView row : {u"a", u"b", u"c"}) list.AddItem(row);
    plain.SetBounds({2305, 125, 2005, 2005});
    for (const TextView row : {u"a", u"b", u"c"}) plain.AddItem(row);
    status.SetCaption(u"Ready");
  }

  Menu mnuFile{*this, "mnuFile"};
  Menu mnuOpen{*this, "mnuOpen", -1, &mnuFile};
  Label label{*this, "lblName"};
  TextBox text{*this, "txtName"};
  ComboBox combo{*this, "cmbName"};
  CommandButton button{*this, "cmdPress"};
  CheckBox check{*this, "chkTick"};
  Frame frame{*this, "fraGroup"};
  OptionButton option{*this, "optOne", -1, &frame};
  HScrollBar bar{*this, "hsbValue"};
  TabStrip tabs{*this, "tabPages"};
  PictureBox page{*this, "picPage"};
  ListBox list{*this, "lstChecks", -1, &page};
  ListBox plain{*this, "lstPlain", -1, &page};
  StatusBar status{*this, "stbStatus"};

  std::string heard;
  int resized = 0;
  int looks = 0;

 protected:
  void OnResize() override { ++resized; }
  void OnLookChanged() override { ++looks; }
};

class RescaledContract : public testing::TestWithParam<Backend> {
 protected:
  RescaledContract() {
#ifdef _WIN32
    if (real()) desktop = std::make_unique<win32::DesktopWin32>();
#endif
    if (!desktop) desktop = std::make_unique<MemoryDesktop>();
    form = std::make_unique<EveryControl>(*desktop);
    form->Load();
    form->Move(900, 600);
    form->Show();
    desktop->DoEvents();
    form->resized = 0;
    start = form->resolution().x;
  }
  ~RescaledContract() override { form->Unload(); }

  bool real() const { return GetParam() == Backend::kWin32; }

  /// The platform reports the resolution, and a rectangle with this corner.
  void Rescale(int dpi, int left, int top) {
#ifdef _WIN32
    if (real()) {
      constexpr UINT kDpiChanged = 0x02E0;
      const RECT place = {left, top, left + 300, top + 200};
      SendMessageW(Window(), kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
      return;
    }
#endif
    desktop->Event([&] { form->PeerRescaled({dpi, dpi}, {left, top, left + 300, top + 200}); });
  }
  void ReportScreens() {
#ifdef _WIN32
    if (real()) {
      SendMessageW(Window(), WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
      return;
    }
#endif
    desktop->Event([&] { form->PeerScreensChanged(); });
  }
  void ClickOnLabel() {
    const Resolution own = form->resolution();
    const int x = own.PixelsX(form->label.Left() + form->label.Width()) - 3;
    const int y = own.PixelsY(form->label.Top() + form->label.Height()) - 3;
#ifdef _WIN32
    if (real()) {
      SendMessageW(Window(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
      SendMessageW(Window(), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
      return;
    }
#endif
    desktop->Event([&] { form->UserMouseDown(1, own.TwipsAtX(x), own.TwipsAtY(y)); });
    desktop->Event([&] { form->UserMouseUp(1, own.TwipsAtX(x), own.TwipsAtY(y)); });
  }
#ifdef _WIN32
  HWND Window() const { return static_cast<HWND>(LongToHandle(form->hWnd())); }
  HWND Window(const Control& control) const {
    return static_cast<HWND>(LongToHandle(form->peer()->HandleOf(control)));
  }
  /// Where a window is within its parent.
  static RECT PlaceOf(HWND window) {
    RECT place;
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  void ExpectWindowsFit() const {
    const Resolution own = form->resolution();
    RECT inner;
    GetClientRect(Window(), &inner);
    EXPECT_EQ(inner.right, own.PixelsX(6605)) << own.x;
    EXPECT_EQ(inner.bottom, own.PixelsY(6395)) << own.x;
    for (const Control* control : form->controls()) {
      const HWND window = Window(*control);
      if (!window) continue;
      LOGFONTW font = {};
      if (HasFont(control->kind())) {
        const auto handle = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
        ASSERT_EQ(GetObjectW(handle, sizeof font, &font), static_cast<int>(sizeof font));
        EXPECT_EQ(font.lfHeight, -static_cast<int>(8.25 * own.y / 72 + 0.5))
            << control->name() << own.y;
      }
      const RECT place = PlaceOf(window);
      if (control->kind() == ControlKind::kStatusBar) {
        EXPECT_EQ(place.bottom, inner.bottom) << own.x;
        EXPECT_EQ(place.right, inner.right) << own.x;
        EXPECT_GT(place.bottom - place.top, own.y / 8) << "as high as its text";
        continue;
      }
      EXPECT_EQ(place.left, own.PixelsX(control->Left())) << control->name() << own.x;
      EXPECT_EQ(place.top, own.PixelsY(control->Top())) << control->name() << own.y;
      EXPECT_EQ(place.right, own.PixelsX(control->Left() + control->Width())) << control->name();
      EXPECT_EQ(place.bottom, own.PixelsY(control->Top() + control->Height())) << control->name();
    }
  }
  LRESULT RowHeight(const Control& control) const {
    return SendMessageW(Window(control), LB_GETITEMHEIGHT, 0, 0);
  }
#endif

  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<EveryControl> form;
  int start = 0;
};

TEST_P(RescaledContract, FormKeepsItsTwipsAndGoesToTheGivenCorner) {
  int changes = 0;
  for (const int dpi : kDpis) {
    Rescale(dpi, 70 + changes, 50);
    ++changes;
    EXPECT_EQ(form->resolution(), (Resolution{dpi, dpi}));
    EXPECT_EQ(form->inner(), (Size{6605, 6395})) << dpi;
    EXPECT_EQ(form->PixelBounds().left, 69 + changes) << dpi;
    EXPECT_EQ(form->PixelBounds().top, 50) << dpi;
    EXPECT_EQ(form->text.bounds(), (Box{1805, 95, 1805, 315}));
    EXPECT_EQ(form->looks, changes);
  }
  EXPECT_EQ(form->resized, 0);
}

TEST_P(RescaledContract, ClicksFindTheirLabel) {
  for (const int dpi : kDpis) {
    Rescale(dpi, 60, 40);
    form->heard.clear();
    ClickOnLabel();
    EXPECT_EQ(form->heard, "L") << dpi;
  }
}

TEST_P(RescaledContract, UnbelievableResolutionsChangeNothing) {
  const Box before = form->bounds();
  for (const int dpi : {0, 1, 47, 961, 0xFFFF}) Rescale(dpi, 0, 0);
  EXPECT_EQ(form->bounds(), before);
  EXPECT_EQ(form->resolution().x, start);
  EXPECT_EQ(form->looks, 0);
}

TEST_P(RescaledContract, MinimisedFormIsRestoredInItsSize) {
  form->SetState(WindowState::kMinimised);
  Rescale(144, 0, 0);
  EXPECT_EQ(form->State(), WindowState::kMinimised);
  form->SetState(WindowState::kNormal);
  desktop->DoEvents();
  EXPECT_EQ(form->inner(), (Size{6605, 6395}));
#ifdef _WIN32
  if (real()) ExpectWindowsFit();
#endif
}

TEST_P(RescaledContract, ChangedScreensMoveAFormIntoReachOnly) {
  const Monitor monitor = desktop->MonitorAt({0, 0, 1, 1});
  const Resolution own = form->resolution();
  ReportScreens();
  EXPECT_EQ(form->Left(), 900);
  EXPECT_EQ(form->Top(), 600);
  form->Move(own.TwipsX(monitor.work.right + 500), own.TwipsY(monitor.work.bottom + 500));
  ReportScreens();
  const PixelRect place = form->PixelBounds();
  EXPECT_EQ(place.right, monitor.work.right);
  EXPECT_EQ(place.bottom, monitor.work.bottom);
}

#ifdef _WIN32

TEST_P(RescaledContract, WindowsControlsAndFontsFollow) {
  if (!real()) return;
  ExpectWindowsFit();
  for (const int dpi : kDpis) {
    Rescale(dpi, 60, 40);
    ExpectWindowsFit();
  }
}

TEST_P(RescaledContract, RowsAreAsHighAsTheirText) {
  if (!real()) return;
  const LRESULT checks = RowHeight(form->list);
  const LRESULT plain = RowHeight(form->plain);
  for (const int dpi : kDpis) {
    Rescale(dpi, 60, 40);
    EXPECT_NEAR(static_cast<double>(RowHeight(form->list)),
                static_cast<double>(checks) * dpi / start, 2.5)
        << dpi;
    EXPECT_NEAR(static_cast<double>(RowHeight(form->plain)),
                static_cast<double>(plain) * dpi / start, 2.5)
        << dpi;
  }
  EXPECT_EQ(RowHeight(form->list), checks);
}

// Counts what is painted between the change and the next wait for messages.
TEST_P(RescaledContract, NothingIsPaintedBeforeTheChangeIsComplete) {
  if (!real()) return;
  UpdateWindow(Window());
  desktop->DoEvents();
  struct Seen {
    int paints = 0;
    Resolution resolution;
    EveryControl* form = nullptr;
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                 DWORD_PTR data) {
      auto& seen = *reinterpret_cast<Seen*>(data);
      if (message == WM_PAINT) {
        ++seen.paints;
        RECT inner;
        GetClientRect(window, &inner);
        EXPECT_EQ(inner.right, seen.form->resolution().PixelsX(6605));
        EXPECT_EQ(inner.bottom, seen.form->resolution().PixelsY(6395));
        EXPECT_EQ(seen.form->looks > 0, true);
      }
      return DefSubclassProc(window, message, w, l);
    }
  } seen;
  seen.form = form.get();
  SetWindowSubclass(Window(), Seen::Proc, 1, reinterpret_cast<DWORD_PTR>(&seen));
  Rescale(168, 60, 40);
  EXPECT_EQ(seen.paints, 0) << "during the change";
  RECT dirty = {};
  EXPECT_TRUE(GetUpdateRect(Window(), &dirty, FALSE));
  desktop->DoEvents();
  EXPECT_EQ(seen.paints, 1);
  for (const Control* control : form->controls()) {
    const HWND window = Window(*control);
    if (window) {
      EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE)) << control->name();
    }
  }
  RemoveWindowSubclass(Window(), Seen::Proc, 1);
}

// Groups and pages were erased in the middle of it, with a background in the old size.
TEST_P(RescaledContract, NothingIsErasedBeforeTheChangeIsComplete) {
  if (!real()) return;
  UpdateWindow(Window());
  desktop->DoEvents();
  // Has it erase a bitmap of its own, and looks whether that has changed.
  struct Erasing {
    int count = 0;
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                 DWORD_PTR data) {
      if (message != WM_ERASEBKGND) return DefSubclassProc(window, message, w, l);
      constexpr COLORREF kOdd = RGB(1, 200, 3);
      const win32::ClientContext screen(window);
      const win32::UniqueContext memory(CreateCompatibleDC(screen.get()));
      const win32::UniqueBitmap bitmap(CreateCompatibleBitmap(screen.get(), 4, 4));
      const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
      SetPixel(memory.get(), 1, 1, kOdd);
      const LRESULT result =
          DefSubclassProc(window, message, reinterpret_cast<WPARAM>(memory.get()), l);
      if (GetPixel(memory.get(), 1, 1) != kOdd) ++reinterpret_cast<Erasing*>(data)->count;
      SelectObject(memory.get(), before);
      return result;
    }
  };
  const std::array<const Control*, 2> containers = {&form->frame, &form->page};
  for (const Control* control : containers) {
    Erasing erasing;
    ASSERT_TRUE(SetWindowSubclass(Window(*control), Erasing::Proc, 1,
                                  reinterpret_cast<DWORD_PTR>(&erasing)));
    Rescale(168, 60, 40);
    EXPECT_EQ(erasing.count, 0) << control->name() << ", during the change";
    desktop->DoEvents();
    EXPECT_GT(erasing.count, 0) << control->name() << ", after it";
    Rescale(start, 60, 40);
    desktop->DoEvents();
    RemoveWindowSubclass(Window(*control), Erasing::Proc, 1);
  }
}

TEST_P(RescaledContract, AThousandChangesLoseNothing) {
  if (!real()) return;
  struct State {
    std::int64_t bytes = 0;
    std::array<int, std::size(win32::g_liveHandles)> handles{};
  };
  std::array<State, 10> states;  // takes no memory while it is filled
  for (State& state : states) {
    for (int i = 0; i < 100; ++i) {
      Rescale(kDpis[static_cast<std::size_t>(i) % std::size(kDpis)], 60, 40);
      if (i % 20 == 0) desktop->DoEvents();
    }
    Rescale(start, 60, 40);
    desktop->DoEvents();
    state.bytes = LiveBytes();
    std::copy(std::begin(win32::g_liveHandles), std::end(win32::g_liveHandles),
              state.handles.begin());
  }
  EXPECT_EQ(form->inner(), (Size{6605, 6395}));
  ASSERT_GT(states[0].bytes, 0);
  // The first changes leave the fonts of each resolution in the cache.
  for (std::size_t i = 2; i < states.size(); ++i) {
    EXPECT_EQ(states[i].bytes, states[1].bytes) << i;
    EXPECT_EQ(states[i].handles, states[1].handles) << i;
  }
}

// Windows asks for the size before it makes the rectangle.
TEST_P(RescaledContract, AnswersWithTheSizeThatItWillHave) {
  if (!real()) return;
  constexpr UINT kGetDpiScaledSize = 0x02E4;
  for (const int dpi : kDpis) {
    SIZE size = {1, 1};
    ASSERT_EQ(SendMessageW(Window(), kGetDpiScaledSize, static_cast<WPARAM>(dpi),
                           reinterpret_cast<LPARAM>(&size)),
              TRUE);
    const Resolution there{dpi, dpi};
    EXPECT_GE(size.cx, there.PixelsX(6605));
    EXPECT_LE(size.cx, there.PixelsX(6605 + 300)) << "and a frame";
    EXPECT_GT(size.cy, there.PixelsY(6395));
    EXPECT_LE(size.cy, there.PixelsY(6395 + 1100)) << "and a frame, a title and a menu bar";
  }
}

#endif

MARL_OVER_ALL_BACKENDS(RescaledContract);

}  // namespace
}  // namespace marl
