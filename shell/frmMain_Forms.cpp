#include "shell/frmMain.h"

#include "appearance/frmUI.h"
#include "support/frmAbout2006.h"

// Forms that the main form shows: splash, about box, display settings.

namespace marl {

void frmMain::ShowSplash() {
  splash = std::make_unique<frmSplash>(desktop(), platform_.pictures, platform_.locales);
  splash->Show();
  splash->Refresh();
}

// Start-up waits here until the splash is closed.
void frmMain::WaitForSplash() {
  splash->SetCanDismiss(true);
  while (desktop().forms().size() > 1) {
    desktop().WaitForEvents();
    desktop().DoEvents();
  }
}

void frmMain::mnuHelpAbout() {
  frmAbout2006 about(
      {desktop(), platform_.pictures, platform_.locales, platform_.strings, setIcon_,
       [this](TextView verb, TextView file, TextView parameters, TextView directory, int show) {
         launcher_.ShellOpen(verb, file, parameters, directory, show);
       }});
  about.ShowModal(this);
}

void frmMain::ShowDisplaySettings(Form& owner) {
  frmUI::Switchboard switchboard{Skin, {}, ApplicationFolder};
  for (std::size_t i = 0; i < lblRun.size(); ++i) {
    switchboard.captions[i] = lblRun[i]->Caption();
  }
  frmUI settings(
      {desktop(), platform_.registry, platform_.files, platform_.fileDialogs, platform_.colorDialog,
       platform_.fontList, platform_.pictures, platform_.locales, platform_.strings, setIcon_},
      std::move(switchboard));
  settings.ShowModal(&owner);
  if (!settings.Cancelled) SetUI();
  settings.Unload();
}

}  // namespace marl
