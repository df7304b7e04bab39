#include "platform/win32/FormWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <limits>

#include "platform/forms/CommonControls.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/TabsWin32.h"

namespace marl::win32 {

namespace {

constexpr wchar_t kClassName[] = L"MarlForm";
constexpr int kFirstControlId = 1000;
constexpr std::size_t kDirtyAreas = 32;
constexpr auto kComboField = static_cast<WPARAM>(-1);  // the closed part, in place of a row
/// Posted to the form: Enter has closed the list of the drop-down list with this window.
constexpr UINT kRowAccepted = WM_APP;

DWORD StyleOf(const Form& form) {
  DWORD style = WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
  switch (form.Border) {
    case BorderStyle::kNone: return style | WS_POPUP;
    case BorderStyle::kSizable: style |= WS_THICKFRAME; break;
    case BorderStyle::kFixedSingle:
    case BorderStyle::kFixedDialog: break;
  }
  style |= WS_CAPTION | WS_SYSMENU;
  if (form.MinButton) style |= WS_MINIMIZEBOX;
  if (form.MaxButton) style |= WS_MAXIMIZEBOX;
  if (!form.ShowInTaskbar) style |= WS_POPUP;
  // Under Wine, only this flag makes a dialog without an icon show none.
  if (form.Border == BorderStyle::kFixedDialog) style |= DS_MODALFRAME;
  return style;
}

DWORD ExStyleOf(const Form& form) {
  DWORD style = WS_EX_CONTROLPARENT;
  if (form.Border == BorderStyle::kFixedDialog) style |= WS_EX_DLGMODALFRAME;
  if (form.ShowInTaskbar) style |= WS_EX_APPWINDOW;
  return style;
}

int ButtonOf(UINT message) {
  switch (message) {
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP: return 2;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP: return 4;
    default: return 1;
  }
}

/// Wakes a waiting message loop, so that it checks whether to go on: messages that another program
/// sends, as the shell does for the tray icon, are handled without waking it.
void WakeLoop() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

/// The owner of the form's new window.
HWND OwnerOf(const Form& form) {
  const Form* const owner = form.desktop().OwnerFor(form);
  return owner && owner->peer() ? static_cast<const FormWin32*>(owner->peer())->window() : nullptr;
}

Text WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return FromWide(text.data(), static_cast<std::size_t>(std::max(length, 0)));
}

}  // namespace

