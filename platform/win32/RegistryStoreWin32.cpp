#include "platform/win32/RegistryStoreWin32.h"

#include <windows.h>

#include "platform/win32/CodePage.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {
namespace {

/// The platform's handle. The 32-bit number of a root is sign-extended.
HKEY Key(KeyHandle key) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(key)));
}

std::atomic<int>& LiveKeys() { return g_liveHandles[static_cast<int>(HandleKind::kKey)]; }

DWORD Size(std::span<char> buffer) { return static_cast<DWORD>(buffer.size()); }
BYTE* Data(std::span<char> buffer) { return reinterpret_cast<BYTE*>(buffer.data()); }

}  // namespace

Status RegistryStoreWin32::Keep(long status, void* key, OpenKeyHandle& out) {
  out.Reset();
  if (status == ERROR_SUCCESS) {
    // Handles of the platform fit in 32 bits in every process.
    const auto number = static_cast<std::uint32_t>(reinterpret_cast<ULONG_PTR>(key));
    out = OpenKeyHandle(*this, number);
    ++LiveKeys();
  }
  return static_cast<Status>(status);
}

Status RegistryStoreWin32::OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                                   OpenKeyHandle& out) {
  HKEY opened = nullptr;
  const LONG status = RegOpenKeyExA(Key(key), path.c_str(), 0, access, &opened);
  return Keep(status, opened, out);
}

Status RegistryStoreWin32::CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                                     OpenKeyHandle& out) {
  HKEY opened = nullptr;
  char noClass[] = "";
  SECURITY_ATTRIBUTES security = {sizeof(security), nullptr, FALSE};
  const LONG status =
      RegCreateKeyExA(Key(key), path.c_str(), 0, noClass, 0, access, &security, &opened, nullptr);
  return Keep(status, opened, out);
}

void RegistryStoreWin32::CloseKey(KeyHandle key) {
  RegCloseKey(Key(key));
  --LiveKeys();
}

Status RegistryStoreWin32::DeleteKey(KeyHandle key, const NarrowText& path) {
  return static_cast<Status>(RegDeleteKeyA(Key(key), path.c_str()));
}

Status RegistryStoreWin32::QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                                      std::span<char> buffer, std::uint32_t& size) {
  DWORD type = 0;
  DWORD length = Size(buffer);
  const LONG status =
      RegQueryValueExA(Key(key), name.c_str(), nullptr, &type, Data(buffer), &length);
  if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
    kind = type;
    size = length;
  }
  return static_cast<Status>(status);
}

Status RegistryStoreWin32::SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                                    const NarrowText& data) {
  return static_cast<Status>(RegSetValueExA(Key(key), name.c_str(), 0, kind,
                                            reinterpret_cast<const BYTE*>(data.c_str()),
                                            static_cast<DWORD>(data.size())));
}

Status RegistryStoreWin32::DeleteValue(KeyHandle key, const NarrowText& name) {
  return static_cast<Status>(RegDeleteValueA(Key(key), name.c_str()));
}

Status RegistryStoreWin32::EnumKey(KeyHandle key, std::uint32_t index, std::span<char> name) {
  return static_cast<Status>(RegEnumKeyA(Key(key), index, name.data(), Size(name)));
}

Status RegistryStoreWin32::EnumValue(KeyHandle key, std::uint32_t index, std::span<char> name,
                                     std::uint32_t& nameLength, std::uint32_t& kind,
                                     std::span<char> data, std::uint32_t& size) {
  DWORD type = 0;
  DWORD units = Size(name);
  DWORD length = Size(data);
  const LONG status =
      RegEnumValueA(Key(key), index, name.data(), &units, nullptr, &type, Data(data), &length);
  if (status == ERROR_SUCCESS) {
    nameLength = units;
    kind = type;
  }
  if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) size = length;
  return static_cast<Status>(status);
}

Status RegistryStoreWin32::QueryInfo(KeyHandle key, KeyInfo& out) {
  DWORD subKeys = 0, longestSubKey = 0, values = 0, longestName = 0;
  const LONG status =
      RegQueryInfoKeyA(Key(key), nullptr, nullptr, nullptr, &subKeys, &longestSubKey, nullptr,
                       &values, &longestName, nullptr, nullptr, nullptr);
  if (status == ERROR_SUCCESS) out = {subKeys, longestSubKey, values, longestName};
  return static_cast<Status>(status);
}

Status RegistryStoreWin32::ConnectRegistry(const NarrowText& machine, KeyHandle root,
                                           OpenKeyHandle& out) {
  HKEY opened = nullptr;
  const LONG status =
      RegConnectRegistryA(machine.empty() ? nullptr : machine.c_str(), Key(root), &opened);
  return Keep(status, opened, out);
}

std::uint32_t RegistryStoreWin32::ExpandEnvironment(const NarrowText& source,
                                                    std::span<char> buffer) {
  const auto text = SourceToExpand(source);
  if (!text) return 0;
  // The size that this function names in advance is one too large ("plus one" in its
  // documentation), and a buffer without that one may get nothing. Some versions of Wine do
  // neither.
  NarrowText whole;
  DWORD needed = ExpandEnvironmentStringsA(text->c_str(), nullptr, 0);
  while (needed > whole.size()) {
    whole.resize(needed);
    needed = ExpandEnvironmentStringsA(text->c_str(), whole.data(), Size(whole));
  }
  return Deliver(whole.c_str(), buffer);
}

NarrowText RegistryStoreWin32::ToNarrow(TextView text) const { return ToCodePage(text); }

Text RegistryStoreWin32::FromNarrow(std::string_view text) const {
  return FromSystemCodePage(text);
}

}  // namespace marl::win32
