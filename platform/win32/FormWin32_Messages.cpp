// The message handlers of a form's window.

#include "platform/win32/FormWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>

#include "platform/forms/CommonControls.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/DpiWin32.h"

namespace marl::win32 {

namespace {

// The platform's codes of the mouse buttons.
constexpr int kLeft = 1;
constexpr int kRight = 2;
/// Posted to the form: Enter has closed the list of the drop-down list with this window.
constexpr UINT kRowAccepted = WM_APP;
/// Posted to the form: what an accessibility client wants done. `w` has the request and the row,
/// `l` the position of the control among the form's.
constexpr UINT kPartRequest = WM_APP + 1;
constexpr UINT_PTR kAccessibleSubclass = 3;

Text WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return FromWide(text.data(), static_cast<std::size_t>(std::max(length, 0)));
}

/// The bits of `KeyState` for a WM_KEYDOWN with this `l`.
int KeysHeld(LPARAM l) {
  int state = 0;
  if (GetKeyState(VK_SHIFT) < 0) state |= kWithShift;
  if (GetKeyState(VK_CONTROL) < 0) state |= kWithControl;
  if (HIWORD(l) & KF_REPEAT) state |= kRepeated;
  return state;
}

}  // namespace

// A handler that returns nothing leaves the message to the platform. An event may destroy the form:
// do not use it afterwards.
const FormWin32::Handler FormWin32::kHandlers[] = {
    {WM_PAINT, &FormWin32::OnPaint},
    {WM_ERASEBKGND, &FormWin32::OnEraseBackground},
    {WM_PRINTCLIENT, &FormWin32::OnPrintClient},
    {WM_CTLCOLORSTATIC, &FormWin32::OnColorControl},
    {WM_CTLCOLORBTN, &FormWin32::OnColorControl},
    {WM_DRAWITEM, &FormWin32::OnDrawItem},
    {WM_SYSCOLORCHANGE, &FormWin32::OnSysColorChange},
    {WM_THEMECHANGED, &FormWin32::OnThemeChanged},
    {WM_FONTCHANGE, &FormWin32::OnFontChange},
    {WM_UPDATEUISTATE, &FormWin32::OnUpdateUiState},

    {WM_MOVE, &FormWin32::OnPlaced},
    {WM_SIZE, &FormWin32::OnPlaced},
    {WM_ACTIVATE, &FormWin32::OnActivate},
    {WM_GETMINMAXINFO, &FormWin32::OnGetMinMaxInfo},
    {kGetDpiScaledSize, &FormWin32::OnGetDpiScaledSize},
    {kDpiChanged, &FormWin32::OnDpiChanged},
    {WM_DISPLAYCHANGE, &FormWin32::OnDisplayChange},
    {WM_SETTINGCHANGE, &FormWin32::OnSettingChange},

    {WM_SETCURSOR, &FormWin32::OnSetCursor},
    {WM_MOUSEMOVE, &FormWin32::OnMouseMove},
    {WM_LBUTTONDOWN, &FormWin32::OnLeftDown},
    {WM_LBUTTONUP, &FormWin32::OnLeftUp},
    {WM_RBUTTONDOWN, &FormWin32::OnRightDown},
    {WM_RBUTTONUP, &FormWin32::OnRightUp},
    {WM_CAPTURECHANGED, &FormWin32::OnCaptureChanged},
    {WM_POWERBROADCAST, &FormWin32::OnPower},
    {WM_KEYDOWN, &FormWin32::OnKeyDown},
    {WM_CHAR, &FormWin32::OnChar},

    {WM_COMMAND, &FormWin32::OnCommand},
    {WM_NOTIFY, &FormWin32::OnNotify},
    {WM_HSCROLL, &FormWin32::OnHScroll},
    {DM_GETDEFID, &FormWin32::OnGetDefaultId},
    {kRowAccepted, &FormWin32::OnRowAccepted},
    {WM_GETOBJECT, &FormWin32::OnGetObject},
    {kPartRequest, &FormWin32::OnPartRequest},
    {WM_TIMER, &FormWin32::OnTimer},

    {WM_CLOSE, &FormWin32::OnClose},
    {WM_QUERYENDSESSION, &FormWin32::OnQueryEndSession},
    {WM_ENDSESSION, &FormWin32::OnEndSession},
    {WM_DESTROY, &FormWin32::OnDestroy},
};

