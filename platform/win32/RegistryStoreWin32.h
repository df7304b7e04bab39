#pragma once

#include "platform/RegistryStore.h"

namespace marl::win32 {

/// The registry of this Windows, through advapi32's 8-bit entry points.
class RegistryStoreWin32 : public RegistryStore {
 public:
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
  Status Keep(long status, void* key, OpenKeyHandle& out);
};

}  // namespace marl::win32
