#pragma once

#include <map>
#include <ostream>

#include "platform/RegistryStore.h"
#include "settings/RegistryValue.h"

namespace marl {

/// A value as stored in the registry: its kind and every byte.
struct Stored {
  std::uint32_t kind = 0;
  NarrowText bytes;
  bool operator==(const Stored&) const = default;
};

inline void PrintTo(const Stored& stored, std::ostream* out) {
  *out << stored.kind << ':';
  for (const char byte : stored.bytes) *out << ' ' << int{static_cast<unsigned char>(byte)};
}

inline Stored Dword(std::int32_t value) { return {kRegDword, DwordBytes(value)}; }
inline Stored Sz(const NarrowText& text) { return {kRegSz, text + '\0'}; }

using StoredValues = std::map<NarrowText, Stored>;

inline bool HasKey(RegistryStore& store, KeyHandle root, const NarrowText& path) {
  OpenKeyHandle key;
  return store.OpenKey(root, path, kKeyQueryValue, key) == kOk;
}

/// All values of a key, by name; none if there is no key.
inline StoredValues ValuesOf(RegistryStore& store, KeyHandle root, const NarrowText& path) {
  StoredValues all;
  OpenKeyHandle key;
  if (store.OpenKey(root, path, kKeyQueryValue, key) != kOk) return all;
  NarrowText name(300, '\0');
  NarrowText data(70000, '\0');
  for (std::uint32_t index = 0;; ++index) {
    std::uint32_t length = 0;
    std::uint32_t kind = 0;
    auto size = static_cast<std::uint32_t>(data.size());
    if (store.EnumValue(key.get(), index, name, length, kind, data, size) != kOk) return all;
    all[name.substr(0, length)] = {kind, data.substr(0, size)};
  }
}

}  // namespace marl
