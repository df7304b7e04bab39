#include "platform/win32/DesktopWin32.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/forms/Controls.h"
#include "platform/win32/CarriedFailure.h"
#include "platform/win32/DpiWin32.h"
#include "platform/win32/FormWin32.h"
#include "platform/win32/Window.h"

namespace marl::win32 {

namespace {

HWND WindowOf(const Form* form) {
  return form && form->peer() ? static_cast<FormWin32*>(form->peer())->window() : nullptr;
}

struct Visit {
  const std::function<bool(WindowHandle)>& visit;
  CarriedFailure failure;
};

BOOL CALLBACK VisitWindow(HWND window, LPARAM data) noexcept {
  auto& state = *reinterpret_cast<Visit*>(data);
  return state.failure.Run([&] { return state.visit(HandleToLong(window)) ? TRUE : FALSE; }, FALSE);
}

/// The platform sends these, with a pointer. Another program can post them with any number.
bool IsOnlySent(UINT message) {
  switch (message) {
    case WM_NOTIFY:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_COMPAREITEM:
    case WM_DELETEITEM:
    case kDpiChanged:
    case kGetDpiScaledSize: return true;
    default: return false;
  }
}

LRESULT CALLBACK DropUntrusted(int code, WPARAM w, LPARAM l) noexcept {
  auto* const message = reinterpret_cast<MSG*>(l);
  if (code >= 0 && IsOnlySent(message->message)) message->message = WM_NULL;
  return CallNextHookEx(nullptr, code, w, l);
}

/// A text with a terminator. Short ones take no memory: the message that there is none must show.
class MessageText {
 public:
  explicit MessageText(TextView text) {
    if (text.size() >= short_.size()) {
      long_ = text;
    } else {
      std::copy(text.begin(), text.end(), short_.begin());
    }
  }
  const wchar_t* get() const {
    return long_.empty() ? reinterpret_cast<const wchar_t*>(short_.data()) : Wide(long_);
  }

 private:
  std::array<char16_t, 256> short_ = {};
  Text long_;
};

}  // namespace

DesktopWin32::DesktopWin32()
    : taken_(SetWindowsHookExW(WH_GETMESSAGE, DropUntrusted, nullptr, GetCurrentThreadId())) {
  const ClientContext screen(nullptr);
  dpi_ = {GetDeviceCaps(screen.get(), LOGPIXELSX), GetDeviceCaps(screen.get(), LOGPIXELSY)};
}

DesktopWin32::~DesktopWin32() = default;

std::unique_ptr<FormPeer> DesktopWin32::CreatePeer(Form& form) {
  return std::make_unique<FormWin32>(*this, form);
}

void DesktopWin32::RunModal(Form& form, Form* owner) {
  Modal modal{&form, {}};
  for (const Form* other : forms()) {
    const HWND window = WindowOf(other);
    if (other == &form || !window || !IsWindowEnabled(window)) continue;
    EnableWindow(window, FALSE);
    modal.disabled.push_back(window);
  }
  modals_.push_back(std::move(modal));
  MSG message;
  while (form.Visible() && form.loaded()) {
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
      Quit(message);
      break;
    }
    Dispatch(message);
  }
  EndModal(form);
  if (const HWND window = WindowOf(owner)) SetActiveWindow(window);
}

void DesktopWin32::EndModal(const Form& form) {
  const auto found = std::find_if(modals_.begin(), modals_.end(),
                                  [&](const Modal& modal) { return modal.form == &form; });
  if (found == modals_.end()) return;
  const Modal modal = std::move(*found);
  modals_.erase(found);
  for (const HWND window : modal.disabled) EnableWindow(window, TRUE);
}

int DesktopWin32::Run() {
  MSG message;
  while (!ended() && !forms().empty()) {
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
      Quit(message);
      break;
    }
    Dispatch(message);
  }
  return exitCode();
}

void DesktopWin32::Quit(const MSG& message) {
  Event([this] { Leave(); });
  // Without a form that ends the program, the outer loop must end too.
  PostQuitMessage(static_cast<int>(message.wParam));
}

void DesktopWin32::DoEvents() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return Quit(message);
    Dispatch(message);
  }
}

bool DesktopWin32::TakeShortcut(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  for (Form* form : forms()) {
    const HWND window = WindowOf(form);
    if (!window || (window != message.hwnd && !IsChild(window, message.hwnd))) continue;
    const auto held = [](int key) { return GetKeyState(key) < 0; };
    if (held(VK_MENU)) return false;
    bool taken = false;
    Event([&] {
      taken =
          form->UserShortcut({static_cast<int>(message.wParam), held(VK_CONTROL), held(VK_SHIFT)});
    });
    return taken;
  }
  return false;
}

void DesktopWin32::WaitForEvents() { WaitMessage(); }

