#include "platform/win32/TrayWin32.h"

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <vector>

#include "platform/win32/Handle.h"
#include "platform/win32/Window.h"

namespace marl::win32 {

static_assert(sizeof(void*) != 4 || NOTIFYICONDATAA_V1_SIZE == kNotifyIconDataSize);

namespace {

/// One square of the strip, as menus draw it: premultiplied by alpha.
UniqueBitmap Cut(const Picture& strip, int place) {
  const int side = strip.height;
  if (side <= 0 || place < 0 || (place + 1) * side > strip.width) return {};
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = side;
  info.bmiHeader.biHeight = -side;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap) return {};
  auto* row = static_cast<std::uint32_t*>(bits);
  for (int y = 0; y < side; ++y, row += side) {
    for (int x = 0; x < side; ++x) row[x] = strip.At(place * side + x, y);
  }
  return bitmap;
}

class Popup : public PopupMenu {
 public:
  explicit Popup(bool menusBlend) : menusBlend_(menusBlend), menu_(CreatePopupMenu()) {
    if (!menusBlend_) return;
    // Check marks and pictures share one column.
    MENUINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = MIM_STYLE;
    info.dwStyle = MNS_CHECKORBMP;
    SetMenuInfo(menu_.get(), &info);
  }

  void SetImageList(PicturePtr strip) override { strip_ = std::move(strip); }
  void SetOwner(WindowHandle window) override { owner_ = window; }

  void AddItem(TextView caption, int picture, bool checked, bool enabled) override {
    Text text(caption);
    const int position = GetMenuItemCount(menu_.get());
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STRING | MIIM_ID | MIIM_STATE;
    item.dwTypeData = reinterpret_cast<wchar_t*>(text.data());
    item.wID = static_cast<UINT>(position + 1);
    item.fState = (checked ? MFS_CHECKED : 0u) | (enabled ? 0u : MFS_DISABLED);
    if (strip_) {
      if (UniqueBitmap bitmap = Cut(*strip_, picture)) {
        item.fMask |= MIIM_BITMAP;
        item.hbmpItem = menusBlend_ ? bitmap.get() : HBMMENU_CALLBACK;
        item.fMask |= MIIM_DATA;
        item.dwItemData = reinterpret_cast<ULONG_PTR>(bitmap.get());
        bitmaps_.push_back(std::move(bitmap));
      }
    }
    InsertMenuItemW(menu_.get(), static_cast<UINT>(position), TRUE, &item);
  }

  void Show(Point at) override {
    const HWND owner = Window(owner_);
    if (!menusBlend_) SetWindowSubclass(owner, OwnerProc, 0, 0);
    const int chosen =
        TrackPopupMenuEx(menu_.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, owner, nullptr);
    if (!menusBlend_) RemoveWindowSubclass(owner, OwnerProc, 0);
    // Without a following message, a menu of the notification area may close at once the next time
    // (as TrackPopupMenu documents).
    PostMessageW(owner, WM_NULL, 0, 0);
    // The item may end the program: do not use the menu after the click. Its failures go to the
    // caller, which runs within an event.
    if (chosen > 0 && Click) Click(chosen);
  }

 private:
  // The gap between a picture and its text.
  static constexpr int kGap = 4;

  static LRESULT CALLBACK OwnerProc(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                    DWORD_PTR) noexcept {
    if (message == WM_MEASUREITEM) {
      auto& item = *reinterpret_cast<MEASUREITEMSTRUCT*>(l);
      BITMAP bitmap = {};
      if (item.CtlType == ODT_MENU && GetObjectW(BitmapOf(item.itemData), sizeof bitmap, &bitmap)) {
        item.itemWidth = static_cast<UINT>(bitmap.bmWidth + kGap);
        item.itemHeight = static_cast<UINT>(bitmap.bmHeight + 2);
        return TRUE;
      }
    } else if (message == WM_DRAWITEM) {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(l);
      if (item.CtlType == ODT_MENU && DrawPicture(item)) return TRUE;
    }
    return DefSubclassProc(window, message, w, l);
  }

  static HBITMAP BitmapOf(ULONG_PTR data) { return reinterpret_cast<HBITMAP>(data); }

  static bool DrawPicture(const DRAWITEMSTRUCT& item) {
    const HBITMAP picture = BitmapOf(item.itemData);
    BITMAP bitmap = {};
    if (!GetObjectW(picture, sizeof bitmap, &bitmap)) return false;
    const UniqueContext memory(CreateCompatibleDC(item.hDC));
    const HGDIOBJ before = SelectObject(memory.get(), picture);
    const int top = item.rcItem.top + (item.rcItem.bottom - item.rcItem.top - bitmap.bmHeight) / 2;
    const BLENDFUNCTION over = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    GdiAlphaBlend(item.hDC, item.rcItem.left, top, bitmap.bmWidth, bitmap.bmHeight, memory.get(), 0,
                  0, bitmap.bmWidth, bitmap.bmHeight, over);
    SelectObject(memory.get(), before);
    return true;
  }

  bool menusBlend_;
  UniqueMenu menu_;
  PicturePtr strip_;
  WindowHandle owner_ = 0;
  std::vector<UniqueBitmap> bitmaps_;
};

}  // namespace

bool TrayWin32::NotifyIcon(int command, const NotifyIconData& data) {
  NOTIFYICONDATAA record = {};
  record.cbSize = NOTIFYICONDATAA_V1_SIZE;
  record.hWnd = Window(data.hWnd);
  record.uID = static_cast<UINT>(data.uID);
  record.uFlags = data.uFlags;
  record.uCallbackMessage = data.uCallbackMessage;
  record.hIcon = Icon(data.hIcon);
  // The record has 64 bytes for the tip, including its NUL.
  constexpr int kRoom = 63;
  int length = std::min(static_cast<int>(data.szTip.size()), kRoom);
  while (length > 0 && WideCharToMultiByte(CP_ACP, 0, Wide(data.szTip), length, record.szTip, kRoom,
                                           nullptr, nullptr) == 0) {
    --length;
  }
  return Shell_NotifyIconA(static_cast<DWORD>(command), &record);
}

IconHandle TrayWin32::IconOf(WindowHandle window) const {
  const HWND target = Window(window);
  for (const WPARAM which : {WPARAM{ICON_BIG}, WPARAM{ICON_SMALL}}) {
    if (const LRESULT icon = SendMessageW(target, WM_GETICON, which, 0)) {
      return static_cast<IconHandle>(icon);
    }
  }
  return static_cast<IconHandle>(GetClassLongPtrW(target, GCLP_HICON));
}

std::unique_ptr<PopupMenu> TrayWin32::CreatePopup() { return std::make_unique<Popup>(menusBlend_); }

Point TrayWin32::CursorPosition() const {
  POINT at = {};
  GetCursorPos(&at);
  return {at.x, at.y};
}

}  // namespace marl::win32
