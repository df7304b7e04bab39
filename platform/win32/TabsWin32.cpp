#include "platform/win32/TabsWin32.h"

#include <windows.h>
#include <commctrl.h>
#include <vssym32.h>

#include <utility>

#include "platform/forms/Form.h"

namespace marl::win32 {

void SyncTabs(const TabStrip& tabs, HWND window) {
  SendMessageW(window, TCM_DELETEALLITEMS, 0, 0);
  for (int tab = 1; tab <= tabs.PartCount(); ++tab) {
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(Wide(tabs.Part(tab).Caption));
    SendMessageW(window, TCM_INSERTITEMW, static_cast<WPARAM>(tab - 1),
                 reinterpret_cast<LPARAM>(&item));
  }
  SendMessageW(window, TCM_SETCURSEL, static_cast<WPARAM>(tabs.SelectedItem() - 1), 0);
}

const TabStrip* StripOf(const Control& box) {
  for (const Control* control : box.form().controls()) {
    const Box& around = control->bounds();
    if (control->kind() == ControlKind::kTabStrip && control->container() == box.container() &&
        box.Left() >= around.left && box.Top() >= around.top &&
        box.Left() + box.Width() <= around.left + around.width &&
        box.Top() + box.Height() <= around.top + around.height) {
      return static_cast<const TabStrip*>(control);
    }
  }
  return nullptr;
}

HBRUSH PageBackground::Brush() {
  if (std::exchange(painted_, true)) return brush_.get();
  const UniqueTheme theme(Themes::Open(L"TAB", dpi_));
  if (!theme) return nullptr;
  const ClientContext screen(nullptr);
  const UniqueContext memory(CreateCompatibleDC(screen.get()));
  const UniqueBitmap bitmap(CreateCompatibleBitmap(screen.get(), size_.width, size_.height));
  const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
  const RECT area = {0, 0, size_.width, size_.height};
  FillRect(memory.get(), &area, GetSysColorBrush(COLOR_BTNFACE));
  const bool painted = Themes::DrawBackground(theme.get(), memory.get(), TABP_BODY, 0, area);
  SelectObject(memory.get(), before);
  if (painted) brush_ = UniqueBrush(CreatePatternBrush(bitmap.get()));
  return brush_.get();
}

void FillWith(HDC context, const RECT& area, HBRUSH brush, POINT origin) {
  // The origin of a brush is in device coordinates.
  LPtoDP(context, &origin, 1);
  POINT before;
  SetBrushOrgEx(context, origin.x, origin.y, &before);
  FillRect(context, &area, brush);
  SetBrushOrgEx(context, before.x, before.y, nullptr);
}

}  // namespace marl::win32
