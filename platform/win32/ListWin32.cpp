#include "platform/win32/ListWin32.h"

#include <windows.h>
#include <commctrl.h>
#include <vssym32.h>

#include <algorithm>
#include <utility>

#include "platform/forms/Form.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/DpiWin32.h"

namespace marl::win32 {

namespace {

constexpr int kDesignDpi = 96;
constexpr int kMargin = 3;    // pixels at the design's resolution, around a check box
constexpr int kBoxSize = 13;  // without a theme

int TextWidth(HDC context, const Text& text) {
  SIZE size = {};
  GetTextExtentPoint32W(context, Wide(text), static_cast<int>(text.size()), &size);
  return size.cx;
}

}  // namespace

DWORD ListWin32::StyleOf(const ListBox& list) {
  DWORD style = LBS_NOTIFY | WS_VSCROLL | LBS_NOINTEGRALHEIGHT;
  if (list.MultiSelect) style |= LBS_EXTENDEDSEL;
  if (list.CheckBoxes) style |= LBS_OWNERDRAWFIXED | LBS_HASSTRINGS;
  return style;
}

ListWin32::ListWin32(DesktopWin32& desktop, ItemList& list, HWND window)
    : desktop_(desktop), list_(list), window_(window) {
  if (!drop()) SetWindowSubclass(window_, Entry, 0, reinterpret_cast<DWORD_PTR>(this));
}

ListWin32::~ListWin32() {
  if (!drop()) RemoveWindowSubclass(window_, Entry, 0);
}

LRESULT CALLBACK ListWin32::Entry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                  DWORD_PTR data) noexcept {
  auto* const self = reinterpret_cast<ListWin32*>(data);
  auto& list = static_cast<ListBox&>(self->list_);
  DesktopWin32& desktop = self->desktop_;
  // Events may destroy the form: do not use the list after an event.
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
      const int ticked = self->RowOfBoxAt(l);
      const LRESULT result = self->Quietly(message, w, l);
      if (!IsWindow(window)) return result;
      self->pressed_ = true;
      const int row = self->PressedRow(l);
      desktop.Event([&] {
        list.UserCheck(ticked);
        list.UserMouseDown(row);
      });
      return result;
    }
    case WM_MOUSEMOVE: {
      const LRESULT result = self->Quietly(message, w, l);
      if (!IsWindow(window)) return result;
      desktop.Event([&] {
        list.UserMouseMove(GetCapture() == window
                               ? static_cast<int>(SendMessageW(window, LB_GETCURSEL, 0, 0))
                               : -1);
      });
      return result;
    }
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED: {
      const LRESULT result = self->Quietly(message, w, l);
      // Releasing the button releases the capture, by a nested message.
      if (!IsWindow(window) || self->quiet_ > 0) return result;
      if (!std::exchange(self->pressed_, false)) return result;
      desktop.Event([&] {
        // A selection of several rows is complete now.
        if (list.MultiSelect) self->SelectionChanged();
        list.UserMouseUp();
      });
      return result;
    }
    case WM_KEYDOWN:
      if (w != VK_SPACE || !list.CheckBoxes) break;
      desktop.Event([&] { list.UserCheck(list.ListIndex()); });
      return 0;
    case WM_CHAR:
      // The space bar ticks; it does not search for a row that begins with a blank.
      if (w == L' ' && list.CheckBoxes) return 0;
      break;
    default: break;
  }
  return DefSubclassProc(window, message, w, l);
}

