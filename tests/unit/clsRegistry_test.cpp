#include "settings/clsRegistry.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryLocale.h"
#include "settings/cRegistry.h"
#include "settings/clsMRU.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

// Cases that a real registry cannot be brought into by a test.

clsRegistry OnTestKey(RegistryStore& store) {
  clsRegistry registry(store);
  registry.hkey = kCurrentUser;
  registry.KeyRoot = u"Software";
  registry.Subkey = u"Test";
  return registry;
}

TEST(clsRegistryOnMemory, TextIsPassedWithoutItsTerminatorCounted) {
  WatchedRegistry store;
  clsRegistry registry = OnTestKey(store);
  ASSERT_EQ(registry.CreateKey(), u"0");
  for (const std::int32_t kind : {1, 2, 7}) {
    store.written.clear();
    EXPECT_TRUE(registry.SetRegistryValue(u"v", Text(u"text"), kind));
    ASSERT_EQ(store.written.size(), 1u);
    EXPECT_EQ(store.written[0].data, "text");
  }
}

TEST(clsRegistryOnMemory, ARefusedWriteIsReported) {
  WatchedRegistry store;
  clsRegistry registry = OnTestKey(store);
  ASSERT_EQ(registry.CreateKey(), u"0");
  store.refuseWriting = true;
  EXPECT_FALSE(registry.SetRegistryValue(u"v", Text(u"text"), 1));
  EXPECT_TRUE(registry.SetRegistryValue(u"v", Text(u"text"), 5)) << "nothing to refuse";

  cRegistry cursor(store);
  cursor.ClassKey = kCurrentUser;
  cursor.SectionKey = u"Software\\Test";
  cursor.valueType = 1;
  EXPECT_FALSE(cursor.SetValue(Text(u"text")));
  cursor.Value(Text(u"text"));
  EXPECT_EQ(cursor.Value(), RegistryValue());
}

TEST(clsRegistryOnMemory, AnotherMachinesRegistryIsItsOwn) {
  MemoryRegistryStore store;
  MemoryRegistryStore& other = store.AddMachine("\\\\other");
  clsRegistry registry = OnTestKey(store);
  other.Plant(kLocalMachine, "Software\\Test", "v", kRegSz, NarrowText("there\0", 6));
  EXPECT_EQ(registry.ReadRemoteRegistryValue(u"\\\\OTHER", kLocalMachine, u"v"),
            RegistryValue(Text(u"there")));
  EXPECT_EQ(registry.WriteRemoteRegistryValue(u"\\\\other", kLocalMachine, u"w", std::int32_t{5},
                                              kRegDword),
            RegistryValue(std::int16_t{-1}));
  EXPECT_EQ(registry.ReadRemoteRegistryValue(u"\\\\other", kLocalMachine, u"w"),
            RegistryValue(std::int32_t{5}));
  EXPECT_EQ(registry.GetRegistryValue(u"w"), RegistryValue());
  EXPECT_EQ(store.OpenKeys(), 0u);
}

TEST(clsRegistryOnMemory, NamesLongerThanThePlatformTakesAreRefused) {
  MemoryRegistryStore store;
  clsRegistry registry(store);
  registry.hkey = kCurrentUser;
  registry.KeyRoot = u"Software";
  registry.Subkey = Text(256, u'k');
  EXPECT_EQ(registry.CreateKey(), u"");
  EXPECT_FALSE(registry.KeyExists());
  registry.Subkey = u"Test";
  EXPECT_EQ(registry.CreateKey(), u"0");
  EXPECT_FALSE(registry.SetRegistryValue(Text(16384, u'v'), Text(u"x"), kRegSz));
}

