#include "shell/modMarl.h"

#include <utility>

#include "platform/ApplicationTitle.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

// Values of the platform's messages and of their parameters.
constexpr std::uint32_t kWmSize = 5;
constexpr std::uint32_t kWmActivate = 6;
constexpr std::uintptr_t kSizeMinimized = 1;
constexpr std::uintptr_t kInactive = 0;
constexpr std::intptr_t kLeftDoubleClick = 0x203;
constexpr std::intptr_t kRightButtonUp = 0x205;

}  // namespace

modMarl::~modMarl() {
  if (PreviousWindowProc != 0) UnhookWindow(hooked_);
}

void modMarl::RegisterShellMessages() {
  RegisteredMessages[msgMarlMenu] = hooks_.RegisterMessage("msgMarlMenu");
  RegisteredMessages[TaskbarCreated] = hooks_.RegisterMessage("TaskbarCreated");
}

void modMarl::HookWindow(WindowHandle window) {
  // Set before the hook is installed: the first message may arrive at once.
  PassToPrevious = true;
  PreviousWindowProc = hooks_.Replace(window, *this);
  hooked_ = window;
  for (const Slot slot : {msgMarlMenu, TaskbarCreated}) {
    if (RegisteredMessages[slot] != 0) hooks_.Allow(window, RegisteredMessages[slot]);
  }
}

void modMarl::UnhookWindow(WindowHandle window) {
  if (PreviousWindowProc != 0) {
    hooks_.PutBack(window, PreviousWindowProc);
    PreviousWindowProc = 0;
  }
  PassToPrevious = false;
}

void modMarl::AddTrayIcon(IconHandle icon) {
  TrayIconRecord.cbSize = kNotifyIconDataSize;
  TrayIconRecord.hWnd = form_.HookedWindow();
  TrayIconRecord.uID = tray_.IconOf(form_.HookedWindow());
  TrayIconRecord.uFlags = kNotifyMessage | kNotifyIcon | kNotifyTip;
  TrayIconRecord.uCallbackMessage = RegisteredMessages[msgMarlMenu];
  TrayIconRecord.hIcon = icon;
  TrayIconRecord.szTip = kApplicationTitle;
  iconAdded_ = true;
  iconThere_ = tray_.NotifyIcon(kNotifyAdd, TrayIconRecord);
  form_.TrayIconChanged();
}

void modMarl::AddTrayIconAgain() {
  // Removed first, in case the shell still has the icon: it may have added it after all when it
  // answered too late.
  tray_.NotifyIcon(kNotifyDelete, TrayIconRecord);
  iconThere_ = tray_.NotifyIcon(kNotifyAdd, TrayIconRecord);
  form_.TrayIconChanged();
}

void modMarl::RemoveTrayIcon(const modSetIcon& icons) {
  if (!std::exchange(iconAdded_, false)) return;
  icons.ReleaseIcon(TrayIconRecord.hIcon);
  tray_.NotifyIcon(kNotifyDelete, TrayIconRecord);
}

std::intptr_t modMarl::SwitchboardWindowProc(WindowHandle window, std::uint32_t message,
                                             std::uintptr_t wParam, std::intptr_t lParam) {
  if (window == form_.HookedWindow()) Skip([&] { Handle(message, wParam, lParam); });
  if (!PassToPrevious) {
    PassToPrevious = true;
    return 0;
  }
  return hooks_.Call(PreviousWindowProc, window, message, wParam, lParam);
}

void modMarl::Handle(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) {
  // The unregistered slots are 0, which is WM_NULL: dropping it does no harm.
  if (message == RegisteredMessages[msgMarlStart] || message == RegisteredMessages[msgMarlCheck] ||
      message == RegisteredMessages[msgMarlEnd]) {
    PassToPrevious = false;
  } else if (message == RegisteredMessages[msgMarlMenu]) {
    if (lParam == kLeftDoubleClick) form_.RestoreWindow();
    if (lParam == kRightButtonUp) form_.SystrayMenu();
  } else if (message == RegisteredMessages[TaskbarCreated]) {
    AddTrayIconAgain();
  } else if (message == kWmActivate && wParam == kInactive) {
    form_.RefreshButtons();
  } else if (message == kWmSize && wParam == kSizeMinimized) {
    form_.Resized();
  }
}

}  // namespace marl
