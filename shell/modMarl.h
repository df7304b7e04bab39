#pragma once

#include <array>

#include "appearance/modSetIcon.h"
#include "platform/Tray.h"
#include "platform/WindowHooks.h"

namespace marl {

/// What the message hook needs from the main form.
class HookedForm {
 public:
  virtual ~HookedForm() = default;
  virtual WindowHandle HookedWindow() const = 0;
  virtual void RestoreWindow() = 0;
  virtual void SystrayMenu() = 0;
  virtual void RefreshButtons() = 0;
  virtual void Resized() = 0;
  /// The icon has been added to the notification area or refused: see `modMarl::TrayIconThere`.
  virtual void TrayIconChanged() = 0;
};

/// Messages that forms do not handle: those of the notification area and the shell. They are seen
/// by a procedure in front of the main window's own.
class modMarl : private MessageListener {
 public:
  /// Indexes of `RegisteredMessages`. The first three are never registered and stay 0.
  enum Slot { msgMarlStart, msgMarlCheck, msgMarlEnd, msgMarlMenu, TaskbarCreated, kSlots };

  modMarl(WindowHooks& hooks, Tray& tray, HookedForm& form)
      : hooks_(hooks), tray_(tray), form_(form) {}
  ~modMarl() override;
  modMarl(const modMarl&) = delete;
  modMarl& operator=(const modMarl&) = delete;

  ProcAddress PreviousWindowProc = 0;  ///< the window's procedure before the hook; 0 without one
  bool PassToPrevious = false;         ///< messages go on to the window's procedure
  std::array<std::uint32_t, kSlots> RegisteredMessages = {};
  NotifyIconData TrayIconRecord;  ///< kept, so that the icon can be added again

  /// Registers the messages `msgMarlMenu` and `TaskbarCreated`, in this order.
  void RegisterShellMessages();
  /// Puts `SwitchboardWindowProc` in front of the window's procedure. Failures are ignored.
  void HookWindow(WindowHandle window);
  /// Removes it again, if it is installed.
  void UnhookWindow(WindowHandle window);

  /// Fills the record with the main form's window and this icon, which the record then owns, and
  /// adds the icon to the notification area.
  void AddTrayIcon(IconHandle icon);
  /// Adds the icon of the record again, after the shell has lost or refused it.
  void AddTrayIconAgain();
  /// False until the shell has accepted the icon.
  bool TrayIconThere() const { return iconThere_; }
  /// Destroys the icon and removes it from the notification area, if it was added.
  void RemoveTrayIcon(const modSetIcon& icons);

  /// The window procedure. Failures inside it are dropped, so that messages still reach the window.
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
  bool iconAdded_ = false;  ///< the record is filled
  bool iconThere_ = false;
};

}  // namespace marl
