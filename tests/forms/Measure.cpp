#include "tests/forms/Measure.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/win32/DesktopWin32.h"
#include "tests/desktop/Desktop.h"

namespace marl {

namespace {

// The part of a control that is not for its text, in pixels at 96 dpi.
constexpr int kButtonEdges = 6;
constexpr int kBoxAndGap = 17;
constexpr int kGroupEdges = 18;
constexpr int kArrowAndEdges = 24;
constexpr int kCheckAndEdges = 22;
constexpr int kTitleEdges = 8;
/// Pixels beyond a label's box that are searched for text.
constexpr LONG kBeyond = 400;

const wchar_t* WideOf(const Text& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }

class Ruler {
 public:
  explicit Ruler(const Form& form)
      : form_(form), desktop_(static_cast<win32::DesktopWin32&>(form.desktop())) {}
  ~Ruler() { ReleaseDC(nullptr, context_); }
  Ruler(const Ruler&) = delete;
  Ruler& operator=(const Ruler&) = delete;

  /// Size in pixels of a text on one line.
  SIZE SizeOf(const Text& text, const Font& font, UINT flags = 0) const {
    return SizeOf(text, desktop_.fonts().Get(font, desktop_.Dpi().height), flags);
  }
  SIZE SizeOf(const Text& text, HFONT font, UINT flags = 0) const {
    const HGDIOBJ before = SelectObject(context_, font);
    RECT area = {};
    DrawTextW(context_, WideOf(text), static_cast<int>(text.size()), &area,
              DT_CALCRECT | DT_SINGLELINE | flags);
    SelectObject(context_, before);
    return {area.right, area.bottom};
  }
  /// Size in pixels of what a label would paint if it were not clipped to its box.
  SIZE InkOf(const Label& label, SIZE room) const {
    const Text& text = label.Caption();
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = room.cx + kBeyond;
    info.bmiHeader.biHeight = -(room.cy + kBeyond);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HDC memory = CreateCompatibleDC(context_);
    const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    SelectObject(memory, bitmap);
    SelectObject(memory, desktop_.fonts().Get(label.Font(), desktop_.Dpi().height));
    SetTextColor(memory, RGB(255, 255, 255));
    SetBkMode(memory, TRANSPARENT);
    RECT area = {0, 0, room.cx, room.cy};
    DrawTextW(memory, WideOf(text), static_cast<int>(text.size()), &area,
              DT_NOCLIP | (label.WordWrap ? DT_WORDBREAK : 0));
    GdiFlush();
    SIZE ink = {};
    const auto* dot = static_cast<const DWORD*>(bits);
    for (LONG y = 0; y < room.cy + kBeyond; ++y) {
      for (LONG x = 0; x < room.cx + kBeyond; ++x, ++dot) {
        if ((*dot & 0xFFFFFF) == 0) continue;
        ink.cx = std::max(ink.cx, x + 1);
        ink.cy = std::max(ink.cy, y + 1);
      }
    }
    DeleteDC(memory);
    DeleteObject(bitmap);
    return ink;
  }
  int Scaled(int pixels) const { return MulDiv(pixels, desktop_.Dpi().width, 96); }

  /// Records a text that does not fit.
  void Compare(const std::string& where, const Text& text, SIZE needs, SIZE has) {
    if (needs.cx <= has.cx && needs.cy <= has.cy) return;
    cut.push_back(form_.name() + "." + where + ": " + desktop::ToUtf8({text.begin(), text.end()}) +
                  ", needs " + std::to_string(needs.cx) + " by " + std::to_string(needs.cy) +
                  " and has " + std::to_string(has.cx) + " by " + std::to_string(has.cy));
  }

  std::vector<std::string> cut;