void ListWin32::SyncItems() {
  const auto row = [&](std::size_t at) -> const Text& { return list_.List(static_cast<int>(at)); };
  const auto count = static_cast<std::size_t>(list_.ListCount());
  std::size_t first = 0;
  while (first < count && first < shown_.size() && shown_[first] == row(first)) ++first;
  std::size_t same = 0;  // at the end
  while (first + same < count && first + same < shown_.size() &&
         shown_[shown_.size() - 1 - same] == row(count - 1 - same)) {
    ++same;
  }
  const std::size_t gone = shown_.size() - first - same;
  const std::size_t come = count - first - same;
  // Enabling redraw would show a hidden list.
  const bool several = gone + come > 2 && (GetWindowLongW(window_, GWL_STYLE) & WS_VISIBLE);
  if (several) Send(WM_SETREDRAW, FALSE, 0);
  const auto top = Send(drop() ? CB_GETTOPINDEX : LB_GETTOPINDEX, 0, 0);
  const auto place = shown_.begin() + static_cast<std::ptrdiff_t>(first);
  for (std::size_t i = 0; i < gone; ++i) Send(drop() ? CB_DELETESTRING : LB_DELETESTRING, first, 0);
  shown_.erase(place, place + static_cast<std::ptrdiff_t>(gone));
  for (std::size_t i = first; i < first + come; ++i) {
    Send(drop() ? CB_INSERTSTRING : LB_INSERTSTRING, i, reinterpret_cast<LPARAM>(Wide(row(i))));
    shown_.insert(shown_.begin() + static_cast<std::ptrdiff_t>(i), row(i));
  }
  SyncSelection();
  if (!drop()) Send(LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
  if (several) Send(WM_SETREDRAW, TRUE, 0);
  // A row that replaces another one is not invalidated by the platform.
  InvalidateRect(window_, nullptr, several ? TRUE : FALSE);
}

void ListWin32::SyncSelection() {
  const auto current = static_cast<WPARAM>(list_.ListIndex());
  if (drop()) {
    if (Send(CB_GETCURSEL, 0, 0) != list_.ListIndex()) Send(CB_SETCURSEL, current, 0);
    if (static_cast<const ComboBox&>(list_).Editable) {
      SetWindowTextW(window_, Wide(list_.Caption()));
    }
    return;
  }
  const auto& list = static_cast<const ListBox&>(list_);
  if (!list.MultiSelect) {
    if (Send(LB_GETCURSEL, 0, 0) != list_.ListIndex()) Send(LB_SETCURSEL, current, 0);
    return;
  }
  for (int row = 0; row < list.ListCount(); ++row) {
    if ((Send(LB_GETSEL, static_cast<WPARAM>(row), 0) > 0) != list.Selected(row)) {
      Send(LB_SETSEL, list.Selected(row), row);
    }
  }
  if (list.ListIndex() >= 0) Send(LB_SETCARETINDEX, current, FALSE);
}

LRESULT ListWin32::Quietly(UINT message, WPARAM w, LPARAM l) {
  const HWND window = window_;
  ++quiet_;
  const LRESULT result = DefSubclassProc(window, message, w, l);
  // The message may have destroyed the form.
  if (IsWindow(window)) --quiet_;
  return result;
}

int ListWin32::PressedRow(LPARAM position) const {
  const LRESULT row = Send(LB_GETCURSEL, 0, 0);
  RECT area = {};
  if (row < 0 ||
      Send(LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area)) < 0) {
    return -1;
  }
  // For a press below the last row the platform may report the last row.
  const bool below = static_cast<short>(HIWORD(position)) >= area.bottom;
  return below && row == list_.ListIndex() ? -1 : static_cast<int>(row);
}

void ListWin32::SelectionChanged() {
  if (quiet_ > 0) return;
  selected_ = true;
  if (drop()) return list_.UserSelectRow(static_cast<int>(Send(CB_GETCURSEL, 0, 0)));
  auto& list = static_cast<ListBox&>(list_);
  if (!list.MultiSelect) return list.UserSelectRow(static_cast<int>(Send(LB_GETCURSEL, 0, 0)));
  std::vector<int> rows(static_cast<std::size_t>(std::max<LRESULT>(Send(LB_GETSELCOUNT, 0, 0), 0)));
  Send(LB_GETSELITEMS, rows.size(), reinterpret_cast<LPARAM>(rows.data()));
  list.UserSelectRows(rows, static_cast<int>(Send(LB_GETCARETINDEX, 0, 0)));
}

bool ListWin32::AcceptsAsItIs() const { return !selected_ && GetKeyState(VK_RETURN) < 0; }

void ListWin32::DroppingDown() {
  selected_ = false;
  const ClientContext client(window_);
  const HDC context = client.get();
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT, 0, 0)));
  int widest = 0;
  for (const Text& row : shown_) widest = std::max(widest, TextWidth(context, row));
  SelectObject(context, before);
  Send(CB_SETDROPPEDWIDTH,
       static_cast<WPARAM>(widest + Scaled(4 * kMargin) + MetricFor(SM_CXVSCROLL, dpi())), 0);
}

