#include <algorithm>
#include <random>
#include <sstream>

#include "platform/memory/MemoryLocale.h"
#include "settings/cRegistry.h"
#include "settings/clsMRU.h"
#include "settings/clsRegistry.h"
#include "tests/contract/RegistryWorld.h"

namespace marl {
namespace {

/// Random use of both classes over the same keys, each call logged with its result.
class Use {
 public:
  Use(RegistryStore& store, const Text& root, unsigned seed)
      : cursor_(store), accessor_(store), list_(store, locale_), root_(root), random_(seed) {
    cursor_.ClassKey = kCurrentUser;
    accessor_.hkey = kCurrentUser;
    accessor_.KeyRoot = root;
    list_.hkey(kCurrentUser);
    list_.KeyRoot(root);
    list_.Subkey(u"a");
  }

  std::string Step() {
    log_.str({});
    const int operation = Draw(18);
    const Text key = Pick({u"a", u"b", u"a\\\u00C4", u"b\\x y"});
    const Text name = Pick({u"", u"v", u"V", u"MRU1", u"mru2", u"\u20AC", u"MRU3"});
    cursor_.SectionKey = root_ + u'\\' + key;
    cursor_.ValueKey = name;
    accessor_.Subkey = key;
    log_ << operation << ": ";
    switch (operation) {
      case 0: Tell(cursor_.KeyExists()); break;
      case 1: Tell(cursor_.CreateKey()); break;
      case 2: Tell(cursor_.DeleteKey()); break;
      case 3: Tell(cursor_.DeleteValue()); break;
      case 4:
      case 5: Tell(cursor_.Value()); break;
      case 6:
      case 7: cursor_.valueType = Draw(8); [[fallthrough]];
      case 8: Tell(cursor_.SetValue(Value())); break;
      case 9: Enumerate(&cRegistry::EnumerateValues); break;
      case 10: Enumerate(&cRegistry::EnumerateSections); break;
      case 11: Tell(accessor_.DeleteKey(key)); break;
      case 12: Tell(accessor_.DeleteValue(name)); break;
      case 13: Tell(accessor_.GetRegistryValue(name, std::int16_t{77})); break;
      case 14:
      case 15: {
        const std::int32_t kind = Draw(9);
        Tell(accessor_.SetRegistryValue(name, Value(), kind));
        break;
      }
      case 16: {
        auto values = accessor_.EnumRegistryValues(kCurrentUser, root_ + u'\\' + key);
        std::sort(values.begin(), values.end(),
                  [](const auto& a, const auto& b) { return a.name < b.name; });
        for (const auto& value : values) {
          Tell(value.name);
          Tell(value.data);
        }
        break;
      }
      case 17:
        list_.AddMRU(Pick({u"one", u"ONE", u"two", u"\u00E4", u"\u00C4"}));
        if (Draw(2) == 0) list_.SaveList();
        if (Draw(20) == 0) list_.LoadList();
        for (std::int32_t i = 1; i <= list_.Count(); ++i) Tell(list_.Item(i));
        break;
    }
    Tell(cursor_.valueType);
    return log_.str();
  }

 private:
  int Draw(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  Text Pick(const std::vector<Text>& of) {
    return of[static_cast<std::size_t>(Draw(static_cast<int>(of.size())))];
  }

  RegistryValue Value() {
    switch (Draw(6)) {
      case 0: return {};
      case 1: return static_cast<std::int16_t>(Draw(65536) - 32768);
      case 2: return static_cast<std::int32_t>(random_());
      case 3: {
        Bytes bytes(static_cast<std::size_t>(Draw(20)));
        for (auto& byte : bytes) byte = static_cast<unsigned char>(Draw(256));
        return bytes;
      }
      default: {
        Text text;
        for (int parts = Draw(6); parts > 0; --parts) {
          text += Pick({u"a", u"%", u"%ORU_USE%", u"\u20AC", Text(1, u'\0'), u"\u65E5", u"long "});
        }
        return text;
      }
    }
  }

  void Enumerate(bool (cRegistry::*enumerate)(std::vector<Text>&, std::int32_t&)) {
    std::vector<Text> names;
    std::int32_t count = 0;
    Tell((cursor_.*enumerate)(names, count));
    Tell(count);
    std::sort(names.begin(), names.end());
    for (const Text& name : names) Tell(name);
  }

  void Tell(const RegistryValue& value) {
    log_ << '#' << value.index() << ' ';
    if (const auto* bytes = std::get_if<Bytes>(&value)) {
      Tell(*bytes);
    } else {
      Tell(RegistryText(value));
    }
  }
  template <typename Result>
  void Tell(const Result& result) {
    log_ << testing::PrintToString(result) << ' ';
  }

  cRegistry cursor_;
  clsRegistry accessor_;
  MemoryLocale locale_;
  clsMRU list_;
  Text root_;
  std::mt19937 random_;
  std::ostringstream log_;
};

using RegistryClasses = RegistryTest;
MARL_OVER_ALL_BACKENDS(RegistryClasses);

TEST_P(RegistryClasses, RandomUseGivesTheSameEverywhere) {
  constexpr unsigned kSeed = 19991231;
  constexpr int kSteps = 10000;
  const auto memory = MakeRegistryWorld(Backend::kMemory);
  world().SetEnvironment("ORU_USE", "used");
  memory->SetEnvironment("ORU_USE", "used");
  OpenKeyHandle made;
  ASSERT_EQ(memory->store().CreateKey(kCurrentUser, path(), kKeyAllAccess, made), kOk);
  made.Reset();
  Use here(store(), wide(), kSeed);
  Use there(memory->store(), wide(), kSeed);
  for (int step = 0; step < kSteps; ++step) {
    const std::string result = here.Step();
    ASSERT_EQ(result, there.Step()) << "step " << step;
  }
}

}  // namespace
}  // namespace marl
