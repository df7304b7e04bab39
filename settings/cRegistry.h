#pragma once

#include <cstdint>
#include <vector>

#include "platform/RegistryStore.h"
#include "settings/RegistryValue.h"

namespace marl {

/// A cursor over the registry: set root, key, value name and kind, then read or assign `Value`.
/// Reading never fails but yields `Default`; assigning makes the key on the way. No failure is
/// raised, and no key stays open between calls.
class cRegistry {
 public:
  explicit cRegistry(RegistryStore& store) : store_(store) {}

  /// Root handle, one of RootKey.
  std::uint32_t ClassKey = 0;
  /// Key path below the root, without a leading backslash.
  Text SectionKey;
  /// The value's name; empty for the key's default value.
  Text ValueKey;

  /// True when the key opens for reading values.
  bool KeyExists();
  /// Makes the key, and all that is missing of its path. True also when it was there.
  bool CreateKey();
  /// Deletes the key; one with sub-keys stays.
  bool DeleteKey();
  /// Deletes the value; false also when the key does not open.
  bool DeleteValue();

  /// Reads the value (RegQueryValueExA). `valueType` takes the kind found and so governs the next
  /// assignment. A multi-string keeps its inner NULs; REG_EXPAND_SZ comes expanded; binary data
  /// and all other kinds come with one byte of zero behind them.
  RegistryValue Value();
  /// As the assignment. True when the value was written.
  bool SetValue(const RegistryValue& value);
  /// Writes the value by `valueType` (RegSetValueExA), which has to fit the value. Text that holds
  /// a name between percent signs becomes REG_EXPAND_SZ.
  void Value(const RegistryValue& value);

  /// Names of the key's values, from index 1; element 0 is unused. True in any case.
  bool EnumerateValues(std::vector<Text>& names, std::int32_t& count);
  /// Names of the sub-keys, from index 1; element 0 is unused. Ends at a name of 255 characters.
  /// True in any case.
  bool EnumerateSections(std::vector<Text>& names, std::int32_t& count);

  /// Gives an executable a file type of its own, below HKEY_CLASSES_ROOT and Software\Classes of
  /// HKEY_LOCAL_MACHINE: extension (without its dot), class, menu entries with the switches /p,
  /// /a and /n, icon. Empty menu texts take the usual ones; an icon index of -1 means no icon.
  /// What cannot be written under one root is still tried under the other.
  void CreateEXEAssociation(TextView exePath, TextView className, TextView classDescription,
                            TextView extension, TextView openMenuText, bool supportPrint,
                            TextView printMenuText, bool supportNew, TextView newMenuText,
                            bool supportInstall, TextView installMenuText,
                            std::int32_t defaultIconIndex);
  /// Gives a class that is there further menu entries: triples of verb key, menu text and command
  /// line. Writes nothing when the items are no triples or the class is missing below `ClassKey`.
  void CreateAdditionalEXEAssociations(TextView className, const std::vector<RegistryValue>& items);

  /// Kind to write, and after a read the kind found.
  std::int32_t valueType = 0;
  /// What a failed read yields.
  RegistryValue Default;

 private:
  /// Assigns the text below both roots of the associations; `ClassKey` stays the second one.
  void SetDualClassValue(TextView text);
  /// The same for the default value of a key.
  void SetDualClassValue(TextView section, TextView text);

  Status Write(const RegistryValue& value);
  Status WriteAs(KeyHandle key, std::uint32_t kind, const NarrowText& data);
  Text ReadText(KeyHandle key, std::uint32_t size);
  Text ExpandEnvironment(const Text& text);
  KeyHandle Root() const { return ClassKey; }
  NarrowText Section() const { return store_.ToNarrow(SectionKey); }

  RegistryStore& store_;
  RegistryValue lastAssigned_;
};

}  // namespace marl
