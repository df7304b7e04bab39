#include "settings/cRegistry.h"

#include <algorithm>
#include <array>
#include <utility>

namespace marl {
namespace {

/// Buffer size for names of sub-keys.
constexpr std::size_t kSectionBuffer = 255;

/// Buffer size for the first query of a value.
constexpr std::size_t kFirstBuffer = 256;

/// True if there is a percent sign and another one at least two characters later.
bool HoldsPercentName(TextView text) {
  const std::size_t first = text.find(u'%');
  return first != TextView::npos && text.find(u'%', first + 2) != TextView::npos;
}

std::int32_t SwapBytes(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return static_cast<std::int32_t>(bits >> 24 | (bits >> 8 & 0xFF00) | (bits << 8 & 0xFF0000) |
                                   bits << 24);
}

}  // namespace

bool cRegistry::KeyExists() {
  OpenKeyHandle key;
  return store_.OpenKey(Root(), Section(), kKeyQueryValue, key) == kOk;
}

bool cRegistry::CreateKey() {
  OpenKeyHandle key;
  return store_.CreateKey(Root(), Section(), kKeyAllBasic, key) == kOk;
}

bool cRegistry::DeleteKey() { return store_.DeleteKey(Root(), Section()) == kOk; }

bool cRegistry::DeleteValue() {
  OpenKeyHandle key;
  return store_.OpenKey(Root(), Section(), kKeyAllBasic, key) == kOk &&
         store_.DeleteValue(key.get(), store_.ToNarrow(ValueKey)) == kOk;
}

RegistryValue cRegistry::Value() {
  // If the key does not open, there is no handle and the query fails.
  OpenKeyHandle opened;
  if (!reading_) store_.OpenKey(Root(), Section(), kKeyQueryValue, opened);
  const KeyHandle key = reading_ ? reading_->key_.get() : opened.get();
  const NarrowText name = store_.ToNarrow(ValueKey);
  // Nearly all values fit, so that one query is enough.
  std::array<char, kFirstBuffer> first = {};
  std::uint32_t kind = 0;
  std::uint32_t size = 0;
  Status status = store_.QueryValue(key, name, kind, first, size);
  NarrowText data(first.data(), status == kOk ? std::min<std::size_t>(size, first.size()) : 0);
  // Another program may write a longer value between the queries: it is asked for once more.
  for (int tries = 0; status == kMoreData && tries < 2; ++tries) {
    data.assign(size, '\0');
    status = store_.QueryValue(key, name, kind, data, size);
    if (status == kOk) data.resize(size);
  }
  // It can also have been deleted meanwhile, or become longer again.
  if (status != kOk) return Default;
  valueType = static_cast<std::int32_t>(kind);

  if (IsTextKind(static_cast<std::uint32_t>(valueType))) {
    // Text of size 0 has no terminator to drop.
    if (data.empty()) return Default;
    data.pop_back();
    const Text text = store_.FromNarrow(data);
    return valueType == kRegExpandSz ? ExpandEnvironment(text) : text;
  }
  if (valueType == kRegDword || valueType == kRegDwordBigEndian) {
    // More than four bytes are no number.
    std::array<char, 4> bytes = {};
    if (data.size() <= bytes.size()) std::copy(data.begin(), data.end(), bytes.begin());
    const std::int32_t number = DwordValue({bytes.data(), bytes.size()});
    return valueType == kRegDword ? number : SwapBytes(number);
  }
  // The array's upper bound is the size, so it is one byte longer: sister programs rely on the zero
  // after the data.
  Bytes bytes(data.begin(), data.end());
  bytes.push_back(0);
  return bytes;
}

cRegistry::Reading::Reading(cRegistry& registry) : registry_(registry) {
  registry.store_.OpenKey(registry.Root(), registry.Section(), kKeyQueryValue, key_);
  registry.reading_ = this;
}

cRegistry::Reading::~Reading() { registry_.reading_ = nullptr; }

Text cRegistry::ExpandEnvironment(const Text& text) {
  const NarrowText source = store_.ToNarrow(text);
  const std::uint32_t needed = store_.ExpandEnvironment(source, {});
  if (needed == 0) return {};
  NarrowText expanded(needed, '\0');
  if (store_.ExpandEnvironment(source, expanded) == 0) return {};
  expanded.pop_back();
  return store_.FromNarrow(expanded);
}

bool cRegistry::SetValue(const RegistryValue& value) { return Write(value) == kOk; }

void cRegistry::Value(const RegistryValue& value) { Write(value); }

Status cRegistry::Write(const RegistryValue& value) {
  OpenKeyHandle key;
  if (const Status made = store_.CreateKey(Root(), Section(), kKeyAllBasic, key); made != kOk) {
    return made;
  }
  Status status = kTypeMismatch;
  switch (valueType) {
    case kRegSz:
    case kRegExpandSz: {
      const Text text = RegistryText(value);
      status = WriteAs(key.get(), HoldsPercentName(text) ? kRegExpandSz : kRegSz,
                       store_.ToNarrow(text) + '\0');
      break;
    }
    case kRegBinary:
      if (const auto* bytes = std::get_if<Bytes>(&value)) {
        // Two bytes fewer than there are: arrays that this class reads have one byte too many, and
        // the programs that share these values expect this count.
        status = bytes->size() < 2
                     ? kInvalidParameter
                     : WriteAs(key.get(), kRegBinary, NarrowText(bytes->begin(), bytes->end() - 2));
      }
      break;
    case kRegDword:
    case kRegDwordBigEndian:
      if (std::int32_t number = 0; RegistryInteger(value, number)) {
        status = WriteAs(key.get(), kRegDword, DwordBytes(number));
      }
      break;
    default: break;
  }
  lastAssigned_ = value;
  return status;
}

Status cRegistry::WriteAs(KeyHandle key, std::uint32_t kind, const NarrowText& data) {
  return store_.SetValue(key, store_.ToNarrow(ValueKey), kind, data);
}

bool cRegistry::EnumerateValues(std::vector<Text>& names, std::int32_t& count) {
  names.clear();
  count = 0;
  OpenKeyHandle key;
  if (store_.OpenKey(Root(), Section(), kKeyQueryValue, key) != kOk) return true;
  KeyInfo info;
  if (store_.QueryInfo(key.get(), info) != kOk) return true;
  NarrowText buffer(info.longestValueName + 1, '\0');
  std::uint32_t length = 0;
  std::uint32_t kind = 0;
  std::uint32_t size = 0;
  while (store_.EnumValue(key.get(), static_cast<std::uint32_t>(count), buffer, length, kind, {},
                          size) == kOk) {
    names.resize(static_cast<std::size_t>(++count) + 1);
    names.back() = store_.FromNarrow({buffer.data(), length});
  }
  return true;
}

bool cRegistry::EnumerateSections(std::vector<Text>& names, std::int32_t& count) {
  names.clear();
  count = 0;
  OpenKeyHandle key;
  if (store_.OpenKey(Root(), Section(), kKeyEnumerateSubKeys, key) != kOk) return true;
  NarrowText buffer(kSectionBuffer, '\0');
  while (store_.EnumKey(key.get(), static_cast<std::uint32_t>(count), buffer) == kOk) {
    names.resize(static_cast<std::size_t>(++count) + 1);
    names.back() = store_.FromNarrow(buffer.c_str());
  }
  return true;
}

}  // namespace marl