LRESULT CALLBACK FormWin32::Entry(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
  if (message == WM_NCCREATE) {
    auto* const peer =
        static_cast<FormWin32*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
    peer->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(peer));
  }
  auto* const peer = reinterpret_cast<FormWin32*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!peer) return DefWindowProcW(window, message, w, l);
  return peer->OnMessage(message, w, l);
}

LRESULT FormWin32::OnMessage(UINT message, WPARAM w, LPARAM l) {
  const HWND window = window_;
  for (const Handler& handler : kHandlers) {
    if (handler.message != message) continue;
    if (const std::optional<LRESULT> result = (this->*handler.handle)(w, l)) return *result;
    break;
  }
  return DefWindowProcW(window, message, w, l);
}

FormWin32::Result FormWin32::OnPaint(WPARAM, LPARAM) {
  if (desktop_.ended()) return PaintNothing(window_);
  desktop_.Event([&] { PaintWindow(); });
  return 0;
}

FormWin32::Result FormWin32::OnEraseBackground(WPARAM, LPARAM) { return 1; }

FormWin32::Result FormWin32::OnPrintClient(WPARAM w, LPARAM) {
  desktop_.Event([&] {
    CanvasWin32 canvas = CanvasOn(reinterpret_cast<HDC>(w));
    PaintForm(form_, canvas);
  });
  return 0;
}

FormWin32::Result FormWin32::OnColorControl(WPARAM w, LPARAM l) {
  return ColorControl(reinterpret_cast<HDC>(w), reinterpret_cast<HWND>(l));
}

FormWin32::Result FormWin32::OnDrawItem(WPARAM, LPARAM l) {
  const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(l);
  const Control* const control = item.CtlType == ODT_LISTBOX ? ControlOf(item.hwndItem) : nullptr;
  ListWin32* const list = control ? ListOf(*control) : nullptr;
  if (!list) return {};
  desktop_.Event([&] { list->DrawRow(item); });
  return TRUE;
}

void FormWin32::LookChanged(UINT message, WPARAM w, LPARAM l) {
  const HWND window = window_;
  desktop_.Event([&] {
    // The common controls need it (as the documentation of WM_SYSCOLORCHANGE says).
    for (const auto& [control, child] : windows_) SendMessageW(child, message, w, l);
    desktop_.RenewFonts();
    CreatePages();
    form_.PeerLookChanged();
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
  });
}

FormWin32::Result FormWin32::OnSysColorChange(WPARAM w, LPARAM l) {
  LookChanged(WM_SYSCOLORCHANGE, w, l);
  return {};
}

FormWin32::Result FormWin32::OnThemeChanged(WPARAM w, LPARAM l) {
  LookChanged(WM_THEMECHANGED, w, l);
  return {};
}

FormWin32::Result FormWin32::OnFontChange(WPARAM w, LPARAM l) {
  LookChanged(WM_FONTCHANGE, w, l);
  return {};
}

// The platform keeps the state and passes it on to the controls.
FormWin32::Result FormWin32::OnUpdateUiState(WPARAM w, LPARAM l) {
  const LRESULT result = DefWindowProcW(window_, WM_UPDATEUISTATE, w, l);
  if (HIWORD(w) & UISF_HIDEACCEL) {
    desktop_.Event([&] { form_.PeerCues(LOWORD(w) == UIS_CLEAR); });
  }
  if (HIWORD(w) & UISF_HIDEFOCUS) {
    desktop_.Event([&] { form_.PeerFocusCues(LOWORD(w) == UIS_CLEAR); });
  }
  return result;
}

FormWin32::Result FormWin32::OnPlaced(WPARAM, LPARAM) {
  desktop_.Event([&] { Report(); });
  return {};
}

FormWin32::Result FormWin32::OnActivate(WPARAM w, LPARAM l) {
  if (LOWORD(w) == WA_INACTIVE) {
    if (IsChild(window_, GetFocus())) lastFocus_ = GetFocus();
    desktop_.Event([&] { form_.UserDeactivate(ControlAround(GetFocus())); });
    return {};
  }
  if (!form_.loaded()) return {};
  const LRESULT result = DefWindowProcW(window_, WM_ACTIVATE, w, l);
  RestoreFocus();
  desktop_.Event([&] {
    // A window that comes back may be activated before it is told its size.
    if (!IsIconic(window_)) Report();
    form_.UserActivate();
  });
  return result;
}

