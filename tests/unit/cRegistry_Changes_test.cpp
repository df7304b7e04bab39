// Reading values that another program changes between two queries.

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "platform/memory/MemoryRegistryStore.h"
#include "settings/cRegistry.h"

namespace marl {
namespace {

constexpr char kKeyPath[] = "Software\\Oru\\Marl\\GUI";
// More than a first query takes.
const NarrowText kLong = NarrowText(300, 'a') + '\0';

/// A registry in which something happens after the first query of a value.
class ChangingRegistry : public MemoryRegistryStore {
 public:
  std::function<void()> change;
  bool expands = true;

  Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                    std::span<char> buffer, std::uint32_t& size) override {
    const Status status = MemoryRegistryStore::QueryValue(key, name, kind, buffer, size);
    if (change) std::exchange(change, nullptr)();
    return status;
  }
  std::uint32_t ExpandEnvironment(const NarrowText& source, std::span<char> buffer) override {
    if (!expands && !buffer.empty()) return 0;
    return MemoryRegistryStore::ExpandEnvironment(source, buffer);
  }
};

class ReadingChangedValues : public testing::Test {
 protected:
  ReadingChangedValues() {
    registry.ClassKey = kCurrentUser;
    registry.SectionKey = u"Software\\Oru\\Marl\\GUI";
    registry.ValueKey = u"v";
    registry.Default = kOtherwise;
  }
  void Put(std::uint32_t kind, const NarrowText& data) {
    store.Plant(kCurrentUser, kKeyPath, "v", kind, data);
  }
  /// What is read if `change` happens after the first query.
  RegistryValue Read(std::function<void()> change) {
    store.change = std::move(change);
    return registry.Value();
  }

  const RegistryValue kOtherwise = Text(u"the default");
  ChangingRegistry store;
  cRegistry registry{store};
};

TEST_F(ReadingChangedValues, DeletedValueGivesTheDefault) {
  for (const std::uint32_t kind : {kRegSz, kRegExpandSz, kRegBinary}) {
    Put(kind, kLong);
    EXPECT_EQ(Read([&] {
                OpenKeyHandle key;
                store.OpenKey(kCurrentUser, kKeyPath, kKeyAllAccess, key);
                store.DeleteValue(key.get(), "v");
              }),
              kOtherwise)
        << kind;
  }
}

TEST_F(ReadingChangedValues, LongerTextIsReadWhole) {
  Put(kRegSz, kLong);
  EXPECT_EQ(Read([&] { Put(kRegSz, NarrowText(1000, 'b') + '\0'); }),
            RegistryValue(Text(1000, u'b')));
}

TEST_F(ReadingChangedValues, TextThatBecomesLongerAgainGivesTheDefault) {
  Put(kRegSz, kLong);
  std::size_t length = 1000;
  const std::function<void()> grow = [&] {
    Put(kRegSz, NarrowText(length *= 2, 'b') + '\0');
    store.change = grow;
  };
  EXPECT_EQ(Read(grow), kOtherwise);
}

TEST_F(ReadingChangedValues, ShorterTextIsReadWhole) {
  Put(kRegSz, kLong);
  EXPECT_EQ(Read([&] { Put(kRegSz, NarrowText("short\0", 6)); }), RegistryValue(Text(u"short")));
}

TEST_F(ReadingChangedValues, OfAnotherKindIsReadAsWhatItIsNow) {
  Put(kRegSz, kLong);
  EXPECT_EQ(Read([&] { Put(kRegDword, NarrowText("\x07\0\0\0", 4)); }),
            RegistryValue(std::int32_t{7}));
  EXPECT_EQ(registry.valueType, std::int32_t{kRegDword});
}

TEST_F(ReadingChangedValues, FailedExpansionGivesNoText) {
  store.SetEnvironment("NAME", "value");
  store.expands = false;
  Put(kRegExpandSz, NarrowText("%NAME%\0", 7));
  EXPECT_EQ(registry.Value(), RegistryValue(Text()));
}

}  // namespace
}  // namespace marl
