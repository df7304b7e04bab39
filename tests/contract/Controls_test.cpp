// Controls in a real window and in memory: the same user actions raise the same events.

#include "platform/forms/Controls.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/contract/DesktopWorld.h"
#ifdef _WIN32
// clang-format off
#include "platform/win32/DesktopWin32.h"
#include <commctrl.h>
// clang-format on
#endif

namespace marl {
namespace {

/// Two pages with tabs: lists and a scroll bar on the first, a picture with a label on the second.
class PagesForm : public Form {
 public:
  explicit PagesForm(Desktop& desktop) : Form(desktop, "frmPages") {
    Design = {6600, 5400};
    KeyPreview = true;
    tabs.SetBounds({120, 120, 6360, 4500});
    tabs.AddPart({u"&First", u"", u""});
    tabs.AddPart({u"&Second", u"", u""});
    first.SetBounds({180, 600, 6240, 3900});
    second.SetBounds({180, 600, 6240, 3900});
    second.SetVisible(false);
    checks.CheckBoxes = true;
    checks.SetBounds({120, 120, 2400, 2400});
    for (const TextView row : {u"a", u"b", u"c", u"d"}) checks.AddItem(row);
    many.MultiSelect = true;
    many.SetBounds({2700, 120, 2400, 2400});
    for (const TextView row : {u"a", u"b", u"c", u"d"}) many.AddItem(row);
    drop.SetBounds({120, 3100, 2400, 315});
    for (const TextView row : {u"a", u"b", u"c", u"d"}) drop.AddItem(row);
    hide.SetBounds({2700, 3100, 2400, 255});
    hide.SetCaption(u"&Same");
    ok.SetBounds({5100, 4800, 1125, 345});
    angle.SetBounds({120, 2700, 4800, 255});
    angle.Max = 359;
    angle.LargeChange = 30;
    picture.SetBounds({120, 120, 3000, 1500});
    label.SetBounds({300, 300, 1500, 300});
    label.SetCaption(u"Sample");

    tabs.Click = [this] {
      first.SetVisible(tabs.SelectedItem() == 1);
      second.SetVisible(tabs.SelectedItem() == 2);
      Log("tab", tabs.SelectedItem());
    };
    checks.ItemCheck = [this](int row) { Log("check", row); };
    checks.MouseDown = [this] { Log("down", checks.ListIndex()); };
    checks.MouseMove = [this] { Log("move", checks.ListIndex()); };
    checks.MouseUp = [this] { Log("up", checks.ListIndex()); };
    many.Click = [this] { Log("many", many.SelCount()); };
    checks.Click = [this] { Log("choose", checks.ListIndex()); };
    drop.Click = [this] { Log("drop", drop.ListIndex()); };
    hide.Click = [this] { Log("hide", hide.Value()); };
    angle.Change = [this] { Log("angle", angle.Value()); };
    label.Click = [this] { Log("label", 0); };
  }

  TabStrip tabs{*this, "tabs"};
  PictureBox first{*this, "picTab", 0};
  PictureBox second{*this, "picTab", 1};
  ListBox checks{*this, "lstChecks", -1, &first};
  ListBox many{*this, "lstMany", -1, &first};
  HScrollBar angle{*this, "hsbAngle", -1, &first};
  ComboBox drop{*this, "cmbDrop", -1, &first};
  CheckBox hide{*this, "chkHide", -1, &first};
  PictureBox picture{*this, "picSample", -1, &second};
  Label label{*this, "lblSample", -1, &picture};
  CommandButton ok{*this, "cmdOK"};

  std::vector<std::string> heard;
  bool closesOnKey = false;

 protected:
  bool OnKeyDown(int key, int shift) override {
    if (closesOnKey) Unload();
    if (key != kKeyF4) return false;
    Log("key", shift);
    return true;
  }

 private:
  void Log(const char* what, int number) {
    heard.push_back(std::string(what) + ' ' + std::to_string(number));
  }
};

class ControlsContract : public BackendTest {
 protected:
  ControlsContract() {
    form = std::make_unique<PagesForm>(*desktop);
    form->Show();
    desktop->DoEvents();
    form->heard.clear();
  }
  ~ControlsContract() override { form->Unload(); }

