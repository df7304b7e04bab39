#include "platform/win32/TipWindowsWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>

#include "platform/win32/Handle.h"
#include "platform/win32/Window.h"

namespace marl::win32 {

// The second version ends with lParam; the 8-bit and the wide record have the same size.
constexpr UINT kRecordSize = offsetof(TTTOOLINFOW, lParam) + sizeof(LPARAM);
static_assert(kRecordSize == offsetof(TTTOOLINFOA, lParam) + sizeof(LPARAM));
static_assert(sizeof(void*) != 4 || kRecordSize == kToolInfoSize);
static_assert(kTipSetDelayTime == TTM_SETDELAYTIME && kTipAddTool == TTM_ADDTOOLA &&
              kTipSetBackColor == TTM_SETTIPBKCOLOR && kTipSetTextColor == TTM_SETTIPTEXTCOLOR &&
              kTipSetTitle == TTM_SETTITLEA);

namespace {

/// Some versions of the controls take -1, which means the default delay, as a time of more than a
/// minute. They get the default explicitly.
void RepairDelay(HWND tip, WPARAM which) {
  if (SendMessageW(tip, TTM_GETDELAYTIME, which, 0) != 0xFFFF) return;
  const UINT unit = GetDoubleClickTime();
  SendMessageW(tip, TTM_SETDELAYTIME, which,
               static_cast<LPARAM>(which == TTDT_AUTOPOP ? unit * 10 : unit));
}

void Deliver(HWND window, int message, std::uintptr_t wParam, const TipParameter& lParam) {
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
    // The wide version of the message loses no characters.
    const UINT wide = message == kTipAddTool ? TTM_ADDTOOLW : static_cast<UINT>(message);
    SendMessageW(window, wide, wParam, reinterpret_cast<LPARAM>(&record));
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

}  // namespace

TipWindowsWin32::~TipWindowsWin32() {
  while (!tips_.empty()) Destroy(tips_.begin()->first);
}

void TipWindowsWin32::InitCommonControls() { ::InitCommonControls(); }

std::intptr_t TipWindowsWin32::Instance() const {
  return reinterpret_cast<std::intptr_t>(GetModuleHandleW(nullptr));
}

WindowHandle TipWindowsWin32::CreateTip(std::uint32_t style, WindowHandle parent) {
  Tip tip;
  tip.style = style;
  tip.parent = Window(parent);
  tips_.emplace(++last_, std::move(tip));
  return last_;
}

void TipWindowsWin32::Destroy(WindowHandle window) {
  const auto found = tips_.find(window);
  if (found == tips_.end()) return;
  Tip tip = std::move(found->second);
  tips_.erase(found);
  tip.window.Reset();
  const bool last = std::none_of(tips_.begin(), tips_.end(), [&](const auto& other) {
    return other.second.watched == tip.watched;
  });
  if (tip.watched && last) {
    RemoveWindowSubclass(tip.watched, Watch, reinterpret_cast<UINT_PTR>(this));
  }
}

void TipWindowsWin32::SetTopmost(WindowHandle window) {
  const auto found = tips_.find(window);
  if (found == tips_.end()) return;
  Tip& tip = found->second;
  tip.topmost = true;
  if (!tip.window) return;
  SetWindowPos(tip.window.get(), HWND_TOPMOST, 0, 0, 0, 0,
               SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void TipWindowsWin32::Send(WindowHandle window, int message, std::uintptr_t wParam,
                           const TipParameter& lParam) {
  const auto found = tips_.find(window);
  if (found == tips_.end()) return;
  Tip& tip = found->second;
  if (message == kTipAddTool) {
    const ToolInfo& tool = std::get<ToolInfo>(lParam);
    tip.watched = Window(tool.hwnd);
    tip.place = {tool.rect.left, tool.rect.top, tool.rect.right, tool.rect.bottom};
    SetWindowSubclass(tip.watched, Watch, reinterpret_cast<UINT_PTR>(this),
                      reinterpret_cast<DWORD_PTR>(this));
  }
  if (tip.window) {
    Deliver(tip.window.get(), message, wParam, lParam);
  } else {
    tip.told.push_back({message, wParam, lParam});
  }
}

bool TipWindowsWin32::ClientRect(WindowHandle window, PixelRect& out) const {
  RECT area;
  if (!GetClientRect(Window(window), &area)) return false;
  out = {area.left, area.top, area.right, area.bottom};
  return true;
}

LRESULT CALLBACK TipWindowsWin32::Watch(HWND parent, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                        DWORD_PTR self) noexcept {
  switch (message) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
      reinterpret_cast<TipWindowsWin32*>(self)->OnMouse(parent, message, w, l);
      break;
    case WM_NCDESTROY: RemoveWindowSubclass(parent, Watch, id); break;
    default: break;
  }
  return DefSubclassProc(parent, message, w, l);
}

void TipWindowsWin32::OnMouse(HWND parent, UINT message, WPARAM w, LPARAM l) {
  const POINT mouse = {static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))};
  for (auto& [handle, tip] : tips_) {
    if (tip.watched != parent) continue;
    const bool made = !tip.window && PtInRect(&tip.place, mouse);
    if (made) Make(tip);
    // A new tip has missed the mouse message for which it was created.
    if (!tip.window || !(made || relayAll_)) continue;
    MSG relayed = {};
    relayed.hwnd = parent;
    relayed.message = message;
    relayed.wParam = w;
    relayed.lParam = l;
    SendMessageW(tip.window.get(), TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
  }
}

void TipWindowsWin32::Make(Tip& tip) {
  tip.window = UniqueWindow(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, tip.style, CW_USEDEFAULT,
                                            CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, tip.parent,
                                            nullptr, GetModuleHandleW(nullptr), nullptr));
  if (!tip.window) return;
  if (tip.topmost) {
    SetWindowPos(tip.window.get(), HWND_TOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  }
  for (const Message& message : tip.told) {
    Deliver(tip.window.get(), message.number, message.wParam, message.lParam);
  }
  tip.told.clear();
}

}  // namespace marl::win32
