#pragma once

#include <cstdint>
#include <vector>

#include "platform/Locale.h"
#include "settings/clsRegistry.h"

namespace marl {

/// A list of texts, the most recently used first, kept as values `MRU1`, `MRU2`, ... of one key.
/// Set `hkey`, `KeyRoot` and `Subkey`, then load. Failures are not reported: the list is shorter,
/// or the stored one stays.
class clsMRU {
 public:
  /// `locale` compares the entries.
  clsMRU(RegistryStore& store, const Locale& locale) : registry_(store), locale_(locale) {}

  /// Root handle, one of RootKey.
  void hkey(std::uint32_t root) { registry_.hkey = root; }
  void KeyRoot(TextView path) { registry_.KeyRoot = path; }
  void Subkey(TextView path) { registry_.Subkey = path; }

  /// Maximum length for AddMRU, and number of values that are loaded and saved. Setting it does not
  /// change the list.
  std::int32_t MaxLength = 8;

  /// Appends the stored entries to the list, without empty and missing ones. Does not clear the
  /// list first.
  void LoadList();
  /// Creates the key and writes all `MaxLength` values, the unused ones as empty texts.
  void SaveList();
  /// Puts the text first. An equal entry (by the user's collation, ignoring case) moves there and
  /// takes the new spelling; otherwise, if the list is full, the last entry is dropped. Does not
  /// save.
  void AddMRU(TextView text);

  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  /// Entry 1 (the newest) to `Count`; empty outside this range.
  Text Item(std::int32_t index) const;
  /// Replaces the entry. Ignored outside the list.
  void Item(std::int32_t index, TextView text);

 private:
  bool Holds(std::int32_t index) const { return index >= 1 && index <= Count(); }

  clsRegistry registry_;
  const Locale& locale_;
  std::vector<Text> entries_;
};

}  // namespace marl
