#pragma once

#include <memory>

#include "platform/Components.h"
#include "platform/FileSystem.h"
#include "platform/RegistryStore.h"
#include "support/StringTable.h"

namespace marl {

/// Passes server documents to the suite's component "Marl.TrackingServerClient", operation
/// SetServer(document). One instance is created at the first call and kept. If the component is not
/// registered, a built-in one accepts well-formed server documents and refuses everything else. It
/// also refuses a name that the system's code page cannot hold: stored, it would be that of another
/// server.
class TrackingServerClient {
 public:
  struct Ports {
    Components& components;
    const FileSystem& files;
    const StringTable& strings;
    const RegistryStore& registry;
  };
  explicit TrackingServerClient(const Ports& ports) : ports_(ports) {}

  /// False if the component refuses the document or cannot be created; `failure` then holds the
  /// description, otherwise it is unchanged.
  bool SetServer(TextView document, Text& failure);

 private:
  Ports ports_;
  std::unique_ptr<Component> component_;
};

/// True for U+FEFF, the prolog and one empty element `project-tracking` that names a server; only
/// blanks and line ends may follow it. clsXMLEngine decides what an element is.
bool IsServerDocument(TextView document, const FileSystem& files);

}  // namespace marl