int ListWin32::dpi() const { return list_.form().resolution().y; }

int ListWin32::Scaled(int pixels) const { return MulDiv(pixels, dpi(), kDesignDpi); }

// The button theme is opened without a window: otherwise it would become the theme of the list and
// draw a frame.
Size ListWin32::BoxSize() const {
  SIZE size = {Scaled(kBoxSize), Scaled(kBoxSize)};
  if (const UniqueTheme theme(Themes::Open(L"BUTTON", dpi())); theme) {
    Themes::PartSize(theme.get(), BP_CHECKBOX, CBS_UNCHECKEDNORMAL, size);
  }
  return {size.cx, size.cy};
}

void ListWin32::SyncRowHeight() {
  if (drop() || !static_cast<const ListBox&>(list_).CheckBoxes) return;
  const ClientContext client(window_);
  const HDC context = client.get();
  const HGDIOBJ before = SelectObject(context, desktop_.fonts().Get(list_.Font(), dpi()));
  TEXTMETRICW metric = {};
  GetTextMetricsW(context, &metric);
  SelectObject(context, before);
  const int height = std::max<int>(metric.tmHeight, BoxSize().height) + Scaled(2);
  Send(LB_SETITEMHEIGHT, 0, height);
}

int ListWin32::RowOfBoxAt(LPARAM position) const {
  if (!static_cast<const ListBox&>(list_).CheckBoxes) return -1;
  if (static_cast<short>(LOWORD(position)) >= BoxSize().width + Scaled(2 * kMargin)) return -1;
  const LRESULT row = Send(LB_ITEMFROMPOINT, 0, position);
  return HIWORD(row) != 0 ? -1 : LOWORD(row);
}

void ListWin32::DrawBox(HDC context, RECT area, bool ticked) const {
  const bool enabled = list_.Reachable();
  if (const UniqueTheme theme(Themes::Open(L"BUTTON", dpi())); theme) {
    const int state = ticked ? (enabled ? CBS_CHECKEDNORMAL : CBS_CHECKEDDISABLED)
                             : (enabled ? CBS_UNCHECKEDNORMAL : CBS_UNCHECKEDDISABLED);
    Themes::DrawBackground(theme.get(), context, BP_CHECKBOX, state, area);
    return;
  }
  DrawFrameControl(context, &area, DFC_BUTTON,
                   static_cast<UINT>(DFCS_BUTTONCHECK | (ticked ? DFCS_CHECKED : 0) |
                                     (enabled ? 0 : DFCS_INACTIVE)));
}

void ListWin32::DrawRow(const DRAWITEMSTRUCT& item) {
  RECT area = item.rcItem;
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  const int row = static_cast<int>(item.itemID);
  FillRect(item.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
  if (row >= 0 && row < list_.ListCount()) {
    const Size box = BoxSize();
    RECT boxArea = {area.left + Scaled(kMargin), 0, 0, 0};
    boxArea.top = area.top + (area.bottom - area.top - box.height) / 2;
    boxArea.right = boxArea.left + box.width;
    boxArea.bottom = boxArea.top + box.height;
    DrawBox(item.hDC, boxArea, static_cast<const ListBox&>(list_).Selected(row));
    area.left = boxArea.right + Scaled(kMargin);
    if (selected) FillRect(item.hDC, &area, GetSysColorBrush(COLOR_HIGHLIGHT));
    const int color = !list_.Reachable() ? COLOR_GRAYTEXT
                      : selected         ? COLOR_HIGHLIGHTTEXT
                                         : COLOR_WINDOWTEXT;
    SetTextColor(item.hDC, GetSysColor(color));
    SetBkMode(item.hDC, TRANSPARENT);
    RECT text = area;
    text.left += Scaled(2);
    const Text& caption = list_.List(row);
    DrawTextW(item.hDC, Wide(caption), static_cast<int>(caption.size()), &text,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  }
  if ((item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT)) {
    SetTextColor(item.hDC, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(item.hDC, GetSysColor(COLOR_WINDOW));
    DrawFocusRect(item.hDC, &area);
  }
}

}  // namespace marl::win32
