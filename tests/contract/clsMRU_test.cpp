#include "settings/clsMRU.h"

#include <memory>

#include "platform/memory/MemoryLocale.h"
#include "tests/contract/RegistryWorld.h"
#ifdef _WIN32
#include "platform/win32/LocaleWin32.h"
#endif

namespace marl {
namespace {

class clsMRUTest : public RegistryTest {
 protected:
  clsMRUTest() : locale(MakeLocale()), list(store(), *locale) { Point(list); }

  static std::unique_ptr<Locale> MakeLocale() {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) return std::make_unique<win32::LocaleWin32>();
#endif
    return std::make_unique<MemoryLocale>();
  }

  void Point(clsMRU& at) {
    at.hkey(kCurrentUser);
    at.KeyRoot(wide());
    at.Subkey(u"ServerMRU");
  }
  void StoreEntry(const NarrowText& name, const NarrowText& text) {
    Make("ServerMRU");
    EXPECT_EQ(store().SetValue(Open("ServerMRU").get(), name, kRegSz, text), kOk);
  }
  /// Adds texts, the oldest first.
  void Add(std::initializer_list<const char16_t*> texts) {
    for (const char16_t* text : texts) list.AddMRU(text);
  }
  static std::vector<Text> All(const clsMRU& of) {
    std::vector<Text> entries;
    for (std::int32_t i = 1; i <= of.Count(); ++i) entries.push_back(of.Item(i));
    return entries;
  }

  std::unique_ptr<Locale> locale;
  clsMRU list;
};
MARL_OVER_ALL_BACKENDS(clsMRUTest);

using Entries = std::vector<Text>;

TEST_P(clsMRUTest, StartsEmptyWithEightPlaces) {
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.MaxLength, 8);
}

TEST_P(clsMRUTest, AddingToAnEmptyListGivesCountOne) {
  Add({u"a"});
  EXPECT_EQ(All(list), Entries{u"a"});
}

TEST_P(clsMRUTest, TheNewestIsFirst) {
  Add({u"a", u"b", u"c"});
  EXPECT_EQ(All(list), (Entries{u"c", u"b", u"a"}));
}

TEST_P(clsMRUTest, AddingToAFullListDropsTheOldest) {
  Add({u"8", u"7", u"6", u"5", u"4", u"3", u"2", u"1"});
  Add({u"new"});
  EXPECT_EQ(list.Count(), 8);
  EXPECT_EQ(All(list), (Entries{u"new", u"1", u"2", u"3", u"4", u"5", u"6", u"7"}));
}

TEST_P(clsMRUTest, AddingEntryThreeInOtherCaseMovesItAndTakesTheNewSpelling) {
  Add({u"five", u"four", u"three", u"two", u"one"});
  Add({u"THREE"});
  EXPECT_EQ(All(list), (Entries{u"THREE", u"one", u"two", u"four", u"five"}));
}

TEST_P(clsMRUTest, AddingEntryOneInOtherCaseTakesTheNewSpelling) {
  Add({u"two", u"\u00E4RGER"});
  Add({u"\u00C4rger"});
  EXPECT_EQ(All(list), (Entries{u"\u00C4rger", u"two"}));
}

TEST_P(clsMRUTest, EntriesAreComparedAsTheCollationOfTheUserSeesThem) {
  Add({u"stra\u00DFe", u"\u03BF\u03B4\u03CC\u03C2", u"caf\u00E9", u"\u0131"});
  Add({u"STRASSE"});
  EXPECT_EQ(All(list), (Entries{u"STRASSE", u"\u0131", u"caf\u00E9", u"\u03BF\u03B4\u03CC\u03C2"}));
  Add({u"Cafe\u0301"});
  EXPECT_EQ(All(list),
            (Entries{u"Cafe\u0301", u"STRASSE", u"\u0131", u"\u03BF\u03B4\u03CC\u03C2"}));
  Add({u"\u039F\u0394\u038C\u03A3"});
  EXPECT_EQ(list.Count(), 4);
  Add({u"I"});
  EXPECT_EQ(list.Count(), 5) << "the dotless i is a letter of its own";
}

TEST_P(clsMRUTest, OnlyTheFirstOfEqualEntriesMoves) {
  Add({u"b", u"a", u"x"});
  list.Item(3, u"A");
  Add({u"a"});
  EXPECT_EQ(All(list), (Entries{u"a", u"x", u"A"}));
}

