#include <map>
#include <optional>
#include <string>

#include "platform/memory/MemoryRegistryStore.h"
#include "settings/cRegistry.h"
#include "settings/clsRegistry.h"
#include "tests/unit/FuzzTarget.h"

namespace {

using namespace marl;

struct StoredValue {
  std::uint32_t kind = 0;
  std::string data;
};

/// What both classes store and read, by their rules: keys with named values.
class Model {
 public:
  using Key = std::map<std::string, StoredValue>;
  std::map<std::string, Key> keys;

  explicit Model(const RegistryStore& store) : store_(store) {}

  /// No name between two % signs is known; the expansion ends at the first NUL.
  static std::string Expanded(std::uint32_t kind, const std::string& text) {
    return kind == 2 ? std::string(text.c_str()) : text;
  }
  std::string Plain(const Text& text) const { return store_.ToNarrow(text); }
  Text Wide(const std::string& text) const { return store_.FromNarrow(text); }
  static bool HoldsName(const std::string& text) {
    const std::size_t first = text.find('%');
    return first != std::string::npos && text.find('%', first + 2) != std::string::npos;
  }
  static std::int32_t Number(const std::string& data) {
    std::uint32_t bits = 0;
    for (std::size_t i = 4; i > 0; --i) {
      bits = bits << 8 | (i <= data.size() ? static_cast<unsigned char>(data[i - 1]) : 0u);
    }
    return static_cast<std::int32_t>(bits);
  }

  /// The assignment of cRegistry.
  bool Assign(const std::string& key, const std::string& name, int type,
              const RegistryValue& value) {
    Key& values = keys[key];
    std::int32_t number = 0;
    switch (type) {
      case 1:
      case 2: {
        const std::string text = Plain(RegistryText(value));
        values[name] = {HoldsName(text) ? 2u : 1u, text + '\0'};
        return true;
      }
      case 3: {
        const auto* const bytes = std::get_if<Bytes>(&value);
        if (!bytes || bytes->size() < 2) return false;
        values[name] = {3, std::string(bytes->begin(), bytes->end() - 2)};
        return true;
      }
      case 4:
      case 5:
        if (!RegistryInteger(value, number)) return false;
        values[name] = {4, DwordBytes(number)};
        return true;
      default: return false;
    }
  }

  /// The write of clsRegistry.
  bool Set(const std::string& key, const std::string& name, int kind, const RegistryValue& value) {
    const auto found = keys.find(key);
    if (found == keys.end()) return false;
    std::int32_t number = 0;
    switch (kind) {
      case 1:
      case 2:
      case 7: {
        std::string text = Plain(RegistryText(value));
        if (!text.empty() && text.back() != '\0') text += '\0';
        found->second[name] = {static_cast<std::uint32_t>(kind), text};
        return true;
      }
      case 3: {
        const auto* const bytes = std::get_if<Bytes>(&value);
        if (!bytes) return false;
        found->second[name] = {3, std::string(bytes->begin(), bytes->end())};
        return true;
      }
      case 4:
        if (!RegistryInteger(value, number)) return false;
        found->second[name] = {4, DwordBytes(number)};
        return true;
      default: return true;
    }
  }

  const StoredValue* Find(const std::string& key, const std::string& name) const {
    const auto values = keys.find(key);
    if (values == keys.end()) return nullptr;
    const auto value = values->second.find(name);
    return value == values->second.end() ? nullptr : &value->second;
  }

  /// What cRegistry reads.
  RegistryValue Value(const std::string& key, const std::string& name,
                      const RegistryValue& otherwise) const {
    const StoredValue* const value = Find(key, name);
    if (!value) return otherwise;
    switch (value->kind) {
      case 3: {
        Bytes bytes(value->data.begin(), value->data.end());
        bytes.push_back(0);
        return bytes;
      }
      case 4: return Number(value->data);
      default:
        if (value->data.empty()) return otherwise;
        return Wide(Expanded(value->kind, value->data.substr(0, value->data.size() - 1)));
    }
  }