// The platform limits a window to the size of the screen: at a high resolution it would cut off
// what is then missing when the resolution is lower again.
FormWin32::Result FormWin32::OnGetMinMaxInfo(WPARAM w, LPARAM l) {
  if (form_.Border == BorderStyle::kSizable) return {};
  DefWindowProcW(window_, WM_GETMINMAXINFO, w, l);
  constexpr LONG kLargest = 32767;
  reinterpret_cast<MINMAXINFO*>(l)->ptMaxTrackSize = {kLargest, kLargest};
  return 0;
}

// The rectangle that WM_DPICHANGED brings has this size; otherwise the frame would be scaled with
// the rest.
FormWin32::Result FormWin32::OnGetDpiScaledSize(WPARAM w, LPARAM l) {
  auto* const size = reinterpret_cast<SIZE*>(l);
  if (!size || IsZoomed(window_)) return {};
  const auto dpi = static_cast<int>(w);
  *size = OuterSize({dpi, dpi});
  return TRUE;
}

FormWin32::Result FormWin32::OnDpiChanged(WPARAM w, LPARAM l) {
  const auto* const place = reinterpret_cast<const RECT*>(l);
  if (!place) return 0;
  desktop_.Event([&] {
    form_.PeerRescaled(
        {LOWORD(w), HIWORD(w)},
        {static_cast<std::int32_t>(place->left), static_cast<std::int32_t>(place->top),
         static_cast<std::int32_t>(place->right), static_cast<std::int32_t>(place->bottom)});
  });
  return 0;
}

FormWin32::Result FormWin32::OnDisplayChange(WPARAM, LPARAM) {
  desktop_.Event([&] { form_.PeerScreensChanged(); });
  return {};
}

FormWin32::Result FormWin32::OnSettingChange(WPARAM w, LPARAM l) {
  if (w == SPI_SETWORKAREA) {
    desktop_.Event([&] { form_.PeerScreensChanged(); });
  } else {
    LookChanged(WM_SETTINGCHANGE, w, l);
  }
  return {};
}

FormWin32::Result FormWin32::OnSetCursor(WPARAM w, LPARAM l) {
  if (LOWORD(l) != HTCLIENT) return {};
  if (desktop_.working()) {
    SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING));
    return TRUE;
  }
  if (reinterpret_cast<HWND>(w) != window_ || !IsOverLink()) return {};
  SetCursor(LoadCursorW(nullptr, IDC_HAND));
  return TRUE;
}

FormWin32::Result FormWin32::OnMouseMove(WPARAM w, LPARAM l) {
  const int button = (w & MK_LBUTTON ? kLeft : 0) | (w & MK_RBUTTON ? kRight : 0);
  const int shift = (w & MK_SHIFT ? 1 : 0) | (w & MK_CONTROL ? 2 : 0);
  desktop_.Event([&] { form_.UserMouseMove(button, shift, TwipsAtX(l), TwipsAtY(l)); });
  return 0;
}

FormWin32::Result FormWin32::OnLeftDown(WPARAM, LPARAM l) { return ButtonDown(kLeft, l); }
FormWin32::Result FormWin32::OnLeftUp(WPARAM w, LPARAM l) { return ButtonUp(kLeft, w, l); }
FormWin32::Result FormWin32::OnRightDown(WPARAM, LPARAM l) { return ButtonDown(kRight, l); }
FormWin32::Result FormWin32::OnRightUp(WPARAM w, LPARAM l) { return ButtonUp(kRight, w, l); }

LRESULT FormWin32::ButtonDown(int button, LPARAM position) {
  SetCapture(window_);
  desktop_.Event([&] { form_.UserMouseDown(button, TwipsAtX(position), TwipsAtY(position)); });
  return 0;
}

