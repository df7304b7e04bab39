// The controls of a form: creating their windows and applying changes of properties.

#include "platform/win32/FormWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <optional>

#include "platform/forms/CommonControls.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/TabsWin32.h"

namespace marl::win32 {

namespace {

constexpr int kFirstControlId = 1000;
constexpr auto kComboField = static_cast<WPARAM>(-1);  // the closed part, in place of a row

/// The native window for a kind of control.
struct NativeControl {
  const wchar_t* className = L"BUTTON";
  DWORD style = 0;
  DWORD exStyle = 0;
  bool field = true;  ///< can have the focus
};

/// The native control for this one; nothing for a kind without one.
std::optional<NativeControl> NativeOf(const Control& control) {
  switch (control.kind()) {
    case ControlKind::kCommandButton: {
      const DWORD look =
          static_cast<const CommandButton&>(control).Default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
      return NativeControl{L"BUTTON", look | BS_NOTIFY};
    }
    case ControlKind::kCheckBox:
      return NativeControl{L"BUTTON", BS_CHECKBOX | BS_MULTILINE | BS_NOTIFY};
    case ControlKind::kOptionButton:
      return NativeControl{L"BUTTON", BS_AUTORADIOBUTTON | BS_MULTILINE | BS_NOTIFY};
    case ControlKind::kFrame:
      return NativeControl{L"BUTTON", BS_GROUPBOX | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, false};
    case ControlKind::kPictureBox:
      return NativeControl{L"STATIC", WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, false};
    case ControlKind::kTextBox: return NativeControl{L"EDIT", ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
    case ControlKind::kListBox:
      return NativeControl{L"LISTBOX", ListWin32::StyleOf(static_cast<const ListBox&>(control)),
                           WS_EX_CLIENTEDGE};
    case ControlKind::kComboBox: {
      const DWORD look =
          static_cast<const ComboBox&>(control).Editable ? CBS_DROPDOWN : CBS_DROPDOWNLIST;
      return NativeControl{L"COMBOBOX", WS_VSCROLL | CBS_AUTOHSCROLL | look};
    }
    case ControlKind::kHScrollBar: return NativeControl{L"SCROLLBAR", SBS_HORZ};
    case ControlKind::kTabStrip: return NativeControl{WC_TABCONTROLW};
    case ControlKind::kStatusBar: return NativeControl{STATUSCLASSNAMEW, 0, 0, false};
    default: return {};
  }
}

}  // namespace

void FormWin32::CreateWithContainer(Control& control) {
  if (windows_.contains(&control)) return;
  // A container comes before its controls.
  if (control.container()) CreateWithContainer(*control.container());
  CreateControl(control, kFirstControlId + static_cast<int>(windows_.size()));
}

void FormWin32::CreateControl(Control& control, int id) {
  if (control.windowless() || control.kind() == ControlKind::kMenu) return;
  if (control.kind() == ControlKind::kTimer) return SyncTimer(static_cast<Timer&>(control));

  const std::optional<NativeControl> native = NativeOf(control);
  if (!native) return;
  DWORD style = WS_CHILD | WS_CLIPSIBLINGS | native->style;
  if (control.Visible()) style |= WS_VISIBLE;
  if (!control.Enabled()) style |= WS_DISABLED;
  if (native->field && control.TabStop) style |= WS_TABSTOP;
  HWND parent = window_;
  if (control.container()) {
    if (const HWND outer = WindowOf(*control.container())) parent = outer;
  }
  const HWND child = CreateWindowExW(
      native->exStyle, native->className, Wide(control.Caption()), style, 0, 0, 0, 0, parent,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
  if (!child) throw RuntimeError(7, u"Out of memory");
  windows_[&control] = child;
  if (control.kind() == ControlKind::kFrame || control.kind() == ControlKind::kPictureBox) {
    SetWindowSubclass(child, ContainerEntry, 0, reinterpret_cast<DWORD_PTR>(this));
  }
  if (control.kind() == ControlKind::kListBox || control.kind() == ControlKind::kComboBox) {
    lists_[&control] =
        std::make_unique<ListWin32>(desktop_, static_cast<ItemList&>(control), child);
  }
  MakeAccessible(child);
  COMBOBOXINFO combo = {};
  combo.cbSize = sizeof combo;
  // The field of a combo box is what has the focus.
  if (control.kind() == ControlKind::kComboBox && static_cast<const ComboBox&>(control).Editable &&
      GetComboBoxInfo(child, &combo) && combo.hwndItem) {
    MakeAccessible(combo.hwndItem);
  }
  hasFields_ = hasFields_ || native->field;
  PlaceControl(control, child);
  for (const Property property :
       {Property::kFont, Property::kItems, Property::kValue, Property::kSelection}) {
    ControlChanged(control, property);
  }
}

void FormWin32::PlaceControl(const Control& control, HWND child) {
  if (control.kind() == ControlKind::kStatusBar) return PlaceStatusBar();
  const Resolution resolution = form_.resolution();
  const int left = resolution.PixelsX(control.Left());
  const int top = resolution.PixelsY(control.Top());
  // The right and bottom edges are converted, not the size, so that neighbours that touch in twips
  // also touch in pixels.
  const int width = resolution.PixelsX(control.Left() + control.Width()) - left;
  int height = resolution.PixelsY(control.Top() + control.Height()) - top;
  const bool combo = control.kind() == ControlKind::kComboBox;
  const int closed = height;
  // The height of a drop-down list includes its open list.
  if (combo) height = height * 10;
  // While the whole form changes, it is painted once, at the end.
  const UINT quiet = rescaling_ ? UINT{SWP_NOREDRAW | SWP_NOCOPYBITS} : 0;
  SetWindowPos(child, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE | quiet);
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
    if (control->kind() != ControlKind::kStatusBar) continue;
    // With this style it keeps the size that it is given.
    const LONG_PTR style = GetWindowLongPtrW(child, GWL_STYLE) & ~LONG_PTR{CCS_NORESIZE};
    SetWindowLongPtrW(child, GWL_STYLE, style);
    SendMessageW(child, WM_SIZE, 0, 0);
    // Rounded down: a pixel more would cover what is above it.
    const int most =
        static_cast<const StatusBar*>(control)->MaxHeight * form_.resolution().y / 1440;
    RECT own = {};
    RECT inner = {};
    GetClientRect(child, &own);
    if (most <= 0 || own.bottom <= most) continue;
    SetWindowLongPtrW(child, GWL_STYLE, style | CCS_NORESIZE);
    GetClientRect(window_, &inner);
    SetWindowPos(child, nullptr, 0, inner.bottom - most, inner.right, most,
                 SWP_NOZORDER | SWP_NOACTIVATE);
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
    return SyncMenu(static_cast<const Menu&>(control), property);
  }
  const HWND child = WindowOf(control);
  if (!child) return;
  ++updating_;
  switch (property) {
    case Property::kBounds: PlaceControl(control, child); break;
    case Property::kVisible: SyncVisible(control, child); break;
    case Property::kEnabled: EnableWindow(child, control.Enabled()); break;
    case Property::kCaption: SetWindowTextW(child, Wide(control.Caption())); break;
    case Property::kFont: SyncFont(control, child); break;
    case Property::kValue: SyncValue(control, child); break;
    case Property::kColor:
    case Property::kPicture:
      if (control.kind() == ControlKind::kPictureBox) InvalidateRect(child, nullptr, FALSE);
      break;
    case Property::kItems: SyncItems(control, child); break;
    case Property::kSelection: SyncSelection(control, child); break;
    case Property::kEditSelection: SyncEditSelection(static_cast<ComboBox&>(control), child); break;
    default: break;
  }
  --updating_;
}

void FormWin32::SyncVisible(const Control& control, HWND child) {
  if (!control.Visible() && IsChild(child, GetFocus())) LeaveHidden(control);
  ShowWindow(child, control.Visible() ? SW_SHOWNA : SW_HIDE);
}

void FormWin32::SyncFont(const Control& control, HWND child) {
  SendMessageW(child, WM_SETFONT,
               reinterpret_cast<WPARAM>(desktop_.fonts().Get(control.Font(), dpi())), !rescaling_);
  if (ListWin32* const list = ListOf(control)) list->SyncRowHeight();
  if (control.kind() == ControlKind::kComboBox) PlaceControl(control, child);
}

void FormWin32::SyncValue(const Control& control, HWND child) {
  if (control.kind() == ControlKind::kCheckBox) {
    const int value = static_cast<const CheckBox&>(control).Value();
    SendMessageW(child, BM_SETCHECK, value == 0 ? BST_UNCHECKED : BST_CHECKED, 0);
  } else if (control.kind() == ControlKind::kOptionButton) {
    const bool value = static_cast<const OptionButton&>(control).Value();
    SendMessageW(child, BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
  } else if (control.kind() == ControlKind::kHScrollBar) {
    SyncScrollBar(static_cast<const HScrollBar&>(control), child);
  } else if (ListWin32* const list = ListOf(control)) {
    list->SyncTicks();
  }
}

void FormWin32::SyncItems(const Control& control, HWND child) {
  if (ListWin32* const list = ListOf(control)) {
    list->SyncItems();
  } else if (control.kind() == ControlKind::kTabStrip) {
    SyncTabs(static_cast<const TabStrip&>(control), child);
  }
}

void FormWin32::SyncEditSelection(const ComboBox& combo, HWND child) {
  SendMessageW(child, CB_SETEDITSEL, 0,
               MAKELPARAM(combo.SelStart(), combo.SelStart() + combo.SelLength()));
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

}  // namespace marl::win32
