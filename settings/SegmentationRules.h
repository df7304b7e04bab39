#pragma once

#include <vector>

#include "platform/RegistryStore.h"

namespace marl {

/// The rules that split text into segments, as stored below
/// HKEY_CURRENT_USER\Software\Oru\Marl\Segmentation: values `DontSplit1`, `DontSplit2`, ... and
/// `ForceSplit1`, ... Each is a string of REG_SZ; one that the system's code page cannot represent
/// is REG_BINARY instead, its 16-bit units, low byte first.
struct SegmentationRules {
  std::vector<Text> dontSplit;   ///< no segment ends after these
  std::vector<Text> forceSplit;  ///< a segment always ends after these

  bool operator==(const SegmentationRules&) const = default;

  /// Reads both lists, each up to its first missing or empty value.
  static SegmentationRules Load(RegistryStore& store);
  /// Replaces what is stored. Empty strings and duplicates are left out; a string in both lists
  /// stays in the first. Without rules the key is deleted. Registry failures are ignored.
  void Store(RegistryStore& store) const;
};

}  // namespace marl
