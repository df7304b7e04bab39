#pragma once

#include <vector>

#include "platform/memory/MemoryRegistryStore.h"

namespace marl {

/// A registry in memory that records writes, and refuses one root on request.
class WatchedRegistry : public MemoryRegistryStore {
 public:
  /// A value written: root, key and data as the caller gave them.
  struct Written {
    std::uint32_t root;
    NarrowText path;
    NarrowText name;
    std::uint32_t kind;
    NarrowText data;
    bool operator==(const Written&) const = default;
  };

  /// A key that was opened or created: root, path and requested access.
  struct Opened {
    std::uint32_t root;
    NarrowText path;
    std::uint32_t access;
    bool operator==(const Opened&) const = default;
  };

  std::vector<Written> written;
  std::vector<Opened> opened;
  KeyHandle refusedRoot = kNoKey;
  bool refuseWriting = false;

  Status OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                 OpenKeyHandle& out) override {
    opened.push_back({static_cast<std::uint32_t>(key), path, access});
    return MemoryRegistryStore::OpenKey(key, path, access, out);
  }
  Status CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                   OpenKeyHandle& out) override {
    opened.push_back({static_cast<std::uint32_t>(key), path, access});
    if (key == refusedRoot) return kAccessDenied;
    root_ = static_cast<std::uint32_t>(key);
    path_ = path;
    return MemoryRegistryStore::CreateKey(key, path, access, out);
  }
  Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                  const NarrowText& data) override {
    if (refuseWriting) return kAccessDenied;
    written.push_back({root_, path_, name, kind, data});
    return MemoryRegistryStore::SetValue(key, name, kind, data);
  }

 private:
  std::uint32_t root_ = 0;
  NarrowText path_;
};

}  // namespace marl