  /// What clsRegistry reads.
  RegistryValue Get(const std::string& key, const std::string& name,
                    const RegistryValue& otherwise) const {
    const StoredValue* const value = Find(key, name);
    if (!value) return otherwise;
    switch (value->kind) {
      case 3: return Bytes(value->data.begin(), value->data.end());
      case 4: return Number(value->data);
      case 7: {
        const std::size_t size = value->data.size();
        if (size <= 2 || value->data.front() == '\0') return otherwise;
        return Wide(value->data.substr(0, size - 2));
      }
      default:
        if (value->data.empty()) return otherwise;
        // As long as the call reports, and that is with the terminator.
        return Wide((Expanded(value->kind, value->data) + '\0').substr(0, value->data.size() - 1));
    }
  }

 private:
  const RegistryStore& store_;  // for the code page
};

/// Takes decisions from the input; 0 after its end.
class Source {
 public:
  Source(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool more() const { return at_ < size_; }
  int Below(int limit) { return at_ < size_ ? data_[at_++] % limit : 0; }
  RegistryValue Value() {
    switch (Below(5)) {
      case 0: return {};
      case 1: return static_cast<std::int16_t>(Below(256) << 8 | Below(256));
      case 2: return static_cast<std::int32_t>(Below(256) << 24 | Below(256));
      case 3: {
        Bytes bytes(static_cast<std::size_t>(Below(9)));
        for (auto& byte : bytes) byte = static_cast<unsigned char>(Below(256));
        return bytes;
      }
      default: {
        Text text;
        for (int left = Below(12); left > 0; --left) text += static_cast<char16_t>(32 + Below(95));
        return text;
      }
    }
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

}  // namespace

// Any sequence of operations of both registry classes on two keys, against a model.
MARL_FUZZ_TARGET(registry) {
  MemoryRegistryStore store;
  Model model(store);
  cRegistry cursor(store);
  clsRegistry accessor(store);
  cursor.ClassKey = accessor.hkey = kCurrentUser;
  accessor.KeyRoot = u"Software\\Fuzz";
  Source source(data, size);
  const RegistryValue otherwise = Text(u"(default)");
  cursor.Default = otherwise;
  // The root of both keys is there.
  cursor.SectionKey = u"Software\\Fuzz";
  cursor.CreateKey();
  while (source.more()) {
    const std::string key = source.Below(2) == 0 ? "a" : "b";
    static constexpr const char* kNames[] = {"", "v", "w"};
    const std::string name = kNames[source.Below(3)];
    cursor.SectionKey = u"Software\\Fuzz\\" + model.Wide(key);
    cursor.ValueKey = model.Wide(name);
    accessor.Subkey = model.Wide(key);
    const bool there = model.keys.contains(key);
    switch (source.Below(9)) {
      case 0:
        fuzz::Expect(cursor.KeyExists() == there && accessor.KeyExists() == there, "the key");
        break;
      case 1:
        fuzz::Expect(cursor.DeleteKey() == there, "a key that is there is deleted");
        model.keys.erase(key);
        break;
      case 2:
        fuzz::Expect(cursor.DeleteValue() == (model.Find(key, name) != nullptr),
                     "a value that is there is deleted");
        if (there) model.keys[key].erase(name);
        break;
      case 3:
        fuzz::Expect(accessor.CreateKey() == u"0", "a key is made");
        model.keys[key];
        break;
      case 4:
      case 5: {
        const int type = source.Below(8);
        const RegistryValue value = source.Value();
        cursor.valueType = type;
        fuzz::Expect(cursor.SetValue(value) == model.Assign(key, name, type, value),
                     "the assignment succeeds as the rules say");
        break;
      }
      case 6: {
        const int kind = source.Below(9);
        const RegistryValue value = source.Value();
        fuzz::Expect(accessor.SetRegistryValue(model.Wide(name), value, kind) ==
                         model.Set(key, name, kind, value),
                     "the write succeeds as the rules say");
        break;
      }
      case 7:
        fuzz::Expect(cursor.Value() == model.Value(key, name, otherwise), "the value of one class");
        break;
      default:
        fuzz::Expect(accessor.GetRegistryValue(model.Wide(name), otherwise) ==
                         model.Get(key, name, otherwise),
                     "the value of the other");
        break;
    }
    fuzz::Expect(store.OpenKeys() == 0, "no key stays open");
  }
}
