#pragma once

#include <memory>
#include <vector>

#include "platform/forms/Desktop.h"
#include "platform/win32/CanvasWin32.h"
#include "platform/win32/DdeServer.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

class FormWin32;

/// The real screen and the thread's message loop.
class DesktopWin32 : public Desktop {
 public:
  DesktopWin32();
  ~DesktopWin32() override;

  std::unique_ptr<FormPeer> CreatePeer(Form& form) override;
  void RunModal(Form& form, Form* owner) override;
  int Run() override;
  void DoEvents() override;
  void WaitForEvents() override;
  int MsgBox(TextView text, int flags, TextView title) override;
  void Beep() override;
  void EnumerateWindows(const std::function<bool(WindowHandle)>& visit) override;
  Text TitleOf(WindowHandle window, int capacity) override;
  bool IsVisible(WindowHandle window) override;
  void ShowWindow(WindowHandle window, int command) override;
  bool ActivateByTitle(TextView title) override;
  Size ScreenSize() const override;
  Size Dpi() const override { return dpi_; }
  Monitor MonitorAt(const PixelRect& place) const override;
  bool HighContrast() const override;
  Color SystemColorValue(int index) const override;
  void InitCommonControlsEx(int size, int flags) override;
  void OfferCommands(Form& form, TextView service, TextView topic) override;

  FontCache& fonts() { return fonts_; }
  /// Where windows compose what they show, one at a time.
  PixelSurface& surface() { return surface_; }
  /// Creates all fonts again, because the installed ones or their smoothing have changed.
  void RenewFonts();
  /// The form is about to be hidden: enables the windows that it had disabled, so that one of them,
  /// and not another program's, is activated next.
  void EndModal(const Form& form);
  /// No command reaches the form any more.
  void Withdraw(const Form& form);

 protected:
  void Ended() override;
  void WorkingChanged() override;

 private:
  struct Modal {
    const Form* form = nullptr;
    std::vector<HWND> disabled;
  };

  void Dispatch(MSG& message);
  /// Another part of the process, or another program, wants the message loop to end (WM_QUIT).
  void Quit(const MSG& message);
  HWND MessageOwner() const;
  /// Passes a key to the menu of its form. True if it chose an entry.
  bool TakeShortcut(const MSG& message);

  Size dpi_;
  /// Sees what is taken from the queue, by the message loops of the platform too.
  UniqueHook taken_;
  FontCache fonts_;
  PixelSurface surface_;
  std::vector<Modal> modals_;
  std::unique_ptr<DdeServer> dde_;
};

}  // namespace marl::win32
