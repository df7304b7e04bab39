#pragma once

#include <functional>

#include "network/TrackingServerClient.h"
#include "platform/RegistryStore.h"
#include "platform/forms/Desktop.h"
#include "settings/clsMRU.h"

namespace marl {

/// Which project tracking server is current, and the list of earlier ones. The servers themselves
/// are never contacted from here.
class TrackingServer {
 public:
  struct Ports {
    Desktop& desktop;
    RegistryStore& registry;
    Components& components;
    const FileSystem& files;
    const StringTable& strings;
    const Locale& locale;
  };
  /// What the main form shows of the server.
  struct View {
    /// Called when the server has changed, with its name or the text that says there is none.
    std::function<void(TextView name)> ShowName;
    /// Called at each setting, with whether there is a site to open.
    std::function<void(bool enabled)> EnableTracking;
  };
  TrackingServer(const Ports& ports, View view);

  Text CurrentServerTag;  ///< tag of the current server; empty for none
  clsMRU ServerList;      ///< tags of earlier servers; may contain bare names too

  /// Loads the list and makes the stored server current, without messages. If the component refuses
  /// it, there is no current server.
  void Start();
  /// Makes a tag or a bare host name current; true if the current tag has changed. If the component
  /// refuses the server, the old one stays, and the reason is shown if `showError` is set. An empty
  /// name removes the server.
  bool SetTrackingServer(TextView server, bool showError);
  /// Writes the current tag and the list.
  void SaveServerSettings();

 private:
  Text Accepted(TextView server, bool showError);

  Ports ports_;
  View view_;
  TrackingServerClient client_;
};

}  // namespace marl