LRESULT FormWin32::ButtonUp(int button, WPARAM held, LPARAM position) {
  // The other button may still be down; it gets its release even outside the window.
  if (!(held & (MK_LBUTTON | MK_RBUTTON))) {
    releasing_ = true;
    ReleaseCapture();
    releasing_ = false;
  }
  desktop_.Event([&] { form_.UserMouseUp(button, TwipsAtX(position), TwipsAtY(position)); });
  return 0;
}

// Also sent after WM_CANCELMODE, when a dialog opens or the session is switched.
FormWin32::Result FormWin32::OnCaptureChanged(WPARAM, LPARAM) {
  if (!releasing_) desktop_.Event([&] { form_.UserCaptureLost(); });
  return {};
}

// What was pressed before a suspension is not released after it.
FormWin32::Result FormWin32::OnPower(WPARAM w, LPARAM) {
  if (w == PBT_APMSUSPEND || w == PBT_APMRESUMEAUTOMATIC || w == PBT_APMRESUMESUSPEND) {
    if (GetCapture() == window_) ReleaseCapture();
    desktop_.Event([&] { form_.UserCaptureLost(); });
  }
  return TRUE;
}

// Where fields can have the focus, the message loop has offered the key to the form already.
FormWin32::Result FormWin32::OnKeyDown(WPARAM w, LPARAM l) {
  if (hasFields_) return {};
  bool taken = false;
  desktop_.Event([&] { taken = form_.UserKeyDown(static_cast<int>(w), KeysHeld(l)); });
  if (taken) return 0;
  return {};
}

FormWin32::Result FormWin32::OnChar(WPARAM w, LPARAM) {
  desktop_.Event([&] { form_.UserKey(static_cast<char16_t>(w)); });
  return 0;
}

FormWin32::Result FormWin32::OnCommand(WPARAM w, LPARAM l) {
  desktop_.Event([&] { Command(LOWORD(w), HIWORD(w), reinterpret_cast<HWND>(l)); });
  return 0;
}

FormWin32::Result FormWin32::OnNotify(WPARAM, LPARAM l) {
  desktop_.Event([&] { Notify(*reinterpret_cast<const NMHDR*>(l)); });
  return 0;
}

FormWin32::Result FormWin32::OnHScroll(WPARAM w, LPARAM l) {
  Control* const control = ControlOf(reinterpret_cast<HWND>(l));
  if (!control || control->kind() != ControlKind::kHScrollBar) return {};
  desktop_.Event([&] { Scroll(static_cast<HScrollBar&>(*control), LOWORD(w)); });
  return 0;
}

FormWin32::Result FormWin32::OnGetDefaultId(WPARAM, LPARAM) {
  const CommandButton* const button = form_.DefaultButton();
  const HWND child = button ? WindowOf(*button) : nullptr;
  return child ? MAKELRESULT(GetDlgCtrlID(child), DC_HASDEFID) : 0;
}

FormWin32::Result FormWin32::OnRowAccepted(WPARAM, LPARAM l) {
  // Any program can post this, with any window.
  const Control* const control = ControlOf(reinterpret_cast<HWND>(l));
  ListWin32* const list = control ? ListOf(*control) : nullptr;
  if (list) desktop_.Event([&] { list->SelectionChanged(); });
  return 0;
}

FormWin32::Result FormWin32::AnswerClient(HWND window, const Control* control, WPARAM w, LPARAM l) {
  if (static_cast<LONG>(l) != OBJID_CLIENT) return {};
  if (!link_) {
    link_ = std::make_shared<AccessibleLink>();
    link_->form = this;
  }
  const LRESULT answer = AnswerGetObject(link_, window, control, w);
  if (answer == 0) return {};
  return answer;
}

FormWin32::Result FormWin32::OnGetObject(WPARAM w, LPARAM l) {
  return AnswerClient(window_, nullptr, w, l);
}

LRESULT CALLBACK FormWin32::ControlEntry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                         DWORD_PTR peer) noexcept {
  auto* const form = reinterpret_cast<FormWin32*>(peer);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(window, ControlEntry, kAccessibleSubclass);
  } else if (message == WM_GETOBJECT && form->window_) {
    if (const Control* const control = form->ControlAround(window)) {
      if (const Result answer = form->AnswerClient(window, control, w, l)) return *answer;
    }
  }
  return DefSubclassProc(window, message, w, l);
}