FormWin32::FormWin32(DesktopWin32& desktop, Form& form) : desktop_(desktop), form_(form) {
  static const ATOM registered = [] {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    // A double click counts as one click; its second half is ignored.
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = Entry;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = kClassName;
    return RegisterClassExW(&description);
  }();
  if (!registered) throw RuntimeError(7, u"Out of memory");

  RECT outer = {0, 0, desktop.PixelsX(form.Design.width), desktop.PixelsY(form.Design.height)};
  AdjustWindowRectEx(&outer, StyleOf(form), HasMenuBar(form), ExStyleOf(form));
  CreateWindowExW(ExStyleOf(form), kClassName, Wide(form.Caption()), StyleOf(form),
                  desktop.PixelsX(form.Left()), desktop.PixelsY(form.Top()),
                  outer.right - outer.left, outer.bottom - outer.top, OwnerOf(form), nullptr,
                  GetModuleHandleW(nullptr), this);
  if (!window_) throw RuntimeError(7, u"Out of memory");

  CreateMenus();
  std::vector<Control*> order(form.controls());
  std::stable_sort(order.begin(), order.end(),
                   [](const Control* a, const Control* b) { return a->TabIndex < b->TabIndex; });
  for (Control* control : order) CreateWithContainer(*control);
  // The dialog manager uses the Z order of the windows.
  const Control* before = nullptr;
  for (Control* control : order) {
    const HWND child = WindowOf(*control);
    if (!child) continue;
    SetWindowPos(child, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    // The first option button of a run starts a group for the arrow keys; the next other control
    // ends it.
    const bool inRun = before && before->kind() == ControlKind::kOptionButton &&
                       control->kind() == ControlKind::kOptionButton &&
                       before->container() == control->container();
    if (!inRun) SetWindowLongW(child, GWL_STYLE, GetWindowLongW(child, GWL_STYLE) | WS_GROUP);
    before = control;
  }
  // A tab strip is below its pages, and therefore after them in the tab order.
  for (const auto& [control, child] : windows_) {
    if (control->kind() != ControlKind::kTabStrip) continue;
    SetWindowPos(child, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  CreatePages();
  Report();
}

FormWin32::~FormWin32() { Close(); }

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
  // Messages may destroy the form: do not use it after an event.
  switch (message) {
    case WM_PAINT:
      if (desktop_.ended()) return PaintNothing(window);
      desktop_.Event([&] { OnPaint(); });
      return 0;
    case WM_ERASEBKGND: return 1;
    case WM_PRINTCLIENT: {
      desktop_.Event([&] {
        CanvasWin32 canvas(reinterpret_cast<HDC>(w), desktop_.fonts(), desktop_.Dpi().height);
        PaintForm(form_, canvas);
      });
      return 0;
    }
    case WM_MOVE:
    case WM_SIZE: desktop_.Event([&] { Report(); }); return DefWindowProcW(window, message, w, l);
    case WM_ACTIVATE:
      if (LOWORD(w) == WA_INACTIVE) {
        if (IsChild(window, GetFocus())) lastFocus_ = GetFocus();
        desktop_.Event([&] { form_.UserDeactivate(ControlAround(GetFocus())); });
      } else if (form_.loaded()) {
        const LRESULT result = DefWindowProcW(window, message, w, l);
        RestoreFocus();
        desktop_.Event([&] { form_.UserActivate(); });
        return result;
      }
      break;
    case WM_SETCURSOR:
      if (LOWORD(l) == HTCLIENT && desktop_.working()) {
        SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING));
        return TRUE;
      }
      if (LOWORD(l) == HTCLIENT && reinterpret_cast<HWND>(w) == window && IsOverLink()) {
        SetCursor(LoadCursorW(nullptr, IDC_HAND));
        return TRUE;
      }
      break;
    case WM_MOUSEMOVE: {
      int button = 0;
      if (w & MK_LBUTTON) button |= 1;
      if (w & MK_RBUTTON) button |= 2;
      desktop_.Event([&] {
        form_.UserMouseMove(button, (w & MK_SHIFT ? 1 : 0) | (w & MK_CONTROL ? 2 : 0), TwipsAtX(l),
                            TwipsAtY(l));
      });
      return 0;
    }
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
      SetCapture(window);
      desktop_.Event([&] { form_.UserMouseDown(ButtonOf(message), TwipsAtX(l), TwipsAtY(l)); });
      return 0;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
      ReleaseCapture();
      desktop_.Event([&] { form_.UserMouseUp(ButtonOf(message), TwipsAtX(l), TwipsAtY(l)); });
      return 0;
    case WM_CHAR: desktop_.Event([&] { form_.UserKey(static_cast<char16_t>(w)); }); return 0;
    case WM_TIMER:
      desktop_.Event([&] {
        const auto& controls = form_.controls();
        if (w >= controls.size() || controls[w]->kind() != ControlKind::kTimer) return;
        const auto& timer = static_cast<const Timer&>(*controls[w]);
        if (timer.Enabled() && timer.Tick) timer.Tick();
      });
      return 0;
    case WM_COMMAND:
      desktop_.Event([&] { OnCommand(LOWORD(w), HIWORD(w), reinterpret_cast<HWND>(l)); });
      return 0;
    case DM_GETDEFID:
      if (CommandButton* const button = form_.DefaultButton()) {
        if (const HWND child = WindowOf(*button)) {
          return MAKELRESULT(GetDlgCtrlID(child), DC_HASDEFID);
        }
      }
      return 0;
    case kRowAccepted:
      if (Control* const control = ControlOf(reinterpret_cast<HWND>(l))) {
        desktop_.Event([&] { ListOf(*control)->SelectionChanged(); });
      }
      return 0;
    case WM_HSCROLL:
      if (Control* const control = ControlOf(reinterpret_cast<HWND>(l));
          control && control->kind() == ControlKind::kHScrollBar) {
        desktop_.Event([&] { OnScroll(static_cast<HScrollBar&>(*control), LOWORD(w)); });
        return 0;
      }
      break;
    case WM_NOTIFY: desktop_.Event([&] { OnNotify(*reinterpret_cast<const NMHDR*>(l)); }); return 0;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(l);
      const Control* const control =
          item.CtlType == ODT_LISTBOX ? ControlOf(item.hwndItem) : nullptr;
      ListWin32* const list = control ? ListOf(*control) : nullptr;
      if (!list) break;
      desktop_.Event([&] { list->DrawRow(item); });
      return TRUE;
    }
    case WM_THEMECHANGED: desktop_.Event([&] { CreatePages(); }); break;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: return ColorControl(reinterpret_cast<HDC>(w), reinterpret_cast<HWND>(l));
    case WM_CLOSE: desktop_.Event([&] { form_.UserClose(); }); return 0;
    case WM_ENDSESSION:
      if (w) desktop_.Event([&] { desktop_.Leave(); });
      return 0;
    case WM_DESTROY:
      // Not through `Close`, which stops the messages first.
      destroying_ = true;
      form_.PeerLost();
      WakeLoop();
      return 0;
    default: break;
  }
  return DefWindowProcW(window, message, w, l);
}

