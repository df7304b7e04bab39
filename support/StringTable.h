#pragma once

#include "platform/StringResource.h"

namespace marl {

/// Strings of the switchboard's own, in addition to those that are shared with the suite.
enum OwnString : int {
  kComponentMissingString = 30001,
  kNoSystemInfoString = 30002,
  kServerRefusedString = 30010,
};

/// The user interface's texts by id.
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