  // What the user does.
  void Press(int row, bool onBox) {
#ifdef _WIN32
    if (real()) return Mouse(form->checks, WM_LBUTTONDOWN, MK_LBUTTON, row, onBox ? 6 : 60);
#endif
    if (onBox) form->checks.UserCheck(row);
    form->checks.UserMouseDown(row);
  }
  void MoveTo(int row) {
#ifdef _WIN32
    if (real()) return Mouse(form->checks, WM_MOUSEMOVE, MK_LBUTTON, row, 60);
#endif
    form->checks.UserMouseMove(row);
  }
  void Release(int row) {
#ifdef _WIN32
    if (real()) return Mouse(form->checks, WM_LBUTTONUP, 0, row, 60);
#endif
    static_cast<void>(row);
    form->checks.UserMouseUp();
  }
  void Space() {
#ifdef _WIN32
    if (real()) {
      PostMessageW(Window(form->checks), WM_KEYDOWN, VK_SPACE, 1);
      return desktop->DoEvents();
    }
#endif
    form->checks.UserCheck(form->checks.ListIndex());
  }
  void SelectMany(int row, bool more) {
#ifdef _WIN32
    if (real()) {
      const WPARAM keys = MK_LBUTTON | (more ? MK_CONTROL : 0);
      Mouse(form->many, WM_LBUTTONDOWN, keys, row, 60);
      return Mouse(form->many, WM_LBUTTONUP, more ? MK_CONTROL : 0, row, 60);
    }
#endif
    std::vector<int> rows;
    for (int i = 0; more && i < form->many.ListCount(); ++i) {
      if (form->many.Selected(i)) rows.push_back(i);
    }
    rows.push_back(row);
    form->many.UserSelectRows(rows, row);
  }
  enum class Step { kLineRight, kPageRight, kPageLeft, kRightEnd, kLeftEnd };
  void Scroll(Step step) {
#ifdef _WIN32
    if (real()) {
      constexpr int kCodes[] = {SB_LINERIGHT, SB_PAGERIGHT, SB_PAGELEFT, SB_RIGHT, SB_LEFT};
      const HWND bar = Window(form->angle);
      SendMessageW(GetParent(bar), WM_HSCROLL, static_cast<WPARAM>(kCodes[static_cast<int>(step)]),
                   reinterpret_cast<LPARAM>(bar));
      return;
    }
#endif
    const int value = form->angle.Value();
    const int values[] = {value + 1, value + 30, value - 30, 359, 0};
    form->angle.UserScroll(values[static_cast<int>(step)]);
  }
  void ClickTab(int tab) {
#ifdef _WIN32
    if (real()) {
      RECT area = {};
      SendMessageW(Window(form->tabs), TCM_GETITEMRECT, static_cast<WPARAM>(tab - 1),
                   reinterpret_cast<LPARAM>(&area));
      const LPARAM at = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
      SendMessageW(Window(form->tabs), WM_LBUTTONDOWN, MK_LBUTTON, at);
      SendMessageW(Window(form->tabs), WM_LBUTTONUP, 0, at);
      return;
    }
#endif
    form->tabs.UserSelectTab(tab);
  }
  enum class MouseEvent {
    kDown,
    kUp,
    kMoveWithout,
    kCaptureLost,
    kCancelled,
    kSuspended,
    kRightUp
  };
  void ClickOnLabel() {
    OnLabel(MouseEvent::kDown);
    OnLabel(MouseEvent::kUp);
  }
  /// Does this with the mouse in the middle of the label.
  void OnLabel(MouseEvent what) {
    const Point at = form->Origin(form->label);
    const int x = at.x + form->label.Width() / 2;
    const int y = at.y + form->label.Height() / 2;
#ifdef _WIN32
    if (real()) {
      const LPARAM point =
          MAKELPARAM(desktop->resolution().PixelsX(x), desktop->resolution().PixelsY(y));
      const HWND window = static_cast<HWND>(LongToHandle(form->hWnd()));
      switch (what) {
        case MouseEvent::kDown: SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, point); break;
        case MouseEvent::kUp: SendMessageW(window, WM_LBUTTONUP, 0, point); break;
        case MouseEvent::kMoveWithout: SendMessageW(window, WM_MOUSEMOVE, 0, point); break;
        case MouseEvent::kCaptureLost:
          SetCapture(Window(form->ok));
          ReleaseCapture();
          break;
        case MouseEvent::kCancelled: SendMessageW(window, WM_CANCELMODE, 0, 0); break;
        case MouseEvent::kSuspended:
          EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0), TRUE);
          EXPECT_NE(GetCapture(), window);
          break;
        case MouseEvent::kRightUp:
          SendMessageW(window, WM_RBUTTONUP, MK_LBUTTON, point);
          EXPECT_EQ(GetCapture(), window) << "for the button that is still down";
          break;
      }
      return;
    }
#endif
    const auto left = static_cast<float>(x);
    const auto top = static_cast<float>(y);
    switch (what) {
      case MouseEvent::kDown: return form->UserMouseDown(1, left, top);
      case MouseEvent::kUp: return form->UserMouseUp(1, left, top);
      case MouseEvent::kMoveWithout: return form->UserMouseMove(0, 0, left, top);
      case MouseEvent::kCaptureLost:
      case MouseEvent::kCancelled:
      case MouseEvent::kSuspended: return form->UserCaptureLost();
      case MouseEvent::kRightUp: return form->UserMouseUp(2, left, top);
    }
  }
  void KeyDown(int key, const Control& focus) {
#ifdef _WIN32
    if (real()) {
      PostMessageW(Window(focus), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
      return desktop->DoEvents();
    }
#endif
    static_cast<void>(focus);
    form->UserKeyDown(key, 0);
  }
  void AccessKey(char16_t key) {
#ifdef _WIN32
    if (real()) {
      const HWND focus = GetFocus();
      const HWND own = static_cast<HWND>(LongToHandle(form->hWnd()));
      PostMessageW(IsChild(own, focus) ? focus : Window(form->ok), WM_SYSCHAR, key, 1 << 29);
      return desktop->DoEvents();
    }
#endif
    form->UserAccessKey(key, static_cast<MemoryPeer*>(form->peer())->focus);
  }
  /// Switches to another window and back.
  void LeaveAndReturn() {
#ifdef _WIN32
    if (real()) {
      const HWND own = static_cast<HWND>(LongToHandle(form->hWnd()));
      const HWND other = CreateWindowExW(0, L"STATIC", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                         0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
      SetActiveWindow(other);
      desktop->DoEvents();
      EXPECT_EQ(GetActiveWindow(), other);
      SetActiveWindow(own);
      desktop->DoEvents();
      EXPECT_EQ(GetActiveWindow(), own);
      DestroyWindow(other);
      return desktop->DoEvents();
    }
#endif
    auto& memory = static_cast<MemoryDesktop&>(*desktop);
    memory.SwitchAway();
    memory.SwitchBack();
  }
  /// Opens the drop-down list and clicks a row.
  void ChooseRow(int row) {
#ifdef _WIN32
    if (real()) {
      const HWND combo = Window(form->drop);
      SetFocus(combo);
      SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
      desktop->DoEvents();
      COMBOBOXINFO info = {};
      info.cbSize = sizeof info;
      GetComboBoxInfo(combo, &info);
      RECT area = {};
      SendMessageW(info.hwndList, LB_GETITEMRECT, static_cast<WPARAM>(row),
                   reinterpret_cast<LPARAM>(&area));
      const LPARAM at = MAKELPARAM(10, (area.top + area.bottom) / 2);
      SendMessageW(info.hwndList, WM_MOUSEMOVE, 0, at);
      SendMessageW(info.hwndList, WM_LBUTTONDOWN, MK_LBUTTON, at);
      SendMessageW(info.hwndList, WM_LBUTTONUP, 0, at);
      return desktop->DoEvents();
    }
#endif
    form->drop.UserSelectRow(row);
  }
  /// The visible rows: of the native list, or of the control in memory.
  std::vector<Text> Shown(const ListBox& list) const {
    std::vector<Text> rows;
#ifdef _WIN32
    if (real()) {
      const HWND window = Window(list);
      const auto count = SendMessageW(window, LB_GETCOUNT, 0, 0);
      for (WPARAM row = 0; static_cast<LRESULT>(row) < count; ++row) {
        wchar_t text[100] = {};
        SendMessageW(window, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
        rows.push_back(win32::FromWide(text, wcslen(text)));
      }
      return rows;
    }
#endif
    for (int row = 0; row < list.ListCount(); ++row) rows.push_back(list.List(row));
    return rows;
  }

  /// The rows that are shown as selected.
  std::vector<int> Selection(const ListBox& list) const {
    std::vector<int> rows;
    for (int row = 0; row < list.ListCount(); ++row) {
      bool selected = list.Selected(row);
#ifdef _WIN32
      if (real()) {
        selected = SendMessageW(Window(list), LB_GETSEL, static_cast<WPARAM>(row), 0) > 0;
      }
#endif
      if (selected) rows.push_back(row);
    }
    return rows;
  }

  using Heard = std::vector<std::string>;

  std::unique_ptr<Desktop> desktop = NewDesktop(GetParam());
  std::unique_ptr<PagesForm> form;

#ifdef _WIN32
  HWND Window(const Control& control) const {
    return static_cast<HWND>(LongToHandle(form->peer()->HandleOf(control)));
  }

 private:
  void Mouse(const ListBox& list, UINT message, WPARAM keys, int row, int x) const {
    RECT area = {};
    SendMessageW(Window(list), LB_GETITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&area));
    SendMessageW(Window(list), message, keys, MAKELPARAM(x, (area.top + area.bottom) / 2));
  }
#endif
};

TEST_P(ControlsContract, AClickOnABoxTicksAndSelects) {
  Press(2, true);
  Release(2);
  Press(1, false);
  Release(1);
  EXPECT_EQ(form->heard,
            (Heard{"check 2", "choose 2", "down 2", "up 2", "choose 1", "down 1", "up 1"}));
  EXPECT_TRUE(form->checks.Selected(2));
  EXPECT_FALSE(form->checks.Selected(1));
}

TEST_P(ControlsContract, SpaceTicksTheCurrentRow) {
  Space();
  EXPECT_TRUE(form->heard.empty());
  Press(3, false);
  Release(3);
  form->heard.clear();
  Space();
  EXPECT_TRUE(form->checks.Selected(3));
  Space();
  EXPECT_FALSE(form->checks.Selected(3));
  EXPECT_EQ(form->heard, (Heard{"check 3", "check 3"}));
}

TEST_P(ControlsContract, TheSelectionFollowsThePressedMouse) {
  Press(0, false);
  MoveTo(1);
  MoveTo(3);
  Release(3);
  MoveTo(0);
  EXPECT_EQ(form->heard, (Heard{"choose 0", "down 0", "choose 1", "move 1", "choose 3", "move 3",
                                "up 3", "move 3"}));
}

TEST_P(ControlsContract, APressOnTheRowThatIsChosenIsAClick) {
  for (int press = 0; press < 2; ++press) {
    Press(1, false);
    MoveTo(1);
    Release(1);
  }
  EXPECT_EQ(form->heard, (Heard{"choose 1", "down 1", "move 1", "up 1", "choose 1", "down 1",
                                "move 1", "up 1"}));
  form->heard.clear();
  form->checks.SetListIndex(1);
  EXPECT_TRUE(form->heard.empty());
}

TEST_P(ControlsContract, APressOnRowsThatAreSelectedIsOneClick) {
  SelectMany(1, false);
  SelectMany(1, false);
  SelectMany(3, true);
  EXPECT_EQ(form->heard, (Heard{"many 1", "many 1", "many 2"}));
}

TEST_P(ControlsContract, ChoosingTheRowOfADropDownListAgainIsAClick) {
  ChooseRow(2);
  ChooseRow(2);
  EXPECT_EQ(form->heard, (Heard{"drop 2", "drop 2"}));
  EXPECT_EQ(form->drop.ListIndex(), 2);
  form->heard.clear();
  form->drop.SetListIndex(2);
  EXPECT_TRUE(form->heard.empty());
}

TEST_P(ControlsContract, ARowThatIsAddedJoinsTheSelection) {
  SelectMany(0, false);
  SelectMany(2, true);
  form->many.SetSelected(form->many.AddItem(u"e"), true);
  EXPECT_EQ(Selection(form->many), (std::vector<int>{0, 2, 4}));
  EXPECT_EQ(form->many.SelCount(), 3);
}

TEST_P(ControlsContract, ASharedAccessKeyGoesFromOneToTheNextAndWrapsAround) {
  form->tabs.SetFocus();
  AccessKey(u's');
  EXPECT_EQ(form->heard, (Heard{"hide 1"}));
  AccessKey(u's');
  EXPECT_EQ(form->heard, (Heard{"hide 1", "tab 2"}));
  AccessKey(u's');
  EXPECT_EQ(form->heard, (Heard{"hide 1", "tab 2"})) << "the box is not seen";
  AccessKey(u'f');
  form->hide.SetFocus();
  form->heard.clear();
  AccessKey(u's');
  EXPECT_EQ(form->heard, (Heard{"tab 2"}));
}

TEST_P(ControlsContract, FocusThatComesBackWithItsFormIsNoGotFocus) {
  for (Control* const control :
       std::initializer_list<Control*>{&form->hide, &form->drop, &form->ok}) {
    control->GotFocus = [this, control] { form->heard.push_back("focus " + control->name()); };
  }
  form->hide.SetFocus();
  LeaveAndReturn();
  form->drop.SetFocus();
  LeaveAndReturn();
  LeaveAndReturn();
  form->ok.SetFocus();
  form->drop.SetFocus();
  form->drop.SetFocus();
  EXPECT_EQ(form->heard, (Heard{"focus chkHide", "focus cmbDrop", "focus cmdOK", "focus cmbDrop"}));
}

TEST_P(ControlsContract, PointerShowsWorkUntilTheLastOneEnds) {
#ifdef _WIN32
  const auto points = [this](const wchar_t* name) {
    // As the platform does when the mouse moves.
    const HWND window = static_cast<HWND>(LongToHandle(form->hWnd()));
    SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorW(nullptr, name);
  };
#endif
  EXPECT_FALSE(desktop->working());
  {
    const WorkingPointer outer(*desktop);
    { const WorkingPointer inner(*desktop); }
    EXPECT_TRUE(desktop->working());
#ifdef _WIN32
    if (real()) {
      EXPECT_TRUE(points(IDC_APPSTARTING));
    }
#endif
  }
  EXPECT_FALSE(desktop->working());
#ifdef _WIN32
  if (real()) {
    EXPECT_TRUE(points(IDC_ARROW));
  }
#endif
}

TEST_P(ControlsContract, ARowDraggedMovesUnderTheMouse) {
  form->checks.MouseMove = [this] {
    ListBox& list = form->checks;
    if (list.ListIndex() != 2 || list.List(2) == u"a") return;
    list.RemoveItem(0);
    list.AddItem(u"a", 2);
    list.SetSelected(2, true);
    list.SetListIndex(2);
  };
  Press(0, true);
  MoveTo(2);
  MoveTo(2);
  Release(2);
  EXPECT_EQ(Shown(form->checks), (std::vector<Text>{u"b", u"c", u"a", u"d"}));
  EXPECT_EQ(form->checks.ListIndex(), 2);
  EXPECT_TRUE(form->checks.Selected(2));
}

TEST_P(ControlsContract, RowsChangedByTheProgramAreShown) {
  ListBox& list = form->many;
  list.AddItem(u"e");
  list.SetList(1, u"B");
  list.RemoveItem(0);
  list.AddItem(u"first", 0);
  EXPECT_EQ(Shown(list), (std::vector<Text>{u"first", u"B", u"c", u"d", u"e"}));
  list.Clear();
  EXPECT_TRUE(Shown(list).empty());
  list.AddItem(u"same");
  list.AddItem(u"same");
  list.AddItem(u"same", 1);
  list.RemoveItem(0);
  EXPECT_EQ(Shown(list), (std::vector<Text>{u"same", u"same"}));
}

TEST_P(ControlsContract, CtrlSelectsSeveralRows) {
  SelectMany(1, false);
  SelectMany(3, true);
  EXPECT_TRUE(form->many.Selected(1));
  EXPECT_TRUE(form->many.Selected(3));
  EXPECT_EQ(form->many.SelCount(), 2);
  EXPECT_EQ(form->many.ListIndex(), 3);
  SelectMany(0, false);
  EXPECT_EQ(form->many.SelCount(), 1);
  EXPECT_TRUE(form->many.Selected(0));
}

TEST_P(ControlsContract, TheBarStepsAndStopsAtItsEnds) {
  Scroll(Step::kLineRight);
  Scroll(Step::kPageRight);
  Scroll(Step::kPageLeft);
  Scroll(Step::kPageLeft);
  Scroll(Step::kPageLeft);
  Scroll(Step::kRightEnd);
  Scroll(Step::kLineRight);
  Scroll(Step::kLeftEnd);
  EXPECT_EQ(form->heard,
            (Heard{"angle 1", "angle 31", "angle 1", "angle 0", "angle 359", "angle 0"}));
}

TEST_P(ControlsContract, APressThatLosesTheMouseIsNoClick) {
  ClickTab(2);
  form->heard.clear();
  for (const MouseEvent lost : {MouseEvent::kMoveWithout, MouseEvent::kCaptureLost,
                                MouseEvent::kCancelled, MouseEvent::kSuspended}) {
    OnLabel(MouseEvent::kDown);
    OnLabel(lost);
    OnLabel(MouseEvent::kUp);
    EXPECT_EQ(form->heard, Heard()) << static_cast<int>(lost);
  }
  // The next press is one again, also while the other button is released.
  OnLabel(MouseEvent::kDown);
  OnLabel(MouseEvent::kRightUp);
  OnLabel(MouseEvent::kUp);
  EXPECT_EQ(form->heard, (Heard{"label 0"}));
}

TEST_P(ControlsContract, AClickOnATabShowsItsPage) {
  ClickTab(2);
  EXPECT_TRUE(form->second.Visible());
  EXPECT_FALSE(form->first.Visible());
  ClickTab(2);
  ClickTab(1);
  EXPECT_EQ(form->heard, (Heard{"tab 2", "tab 1"}));
}

TEST_P(ControlsContract, TheAccessKeyOfATabShowsItsPage) {
  form->hide.SetCaption(u"Same");
  AccessKey(u's');
  AccessKey(u'x');
  EXPECT_EQ(form->heard, (Heard{"tab 2"}));
}

TEST_P(ControlsContract, ALabelOnAPictureIsClickedWhileItsPageIsSeen) {
  ClickOnLabel();
  EXPECT_TRUE(form->heard.empty());
  ClickTab(2);
  form->heard.clear();
  ClickOnLabel();
  EXPECT_EQ(form->heard, (Heard{"label 0"}));
}

TEST_P(ControlsContract, TheFormSeesItsKeyWhateverHasTheFocus) {
  KeyDown(kKeyF4, form->checks);
  KeyDown(kKeyF4, form->ok);
  KeyDown(kKeyF6, form->ok);
  EXPECT_EQ(form->heard, (Heard{"key 0", "key 0"}));
}

TEST_P(ControlsContract, AFormMayCloseOnAKeyThatItPassesOn) {
  form->closesOnKey = true;
  KeyDown(kKeyF6, form->ok);
  EXPECT_FALSE(form->loaded());
}

MARL_OVER_ALL_BACKENDS(ControlsContract);

#ifdef _WIN32

/// Tests of real windows only.
class NativeControls : public ControlsContract {
 protected:
  static bool HasFocusWithin(HWND window) {
    const HWND focus = GetFocus();
    return focus == window || IsChild(window, focus);
  }
  /// The pixels of a picture box.
  COLORREF PixelOf(const Control& control, int x, int y) const {
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, x + 1, y + 1);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    SendMessageW(Window(control), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory), PRF_CLIENT);
    const COLORREF color = GetPixel(memory, x, y);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return color;
  }
};

