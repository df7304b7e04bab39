#pragma once

#include "platform/StringResource.h"
#include "resources/strings/ids.h"

namespace marl {

/// The user interface's texts by id (resources/strings/ids.h).
class StringTable {
 public:
  explicit StringTable(const StringResource& resource) : resource_(resource) {}

  /// The text of `id`. Throws a `RuntimeError` if there is none.
  Text Get(int id) const;
  /// The text of `id`, or nothing if there is none.
  bool Find(int id, Text& out) const { return resource_.Load(id, out); }

 private:
  const StringResource& resource_;
};

}  // namespace marl