 private:
  const Form& form_;
  win32::DesktopWin32& desktop_;
  HDC context_ = GetDC(nullptr);
};

bool Shown(const Control& control) {
  for (const Control* at = &control; at; at = at->container()) {
    if (!at->Visible()) return false;
  }
  return true;
}

/// The part of a control's width that is not for its text; -1 if the control has no text of limited
/// width.
int Besides(ControlKind kind) {
  switch (kind) {
    case ControlKind::kLabel: return 0;
    case ControlKind::kCommandButton: return kButtonEdges;
    case ControlKind::kCheckBox:
    case ControlKind::kOptionButton: return kBoxAndGap;
    case ControlKind::kFrame: return kGroupEdges;
    default: return -1;
  }
}

void MeasureCaption(Ruler& ruler, const std::string& where, const Control& control, SIZE has) {
  const int besides = Besides(control.kind());
  if (besides < 0 || control.Caption().empty()) return;
  if (control.kind() == ControlKind::kLabel) {
    // The height of the panel's labels is part of every skin: the descender of a "j" in the second
    // line may lose its last pixel.
    if (control.name() == "lblRun") ++has.cy;
    return ruler.Compare(where, control.Caption(),
                         ruler.InkOf(static_cast<const Label&>(control), has), has);
  }
  has.cx -= ruler.Scaled(besides);
  ruler.Compare(where, control.Caption(), ruler.SizeOf(control.Caption(), control.Font()), has);
}

void MeasureRows(Ruler& ruler, const std::string& where, const ItemList& list, int besides,
                 SIZE has) {
  has.cx -= ruler.Scaled(besides);
  if (has.cx <= 0) return;  // only its arrow shows
  for (int row = 0; row < list.ListCount(); ++row) {
    const SIZE needs = ruler.SizeOf(list.List(row), list.Font(), DT_NOPREFIX);
    ruler.Compare(where, list.List(row), {needs.cx, 0}, has);
  }
}

void MeasureTabs(Ruler& ruler, const std::string& where, const TabStrip& tabs, HWND window) {
  RECT last = {}, area = {};
  SendMessageW(window, TCM_GETITEMRECT, static_cast<WPARAM>(tabs.PartCount() - 1),
               reinterpret_cast<LPARAM>(&last));
  GetClientRect(window, &area);
  ruler.Compare(where, tabs.Part(tabs.PartCount()).Caption, {last.right, 0}, {area.right, 0});
}

void MeasureTitle(Ruler& ruler, const Form& form, HWND window) {
  if (!(GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) || form.Caption().empty()) return;
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  const HFONT font = CreateFontIndirectW(&metrics.lfCaptionFont);
  RECT area;
  GetWindowRect(window, &area);
  const int buttons = 1 + (form.MinButton || form.MaxButton ? 2 : 0);
  const int icon = SendMessageW(window, WM_GETICON, ICON_SMALL, 0) ? metrics.iSmCaptionWidth : 0;
  const LONG room = area.right - area.left - buttons * metrics.iCaptionWidth - icon -
                    2 * GetSystemMetrics(SM_CXFIXEDFRAME) - ruler.Scaled(kTitleEdges);
  const SIZE needs = ruler.SizeOf(form.Caption(), font, DT_NOPREFIX);
  DeleteObject(font);
  ruler.Compare("title", form.Caption(), {needs.cx, 0}, {room, 0});
}

}  // namespace

std::vector<std::string> CutOff(const Form& form) {
  Ruler ruler(form);
  const HWND window = static_cast<HWND>(LongToHandle(form.hWnd()));
  MeasureTitle(ruler, form, window);
  for (const Control* const control : form.controls()) {
    if (!Shown(*control)) continue;
    std::string where = control->name();
    if (control->index() >= 0) where += "(" + std::to_string(control->index()) + ")";
    const Size size = control->PixelSize();
    const SIZE has = {size.width, size.height};
    switch (control->kind()) {
      case ControlKind::kComboBox:
        MeasureRows(ruler, where, static_cast<const ItemList&>(*control), kArrowAndEdges, has);
        break;
      case ControlKind::kListBox:
        MeasureRows(ruler, where, static_cast<const ItemList&>(*control), kCheckAndEdges, has);
        break;
      case ControlKind::kTabStrip:
        MeasureTabs(ruler, where, static_cast<const TabStrip&>(*control),
                    FindWindowExW(window, nullptr, WC_TABCONTROLW, nullptr));
        break;
      default: MeasureCaption(ruler, where, *control, has); break;
    }
  }
  return ruler.cut;
}

}  // namespace marl