TEST(clsMRUOnMemory, ARefusedSaveLeavesTheStoreAsItWas) {
  WatchedRegistry store;
  const MemoryLocale locale;
  clsMRU list(store, locale);
  list.hkey(kCurrentUser);
  list.KeyRoot(u"Software\\Oru\\Marl");
  list.Subkey(u"ServerMRU");
  list.AddMRU(u"old");
  list.SaveList();
  list.AddMRU(u"new");
  store.refuseWriting = true;
  list.SaveList();
  clsMRU loaded(store, locale);
  loaded.hkey(kCurrentUser);
  loaded.KeyRoot(u"Software\\Oru\\Marl");
  loaded.Subkey(u"ServerMRU");
  loaded.LoadList();
  EXPECT_EQ(loaded.Count(), 1);
  EXPECT_EQ(loaded.Item(1), u"old");
}

// A user with read access only would be refused if a reader asked for more than it needs.

/// The access that `act` asks for, key by key, always on the key of the class's fields.
template <typename Act>
std::vector<std::uint32_t> RightsOf(WatchedRegistry& store, Act act) {
  store.opened.clear();
  act();
  std::vector<std::uint32_t> rights;
  for (const WatchedRegistry::Opened& opened : store.opened) {
    EXPECT_EQ(opened.root, kCurrentUser);
    EXPECT_EQ(opened.path, "Software\\Test");
    rights.push_back(opened.access);
  }
  return rights;
}

using Rights = std::vector<std::uint32_t>;

TEST(RightsOfcRegistry, AreThoseThatTheOperationNeeds) {
  WatchedRegistry store;
  store.Plant(kCurrentUser, "Software\\Test", "v", kRegSz, std::string("x\0", 2));
  cRegistry registry(store);
  registry.ClassKey = kCurrentUser;
  registry.SectionKey = u"Software\\Test";
  registry.ValueKey = u"v";
  registry.valueType = kRegSz;
  std::vector<Text> names;
  std::int32_t count = 0;
  EXPECT_EQ(RightsOf(store, [&] { registry.KeyExists(); }), Rights{0x1});
  EXPECT_EQ(RightsOf(store, [&] { registry.CreateKey(); }), Rights{0x3F});
  EXPECT_EQ(RightsOf(store, [&] { registry.Value(); }), Rights{0x1});
  EXPECT_EQ(RightsOf(store, [&] { registry.Value(Text(u"y")); }), Rights{0x3F});
  EXPECT_EQ(RightsOf(store, [&] { registry.SetValue(Text(u"y")); }), Rights{0x3F});
  EXPECT_EQ(RightsOf(store, [&] { registry.EnumerateValues(names, count); }), Rights{0x1});
  EXPECT_EQ(RightsOf(store, [&] { registry.EnumerateSections(names, count); }), Rights{0x8});
  EXPECT_EQ(RightsOf(store, [&] { registry.DeleteValue(); }), Rights{0x3F});
}

TEST(RightsOfclsRegistry, AreThoseThatTheOperationNeeds) {
  WatchedRegistry store;
  store.Plant(kCurrentUser, "Software\\Test", "v", kRegSz, std::string("x\0", 2));
  clsRegistry registry = OnTestKey(store);
  EXPECT_EQ(RightsOf(store, [&] { registry.KeyExists(); }), Rights{0x20019});
  EXPECT_EQ(RightsOf(store, [&] { registry.CreateKey(); }), Rights{0xF003F});
  EXPECT_EQ(RightsOf(store, [&] { registry.GetRegistryValue(u"v"); }), Rights{0x20019});
  EXPECT_EQ(RightsOf(store, [&] { registry.SetRegistryValue(u"v", Text(u"y"), kRegSz); }),
            Rights{0x20006});
  EXPECT_EQ(RightsOf(store, [&] { registry.EnumRegistryKeys(kCurrentUser, u"Software\\Test"); }),
            Rights{0x20019});
  EXPECT_EQ(RightsOf(store, [&] { registry.EnumRegistryValues(kCurrentUser, u"Software\\Test"); }),
            Rights{0x20019});
  EXPECT_EQ(RightsOf(store, [&] { registry.DeleteValue(u"v"); }), Rights{0xF003F});
}

}  // namespace
}  // namespace marl
