#pragma once

#include "platform/StringResource.h"

namespace marl {

/// Strings of the switchboard's own, beside those that are shared with the suite.
enum OwnString : int {
  kComponentMissingString = 30001,
  kNoSystemInfoString = 30002,
  kServerRefusedString = 30010,
};

/// The user interface's texts by id.
class StringTable {
 public:
  explicit StringTable(const StringResource& resource) : resource_(resource) {}

  /// The text of `id`. A `RuntimeError` when the table has none.
  Text Get(int id) const;
  /// The text of `id`, if there is one: the form of `Get` that never fails.
  bool Find(int id, Text& out) const { return resource_.Load(id, out); }

 private:
  const StringResource& resource_;
};

}  // namespace marl