void FormWin32::MakeAccessible(HWND child) {
  SetWindowSubclass(child, ControlEntry, kAccessibleSubclass, reinterpret_cast<DWORD_PTR>(this));
}

void FormWin32::PostPart(PartRequest request, const Control& control, LONG row) const {
  const auto& controls = form_.controls();
  const auto found = std::find(controls.begin(), controls.end(), &control);
  PostMessageW(window_, kPartRequest, MAKEWPARAM(static_cast<WORD>(request), row),
               static_cast<LPARAM>(found - controls.begin()));
}

// Any program can post this, with any numbers.
FormWin32::Result FormWin32::OnPartRequest(WPARAM w, LPARAM l) {
  desktop_.Event([&] {
    const auto& controls = form_.controls();
    if (l < 0 || static_cast<std::size_t>(l) >= controls.size()) return;
    Control& control = *controls[static_cast<std::size_t>(l)];
    if (static_cast<PartRequest>(LOWORD(w)) == PartRequest::kPress) {
      form_.UserPressPart(control, HIWORD(w));
    } else {
      form_.UserFocusPart(control, HIWORD(w));
    }
  });
  return 0;
}

FormWin32::Result FormWin32::OnTimer(WPARAM w, LPARAM) {
  desktop_.Event([&] {
    const auto& controls = form_.controls();
    if (w >= controls.size() || controls[w]->kind() != ControlKind::kTimer) return;
    const auto& timer = static_cast<const Timer&>(*controls[w]);
    if (timer.Enabled() && timer.Tick) timer.Tick();
  });
  return 0;
}

FormWin32::Result FormWin32::OnClose(WPARAM, LPARAM) {
  desktop_.Event([&] { form_.UserClose(); });
  return 0;
}

FormWin32::Result FormWin32::OnQueryEndSession(WPARAM, LPARAM) { return desktop_.MayEndSession(); }

FormWin32::Result FormWin32::OnEndSession(WPARAM w, LPARAM) {
  desktop_.EndSession(w != FALSE);
  return 0;
}

// Not through `Close`, which stops the messages first.
FormWin32::Result FormWin32::OnDestroy(WPARAM, LPARAM) {
  destroying_ = true;
  form_.PeerLost();
  WakeLoop();
  return 0;
}

void FormWin32::Notify(const NMHDR& header) {
  if (updating_ > 0 || header.code != static_cast<UINT>(TCN_SELCHANGE)) return;
  Control* const control = ControlOf(header.hwndFrom);
  if (!control || control->kind() != ControlKind::kTabStrip) return;
  static_cast<TabStrip*>(control)->UserSelectTab(
      static_cast<int>(SendMessageW(header.hwndFrom, TCM_GETCURSEL, 0, 0)) + 1);
}

void FormWin32::Command(int id, int notification, HWND from) {
  if (updating_ > 0) return;
  if (!from) {
    // Enter and Esc, from the dialog manager.
    if (id == IDCANCEL) {
      if (CommandButton* const button = form_.CancelButton()) button->UserClick();
      return;
    }
    if (id == IDOK) {
      if (CommandButton* const button = form_.DefaultButton()) button->UserClick();
      return;
    }
    if (Menu* const menu = MenuOf(id)) return menu->UserClick();
    from = GetDlgItem(window_, id);
  }
  Control* const control = ControlOf(from);
  if (!control) return;
  switch (control->kind()) {
    case ControlKind::kCommandButton:
    case ControlKind::kCheckBox:
    case ControlKind::kOptionButton: return ButtonNotifies(*control, notification);
    case ControlKind::kTextBox:
      return TextBoxNotifies(static_cast<TextBox&>(*control), notification, from);
    case ControlKind::kListBox: return ListBoxNotifies(*control, notification);
    case ControlKind::kComboBox:
      return ComboBoxNotifies(static_cast<ComboBox&>(*control), notification, from);
    default: return;
  }
}

void FormWin32::ButtonNotifies(Control& button, int notification) {
  // The second of two quick clicks arrives as a double click.
  if (notification == BN_CLICKED || notification == BN_DOUBLECLICKED) {
    button.UserClick();
  } else if (notification == BN_SETFOCUS) {
    button.UserFocus();
  }
}