TEST_P(NativeControls, FocusLeavesAPageThatIsHiddenForTheTabs) {
  form->hide.SetCaption(u"Same");
  SetFocus(Window(form->many));
  AccessKey(u's');
  EXPECT_TRUE(HasFocusWithin(Window(form->tabs)));
}

TEST_P(NativeControls, PagesAreAboveTheirStrip) {
  bool stripSeen = false;
  for (HWND window = GetWindow(Window(form->tabs), GW_HWNDFIRST); window;
       window = GetWindow(window, GW_HWNDNEXT)) {
    if (window == Window(form->tabs)) stripSeen = true;
    if (window == Window(form->first) || window == Window(form->second)) {
      EXPECT_FALSE(stripSeen);
    }
  }
}

TEST_P(NativeControls, APictureBoxLetsTheMouseThroughToItsForm) {
  EXPECT_EQ(SendMessageW(Window(form->picture), WM_NCHITTEST, 0, 0), HTTRANSPARENT);
}

TEST_P(NativeControls, APictureIsPaintedAndTakenAwayAgain) {
  const Size size = form->picture.PixelSize();
  EXPECT_EQ(PixelOf(form->picture, 2, 2), PixelOf(form->second, 2, 2));
  form->picture.SetPicture(std::make_shared<Picture>(size.width, size.height, 0xFF102030));
  EXPECT_EQ(PixelOf(form->picture, 2, 2), RGB(0x10, 0x20, 0x30));
  EXPECT_EQ(PixelOf(form->picture, size.width - 1, size.height - 1), RGB(0x10, 0x20, 0x30));
  form->picture.SetPicture(nullptr);
  EXPECT_NE(PixelOf(form->picture, 2, 2), RGB(0x10, 0x20, 0x30));
}

