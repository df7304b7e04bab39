#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "platform/Status.h"
#include "platform/Text.h"

namespace marl {

/// Handle of an open key, or one of the roots below. 0 is no key.
using KeyHandle = std::uint64_t;
constexpr KeyHandle kNoKey = 0;

/// The roots of the tree, with the platform's numbers.
enum RootKey : std::uint32_t {
  kClassesRoot = 0x80000000,
  kCurrentUser = 0x80000001,
  kLocalMachine = 0x80000002,
};

/// The kinds of a value. A stored kind may be any other number too.
enum ValueKind : std::uint32_t {
  kRegNone = 0,
  kRegSz = 1,
  kRegExpandSz = 2,
  kRegBinary = 3,
  kRegDword = 4,
  kRegDwordBigEndian = 5,
  kRegLink = 6,
  kRegMultiSz = 7,
};

/// True for the kinds whose data is text.
constexpr bool IsTextKind(std::uint32_t kind) {
  return kind == kRegSz || kind == kRegExpandSz || kind == kRegMultiSz;
}

/// Access rights of an open key.
enum KeyAccess : std::uint32_t {
  kKeyQueryValue = 1,
  kKeySetValue = 2,
  kKeyEnumerateSubKeys = 8,
  kKeyAllBasic = 0x3F,
  kKeyRead = 0x20019,
  kKeyWrite = 0x20006,
  kKeyAllAccess = 0xF003F,
};

/// Results of RegQueryInfoKeyA. Lengths are in bytes, without terminator.
struct KeyInfo {
  std::uint32_t subKeys = 0;
  std::uint32_t longestSubKey = 0;
  std::uint32_t values = 0;
  std::uint32_t longestValueName = 0;
};

class RegistryStore;

/// Owns an open key; the destructor closes it.
class OpenKeyHandle {
 public:
  OpenKeyHandle() = default;
  OpenKeyHandle(RegistryStore& store, KeyHandle key) : store_(&store), key_(key) {}
  OpenKeyHandle(OpenKeyHandle&& other) noexcept
      : store_(other.store_), key_(std::exchange(other.key_, kNoKey)) {}
  inline OpenKeyHandle& operator=(OpenKeyHandle&& other) noexcept;
  inline ~OpenKeyHandle();

  /// kNoKey if nothing is open.
  KeyHandle get() const { return key_; }
  inline void Reset();

 private:
  RegistryStore* store_ = nullptr;
  KeyHandle key_ = kNoKey;
};

/// The registry through its 8-bit entry points: keys and values by name, data as bytes and kinds,
/// results as the platform's status codes. Names and text data are in the system's code page; names
/// end at their first NUL and ignore case, and backslashes separate the keys of a path. What the
/// bytes mean is decided by the callers.
///
/// Each `key` is an open key or a root. On failure, outputs are unchanged unless stated otherwise.
/// Common failures: kInvalidHandle for kNoKey, kFileNotFound for a missing key or value,
/// kAccessDenied without the necessary access right, kKeyDeleted for an open key that has been
/// deleted.
class RegistryStore {
 public:
  virtual ~RegistryStore() = default;

  /// RegOpenKeyExA. An empty path opens `key` again. `out` is empty on failure.
  virtual Status OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                         OpenKeyHandle& out) = 0;
  /// RegCreateKeyExA, class "", options 0: opens the key, creating missing keys of the path.
  virtual Status CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                           OpenKeyHandle& out) = 0;
  /// RegCloseKey; called by OpenKeyHandle.
  virtual void CloseKey(KeyHandle key) = 0;
  /// RegDeleteKeyA. A key with sub-keys is not deleted: kAccessDenied.
  virtual Status DeleteKey(KeyHandle key, const NarrowText& path) = 0;

  /// RegQueryValueExA. A null buffer asks for kind and size only. kMoreData if the data does not
  /// fit: `kind` and `size` are set, the buffer is unchanged. If the value is missing, `size` is
  /// unchanged. Text that was stored without a terminator is returned without it.
  virtual Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                            std::span<char> buffer, std::uint32_t& size) = 0;
  /// RegSetValueExA with all bytes of `data`, followed by a zero byte in memory. For text kinds the
  /// platform checks that byte: data that is not empty and does not end in NUL is stored with one.
  virtual Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                          const NarrowText& data) = 0;
  /// RegDeleteValueA.
  virtual Status DeleteValue(KeyHandle key, const NarrowText& name) = 0;

  /// RegEnumKeyA, RegEnumKeyExA: name of the sub-key at `index` with its terminator. kMoreData if
  /// the buffer is too short for both, kNoMoreItems after the last. Sub-keys are sorted by name.
  virtual Status EnumKey(KeyHandle key, std::uint32_t index, std::span<char> name) = 0;
  /// RegEnumValueA: name of the value at `index` with its terminator, `nameLength` without it, and
  /// data as with QueryValue. kMoreData if either does not fit: `size` is set then, names and data
  /// are undefined. Values come in any order.
  virtual Status EnumValue(KeyHandle key, std::uint32_t index, std::span<char> name,
                           std::uint32_t& nameLength, std::uint32_t& kind, std::span<char> data,
                           std::uint32_t& size) = 0;
  /// RegQueryInfoKeyA; needs a key opened for kKeyQueryValue.
  virtual Status QueryInfo(KeyHandle key, KeyInfo& out) = 0;

  /// RegConnectRegistryA: a root of another machine's registry; an empty name is this machine.
  virtual Status ConnectRegistry(const NarrowText& machine, KeyHandle root, OpenKeyHandle& out) = 0;

  /// ExpandEnvironmentStringsA: replaces each %NAME% that is set in the environment. Returns the
  /// size of the whole expansion with its terminator, even if the buffer is too short: a buffer of
  /// n bytes then gets the first n - 1 and a terminator. 0 for a source of more than kLongestSource
  /// bytes, with the buffer unchanged.
  virtual std::uint32_t ExpandEnvironment(const NarrowText& source, std::span<char> buffer) = 0;

  /// Of an expansion: the platform's texts have at most 65,534 bytes, and longer ones crash some
  /// versions of Wine.
  static constexpr std::size_t kLongestSource = 32'766;
  /// The source up to its first NUL, if it can be expanded.
  static std::optional<NarrowText> SourceToExpand(const NarrowText& source) {
    const std::string_view text = source.c_str();
    if (text.size() > kLongestSource) return {};
    return NarrowText(text);
  }
  /// What ExpandEnvironment does with the whole expansion.
  static std::uint32_t Deliver(std::string_view expansion, std::span<char> buffer) {
    if (!buffer.empty()) {
      buffer[expansion.copy(buffer.data(), buffer.size() - 1)] = '\0';
    }
    return static_cast<std::uint32_t>(expansion.size()) + 1;
  }

  /// Text to the system's code page (WideCharToMultiByte): a missing character becomes the most
  /// similar one, or a question mark.
  virtual NarrowText ToNarrow(TextView text) const = 0;
  /// Text from the system's code page (MultiByteToWideChar).
  virtual Text FromNarrow(std::string_view text) const = 0;
};

OpenKeyHandle::~OpenKeyHandle() { Reset(); }

OpenKeyHandle& OpenKeyHandle::operator=(OpenKeyHandle&& other) noexcept {
  if (this != &other) {
    Reset();
    store_ = other.store_;
    key_ = std::exchange(other.key_, kNoKey);
  }
  return *this;
}

void OpenKeyHandle::Reset() {
  if (key_ != kNoKey) store_->CloseKey(std::exchange(key_, kNoKey));
}

}  // namespace marl
