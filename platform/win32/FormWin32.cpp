#include "platform/win32/FormWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/forms/CommonControls.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/DpiWin32.h"
#include "platform/win32/TabsWin32.h"

namespace marl::win32 {

namespace {

constexpr wchar_t kClassName[] = L"MarlForm";
constexpr std::size_t kDirtyAreas = 32;

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

/// The owner of the form's new window.
HWND OwnerOf(const Form& form) {
  const Form* const owner = form.desktop().OwnerFor(form);
  return owner && owner->peer() ? static_cast<const FormWin32*>(owner->peer())->window() : nullptr;
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

  const Point corner = form.OpeningCorner();
  const SIZE size = OuterSize(form.resolution());
  CreateWindowExW(ExStyleOf(form), kClassName, Wide(form.Caption()), StyleOf(form), corner.x,
                  corner.y, size.cx, size.cy, OwnerOf(form), nullptr, GetModuleHandleW(nullptr),
                  this);
  if (!window_) throw RuntimeError(7, u"Out of memory");
  // Known only now: the monitor of the window.
  form.PeerResolution(ResolutionOf(window_));

  CreateMenus();
  FitInner();
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
  // Underlines and focus rectangles as the user has set them, and by whether the last input came
  // from the keyboard; the dialog manager shows them with the first key.
  SendMessageW(window_, WM_CHANGEUISTATE,
               MAKEWPARAM(UIS_INITIALIZE, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
  rescaling_ = false;
  Report();
}

FormWin32::~FormWin32() { Close(); }

SIZE FormWin32::OuterSize(const Resolution& resolution) const {
  const Size& inner = form_.inner();
  RECT outer = {0, 0, resolution.PixelsX(inner.width), resolution.PixelsY(inner.height)};
  AdjustFor(outer, StyleOf(form_), HasMenuBar(form_), ExStyleOf(form_), resolution.y);
  return {outer.right - outer.left, outer.bottom - outer.top};
}

// Long captions may need a second line of the menu bar, and before version 1607 Windows does not
// scale frames.
void FormWin32::FitInner() {
  const Resolution resolution = form_.resolution();
  RECT inner;
  RECT outer;
  GetClientRect(window_, &inner);
  GetWindowRect(window_, &outer);
  const int across = resolution.PixelsX(form_.inner().width) - static_cast<int>(inner.right);
  const int down = resolution.PixelsY(form_.inner().height) - static_cast<int>(inner.bottom);
  if (across == 0 && down == 0) return;
  SetWindowPos(window_, nullptr, 0, 0, outer.right - outer.left + across,
               outer.bottom - outer.top + down, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWin32::Rescale(const PixelRect& place) {
  rescaling_ = true;
  constexpr UINT kQuietly = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_NOCOPYBITS;
  const SIZE size = OuterSize(form_.resolution());
  if (IsIconic(window_)) {
    // The place to which the window will be restored.
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(window_, &placement);
    if (!IsWindowVisible(window_)) placement.showCmd = SW_HIDE;
    RECT& normal = placement.rcNormalPosition;
    normal.right = normal.left + size.cx;
    normal.bottom = normal.top + size.cy;
    SetWindowPlacement(window_, &placement);
    fitLater_ = true;
  } else if (IsZoomed(window_)) {
    SetWindowPos(window_, nullptr, place.left, place.top, place.width(), place.height(), kQuietly);
  } else {
    SetWindowPos(window_, nullptr, place.left, place.top, size.cx, size.cy, kQuietly);
    FitInner();
  }
  for (const auto& [control, child] : windows_) {
    SyncFont(*control, child);
    PlaceControl(*control, child);
  }
  CreatePages();
  rescaling_ = false;
  Report();
  // Everything is painted once, after the message.
  dirty_.clear();
  RedrawWindow(window_, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_NOINTERNALPAINT);
}

void FormWin32::WakeLoop() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

Point FormWin32::ClientOrigin() const {
  RECT inner = {};
  GetClientRect(window_, &inner);
  POINT corner = {inner.left, inner.top};
  ClientToScreen(window_, &corner);
  return {corner.x, corner.y};
}

void FormWin32::Report() {
  if (!window_ || rescaling_) return;
  if (IsIconic(window_)) {
    // Minimised, the form keeps its normal position.
    form_.PeerPlaced(form_.bounds(), form_.inner(), WindowState::kMinimised);
    return;
  }
  // Hidden as maximised, it has that size until it is shown as the form's state says.
  if (!IsWindowVisible(window_) && IsZoomed(window_) && form_.State() == WindowState::kNormal)
    return;
  if (std::exchange(fitLater_, false)) {
    rescaling_ = true;
    FitInner();
    rescaling_ = false;
  }
  RECT outer;
  RECT inner;
  GetWindowRect(window_, &outer);
  GetClientRect(window_, &inner);
  PlaceStatusBar();
  form_.PeerPlaced(
      PixelRect{static_cast<std::int32_t>(outer.left), static_cast<std::int32_t>(outer.top),
                static_cast<std::int32_t>(outer.right), static_cast<std::int32_t>(outer.bottom)},
      {static_cast<std::int32_t>(inner.right), static_cast<std::int32_t>(inner.bottom)},
      // While hidden, the form only stores its state.
      !IsWindowVisible(window_) ? form_.State()
      : IsZoomed(window_)       ? WindowState::kMaximised
                                : WindowState::kNormal);
}

void FormWin32::FontsChanged() {
  for (const auto& [control, child] : windows_) SyncFont(*control, child);
  PlaceStatusBar();
}

void FormWin32::CaptionChanged() { SetWindowTextW(window_, Wide(form_.Caption())); }

void FormWin32::Place(const Box& bounds) {
  const Resolution resolution = form_.resolution();
  SetWindowPos(window_, nullptr, resolution.PixelsX(bounds.left), resolution.PixelsY(bounds.top),
               resolution.PixelsX(bounds.width), resolution.PixelsY(bounds.height),
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void FormWin32::SetState() { Show(true); }

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

void FormWin32::Invalidate(const Box& area) {
  if (!form_.Visible()) return;
  const Resolution resolution = form_.resolution();
  const RECT pixels = {resolution.PixelsX(area.left), resolution.PixelsY(area.top),
                       resolution.PixelsX(area.left + area.width) + 1,
                       resolution.PixelsY(area.top + area.height) + 1};
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
  constexpr LONG kFar = std::numeric_limits<LONG>::max();
  constexpr RECT kEverything = {-kFar, -kFar, kFar, kFar};
  if (IsDirty(kEverything)) return;
  InvalidateRect(window_, nullptr, FALSE);
  dirty_.assign(1, kEverything);
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

void FormWin32::ShowFocusCues() {
  SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
  // Wine does not pass it on as WM_UPDATEUISTATE.
  form_.PeerFocusCues(true);
}

void FormWin32::Announce(Announcement what, const Control* control, int row) {
  if (!link_) return;
  if (!control) return NotifyClients(what, window_, CHILDID_SELF);
  if (const HWND child = WindowOf(*control)) return NotifyClients(what, child, row);
  const HWND around = control->container() ? WindowOf(*control->container()) : window_;
  int part = 0;
  for (const AccessiblePart& each : form_.AccessibleParts(control->container())) {
    ++part;
    if (each.control == control) return NotifyClients(what, around, part);
  }
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
  if (link_) link_->form = nullptr;
  for (const auto& [control, child] : windows_) RemoveWindowSubclass(child, ContainerEntry, 0);
  const HWND window = std::exchange(window_, nullptr);
  if (!destroying_) DestroyWindow(window);
  windows_.clear();
  // It may have needed a larger surface than all others.
  desktop_.surface().Release();
  WakeLoop();
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