TEST_P(NativeControls, TheThumbIsAsWideAsALargeStep) {
  form->angle.SetValue(200);
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(Window(form->angle), SB_CTL, &info);
  EXPECT_EQ(info.nMin, 0);
  EXPECT_EQ(info.nMax, 359 + 29);
  EXPECT_EQ(info.nPage, 30U);
  EXPECT_EQ(info.nPos, 200);
}

TEST_P(NativeControls, AHiddenListStaysHiddenWhenItIsFilled) {
  form->many.SetVisible(false);
  for (int i = 0; i < 10; ++i) form->many.AddItem(u"x");
  form->many.Clear();
  EXPECT_FALSE(GetWindowLongW(Window(form->many), GWL_STYLE) & WS_VISIBLE);
}

TEST_P(NativeControls, AnotherFontMakesTheRowsHigher) {
  const auto height = [this] { return SendMessageW(Window(form->checks), LB_GETITEMHEIGHT, 0, 0); };
  const auto before = height();
  Font font = form->checks.Font();
  font.Size = 240000;
  form->checks.SetFont(font);
  EXPECT_GT(height(), before + 8);
}

TEST_P(NativeControls, AFormClosedByItsListLeavesNothingBehind) {
  form->checks.ItemCheck = [this](int) { form->Unload(); };
  Press(1, true);
  EXPECT_FALSE(form->loaded());
}

INSTANTIATE_TEST_SUITE_P(Win32, NativeControls, testing::Values(Backend::kWin32),
                         testing::PrintToStringParamName());

#endif

}  // namespace
}  // namespace marl
