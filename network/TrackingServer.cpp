#include "network/TrackingServer.h"

#include <utility>

#include "network/ServerTag.h"
#include "platform/ApplicationTitle.h"
#include "settings/clsRegistry.h"

namespace marl {

namespace {

constexpr TextView kKeyRoot = u"Software\\Oru\\Marl";
constexpr TextView kSubkey = u"Settings";
constexpr TextView kValue = u"TrackingServer";
// Differs from every tag, so that the first setting counts as a change and updates title and
// button.
constexpr TextView kNotYetSet = u"#";

bool IsBlank(TextView text) { return text.find_first_not_of(u' ') == TextView::npos; }

clsRegistry SettingsKey(RegistryStore& store) {
  clsRegistry registry(store);
  registry.hkey = kCurrentUser;
  registry.KeyRoot = kKeyRoot;
  registry.Subkey = kSubkey;
  return registry;
}

}  // namespace

TrackingServer::TrackingServer(const Ports& ports, View view)
    : ServerList(ports.registry, ports.locale),
      ports_(ports),
      view_(std::move(view)),
      client_({ports.components, ports.files, ports.strings, ports.registry}) {}

void TrackingServer::Start() {
  ServerList.hkey(kCurrentUser);
  ServerList.KeyRoot(kKeyRoot);
  ServerList.Subkey(u"ServerMRU");
  ServerList.LoadList();
  CurrentServerTag = kNotYetSet;
  const RegistryValue stored = SettingsKey(ports_.registry).GetRegistryValue(kValue, Text());
  SetTrackingServer(RegistryText(stored), false);
  if (CurrentServerTag == kNotYetSet) SetTrackingServer(u"", false);
}

bool TrackingServer::SetTrackingServer(TextView server, bool showError) {
  const Text before = std::exchange(CurrentServerTag, Accepted(server, showError));
  const bool changed = CurrentServerTag != before;
  if (changed) {
    clsXMLTag tag;
    ReadServerTag(CurrentServerTag, tag);
    view_.ShowName(CurrentServerTag.empty() ? TextView(ports_.strings.Get(IDS_NO_SERVER))
                                            : tag.AttributeValue(u"server"));
    if (!CurrentServerTag.empty()) ServerList.AddMRU(CurrentServerTag);
  }
  view_.EnableTracking(!CurrentServerTag.empty());
  return changed;
}

/// The current tag after asking the component: the new one, the previous one, or none.
Text TrackingServer::Accepted(TextView server, bool showError) {
  if (IsBlank(server)) return {};
  Text wanted = IsServerTag(server) ? Text(server) : BareNameTag(server);
  clsXMLTag tag;
  ReadServerTag(wanted, tag);
  if (tag.AttributeValue(u"server").empty()) return {};
  Text failure;
  if (client_.SetServer(ServerDocument(wanted), failure)) return wanted;
  if (showError) ports_.desktop.MsgBox(failure, kExclamation, kApplicationTitle);
  return CurrentServerTag;
}

void TrackingServer::SaveServerSettings() {
  clsRegistry registry = SettingsKey(ports_.registry);
  registry.CreateKey();
  registry.SetRegistryValue(kValue, CurrentServerTag, kRegSz);
  ServerList.SaveList();
}

}  // namespace marl
