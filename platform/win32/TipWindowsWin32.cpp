#include "platform/win32/TipWindowsWin32.h"

#include <windows.h>

#include <commctrl.h>

#include <cstddef>

#include "platform/win32/Handle.h"
#include "platform/win32/Wine.h"

namespace marl::win32 {

// The second form ends with the record's own number; both character widths are of one size.
constexpr UINT kRecordSize = offsetof(TTTOOLINFOW, lParam) + sizeof(LPARAM);
static_assert(kRecordSize == offsetof(TTTOOLINFOA, lParam) + sizeof(LPARAM));
static_assert(sizeof(void*) != 4 || kRecordSize == kToolInfoSize);
static_assert(kTipSetDelayTime == TTM_SETDELAYTIME && kTipAddTool == TTM_ADDTOOLA &&
              kTipSetBackColor == TTM_SETTIPBKCOLOR && kTipSetTextColor == TTM_SETTIPTEXTCOLOR &&
              kTipSetTitle == TTM_SETTITLEA);

namespace {

HWND Window(WindowHandle window) { return static_cast<HWND>(LongToHandle(window)); }

/// Tells a tip window what the mouse does over its parent. On Wine only the tip that was bound to a
/// window last hears of the mouse by itself.
LRESULT CALLBACK Relay(HWND parent, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                       DWORD_PTR tip) noexcept {
  switch (message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP: {
      MSG relayed = {};
      relayed.hwnd = parent;
      relayed.message = message;
      relayed.wParam = w;
      relayed.lParam = l;
      SendMessageW(reinterpret_cast<HWND>(tip), TTM_RELAYEVENT, 0,
                   reinterpret_cast<LPARAM>(&relayed));
      break;
    }
    case WM_NCDESTROY:
      RemoveWindowSubclass(parent, Relay, id);
      break;
    default:
      break;
  }
  return DefSubclassProc(parent, message, w, l);
}

/// Some makes of the controls take the -1 that stands for their own delay as a time of more than a
/// minute. They are told the delay that -1 means.
void RepairDelay(HWND tip, WPARAM which) {
  if (SendMessageW(tip, TTM_GETDELAYTIME, which, 0) != 0xFFFF) return;
  const UINT unit = GetDoubleClickTime();
  SendMessageW(tip, TTM_SETDELAYTIME, which,
               static_cast<LPARAM>(which == TTDT_AUTOPOP ? unit * 10 : unit));
}

}  // namespace

void TipWindowsWin32::InitCommonControls() { ::InitCommonControls(); }

std::intptr_t TipWindowsWin32::Instance() const {
  return reinterpret_cast<std::intptr_t>(GetModuleHandleW(nullptr));
}

WindowHandle TipWindowsWin32::CreateTip(std::uint32_t style, WindowHandle parent) {
  return HandleToLong(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, style, CW_USEDEFAULT,
                                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, Window(parent),
                                      nullptr, GetModuleHandleW(nullptr), nullptr));
}

void TipWindowsWin32::Destroy(WindowHandle window) {
  const HWND tip = Window(window);
  if (OnWine()) {
    RemoveWindowSubclass(GetWindow(tip, GW_OWNER), Relay, reinterpret_cast<UINT_PTR>(tip));
  }
  DestroyWindow(tip);
}

void TipWindowsWin32::SetTopmost(WindowHandle window) {
  SetWindowPos(Window(window), HWND_TOPMOST, 0, 0, 0, 0,
               SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void TipWindowsWin32::Send(WindowHandle tip, int message, std::uintptr_t wParam,
                           const TipParameter& lParam) {
  const HWND window = Window(tip);
  if (const auto* const tool = std::get_if<ToolInfo>(&lParam)) {
    Text text = tool->lpszText;
    TTTOOLINFOW record = {};
    record.cbSize = kRecordSize;
    record.uFlags = tool->uFlags;
    record.hwnd = Window(tool->hwnd);
    record.uId = static_cast<UINT_PTR>(tool->uId);
    record.rect = {tool->rect.left, tool->rect.top, tool->rect.right, tool->rect.bottom};
    record.hinst = reinterpret_cast<HINSTANCE>(tool->hinst);
    record.lpszText = reinterpret_cast<wchar_t*>(text.data());
    // The wide twin of the message loses no characters.
    const UINT wide = message == kTipAddTool ? TTM_ADDTOOLW : static_cast<UINT>(message);
    SendMessageW(window, wide, wParam, reinterpret_cast<LPARAM>(&record));
    if (message == kTipAddTool && OnWine()) {
      SetWindowSubclass(record.hwnd, Relay, reinterpret_cast<UINT_PTR>(window),
                        reinterpret_cast<DWORD_PTR>(window));
    }
  } else if (const auto* const text = std::get_if<Text>(&lParam)) {
    const UINT wide = message == kTipSetTitle ? TTM_SETTITLEW : static_cast<UINT>(message);
    SendMessageW(window, wide, wParam, reinterpret_cast<LPARAM>(Wide(*text)));
  } else {
    SendMessageW(window, static_cast<UINT>(message), wParam, std::get<std::intptr_t>(lParam));
    if (message == kTipSetDelayTime && std::get<std::intptr_t>(lParam) < 0) {
      RepairDelay(window, wParam);
    }
  }
}

bool TipWindowsWin32::ClientRect(WindowHandle window, PixelRect& out) const {
  RECT area;
  if (!GetClientRect(Window(window), &area)) return false;
  out = {area.left, area.top, area.right, area.bottom};
  return true;
}

}  // namespace marl::win32
