#include "shell/frmMain.h"

#include "network/ServerTag.h"
#include "network/frmChangeServer.h"
#include "platform/ApplicationTitle.h"

// The tracking server in the main form: shows it, changes it, opens its site.

namespace marl {

void frmMain::ShowServer(TextView name) { SetCaption(ServerTitleStart() + u' ' + Text(name)); }

void frmMain::EnableTracking(bool enabled) {
  lblRun[kTrackProjects]->SetEnabled(enabled);
  lblRun[kTrackProjects]->Tag = enabled ? TextView() : kDead;
  AnnounceButton(Announcement::kState, kTrackProjects);
}

void frmMain::mnuProjectChangeServer() {
  frmChangeServer dialog({desktop(), platform_.locales, platform_.pictures, platform_.strings},
                         servers_.ServerList);
  dialog.Load();
  dialog.Server(servers_.CurrentServerTag);
  dialog.ShowModal(this);
  if (!dialog.Cancelled) servers_.SetTrackingServer(dialog.Server(), true);
  dialog.Unload();
}

void frmMain::mnuProjectTrackProjects() {
  if (servers_.CurrentServerTag.empty()) return;
  clsXMLTag server;
  ReadServerTag(servers_.CurrentServerTag, server);
  const Text site = TrackingSite(server);
  Browse(site, site);
}

}  // namespace marl
