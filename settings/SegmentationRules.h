#pragma once

#include <vector>

#include "platform/RegistryStore.h"

namespace marl {

/// The rules that part text into segments, as they lie in the registry below
/// HKEY_CURRENT_USER\Software\Oru\Marl\Segmentation: values `DontSplit1`, `DontSplit2`, ... and
/// `ForceSplit1`, ... Each is a string of REG_SZ; one that the system's code page cannot hold is
/// REG_BINARY instead, its 16-bit units with the lower byte first.
struct SegmentationRules {
  std::vector<Text> dontSplit;   ///< behind these no segment ends
  std::vector<Text> forceSplit;  ///< behind these one always ends

  bool operator==(const SegmentationRules&) const = default;

  /// Reads both lists, each up to its first missing or empty value.
  static SegmentationRules Load(RegistryStore& store);
  /// Replaces what is stored. Empty strings are left out, and of equal ones all but the first; a
  /// string of both lists stays in the first. Without rules there is no key. What the registry
  /// refuses is not stored.
  void Store(RegistryStore& store) const;
};

}  // namespace marl
