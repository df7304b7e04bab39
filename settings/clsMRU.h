#pragma once

#include <cstdint>
#include <vector>

#include "platform/Locale.h"
#include "settings/clsRegistry.h"

namespace marl {

/// A list of texts, the most recently used first, kept as values `MRU1`, `MRU2`, ... of one key.
/// Assign `hkey`, `KeyRoot` and `Subkey`, then load. No failure is reported: a registry that
/// refuses gives a shorter list, or keeps the one it had.
class clsMRU {
 public:
  /// `locale` compares the entries.
  clsMRU(RegistryStore& store, const Locale& locale) : registry_(store), locale_(locale) {}

  /// Root handle, one of RootKey.
  void hkey(std::uint32_t root) { registry_.hkey = root; }
  void KeyRoot(TextView path) { registry_.KeyRoot = path; }
  void Subkey(TextView path) { registry_.Subkey = path; }

  /// How many entries AddMRU lets the list grow to, and how many values are loaded and saved.
  /// Assigning neither trims nor fills the list.
  std::int32_t MaxLength = 8;

  /// Appends the stored entries to the list, passing over empty and missing ones. The list is
  /// not cleared first.
  void LoadList();
  /// Makes the key and writes all `MaxLength` values, the unused ones as empty texts.
  void SaveList();
  /// Puts the text first. An entry that is the same text in the system's collation, but for case,
  /// moves there and takes the new spelling; otherwise, in a full list, the last one goes. Saves
  /// nothing.
  void AddMRU(TextView text);

  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
  /// Entry from 1, the newest, to `Count`; nothing outside.
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