void DesktopWin32::Dispatch(MSG& message) {
  if (TakeShortcut(message)) return;
  for (const Form* form : forms()) {
    auto* const peer = static_cast<FormWin32*>(form->peer());
    if (!peer || !peer->hasFields() || !form->Visible()) continue;
    if (peer->window() == message.hwnd || IsChild(peer->window(), message.hwnd)) {
      if (peer->PreviewKey(message) || peer->TakeAccessKey(message)) return;
      if (IsDialogMessageW(peer->window(), &message)) return;
      break;
    }
  }
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

HWND DesktopWin32::MessageOwner() const {
  const HWND active = GetActiveWindow();
  const bool frameless = std::any_of(forms().begin(), forms().end(), [&](const Form* form) {
    return form->Border == BorderStyle::kNone && WindowOf(form) == active;
  });
  if (active && !frameless) return active;
  const HWND top = WindowOf(TopForm());
  return top ? GetLastActivePopup(top) : nullptr;
}

int DesktopWin32::MsgBox(TextView text, int flags, TextView title) {
  return MessageBoxW(MessageOwner(), MessageText(text).get(), MessageText(title).get(),
                     static_cast<UINT>(flags) | MB_SETFOREGROUND);
}

void DesktopWin32::Beep() { MessageBeep(MB_OK); }

void DesktopWin32::EnumerateWindows(const std::function<bool(WindowHandle)>& visit) {
  Visit state{visit, {}};
  EnumWindows(VisitWindow, reinterpret_cast<LPARAM>(&state));
  state.failure.Rethrow();
}

Text DesktopWin32::TitleOf(WindowHandle window, int capacity) {
  std::wstring title(static_cast<std::size_t>(capacity), L'\0');
  const int length = GetWindowTextW(Window(window), title.data(), capacity);
  return FromWide(title.data(), static_cast<std::size_t>(length));
}

bool DesktopWin32::IsVisible(WindowHandle window) {
  return IsWindowVisible(Window(window)) != FALSE;
}

void DesktopWin32::ShowWindow(WindowHandle window, int command) {
  const HWND target = Window(window);
  if (GetWindowThreadProcessId(target, nullptr) == GetCurrentThreadId()) {
    ::ShowWindow(target, command);
    return;
  }
  ShowWindowAsync(target, command);
  // It is shown before it is activated, unless its program hangs.
  constexpr UINT kPatience = 1000;
  SendMessageTimeoutW(target, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kPatience, nullptr);
}

bool DesktopWin32::ActivateByTitle(TextView title) {
  const HWND window = FindWindowW(nullptr, Wide(Text(title)));
  return window && SetForegroundWindow(GetLastActivePopup(window));
}

Size DesktopWin32::ScreenSize() const {
  const Resolution system = resolution();
  return {system.TwipsX(GetSystemMetrics(SM_CXSCREEN)),
          system.TwipsY(GetSystemMetrics(SM_CYSCREEN))};
}

Monitor DesktopWin32::MonitorAt(const PixelRect& place) const {
  return MonitorOf({place.left, place.top, place.right, place.bottom});
}

bool DesktopWin32::HighContrast() const {
  HIGHCONTRASTW setting = {};
  setting.cbSize = sizeof setting;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof setting, &setting, 0) &&
         (setting.dwFlags & HCF_HIGHCONTRASTON);
}

void DesktopWin32::RenewFonts() {
  // The controls use the previous fonts until they have got new ones.
  const FontCache before = std::exchange(fonts_, FontCache());
  for (const Form* form : forms()) {
    if (auto* const peer = static_cast<FormWin32*>(form->peer())) peer->FontsChanged();
  }
}

Color DesktopWin32::SystemColorValue(int index) const {
  return static_cast<Color>(GetSysColor(index));
}

void DesktopWin32::InitCommonControlsEx(int size, int flags) {
  const INITCOMMONCONTROLSEX record = {static_cast<DWORD>(size), static_cast<DWORD>(flags)};
  ::InitCommonControlsEx(&record);
}

void DesktopWin32::OfferCommands(Form& form, TextView service, TextView topic) {
  dde_ = std::make_unique<DdeServer>(*this, form, service, topic);
}

void DesktopWin32::Withdraw(const Form& form) {
  if (dde_ && &dde_->form() == &form) dde_.reset();
}

// Asks the window under the mouse for its pointer, as a mouse move does.
void DesktopWin32::WorkingChanged() {
  POINT at = {};
  if (!GetCursorPos(&at)) return;
  const HWND window = WindowFromPoint(at);
  if (!window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) return;
  const LRESULT area = SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(at.x, at.y));
  SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
               MAKELPARAM(area, WM_MOUSEMOVE));
}

void DesktopWin32::Ended() { ExitProcess(static_cast<UINT>(exitCode())); }

}  // namespace marl::win32