Point FormWin32::ClientOrigin() const {
  RECT inner = {};
  GetClientRect(window_, &inner);
  POINT corner = {inner.left, inner.top};
  ClientToScreen(window_, &corner);
  return {corner.x, corner.y};
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
    taken =
        form_.UserKeyDown(static_cast<int>(message.wParam), (shift ? 1 : 0) | (control ? 2 : 0));
    const bool left = message.wParam == VK_PRIOR || (message.wParam == VK_TAB && shift);
    const bool right = message.wParam == VK_NEXT || (message.wParam == VK_TAB && !shift);
    if (!taken && control && (left || right)) taken = form_.UserNextTab(left ? -1 : 1);
    // A destroyed form handles no keys.
    taken = taken || !form_.loaded();
  });
  return taken;
}

void FormWin32::OnScroll(HScrollBar& bar, int code) {
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

void FormWin32::SyncScrollBar(const HScrollBar& bar, HWND window) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  // The thumb is as wide as a large step.
  info.nMax = std::abs(bar.Max - bar.Min) + bar.LargeChange - 1;
  info.nPage = static_cast<UINT>(bar.LargeChange);
  info.nPos = std::abs(bar.Value() - bar.Min);
  SetScrollInfo(window, SB_CTL, &info, TRUE);
}

void FormWin32::OnNotify(const NMHDR& header) {
  if (updating_ > 0 || header.code != static_cast<UINT>(TCN_SELCHANGE)) return;
  Control* const control = ControlOf(header.hwndFrom);
  if (!control || control->kind() != ControlKind::kTabStrip) return;
  static_cast<TabStrip*>(control)->UserSelectTab(
      static_cast<int>(SendMessageW(header.hwndFrom, TCM_GETCURSEL, 0, 0)) + 1);
}

void FormWin32::OnCommand(int id, int notification, HWND from) {
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
    case ControlKind::kOptionButton:
      // The second of two quick clicks arrives as a double click.
      if (notification == BN_CLICKED || notification == BN_DOUBLECLICKED) {
        control->UserClick();
      } else if (notification == BN_SETFOCUS) {
        control->UserFocus();
      }
      break;
    case ControlKind::kTextBox:
      if (notification == EN_CHANGE) {
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(from, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                     reinterpret_cast<LPARAM>(&end));
        static_cast<TextBox*>(control)->UserEdit(WindowText(from), static_cast<int>(start),
                                                 static_cast<int>(end - start));
      } else if (notification == EN_SETFOCUS) {
        control->UserFocus();
      }
      break;
    case ControlKind::kListBox:
      if (notification == LBN_SELCHANGE) {
        ListOf(*control)->SelectionChanged();
      } else if (notification == LBN_SETFOCUS) {
        control->UserFocus();
      }
      break;
    case ControlKind::kComboBox:
      if (notification == CBN_SELCHANGE) {
        ListOf(*control)->SelectionChanged();
      } else if (notification == CBN_DROPDOWN) {
        ListOf(*control)->DroppingDown();
      } else if (notification == CBN_SELENDOK) {
        // The native list is still open.
        if (ListOf(*control)->AcceptsAsItIs()) {
          PostMessageW(window_, kRowAccepted, 0, reinterpret_cast<LPARAM>(from));
        }
      } else if (notification == CBN_EDITCHANGE) {
        static_cast<ComboBox*>(control)->UserEdit(WindowText(from));
      } else if (notification == CBN_SETFOCUS) {
        control->UserFocus();
      }
      break;
    default: break;
  }
}

