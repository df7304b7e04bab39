#pragma once

#include <cstdint>
#include <vector>

#include "platform/RegistryStore.h"
#include "settings/RegistryValue.h"

namespace marl {

/// A cursor over the registry, for several values of one key: set root, key, value name and kind,
/// then read or assign `Value`. Reading never fails but returns `Default`; assigning creates the
/// key. Nothing throws, and outside of a `Reading` no key stays open between calls. `clsRegistry`
/// is the class for lists and single values.
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
  /// Creates the key and all missing keys on its path. True also if it already existed.
  bool CreateKey();
  /// Deletes the key, unless it has sub-keys.
  bool DeleteKey();
  /// Deletes the value; false also if the key does not open.
  bool DeleteValue();

  /// Reads the value (RegQueryValueExA). `valueType` is set to the kind found, which the next
  /// assignment then uses. A multi-string keeps its inner NULs; REG_EXPAND_SZ is expanded; binary
  /// data and all other kinds get one zero byte appended.
  RegistryValue Value();
  /// Keeps the key open for reading while it lives, so that several values take less time. Root and
  /// key must not be changed meanwhile.
  class Reading {
   public:
    explicit Reading(cRegistry& registry);
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    friend class cRegistry;
    cRegistry& registry_;
    OpenKeyHandle key_;
  };

  /// Like the assignment. True if the value was written.
  bool SetValue(const RegistryValue& value);
  /// Writes the value as `valueType` (RegSetValueExA), which has to match the value. Text that
  /// contains a name between percent signs becomes REG_EXPAND_SZ.
  void Value(const RegistryValue& value);

  /// Names of the key's values, from index 1; element 0 is unused. Always true.
  bool EnumerateValues(std::vector<Text>& names, std::int32_t& count);
  /// Names of the sub-keys, from index 1; element 0 is unused. Stops at a name of 255 characters.
  /// Always true.
  bool EnumerateSections(std::vector<Text>& names, std::int32_t& count);

  /// Registers a file type for an executable, below HKEY_CLASSES_ROOT and Software\Classes of
  /// HKEY_LOCAL_MACHINE: extension (without its dot), class, menu entries with the switches /p, /a
  /// and /n, icon. Empty menu texts get the usual ones; an icon index of -1 means no icon. If
  /// writing below one root fails, the other is still tried.
  void CreateEXEAssociation(TextView exePath, TextView className, TextView classDescription,
                            TextView extension, TextView openMenuText, bool supportPrint,
                            TextView printMenuText, bool supportNew, TextView newMenuText,
                            bool supportInstall, TextView installMenuText,
                            std::int32_t defaultIconIndex);
  /// Adds menu entries to an existing class: triples of verb key, menu text and command line.
  /// Writes nothing if the items are not triples or the class does not exist below `ClassKey`.
  void CreateAdditionalEXEAssociations(TextView className, const std::vector<RegistryValue>& items);

  /// Kind to write; after a read, the kind found.
  std::int32_t valueType = 0;
  /// Result of a failed read.
  RegistryValue Default;

 private:
  /// Assigns the text below both roots; afterwards `ClassKey` is the second one.
  void SetDualClassValue(TextView text);
  /// The same for the default value of a key.
  void SetDualClassValue(TextView section, TextView text);

  Status Write(const RegistryValue& value);
  Status WriteAs(KeyHandle key, std::uint32_t kind, const NarrowText& data);
  Text ExpandEnvironment(const Text& text);
  KeyHandle Root() const { return ClassKey; }
  NarrowText Section() const { return store_.ToNarrow(SectionKey); }

  RegistryStore& store_;
  const Reading* reading_ = nullptr;
  RegistryValue lastAssigned_;
};

}  // namespace marl
