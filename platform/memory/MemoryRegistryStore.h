#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "platform/RegistryStore.h"

namespace marl {

/// A registry in memory with the platform's rules: names that ignore case, access rights of open
/// keys, keys that cannot be deleted because of sub-keys, keys deleted while open, size protocol,
/// terminators, length limits. HKEY_CLASSES_ROOT shows Software\Classes of HKEY_LOCAL_MACHINE. The
/// system's code page is 1252. Values are enumerated in the order of creation.
class MemoryRegistryStore : public RegistryStore {
 public:
  MemoryRegistryStore();
  ~MemoryRegistryStore() override;

  /// The environment for ExpandEnvironment. Names ignore case.
  void SetEnvironment(const NarrowText& name, const NarrowText& value);
  /// A machine that ConnectRegistry reaches under this name, with its own roots.
  MemoryRegistryStore& AddMachine(const NarrowText& name);
  /// Stores a value's bytes unchanged, as a program with wide entry points could leave them: text
  /// without terminator, any length. Creates the key.
  void Plant(KeyHandle root, const NarrowText& path, const NarrowText& name, std::uint32_t kind,
             const NarrowText& data);
  struct Place {
    KeyHandle root = kNoKey;
    NarrowText path;
    NarrowText name;
    auto operator<=>(const Place&) const = default;
  };
  /// Keys that were opened by path from a root, or tried; `name` is empty.
  const std::set<Place>& OpenedPaths() const { return openedPaths_; }
  /// Values that were queried, existing or not.
  const std::set<Place>& AskedValues() const { return askedValues_; }
  /// Number of open keys.
  std::size_t OpenKeys() const { return open_.size(); }

  Status OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                 OpenKeyHandle& out) override;
  Status CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                   OpenKeyHandle& out) override;
  void CloseKey(KeyHandle key) override;
  Status DeleteKey(KeyHandle key, const NarrowText& path) override;
  Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                    std::span<char> buffer, std::uint32_t& size) override;
  Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                  const NarrowText& data) override;
  Status DeleteValue(KeyHandle key, const NarrowText& name) override;
  Status EnumKey(KeyHandle key, std::uint32_t index, std::span<char> name) override;
  Status EnumValue(KeyHandle key, std::uint32_t index, std::span<char> name,
                   std::uint32_t& nameLength, std::uint32_t& kind, std::span<char> data,
                   std::uint32_t& size) override;
  Status QueryInfo(KeyHandle key, KeyInfo& out) override;
  Status ConnectRegistry(const NarrowText& machine, KeyHandle root, OpenKeyHandle& out) override;
  std::uint32_t ExpandEnvironment(const NarrowText& source, std::span<char> buffer) override;
  NarrowText ToNarrow(TextView text) const override;
  Text FromNarrow(std::string_view text) const override;

 private:
  struct Node;
  struct Opened {
    std::shared_ptr<Node> node;
    std::uint32_t access = 0;
    Place place = {};  ///< its place, without a name
  };

  Status Find(KeyHandle key, Opened& out) const;
  Status Find(KeyHandle key, std::uint32_t needed, std::shared_ptr<Node>& out) const;
  Status Walk(KeyHandle key, const NarrowText& path, bool make, std::shared_ptr<Node>& out);
  Status Open(std::shared_ptr<Node> node, std::uint32_t access, Place place, OpenKeyHandle& out);
  Place PlaceOf(KeyHandle key, const NarrowText& path) const;

  std::map<KeyHandle, std::shared_ptr<Node>> roots_;
  std::map<KeyHandle, Opened> open_;
  std::set<Place> openedPaths_;
  std::set<Place> askedValues_;
  KeyHandle next_ = 0x10;
  std::map<Text, NarrowText> environment_;
  std::map<Text, std::unique_ptr<MemoryRegistryStore>> machines_;
};

}  // namespace marl
