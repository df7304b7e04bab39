#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/RegistryStore.h"
#include "settings/RegistryValue.h"

namespace marl {

/// Values of one registry key by name, for lists and single values: set `hkey`, `KeyRoot` and
/// `Subkey` once, then pass value names. The key is always `KeyRoot`, a backslash and `Subkey`.
/// Writing does not create the key. Nothing throws, and no key stays open between calls.
/// `cRegistry` is the class for several settings of one key.
class clsRegistry {
 public:
  explicit clsRegistry(RegistryStore& store) : store_(store) {}

  /// A value's name and its data as text.
  struct NamedData {
    Text name;
    Text data;
    bool operator==(const NamedData&) const = default;
  };

  /// Root handle, one of RootKey.
  std::uint32_t hkey = 0;
  Text KeyRoot;
  Text Subkey;

  bool KeyExists();
  /// Creates the key `KeyRoot`\`name`, or `KeyRoot`\`Subkey`. Returns "0", or nothing on failure.
  Text CreateKey(std::optional<TextView> name = std::nullopt);
  /// Deletes `KeyRoot`\`name`; returns the platform's status.
  Status DeleteKey(TextView name);
  /// Returns the status of opening the key or of the deletion.
  Status DeleteValue(TextView name);
  /// Names of the keys below `path`, or below the root itself if it is empty.
  std::vector<Text> EnumRegistryKeys(std::uint32_t root, TextView path);
  /// Names and data of the key's values. Binary data becomes pairs of hexadecimal digits, a
  /// multi-string is joined with commas, REG_EXPAND_SZ is expanded, REG_DWORD is decimal, other
  /// kinds are empty.
  std::vector<NamedData> EnumRegistryValues(std::uint32_t root, TextView path);

  /// The value, or `fallback` if key or value are missing, the text has no bytes, the multi-string
  /// is empty or the kind is another. REG_EXPAND_SZ is expanded into a buffer of the stored text's
  /// size; the length includes the expansion's terminator if it fits.
  RegistryValue GetRegistryValue(TextView name, const RegistryValue& fallback = {});
  /// Writes the value as `kind`; the size of text does not include its terminator. False if the key
  /// does not open, the store refuses or the value does not match. Kinds 5, 6 and unknown ones
  /// write nothing and succeed.
  bool SetRegistryValue(TextView name, const RegistryValue& value, std::int32_t kind);
  /// The same on another machine (RegConnectRegistryA). "Error!" if it cannot be reached.
  RegistryValue ReadRemoteRegistryValue(TextView machine, std::uint32_t root, TextView name,
                                        const RegistryValue& fallback = {});
  /// -1 if written, 0 if not, as 16-bit integers; "Error!" if the machine cannot be reached.
  RegistryValue WriteRemoteRegistryValue(TextView machine, std::uint32_t root, TextView name,
                                         const RegistryValue& value, std::int32_t kind);
  /// The text before the first NUL.
  static Text TrimNull(TextView text);

 private:
  RegistryValue Get(KeyHandle root, TextView name, const RegistryValue& fallback);
  bool Set(KeyHandle root, TextView name, const RegistryValue& value, std::int32_t kind);
  Text ExpandWithin(const NarrowText& text, std::size_t room);
  Text DataText(std::uint32_t kind, std::string_view data);
  NarrowText Path(TextView below) const;

  RegistryStore& store_;
};

}  // namespace marl