void FormWin32::TextBoxNotifies(TextBox& box, int notification, HWND window) {
  if (notification == EN_CHANGE) {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(window, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    box.UserEdit(WindowText(window), static_cast<int>(start), static_cast<int>(end - start));
  } else if (notification == EN_SETFOCUS) {
    box.UserFocus();
  }
}

void FormWin32::ListBoxNotifies(Control& list, int notification) {
  if (notification == LBN_SELCHANGE) {
    ListOf(list)->SelectionChanged();
  } else if (notification == LBN_SETFOCUS) {
    list.UserFocus();
  }
}

void FormWin32::ComboBoxNotifies(ComboBox& combo, int notification, HWND window) {
  switch (notification) {
    case CBN_SELCHANGE: return ListOf(combo)->SelectionChanged();
    case CBN_DROPDOWN: return ListOf(combo)->DroppingDown();
    case CBN_SELENDOK:
      // The native list is still open.
      if (ListOf(combo)->AcceptsAsItIs()) {
        PostMessageW(window_, kRowAccepted, 0, reinterpret_cast<LPARAM>(window));
      }
      return;
    case CBN_EDITCHANGE: return combo.UserEdit(WindowText(window));
    case CBN_SETFOCUS: return combo.UserFocus();
    default: return;
  }
}

bool FormWin32::TakeAccessKey(const MSG& message) {
  if (message.message == WM_CHAR) {
    // Without Alt a letter is an access key only if it would not be typed.
    const LRESULT code = SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam,
                                      reinterpret_cast<LPARAM>(&message));
    if (code & (DLGC_WANTCHARS | DLGC_WANTALLKEYS)) return false;
  } else if (message.message != WM_SYSCHAR) {
    return false;
  }
  bool taken = false;
  desktop_.Event([&] {
    taken = form_.UserAccessKey(static_cast<char16_t>(message.wParam), ControlAround(message.hwnd));
  });
  return taken;
}

bool FormWin32::PreviewKey(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  const bool control = GetKeyState(VK_CONTROL) < 0;
  const bool shift = GetKeyState(VK_SHIFT) < 0;
  bool taken = false;
  desktop_.Event([&] {
    taken = form_.UserKeyDown(static_cast<int>(message.wParam), KeysHeld(message.lParam));
    const bool left = message.wParam == VK_PRIOR || (message.wParam == VK_TAB && shift);
    const bool right = message.wParam == VK_NEXT || (message.wParam == VK_TAB && !shift);
    if (!taken && control && (left || right)) taken = form_.UserNextTab(left ? -1 : 1);
    // A destroyed form handles no keys.
    taken = taken || !form_.loaded();
  });
  return taken;
}

void FormWin32::Scroll(HScrollBar& bar, int code) {
  const HWND child = WindowOf(bar);
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_POS | SIF_TRACKPOS;
  GetScrollInfo(child, SB_CTL, &info);
  int steps = info.nPos;  // from the left
  switch (code) {
    case SB_LINELEFT: steps -= bar.SmallChange; break;
    case SB_LINERIGHT: steps += bar.SmallChange; break;
    case SB_PAGELEFT: steps -= bar.LargeChange; break;
    case SB_PAGERIGHT: steps += bar.LargeChange; break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: steps = info.nTrackPos; break;
    case SB_LEFT: steps = 0; break;
    case SB_RIGHT: steps = std::abs(bar.Max - bar.Min); break;
    default: return;
  }
  bar.UserScroll(bar.Min + (bar.Max < bar.Min ? -steps : steps));
}

bool FormWin32::IsOverLink() const {
  POINT at;
  if (!GetCursorPos(&at) || !ScreenToClient(window_, &at)) return false;
  const LPARAM position = MAKELPARAM(at.x, at.y);
  const Control* const control = form_.HitTest(TwipsAtX(position), TwipsAtY(position));
  return control && control->HandCursor;
}

float FormWin32::TwipsAtX(LPARAM position) const {
  return form_.resolution().TwipsAtX(static_cast<short>(LOWORD(position)));
}

float FormWin32::TwipsAtY(LPARAM position) const {
  return form_.resolution().TwipsAtY(static_cast<short>(HIWORD(position)));
}

}  // namespace marl::win32
