#pragma once

#include <array>

#include "appearance/modSetIcon.h"
#include "platform/Tray.h"
#include "platform/WindowHooks.h"

namespace marl {

/// What the message hook asks of the main form.
class HookedForm {
 public:
  virtual ~HookedForm() = default;
  virtual WindowHandle HookedWindow() const = 0;
  virtual void RestoreWindow() = 0;
  virtual void SystrayMenu() = 0;
  virtual void RefreshButtons() = 0;
  virtual void Resized() = 0;
};

/// Messages that reach the program beside those that forms know: from the notification area and
/// from the shell. A procedure in front of the main window's own sees them.
class modMarl : private MessageListener {
 public:
  /// Slots of `RegisteredMessages`. The first three have names and no number: nobody registers
  /// them, and they stay 0.
  enum Slot { msgMarlStart, msgMarlCheck, msgMarlEnd, msgMarlMenu, TaskbarCreated, kSlots };

  modMarl(WindowHooks& hooks, Tray& tray, HookedForm& form)
      : hooks_(hooks), tray_(tray), form_(form) {}
  ~modMarl() override;
  modMarl(const modMarl&) = delete;
  modMarl& operator=(const modMarl&) = delete;

  ProcAddress PreviousWindowProc = 0;  ///< the window's procedure before the hook; 0 without one
  bool PassToPrevious = false;         ///< messages go on to the window's procedure
  std::array<std::uint32_t, kSlots> RegisteredMessages = {};
  NotifyIconData TrayIconRecord;  ///< kept filled, so that the icon can be added again

  /// Asks for the numbers of `msgMarlMenu` and `TaskbarCreated`, in this order.
  void RegisterShellMessages();
  /// Puts `SwitchboardWindowProc` in front of the window's procedure. Failures are ignored.
  void HookWindow(WindowHandle window);
  /// Takes it away again, if it is there.
  void UnhookWindow(WindowHandle window);

  /// Fills the record with the main form's window and this icon, which the record then owns, and
  /// adds the icon to the notification area. A refusal is not noticed.
  void AddTrayIcon(IconHandle icon);
  /// Frees the icon and takes it out of the notification area, if it was added.
  void RemoveTrayIcon(const modSetIcon& icons);

  /// The procedure itself. Nothing that fails in it leaves the window without one.
  std::intptr_t SwitchboardWindowProc(WindowHandle window, std::uint32_t message,
                                      std::uintptr_t wParam, std::intptr_t lParam);

 private:
  std::intptr_t OnMessage(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                          std::intptr_t lParam) override {
    return SwitchboardWindowProc(window, message, wParam, lParam);
  }
  void Handle(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam);

  WindowHooks& hooks_;
  Tray& tray_;
  HookedForm& form_;
  WindowHandle hooked_ = 0;
  bool iconAdded_ = false;
};

}  // namespace marl
