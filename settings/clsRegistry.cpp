#include "settings/clsRegistry.h"

#include <algorithm>

#include "support/Numbers.h"

namespace marl {
namespace {

constexpr std::size_t kNameBuffer = 260;
constexpr std::size_t kValueBuffer = 1024;
constexpr std::size_t kEnumBuffer = 4096;
constexpr const char16_t* kNotReached = u"Error!";

std::string_view Without(std::string_view data, std::size_t count) {
  return data.substr(0, data.size() - std::min(count, data.size()));
}

/// Replaces `key` by the key at `path` below it; an empty path keeps it. False if it cannot be
/// opened.
bool OpenBelow(RegistryStore& store, TextView path, OpenKeyHandle& opened, KeyHandle& key) {
  if (path.empty()) return true;
  if (store.OpenKey(key, store.ToNarrow(path), kKeyRead, opened) != kOk) return false;
  key = opened.get();
  return true;
}

}  // namespace

NarrowText clsRegistry::Path(TextView below) const {
  Text path = KeyRoot;
  path += u'\\';
  path += below;
  return store_.ToNarrow(path);
}

bool clsRegistry::KeyExists() {
  OpenKeyHandle key;
  return store_.OpenKey(hkey, Path(Subkey), kKeyRead, key) == kOk;
}

Text clsRegistry::CreateKey(std::optional<TextView> name) {
  OpenKeyHandle key;
  const Status status =
      store_.CreateKey(hkey, Path(name ? *name : TextView(Subkey)), kKeyAllAccess, key);
  return status == kOk ? u"0" : u"";
}

Status clsRegistry::DeleteKey(TextView name) { return store_.DeleteKey(hkey, Path(name)); }

Status clsRegistry::DeleteValue(TextView name) {
  OpenKeyHandle key;
  const Status status = store_.OpenKey(hkey, Path(Subkey), kKeyAllAccess, key);
  return status == kOk ? store_.DeleteValue(key.get(), store_.ToNarrow(name)) : status;
}

std::vector<Text> clsRegistry::EnumRegistryKeys(std::uint32_t root, TextView path) {
  std::vector<Text> names;
  OpenKeyHandle opened;
  KeyHandle key = root;
  if (!OpenBelow(store_, path, opened, key)) return names;
  NarrowText name(kNameBuffer, '\0');
  for (std::uint32_t index = 0;; ++index) {
    const Status status = store_.EnumKey(key, index, name);
    if (status == kMoreData) continue;
    if (status != kOk) return names;
    names.push_back(store_.FromNarrow(name.c_str()));
  }
}

std::vector<clsRegistry::NamedData> clsRegistry::EnumRegistryValues(std::uint32_t root,
                                                                    TextView path) {
  std::vector<NamedData> values;
  OpenKeyHandle opened;
  KeyHandle key = root;
  if (!OpenBelow(store_, path, opened, key)) return values;
  NarrowText name(kNameBuffer, '\0');
  NarrowText data(kEnumBuffer, '\0');
  for (std::uint32_t index = 0;; ++index) {
    std::uint32_t length = 0;
    std::uint32_t kind = 0;
    std::uint32_t size = 0;
    Status status = store_.EnumValue(key, index, name, length, kind, data, size);
    if (status == kMoreData && size > data.size()) {
      data.resize(size);
      status = store_.EnumValue(key, index, name, length, kind, data, size);
    }
    // The remaining case is a name that does not fit the buffer.
    if (status == kMoreData) continue;
    if (status != kOk) return values;
    values.push_back(
        {store_.FromNarrow({name.data(), length}), DataText(kind, {data.data(), size})});
  }
}

Text clsRegistry::DataText(std::uint32_t kind, std::string_view data) {
  switch (kind) {
    case kRegSz: return store_.FromNarrow(Without(data, 1));
    case kRegExpandSz: {
      const NarrowText source(Without(data, 1));
      return ExpandWithin(source, store_.ExpandEnvironment(source, {}));
    }
    case kRegMultiSz: {
      Text text = store_.FromNarrow(Without(data, 2));
      std::replace(text.begin(), text.end(), u'\0', u',');
      return text;
    }
    case kRegBinary: {
      constexpr const char16_t* kDigits = u"0123456789ABCDEF";
      Text text;
      for (const char at : data) {
        const auto byte = static_cast<unsigned char>(at);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
      }
      return text;
    }
    case kRegDword: return NumberText(DwordValue(data));
    default: return {};
  }
}

RegistryValue clsRegistry::GetRegistryValue(TextView name, const RegistryValue& fallback) {
  return Get(hkey, name, fallback);
}

RegistryValue clsRegistry::Get(KeyHandle root, TextView name, const RegistryValue& fallback) {
  OpenKeyHandle key;
  if (store_.OpenKey(root, Path(Subkey), kKeyRead, key) != kOk) return fallback;
  const NarrowText narrow = store_.ToNarrow(name);
  NarrowText buffer(kValueBuffer, '\0');
  std::uint32_t kind = 0;
  std::uint32_t size = 0;
  Status status = store_.QueryValue(key.get(), narrow, kind, buffer, size);
  if (status == kMoreData) {
    buffer.resize(size);
    status = store_.QueryValue(key.get(), narrow, kind, buffer, size);
  }
  if (status != kOk) return fallback;

  const std::string_view data(buffer.data(), size);
  switch (kind) {
    case kRegSz:
      if (data.empty()) return fallback;
      return store_.FromNarrow(Without(data, 1));
    case kRegExpandSz:
      if (data.empty()) return fallback;
      // The buffer is as long as the stored text with its terminator; there is no second try.
      return ExpandWithin(NarrowText(Without(data, 1)), data.size());
    case kRegBinary: return Bytes(data.begin(), data.end());
    case kRegDword: return DwordValue(data);
    case kRegMultiSz: {
      Text text = store_.FromNarrow(Without(data, 2));
      if (TrimNull(text).empty()) return fallback;
      return text;
    }
    default: return fallback;
  }
}

bool clsRegistry::SetRegistryValue(TextView name, const RegistryValue& value, std::int32_t kind) {
  return Set(hkey, name, value, kind);
}

bool clsRegistry::Set(KeyHandle root, TextView name, const RegistryValue& value,
                      std::int32_t kind) {
  OpenKeyHandle key;
  if (store_.OpenKey(root, Path(Subkey), kKeyWrite, key) != kOk) return false;
  NarrowText data;
  switch (kind) {
    case kRegSz:
    case kRegExpandSz:
    case kRegMultiSz: data = store_.ToNarrow(RegistryText(value)); break;
    case kRegBinary: {
      const auto* bytes = std::get_if<Bytes>(&value);
      if (!bytes) return false;
      data.assign(bytes->begin(), bytes->end());
      break;
    }
    case kRegDword: {
      std::int32_t number = 0;
      if (!RegistryInteger(value, number)) return false;
      data = DwordBytes(number);
      break;
    }
    default: return true;
  }
  return store_.SetValue(key.get(), store_.ToNarrow(name), static_cast<std::uint32_t>(kind),
                         data) == kOk;
}

RegistryValue clsRegistry::ReadRemoteRegistryValue(TextView machine, std::uint32_t root,
                                                   TextView name, const RegistryValue& fallback) {
  OpenKeyHandle remote;
  if (store_.ConnectRegistry(store_.ToNarrow(machine), root, remote) != kOk) {
    return Text(kNotReached);
  }
  return Get(remote.get(), name, fallback);
}

RegistryValue clsRegistry::WriteRemoteRegistryValue(TextView machine, std::uint32_t root,
                                                    TextView name, const RegistryValue& value,
                                                    std::int32_t kind) {
  OpenKeyHandle remote;
  if (store_.ConnectRegistry(store_.ToNarrow(machine), root, remote) != kOk) {
    return Text(kNotReached);
  }
  return static_cast<std::int16_t>(Set(remote.get(), name, value, kind) ? -1 : 0);
}

Text clsRegistry::ExpandWithin(const NarrowText& text, std::size_t room) {
  // `room` includes the terminator; the result has all characters before it, or as many as the call
  // reports.
  NarrowText buffer(room, '\0');
  const std::uint32_t reported = store_.ExpandEnvironment(text, buffer);
  if (!buffer.empty()) buffer.pop_back();
  return store_.FromNarrow(std::string_view(buffer).substr(0, reported));
}

Text clsRegistry::TrimNull(TextView text) { return Text(text.substr(0, text.find(u'\0'))); }

}  // namespace marl
