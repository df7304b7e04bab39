#include "shell/frmMain.h"

#include <algorithm>
#include <utility>

// The switchboard in the notification area: the icon, its menu, and restoring the window.

namespace marl {

namespace {

// From this resolution on the larger menu pictures are used.
constexpr int kLargePicturesDpi = 120;
// Milliseconds until a refused icon is tried again, doubled each time: a shell that hangs makes
// each attempt wait.
constexpr int kFirstRetry = 1000;
constexpr int kLongestRetry = 60000;

/// Sets a flag while it lives.
class InUse {
 public:
  explicit InUse(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~InUse() { flag_ = before_; }
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

void frmMain::EnterTray() {
  hook_.HookWindow(hWnd());
  TrayReady = true;
  hook_.AddTrayIcon(icons_.LoadIconHandle(kMarlIcon, false));
}

void frmMain::TrayIconChanged() {
  if (hook_.TrayIconThere() || !tmrTray.Enabled()) tmrTray.SetInterval(kFirstRetry);
  tmrTray.SetEnabled(!hook_.TrayIconThere());
  if (State() != WindowState::kMinimised) return;
  if (hook_.TrayIconThere()) {
    Hide();
  } else {
    Show();
  }
}

void frmMain::tmrTray_Tick() {
  tmrTray.SetInterval(std::min(2 * tmrTray.Interval(), kLongestRetry));
  hook_.AddTrayIconAgain();
}

int frmMain::PopupPictures() const {
  return resolution().y >= kLargePicturesDpi ? MARL_PICTURE_MENU_24 : MARL_PICTURE_MENU_16;
}

void frmMain::FillPopup() {
  m_cPopupMenu = platform_.tray.CreatePopup();
  popupPictures_ = PopupPictures();
  m_cPopupMenu->SetImageList(platform_.pictures.Load(popupPictures_));
  m_cPopupMenu->SetOwner(hWnd());
  for (int i = 0; i < kButtonCount; ++i) {
    m_cPopupMenu->AddItem(lblRun[static_cast<std::size_t>(i)]->Caption(), i, false, true);
  }
  m_cPopupMenu->Click = [this](int itemNumber) { Press(itemNumber - 1); };
}

void frmMain::SystrayMenu() {
  if (!TrayReady) return;
  // The form must be active, or the menu would not close when the user clicks elsewhere.
  BringToFront();
  // The icon exists before its menu: start-up may still be waiting for the splash.
  if (!m_cPopupMenu) throw RuntimeError(91, u"Object variable or With block variable not set");
  // The form may have come to a monitor of another resolution. A menu whose chosen item has opened
  // a dialog is still in use.
  if (!popupInUse_ && popupPictures_ != PopupPictures()) FillPopup();
  const InUse use(popupInUse_);
  m_cPopupMenu->Show(platform_.tray.CursorPosition());
}

void frmMain::RestoreWindow() {
  SetState(WindowState::kNormal);
  Show();
  BringToFront();
}

}  // namespace marl