void FormWin32::Report() {
  if (!window_) return;
  if (IsIconic(window_)) {
    // Minimised, the form keeps its normal position.
    form_.PeerPlaced(form_.bounds(), form_.inner(), WindowState::kMinimised);
    return;
  }
  RECT outer;
  RECT inner;
  GetWindowRect(window_, &outer);
  GetClientRect(window_, &inner);
  PlaceStatusBar();
  form_.PeerPlaced(
      {desktop_.TwipsX(outer.left), desktop_.TwipsY(outer.top),
       desktop_.TwipsX(outer.right - outer.left), desktop_.TwipsY(outer.bottom - outer.top)},
      {desktop_.TwipsX(inner.right), desktop_.TwipsY(inner.bottom)},
      // While hidden, the form only stores its state.
      !IsWindowVisible(window_) ? form_.State()
      : IsZoomed(window_)       ? WindowState::kMaximised
                                : WindowState::kNormal);
}

void FormWin32::CaptionChanged() { SetWindowTextW(window_, Wide(form_.Caption())); }

void FormWin32::Place(const Box& bounds) {
  SetWindowPos(window_, nullptr, desktop_.PixelsX(bounds.left), desktop_.PixelsY(bounds.top),
               desktop_.PixelsX(bounds.width), desktop_.PixelsY(bounds.height),
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void FormWin32::SetState() {
  if (form_.Visible()) Show(true);
}

void FormWin32::Show(bool visible) {
  if (!visible) {
    desktop_.EndModal(form_);
    ShowWindow(window_, SW_HIDE);
    WakeLoop();
    return;
  }
  switch (form_.State()) {
    case WindowState::kNormal:
      // A window that was maximised before it was minimised would be restored maximised.
      if (IsIconic(window_)) ShowWindow(window_, SW_SHOWNOACTIVATE);
      ShowWindow(window_, SW_SHOWNORMAL);
      break;
    case WindowState::kMinimised: ShowWindow(window_, SW_SHOWMINIMIZED); break;
    case WindowState::kMaximised: ShowWindow(window_, SW_SHOWMAXIMIZED); break;
  }
  if (hasFields_ && GetFocus() == window_) FocusFirst();
}

// The focus must not stay in a hidden page: it goes to the tabs.
void FormWin32::LeaveHidden(const Control& hidden) {
  const TabStrip* const tabs = StripOf(hidden);
  if (tabs && WindowOf(*tabs)) {
    SetFocus(WindowOf(*tabs));
  } else {
    SetFocus(GetNextDlgTabItem(window_, WindowOf(hidden), FALSE));
  }
}

void FormWin32::FocusFirst() {
  if (const HWND first = GetNextDlgTabItem(window_, nullptr, FALSE)) SetFocus(first);
}

// Restores the window that had the focus when the form was deactivated; the platform would focus
// the form itself.
void FormWin32::RestoreFocus() {
  if (!hasFields_ || IsIconic(window_) || IsChild(window_, GetFocus())) return;
  if (IsChild(window_, lastFocus_) && IsWindowVisible(lastFocus_) && IsWindowEnabled(lastFocus_)) {
    SetFocus(lastFocus_);
  } else {
    FocusFirst();
  }
}

void FormWin32::CreateWithContainer(Control& control) {
  if (windows_.contains(&control)) return;
  // A container comes before its controls.
  if (control.container()) CreateWithContainer(*control.container());
  CreateControl(control, kFirstControlId + static_cast<int>(windows_.size()));
}

void FormWin32::CreateControl(Control& control, int id) {
  if (control.windowless() || control.kind() == ControlKind::kMenu) return;
  if (control.kind() == ControlKind::kTimer) return SyncTimer(static_cast<Timer&>(control));

  const wchar_t* className = L"BUTTON";
  DWORD style = WS_CHILD | WS_CLIPSIBLINGS;
  DWORD exStyle = 0;
  bool field = true;
  switch (control.kind()) {
    case ControlKind::kCommandButton:
      style |= static_cast<CommandButton&>(control).Default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
      style |= BS_NOTIFY;
      break;
    case ControlKind::kCheckBox: style |= BS_CHECKBOX | BS_MULTILINE | BS_NOTIFY; break;
    case ControlKind::kOptionButton: style |= BS_AUTORADIOBUTTON | BS_MULTILINE | BS_NOTIFY; break;
    case ControlKind::kFrame:
      style |= BS_GROUPBOX | WS_CLIPCHILDREN;
      exStyle = WS_EX_CONTROLPARENT;
      field = false;
      break;
    case ControlKind::kPictureBox:
      className = L"STATIC";
      style |= WS_CLIPCHILDREN;
      exStyle = WS_EX_CONTROLPARENT;
      field = false;
      break;
    case ControlKind::kTextBox:
      className = L"EDIT";
      style |= ES_AUTOHSCROLL;
      exStyle = WS_EX_CLIENTEDGE;
      break;
    case ControlKind::kListBox:
      className = L"LISTBOX";
      style |= ListWin32::StyleOf(static_cast<ListBox&>(control));
      exStyle = WS_EX_CLIENTEDGE;
      break;
    case ControlKind::kComboBox:
      className = L"COMBOBOX";
      style |= WS_VSCROLL | CBS_AUTOHSCROLL;
      style |= static_cast<ComboBox&>(control).Editable ? CBS_DROPDOWN : CBS_DROPDOWNLIST;
      break;
    case ControlKind::kHScrollBar:
      className = L"SCROLLBAR";
      style |= SBS_HORZ;
      break;
    case ControlKind::kTabStrip: className = WC_TABCONTROLW; break;
    case ControlKind::kStatusBar:
      className = STATUSCLASSNAMEW;
      field = false;
      break;
    default: return;
  }
  if (control.Visible()) style |= WS_VISIBLE;
  if (!control.Enabled()) style |= WS_DISABLED;
  if (field && control.TabStop) style |= WS_TABSTOP;
  HWND parent = window_;
  if (control.container()) {
    if (const HWND outer = WindowOf(*control.container())) parent = outer;
  }
  const HWND child = CreateWindowExW(exStyle, className, Wide(control.Caption()), style, 0, 0, 0, 0,
                                     parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                     GetModuleHandleW(nullptr), nullptr);
  if (!child) throw RuntimeError(7, u"Out of memory");
  windows_[&control] = child;
  if (control.kind() == ControlKind::kFrame || control.kind() == ControlKind::kPictureBox) {
    SetWindowSubclass(child, ContainerEntry, 0, reinterpret_cast<DWORD_PTR>(this));
  }
  if (control.kind() == ControlKind::kListBox || control.kind() == ControlKind::kComboBox) {
    lists_[&control] =
        std::make_unique<ListWin32>(desktop_, static_cast<ItemList&>(control), child);
  }
  hasFields_ = hasFields_ || field;
  PlaceControl(control, child);
  for (const Property property :
       {Property::kFont, Property::kItems, Property::kValue, Property::kSelection}) {
    ControlChanged(control, property);
  }
}

void FormWin32::PlaceControl(const Control& control, HWND child) {
  if (control.kind() == ControlKind::kStatusBar) return PlaceStatusBar();
  const int left = desktop_.PixelsX(control.Left());
  const int top = desktop_.PixelsY(control.Top());
  // The right and bottom edges are converted, not the size, so that neighbours that touch in twips
  // also touch in pixels.
  const int width = desktop_.PixelsX(control.Left() + control.Width()) - left;
  int height = desktop_.PixelsY(control.Top() + control.Height()) - top;
  const bool combo = control.kind() == ControlKind::kComboBox;
  const int closed = height;
  // The height of a drop-down list includes its open list.
  if (combo) height = height * 10;
  SetWindowPos(child, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  if (combo) SetClosedHeight(child, closed);
}

// A closed drop-down list is as high as its font, unlike the fields beside it. Wine reports another
// text height than the one that was set, so the difference is added.
void FormWin32::SetClosedHeight(HWND combo, int height) {
  auto text = static_cast<int>(SendMessageW(combo, CB_GETITEMHEIGHT, kComboField, 0));
  for (int attempt = 0; attempt < 3; ++attempt) {
    RECT now;
    GetWindowRect(combo, &now);
    const int missing = height - static_cast<int>(now.bottom - now.top);
    if (missing == 0 || text + missing <= 0) return;
    text += missing;
    SendMessageW(combo, CB_SETITEMHEIGHT, kComboField, text);
  }
}

void FormWin32::PlaceStatusBar() {
  for (const auto& [control, child] : windows_) {
    if (control->kind() == ControlKind::kStatusBar) SendMessageW(child, WM_SIZE, 0, 0);
  }
}

void FormWin32::SyncTimer(Timer& timer) {
  const auto& controls = form_.controls();
  const auto id =
      static_cast<UINT_PTR>(std::find(controls.begin(), controls.end(), &timer) - controls.begin());
  if (timer.Enabled() && timer.Interval() > 0) {
    SetTimer(window_, id, static_cast<UINT>(timer.Interval()), nullptr);
  } else {
    KillTimer(window_, id);
  }
}

void FormWin32::ControlChanged(Control& control, Property property) {
  if (control.kind() == ControlKind::kTimer) return SyncTimer(static_cast<Timer&>(control));
  if (control.kind() == ControlKind::kMenu) {
    const auto& entry = static_cast<const Menu&>(control);
    if (property == Property::kCaption && entry.parent()) {
      SyncMenuCaption(entry);
    } else {
      FillMenu(entry.parent());
      // The menu bar may now need another line, which reduces the inner height.
      if (!entry.parent()) Report();
    }
    return;
  }
  const HWND child = WindowOf(control);
  if (!child) return;
  ++updating_;
  switch (property) {
    case Property::kBounds: PlaceControl(control, child); break;
    case Property::kVisible:
      if (!control.Visible() && IsChild(child, GetFocus())) LeaveHidden(control);
      ShowWindow(child, control.Visible() ? SW_SHOWNA : SW_HIDE);
      break;
    case Property::kEnabled: EnableWindow(child, control.Enabled()); break;
    case Property::kCaption: SetWindowTextW(child, Wide(control.Caption())); break;
    case Property::kFont:
      SendMessageW(
          child, WM_SETFONT,
          reinterpret_cast<WPARAM>(desktop_.fonts().Get(control.Font(), desktop_.Dpi().height)),
          TRUE);
      if (ListWin32* const list = ListOf(control)) list->SyncRowHeight();
      if (control.kind() == ControlKind::kComboBox) PlaceControl(control, child);
      break;
    case Property::kValue:
      if (control.kind() == ControlKind::kCheckBox) {
        const int value = static_cast<CheckBox&>(control).Value();
        SendMessageW(child, BM_SETCHECK, value == 0 ? BST_UNCHECKED : BST_CHECKED, 0);
      } else if (control.kind() == ControlKind::kOptionButton) {
        const bool value = static_cast<OptionButton&>(control).Value();
        SendMessageW(child, BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
      } else if (control.kind() == ControlKind::kHScrollBar) {
        SyncScrollBar(static_cast<HScrollBar&>(control), child);
      } else if (ListWin32* const list = ListOf(control)) {
        list->SyncTicks();
      }
      break;
    case Property::kColor:
    case Property::kPicture:
      if (control.kind() == ControlKind::kPictureBox) InvalidateRect(child, nullptr, FALSE);
      break;
    case Property::kItems:
      if (ListWin32* const list = ListOf(control)) {
        list->SyncItems();
      } else if (control.kind() == ControlKind::kTabStrip) {
        SyncTabs(static_cast<TabStrip&>(control), child);
      }
      break;
    case Property::kSelection: SyncSelection(control, child); break;
    case Property::kEditSelection: {
      const auto& combo = static_cast<const ComboBox&>(control);
      SendMessageW(child, CB_SETEDITSEL, 0,
                   MAKELPARAM(combo.SelStart(), combo.SelStart() + combo.SelLength()));
      break;
    }
    default: break;
  }
  --updating_;
}

void FormWin32::SyncSelection(Control& control, HWND child) {
  switch (control.kind()) {
    case ControlKind::kTextBox: {
      const auto& box = static_cast<const TextBox&>(control);
      SendMessageW(child, EM_SETSEL, static_cast<WPARAM>(box.SelStart()),
                   static_cast<LPARAM>(box.SelStart() + box.SelLength()));
      break;
    }
    case ControlKind::kComboBox:
    case ControlKind::kListBox: ListOf(control)->SyncSelection(); break;
    case ControlKind::kTabStrip:
      SendMessageW(child, TCM_SETCURSEL,
                   static_cast<WPARAM>(static_cast<TabStrip&>(control).SelectedItem() - 1), 0);
      break;
    default: break;
  }
}

void FormWin32::Invalidate(const Box& area) {
  if (!form_.Visible()) return;
  const RECT pixels = {desktop_.PixelsX(area.left), desktop_.PixelsY(area.top),
                       desktop_.PixelsX(area.left + area.width) + 1,
                       desktop_.PixelsY(area.top + area.height) + 1};
  if (!IsDirty(pixels)) {
    InvalidateRect(window_, &pixels, FALSE);
    if (dirty_.size() < kDirtyAreas) dirty_.push_back(pixels);
  }
  for (const auto& [control, child] : windows_) {
    if (control->kind() != ControlKind::kFrame && control->kind() != ControlKind::kPictureBox) {
      continue;
    }
    RECT within = pixels;
    MapWindowPoints(window_, child, reinterpret_cast<POINT*>(&within), 2);
    InvalidateRect(child, &within, control->kind() == ControlKind::kFrame);
  }
}

void FormWin32::InvalidateAll() {
  InvalidateRect(window_, nullptr, FALSE);
  constexpr LONG kFar = std::numeric_limits<LONG>::max();
  dirty_.assign(1, {-kFar, -kFar, kFar, kFar});
}

bool FormWin32::IsDirty(const RECT& area) const {
  return std::any_of(dirty_.begin(), dirty_.end(), [&](const RECT& dirty) {
    return dirty.left <= area.left && dirty.top <= area.top && dirty.right >= area.right &&
           dirty.bottom >= area.bottom;
  });
}

void FormWin32::Refresh() { UpdateWindow(window_); }

void FormWin32::Focus(Control& control) {
  if (const HWND child = WindowOf(control)) SetFocus(child);
}

void FormWin32::BringToFront() { SetForegroundWindow(window_); }

bool FormWin32::InForeground() const { return window_ && GetForegroundWindow() == window_; }

void FormWin32::Close() {
  if (!window_) return;
  desktop_.EndModal(form_);
  desktop_.Withdraw(form_);
  // From here on no message reaches the form.
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  SetMenu(window_, nullptr);
  for (const auto& [parent, menu] : menus_) {
    while (GetMenuItemCount(menu.get()) > 0) RemoveMenu(menu.get(), 0, MF_BYPOSITION);
  }
  menus_.clear();
  lists_.clear();
  for (const auto& [control, child] : windows_) RemoveWindowSubclass(child, ContainerEntry, 0);
  const HWND window = std::exchange(window_, nullptr);
  if (!destroying_) DestroyWindow(window);
  windows_.clear();
  WakeLoop();
}

bool FormWin32::IsOverLink() const {
  POINT at;
  if (!GetCursorPos(&at) || !ScreenToClient(window_, &at)) return false;
  const LPARAM position = MAKELPARAM(at.x, at.y);
  const Control* const control = form_.HitTest(TwipsAtX(position), TwipsAtY(position));
  return control && control->HandCursor;
}

float FormWin32::TwipsAtX(LPARAM position) const {
  return desktop_.TwipsAtX(static_cast<short>(LOWORD(position)));
}

float FormWin32::TwipsAtY(LPARAM position) const {
  return desktop_.TwipsAtY(static_cast<short>(HIWORD(position)));
}

HWND FormWin32::WindowOf(const Control& control) const {
  const auto found = windows_.find(&control);
  return found == windows_.end() ? nullptr : found->second;
}

ListWin32* FormWin32::ListOf(const Control& control) const {
  const auto found = lists_.find(&control);
  return found == lists_.end() ? nullptr : found->second.get();
}

Control* FormWin32::ControlAround(HWND window) const {
  for (; window && window != window_; window = GetParent(window)) {
    if (Control* const control = ControlOf(window)) return control;
  }
  return nullptr;
}

Control* FormWin32::ControlOf(HWND window) const {
  for (const auto& [control, child] : windows_) {
    if (child == window) return const_cast<Control*>(control);
  }
  return nullptr;
}

}  // namespace marl::win32
