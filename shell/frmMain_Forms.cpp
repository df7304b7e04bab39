#include "shell/frmMain.h"

// The main form's smaller companions.

namespace marl {

void frmMain::ShowSplash() {
  splash = std::make_unique<frmSplash>(desktop(), platform_.pictures, platform_.locales);
  splash->Show();
  splash->Refresh();
}

// Start-up stays here until the splash has gone. False when the main form has gone instead: who
// ends the session does not wait for a picture.
bool frmMain::WaitForSplash() {
  splash->SetCanDismiss(true);
  while (loaded() && desktop().forms().size() > 1) {
    desktop().WaitForEvents();
    desktop().DoEvents();
  }
  return loaded();
}

}  // namespace marl