TEST_P(clsMRUTest, ItemOutsideTheListIsEmptyAndNotAssigned) {
  Add({u"b", u"a"});
  for (const std::int32_t index : {-1, 0, 3, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(list.Item(index), u"");
    list.Item(index, u"x");
  }
  EXPECT_EQ(All(list), (Entries{u"a", u"b"}));
  list.Item(2, u"B2");
  EXPECT_EQ(All(list), (Entries{u"a", u"B2"}));
}

TEST_P(clsMRUTest, AddingSavesNothing) {
  Add({u"a"});
  EXPECT_FALSE(Exists("ServerMRU"));
}

TEST_P(clsMRUTest, SaveListMakesTheKeyAndWritesEveryPlace) {
  Add({u"b", u"\u20AC"});
  list.SaveList();
  EXPECT_EQ(Stored("MRU1", "ServerMRU"), (StoredValue{kRegSz, Raw("\x80\0")}));
  EXPECT_EQ(Stored("MRU2", "ServerMRU"), (StoredValue{kRegSz, Raw("b\0")}));
  EXPECT_EQ(Stored("MRU3", "ServerMRU"), (StoredValue{kRegSz, ""}));
  EXPECT_EQ(Stored("MRU8", "ServerMRU"), (StoredValue{kRegSz, ""}));
  EXPECT_EQ(Stored("MRU9", "ServerMRU"), std::nullopt);
}

TEST_P(clsMRUTest, SavedAndLoadedItIsTheSame) {
  Add({u"h", u"g", u"f", u"e", u"d", u"c", u"b", u"a"});
  list.SaveList();
  clsMRU loaded(store(), *locale);
  Point(loaded);
  loaded.LoadList();
  EXPECT_EQ(All(loaded), All(list));
}

TEST_P(clsMRUTest, GapsCloseUpAndOldPlacesAreBlanked) {
  StoreEntry("MRU1", "one");
  StoreEntry("MRU3", "three");
  list.LoadList();
  EXPECT_EQ(All(list), (Entries{u"one", u"three"}));
  list.SaveList();
  EXPECT_EQ(Stored("MRU1", "ServerMRU"), (StoredValue{kRegSz, Raw("one\0")}));
  EXPECT_EQ(Stored("MRU2", "ServerMRU"), (StoredValue{kRegSz, Raw("three\0")}));
  EXPECT_EQ(Stored("MRU3", "ServerMRU"), (StoredValue{kRegSz, ""}));
}

TEST_P(clsMRUTest, EmptyPlacesAreSkipped) {
  StoreEntry("MRU1", "");
  StoreEntry("MRU2", Raw("\0"));
  StoreEntry("MRU5", "five");
  list.LoadList();
  EXPECT_EQ(All(list), Entries{u"five"});
}

TEST_P(clsMRUTest, NumbersAreNotPaddedAndEndAtMaxLength) {
  for (const char* name : {"MRU01", "MRU9", "MRU10", "MRU0"}) StoreEntry(name, name);
  list.LoadList();
  EXPECT_EQ(list.Count(), 0);
  list.MaxLength = 10;
  list.LoadList();
  EXPECT_EQ(All(list), (Entries{u"MRU9", u"MRU10"}));
}

TEST_P(clsMRUTest, ASecondLoadAppendsBeyondMaxLength) {
  Add({u"5", u"4", u"3", u"2", u"1"});
  list.SaveList();
  list.LoadList();
  EXPECT_EQ(list.Count(), 10);
  EXPECT_EQ(list.Item(6), u"1");
  Add({u"new"});
  EXPECT_EQ(list.Count(), 10) << "the list is full, the oldest is dropped";
  EXPECT_EQ(list.Item(10), u"4");
}

TEST_P(clsMRUTest, AMissingKeyLoadsNothing) {
  list.LoadList();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_FALSE(Exists("ServerMRU"));
}

TEST_P(clsMRUTest, MaxLengthNeitherTrimsNorResizes) {
  Add({u"c", u"b", u"a"});
  list.MaxLength = 2;
  EXPECT_EQ(list.Count(), 3);
  Add({u"new"});
  EXPECT_EQ(All(list), (Entries{u"new", u"a", u"b"}));
  list.SaveList();
  EXPECT_EQ(Stored("MRU2", "ServerMRU"), (StoredValue{kRegSz, Raw("a\0")}));
  EXPECT_EQ(Stored("MRU3", "ServerMRU"), std::nullopt);
}

TEST_P(clsMRUTest, AListWithoutPlacesTakesNothing) {
  list.MaxLength = 0;
  Add({u"a"});
  EXPECT_EQ(list.Count(), 0);
}

TEST_P(clsMRUTest, ARefusedSaveLeavesTheStoreAsItWas) {
  Add({u"a"});
  list.hkey(0);
  list.SaveList();
  list.hkey(kCurrentUser);
  EXPECT_FALSE(Exists("ServerMRU"));
}

}  // namespace
}  // namespace marl
