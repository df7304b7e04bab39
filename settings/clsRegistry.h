#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/RegistryStore.h"
#include "settings/RegistryValue.h"

namespace marl {

/// Values of one registry key by name: set `hkey`, `KeyRoot` and `Subkey` once, then name values.
/// The key is always `KeyRoot`, a backslash and `Subkey`. Writing does not make the key. No
/// failure is raised, and no key stays open between calls.
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
  /// Makes the key `KeyRoot`\`name`, or `KeyRoot`\`Subkey`. Gives "0", or nothing on failure.
  Text CreateKey(std::optional<TextView> name = std::nullopt);
  /// Deletes `KeyRoot`\`name`; gives the platform's status.
  Status DeleteKey(TextView name);
  /// Gives the status of opening the key or of the deletion.
  Status DeleteValue(TextView name);
  /// Names of the keys below `path`, or below the root itself when it is empty.
  std::vector<Text> EnumRegistryKeys(std::uint32_t root, TextView path);
  /// Names and data of the key's values. Binary data comes as pairs of hexadecimal digits, a
  /// multi-string with commas, REG_EXPAND_SZ expanded, REG_DWORD in decimal, other kinds as
  /// nothing.
  std::vector<NamedData> EnumRegistryValues(std::uint32_t root, TextView path);

  /// The value, or `fallback` when key or value are missing, the text has no bytes, the
  /// multi-string is empty or the kind is another. REG_EXPAND_SZ is expanded within the room of
  /// the stored text, and its length counts the expansion's terminator where that fits.
  RegistryValue GetRegistryValue(TextView name, const RegistryValue& fallback = {});
  /// Writes the value as `kind`; text without its terminator counted. False when the key does not
  /// open, the store refuses or the value does not fit. Kinds 5, 6 and unknown ones write nothing
  /// and are a success.
  bool SetRegistryValue(TextView name, const RegistryValue& value, std::int32_t kind);
  /// The same on another machine (RegConnectRegistryA). "Error!" when it is not reached.
  RegistryValue ReadRemoteRegistryValue(TextView machine, std::uint32_t root, TextView name,
                                        const RegistryValue& fallback = {});
  /// -1 when written, 0 when not, as 16-bit integers; "Error!" when the machine is not reached.
  RegistryValue WriteRemoteRegistryValue(TextView machine, std::uint32_t root, TextView name,
                                         const RegistryValue& value, std::int32_t kind);
  /// All before the first NUL.
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
