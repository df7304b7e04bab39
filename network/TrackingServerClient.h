#pragma once

#include <memory>

#include "platform/Components.h"
#include "platform/FileSystem.h"
#include "support/StringTable.h"

namespace marl {

/// Hands server documents to the suite's component "Marl.TrackingServerClient", operation
/// SetServer(document). One instance is made at the first call and kept. Where none is registered,
/// a built-in one accepts each well-formed server document and refuses all else.
class TrackingServerClient {
 public:
  struct Ports {
    Components& components;
    const FileSystem& files;
    const StringTable& strings;
  };
  explicit TrackingServerClient(const Ports& ports) : ports_(ports) {}

  /// False when the component refuses the document or cannot be made; `failure` then holds its
  /// description, and is untouched otherwise.
  bool SetServer(TextView document, Text& failure);

 private:
  Ports ports_;
  std::unique_ptr<Component> component_;
};

/// True for U+FEFF, the prolog and one empty element `project-tracking` that names a server; only
/// blanks and line ends may follow it. The system's own reader decides what an element is.
bool IsServerDocument(TextView document, const FileSystem& files);

}  // namespace marl
