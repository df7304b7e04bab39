#include "platform/RegistryStore.h"

#include <algorithm>
#include <array>
#include <random>
#include <sstream>

#include "tests/contract/RegistryWorld.h"

namespace marl {
namespace {

class RegistryContract : public RegistryTest {
 protected:
  std::vector<NarrowText> SubKeys(KeyHandle key) {
    std::vector<NarrowText> names;
    std::array<char, 300> name = {};
    while (store().EnumKey(key, static_cast<std::uint32_t>(names.size()), name) == kOk) {
      names.emplace_back(name.data());
    }
    return names;
  }
};
MARL_OVER_ALL_BACKENDS(RegistryContract);

TEST_P(RegistryContract, MissingKeyIsNotFound) {
  OpenKeyHandle key;
  EXPECT_EQ(store().OpenKey(kCurrentUser, PathTo("none"), kKeyQueryValue, key), kFileNotFound);
  EXPECT_EQ(key.get(), kNoKey);
  EXPECT_EQ(store().OpenKey(kCurrentUser, PathTo("none\\none"), kKeyQueryValue, key),
            kFileNotFound);
}

TEST_P(RegistryContract, CreateMakesTheWholePathAndOpensWhatIsThere) {
  Make("one\\two\\three");
  Store("", kRegSz, "x");
  Make("one\\two");
  EXPECT_TRUE(Exists("one"));
  EXPECT_TRUE(Exists("one\\two\\three"));
}

TEST_P(RegistryContract, KeyNamesIgnoreCaseAndKeepTheirFirstSpelling) {
  Make("Mixed Case");
  Make("MIXED case");
  EXPECT_TRUE(Exists("mixed CASE"));
  EXPECT_EQ(SubKeys(Open().get()), std::vector<NarrowText>{"Mixed Case"});
}

TEST_P(RegistryContract, KeyNamesIgnoreCaseBeyondAscii) {
  Make("\xC4rger");
  EXPECT_TRUE(Exists("\xE4RGER"));
}

TEST_P(RegistryContract, BackslashesBehindAndBetweenAreSkippedButNotInFront) {
  Make("a\\\\b\\");
  EXPECT_TRUE(Exists("a\\b"));
  OpenKeyHandle key;
  EXPECT_EQ(store().OpenKey(Open().get(), "\\a", kKeyQueryValue, key), 161);
}

TEST_P(RegistryContract, EmptyPathOpensTheKeyOnceMore) {
  Store("v", kRegSz, "x");
  const OpenKeyHandle first = Open();
  OpenKeyHandle again;
  ASSERT_EQ(store().OpenKey(first.get(), "", kKeyQueryValue, again), kOk);
  std::uint32_t kind = 0, size = 0;
  EXPECT_EQ(store().QueryValue(again.get(), "v", kind, {}, size), kOk);
}

TEST_P(RegistryContract, NoKeyIsAnInvalidHandle) {
  OpenKeyHandle key;
  std::uint32_t kind = 7, size = 7;
  std::array<char, 10> buffer = {};
  EXPECT_EQ(store().OpenKey(kNoKey, "x", kKeyQueryValue, key), kInvalidHandle);
  EXPECT_EQ(store().CreateKey(kNoKey, "x", kKeyQueryValue, key), kInvalidHandle);
  EXPECT_EQ(store().QueryValue(kNoKey, "x", kind, buffer, size), kInvalidHandle);
  EXPECT_EQ(store().SetValue(kNoKey, "x", kRegSz, "x"), kInvalidHandle);
  EXPECT_EQ(store().DeleteValue(kNoKey, "x"), kInvalidHandle);
  EXPECT_EQ(store().DeleteKey(kNoKey, "x"), kInvalidHandle);
  EXPECT_EQ(store().EnumKey(kNoKey, 0, buffer), kInvalidHandle);
  EXPECT_EQ(kind, 7u);
  EXPECT_EQ(size, 7u);
}

TEST_P(RegistryContract, MissingValueLeavesOutputsUntouched) {
  const OpenKeyHandle key = Open();
  std::uint32_t kind = 77, size = 78;
  std::array<char, 4> buffer = {'k', 'e', 'p', 't'};
  EXPECT_EQ(store().QueryValue(key.get(), "none", kind, buffer, size), kFileNotFound);
  EXPECT_EQ(kind, 77u);
  EXPECT_EQ(size, 78u);
  EXPECT_EQ(NarrowText(buffer.data(), 4), "kept");
}

TEST_P(RegistryContract, SizeProtocol) {
  Store("v", kRegBinary, "12345");
  const OpenKeyHandle key = Open();
  std::uint32_t kind = 0, size = 0;
  EXPECT_EQ(store().QueryValue(key.get(), "v", kind, {}, size), kOk) << "size alone";
  EXPECT_EQ(kind, 3u);
  EXPECT_EQ(size, 5u);

  std::array<char, 8> buffer = {'z', 'z', 'z', 'z', 'z', 'z', 'z', 'z'};
  kind = size = 0;
  EXPECT_EQ(store().QueryValue(key.get(), "v", kind, std::span(buffer).first(4), size), kMoreData);
  EXPECT_EQ(kind, 3u);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(NarrowText(buffer.data(), 8), "zzzzzzzz") << "a buffer that is too short is unchanged";

  EXPECT_EQ(store().QueryValue(key.get(), "v", kind, std::span(buffer).first(5), size), kOk);
  EXPECT_EQ(NarrowText(buffer.data(), 8), "12345zzz");
}

TEST_P(RegistryContract, TextWithoutTerminatorGetsTheOneBehindIt) {
  const struct {
    std::uint32_t kind;
    NarrowText given, stored;
  } cases[] = {
      {kRegSz, "abc", Raw("abc\0")},
      {kRegSz, Raw("abc\0"), Raw("abc\0")},
      {kRegSz, Raw("\0"), Raw("\0")},
      {kRegSz, "", ""},
      {kRegExpandSz, "%A%", Raw("%A%\0")},
      {kRegMultiSz, Raw("a\0b"), Raw("a\0b\0")},
      {kRegMultiSz, Raw("a\0b\0"), Raw("a\0b\0")},
      {kRegMultiSz, Raw("a\0b\0\0"), Raw("a\0b\0\0")},
      {kRegBinary, "abc", "abc"},
      {kRegBinary, "", ""},
      {kRegDword, "abcd", "abcd"},
      {kRegDword, "ab", "ab"},
      {kRegNone, "abc", "abc"},
      {99, "abc", "abc"},
  };
  for (const auto& c : cases) {
    Store("v", c.kind, c.given);
    EXPECT_EQ(Stored("v"), (StoredValue{c.kind, c.stored})) << testing::PrintToString(c.given);
  }
}

TEST_P(RegistryContract, TextStoredWithoutTerminatorComesWithoutIt) {
  Plant("v", kRegSz, "abc");
  EXPECT_EQ(Stored("v"), (StoredValue{kRegSz, "abc"}));
  std::array<char, 8> buffer = {'z', 'z', 'z', 'z', 'z', 'z', 'z', 'z'};
  std::uint32_t kind = 0, size = 0;
  EXPECT_EQ(store().QueryValue(Open().get(), "v", kind, buffer, size), kOk);
  EXPECT_EQ(size, 3u);
  EXPECT_EQ(NarrowText(buffer.data(), 5), Raw("abc\0z")) << "one is supplied, but not counted";
}

TEST_P(RegistryContract, EveryByteOfTheCodePageComesBack) {
  NarrowText all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  Store("v", kRegSz, all + '\0');
  EXPECT_EQ(Stored("v"), (StoredValue{kRegSz, all + '\0'}));
}

TEST_P(RegistryContract, ValueNamesIgnoreCaseAndEndAtANul) {
  Store("Name", kRegSz, Raw("1\0"));
  Store(Raw("NAME\0more"), kRegSz, Raw("2\0"));
  EXPECT_EQ(Stored("name"), (StoredValue{kRegSz, Raw("2\0")}));
  KeyInfo info;
  EXPECT_EQ(store().QueryInfo(Open().get(), info), kOk);
  EXPECT_EQ(info.values, 1u);
}

TEST_P(RegistryContract, DefaultValueHasTheEmptyName) {
  Store("", kRegSz, "default");
  EXPECT_EQ(Stored(""), (StoredValue{kRegSz, Raw("default\0")}));
  EXPECT_EQ(store().DeleteValue(Open().get(), ""), kOk);
  EXPECT_EQ(Stored(""), std::nullopt);
}

TEST_P(RegistryContract, DeleteValue) {
  Store("v", kRegSz, "x");
  EXPECT_EQ(store().DeleteValue(Open().get(), "V"), kOk);
  EXPECT_EQ(store().DeleteValue(Open().get(), "v"), kFileNotFound);
}

TEST_P(RegistryContract, KeyWithSubKeysIsNotDeleted) {
  Make("a\\b");
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("a")), kAccessDenied);
  EXPECT_TRUE(Exists("a\\b"));
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("A\\B")), kOk);
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("a")), kOk);
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("a")), kFileNotFound);
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("a\\b")), kFileNotFound);
}

TEST_P(RegistryContract, DeletingAKeyTakesItsValues) {
  Make("a");
  const OpenKeyHandle key = Open("a");
  EXPECT_EQ(store().SetValue(key.get(), "v", kRegSz, "x"), kOk);
  EXPECT_EQ(store().DeleteKey(kCurrentUser, PathTo("a")), kOk);
  Make("a");
  EXPECT_EQ(Stored("v", "a"), std::nullopt);
}

TEST_P(RegistryContract, OpenKeyThatIsDeletedSaysSo) {
  Make("a");
  const OpenKeyHandle key = Open("a");
  ASSERT_EQ(store().DeleteKey(kCurrentUser, PathTo("a")), kOk);
  OpenKeyHandle other;
  KeyInfo info;
  std::uint32_t kind = 0, size = 0;
  std::array<char, 10> buffer = {};
  EXPECT_EQ(store().QueryValue(key.get(), "v", kind, {}, size), kKeyDeleted);
  EXPECT_EQ(store().SetValue(key.get(), "v", kRegSz, "x"), kKeyDeleted);
  EXPECT_EQ(store().DeleteValue(key.get(), "v"), kKeyDeleted);
  EXPECT_EQ(store().EnumKey(key.get(), 0, buffer), kKeyDeleted);
  EXPECT_EQ(store().QueryInfo(key.get(), info), kKeyDeleted);
  EXPECT_EQ(store().OpenKey(key.get(), "", kKeyQueryValue, other), kKeyDeleted);
  EXPECT_EQ(store().CreateKey(key.get(), "b", kKeyQueryValue, other), kKeyDeleted);
  EXPECT_EQ(store().DeleteKey(key.get(), ""), kKeyDeleted);
}

TEST_P(RegistryContract, AKeyDoesOnlyWhatItWasOpenedFor) {
  Make("a");
  Store("v", kRegSz, "x");
  std::uint32_t kind = 0, size = 0;
  std::array<char, 10> buffer = {};
  const OpenKeyHandle values = Open({}, kKeyQueryValue);
  EXPECT_EQ(store().SetValue(values.get(), "v", kRegSz, "y"), kAccessDenied);
  EXPECT_EQ(store().DeleteValue(values.get(), "v"), kAccessDenied);
  EXPECT_EQ(store().EnumKey(values.get(), 0, buffer), kAccessDenied);
  EXPECT_EQ(store().QueryValue(values.get(), "v", kind, {}, size), kOk);

  const OpenKeyHandle keys = Open({}, kKeyEnumerateSubKeys);
  EXPECT_EQ(store().QueryValue(keys.get(), "v", kind, {}, size), kAccessDenied);
  EXPECT_EQ(store().EnumKey(keys.get(), 0, buffer), kOk);

  const OpenKeyHandle write = Open({}, kKeyWrite);
  EXPECT_EQ(store().QueryValue(write.get(), "v", kind, {}, size), kAccessDenied);
  EXPECT_EQ(store().SetValue(write.get(), "v", kRegSz, "y"), kOk);

  const OpenKeyHandle read = Open({}, kKeyRead);
  EXPECT_EQ(store().SetValue(read.get(), "v", kRegSz, "y"), kAccessDenied);
  EXPECT_EQ(store().EnumKey(read.get(), 0, buffer), kOk);
}

TEST_P(RegistryContract, SubKeysComeInTheOrderOfTheirNames) {
  for (const char* name : {"b", "A", "c", "a1", "B2", "Z", "7"}) Make(name);
  EXPECT_EQ(SubKeys(Open().get()), (std::vector<NarrowText>{"7", "A", "a1", "b", "B2", "c", "Z"}));
}

TEST_P(RegistryContract, EnumKeyNeedsRoomForTheTerminator) {
  Make("four");
  const OpenKeyHandle key = Open();
  std::array<char, 6> buffer = {'z', 'z', 'z', 'z', 'z', 'z'};
  EXPECT_EQ(store().EnumKey(key.get(), 0, std::span(buffer).first(4)), kMoreData);
  EXPECT_EQ(store().EnumKey(key.get(), 0, std::span(buffer).first(5)), kOk);
  EXPECT_EQ(NarrowText(buffer.data(), 6), Raw("four\0z"));
  EXPECT_EQ(store().EnumKey(key.get(), 1, buffer), kNoMoreItems);
}

TEST_P(RegistryContract, EnumValueGivesNameKindAndData) {
  Store("name", kRegBinary, "data");
  const OpenKeyHandle key = Open();
  std::array<char, 8> name = {}, data = {};
  std::uint32_t length = 0, kind = 0, size = 0;
  EXPECT_EQ(store().EnumValue(key.get(), 0, name, length, kind, data, size), kOk);
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(NarrowText(name.data()), "name");
  EXPECT_EQ(kind, 3u);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(NarrowText(data.data(), 4), "data");

  EXPECT_EQ(store().EnumValue(key.get(), 0, std::span(name).first(5), length, kind, {}, size), kOk);
  EXPECT_EQ(store().EnumValue(key.get(), 0, std::span(name).first(4), length, kind, {}, size),
            kMoreData);
  size = 0;
  EXPECT_EQ(store().EnumValue(key.get(), 0, name, length, kind, std::span(data).first(3), size),
            kMoreData);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(store().EnumValue(key.get(), 1, name, length, kind, data, size), kNoMoreItems);
}

TEST_P(RegistryContract, QueryInfoGivesNumbersAndLengths) {
  Make("four");
  Make("seventy");
  Store("a", kRegBinary, "123456789");
  Store("longer", kRegDword, "1234");
  KeyInfo info;
  ASSERT_EQ(store().QueryInfo(Open().get(), info), kOk);
  EXPECT_EQ(info.subKeys, 2u);
  EXPECT_EQ(info.longestSubKey, 7u);
  EXPECT_EQ(info.values, 2u);
  EXPECT_EQ(info.longestValueName, 6u);
}

TEST_P(RegistryContract, NamesAtThePlatformsLimits) {
  const NarrowText longKey(255, 'k');
  const OpenKeyHandle key = Open();
  OpenKeyHandle made;
  EXPECT_EQ(store().CreateKey(key.get(), longKey, kKeyQueryValue, made), kOk);
  EXPECT_EQ(store().OpenKey(key.get(), longKey, kKeyQueryValue, made), kOk);
  EXPECT_EQ(SubKeys(key.get()), std::vector<NarrowText>{longKey});
  const NarrowText longName(16383, 'v');
  Store(longName, kRegSz, "x");
  EXPECT_EQ(Stored(longName), (StoredValue{kRegSz, Raw("x\0")}));
  EXPECT_EQ(store().SetValue(key.get(), longName + 'v', kRegSz, "x"), kInvalidParameter);
  EXPECT_EQ(Stored(longName + 'v'), std::nullopt);
}

TEST_P(RegistryContract, AMegabyteOfText) {
  const NarrowText text(1 << 20, 't');
  Store("v", kRegSz, text);
  EXPECT_TRUE(Stored("v") == (StoredValue{kRegSz, text + '\0'}));
}

TEST_P(RegistryContract, RemoteRegistry) {
  OpenKeyHandle key;
  EXPECT_EQ(store().ConnectRegistry("\\\\no-such-machine.invalid", kCurrentUser, key), 53);
  EXPECT_EQ(key.get(), kNoKey);
  Store("v", kRegSz, "x");
  ASSERT_EQ(store().ConnectRegistry("", kCurrentUser, key), kOk) << "this machine";
  OpenKeyHandle mine;
  EXPECT_EQ(store().OpenKey(key.get(), path(), kKeyRead, mine), kOk);
}

TEST_P(RegistryContract, ExpandEnvironment) {
  world().SetEnvironment("ORU_ONE", "1");
  world().SetEnvironment("ORU_LONG", "abcdefghijklmnop");
  world().SetEnvironment("ORU_NESTED", "%ORU_ONE%");
  const struct {
    NarrowText source, expanded;
  } cases[] = {
      {"", ""},
      {"plain", "plain"},
      {"%ORU_ONE%abc", "1abc"},
      {"%oru_one%", "1"},
      {"x%ORU_LONG%y", "xabcdefghijklmnopy"},
      {"%ORU_ONE%%ORU_ONE%", "11"},
      {"%ORU_NESTED%", "%ORU_ONE%"},
      {"%ORU_NONE%", "%ORU_NONE%"},
      {"%ORU_NONE%ORU_ONE%", "%ORU_NONE%ORU_ONE%"},
      {"%%ORU_ONE%%", "%%ORU_ONE%%"},
      {"%ORU_ONE", "%ORU_ONE"},
      {"100%", "100%"},
      {"%%", "%%"},
      {Raw("%ORU_ONE%\0cut"), "1"},
  };
  for (const auto& c : cases) {
    NarrowText buffer(64, 'z');
    EXPECT_EQ(store().ExpandEnvironment(c.source, buffer), c.expanded.size() + 1) << c.source;
    EXPECT_EQ(NarrowText(buffer.c_str()), c.expanded);
    EXPECT_EQ(store().ExpandEnvironment(c.source, {}), c.expanded.size() + 1) << c.source;
  }
}

TEST_P(RegistryContract, ExpansionThatDoesNotFitIsCut) {
  world().SetEnvironment("ORU_LONG", "abcdefghijklmnop");
  NarrowText buffer(8, 'z');
  EXPECT_EQ(store().ExpandEnvironment("%ORU_LONG%", std::span(buffer).first(6)), 17u);
  EXPECT_EQ(buffer, Raw("abcde\0zz"));
}

TEST_P(RegistryContract, ExpansionOfAVeryLongTextIsRefused) {
  NarrowText buffer(40'000, 'z');
  const NarrowText longest(RegistryStore::kLongestSource, 'x');
  EXPECT_EQ(store().ExpandEnvironment(longest, buffer), longest.size() + 1);
  EXPECT_EQ(buffer.c_str(), longest);
  for (const std::size_t size : {longest.size() + 1, std::size_t{65'536}, std::size_t{1} << 20}) {
    buffer.assign(40'000, 'z');
    EXPECT_EQ(store().ExpandEnvironment(NarrowText(size, 'x'), buffer), 0u) << size;
    EXPECT_EQ(store().ExpandEnvironment(NarrowText(size, 'x'), {}), 0u) << size;
    EXPECT_EQ(buffer, NarrowText(40'000, 'z'));
  }
  // Only the part before the first NUL counts.
  EXPECT_EQ(store().ExpandEnvironment("a" + NarrowText(1, '\0') + NarrowText(70'000, 'x'), {}), 2u);
}

TEST_P(RegistryContract, TextIsNarrowedToTheCodePage) {
  EXPECT_EQ(store().ToNarrow(u""), "");
  EXPECT_EQ(store().ToNarrow(u"Grüße €"),
            "Gr\xFC\xDF"
            "e \x80");
  EXPECT_EQ(store().ToNarrow(u"ĀŁŐ"), "ALO") << "look-alikes";
  EXPECT_EQ(store().ToNarrow(u"日本"), "??") << "a question mark for what has none";
  EXPECT_EQ(store().ToNarrow(TextView(u"a\0b", 3)), Raw("a\0b"));
  EXPECT_EQ(store().FromNarrow("Gr\xFC\xDF"
                               "e \x80"),
            u"Grüße €");
  EXPECT_EQ(store().FromNarrow(""), u"");
}

TEST_P(RegistryContract, EveryCharacterIsNarrowedAlike) {
  const auto memory = MakeRegistryWorld(Backend::kMemory);
  for (int unit = 0; unit < 0x10000; ++unit) {
    const Text text(1, static_cast<char16_t>(unit));
    ASSERT_EQ(store().ToNarrow(text), memory->store().ToNarrow(text)) << std::hex << unit;
  }
  for (int byte = 0; byte < 256; ++byte) {
    const NarrowText text(1, static_cast<char>(byte));
    ASSERT_EQ(store().FromNarrow(text), memory->store().FromNarrow(text)) << std::hex << byte;
    ASSERT_EQ(store().ToNarrow(store().FromNarrow(text)), text);
  }
}

/// Random operations, each logged in one line with all of its results.
class Walk {
 public:
  Walk(RegistryStore& store, NarrowText root, unsigned seed)
      : store_(store), root_(std::move(root)), random_(seed) {}

  std::string Step() {
    std::ostringstream log;
    OpenKeyHandle key;
    // Drawn one by one, since the evaluation order of arguments is unspecified.
    const int operation = Draw(12);
    const NarrowText path = Path();
    const NarrowText name = Name();
    const std::uint32_t access = Access();
    log << operation << ' ' << path << " [" << name << "] " << access << ": ";
    if (operation == 0 || operation == 1) {
      log << store_.CreateKey(kCurrentUser, path, access, key) << (key.get() != kNoKey);
      return log.str();
    }
    if (operation == 2) {
      log << store_.DeleteKey(kCurrentUser, path);
      return log.str();
    }
    log << store_.OpenKey(kCurrentUser, path, access, key) << ' ';
    switch (operation) {
      case 3:
      case 4:
      case 5: {
        const auto kind = static_cast<std::uint32_t>(Draw(9));
        const NarrowText data = Data();
        log << store_.SetValue(key.get(), name, kind, data);
        break;
      }
      case 6: log << store_.DeleteValue(key.get(), name); break;
      case 7:
      case 8: Query(log, key.get(), name); break;
      case 9: EnumKeys(log, key.get()); break;
      case 10: EnumValues(log, key.get()); break;
      case 11: Info(log, key.get()); break;
    }
    return log.str();
  }

 private:
  int Draw(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  NarrowText Path() {
    static const char* const kNames[] = {"a", "A", "b", "Bb", "\xE4", "\xC4", "x y", "\xFC"};
    NarrowText path = root_;
    for (int depth = Draw(4); depth > 0; --depth) path = path + '\\' + kNames[Draw(8)];
    return path;
  }
  NarrowText Name() {
    static const char* const kNames[] = {"", "v", "V", "MRU1", "mru1", "\xF6", "\xD6", "long one"};
    return kNames[Draw(8)];
  }
  std::uint32_t Access() {
    static const std::uint32_t kAccess[] = {
        kKeyQueryValue, kKeyEnumerateSubKeys, kKeyAllBasic, kKeyAllBasic, kKeyRead,
        kKeyWrite,      kKeyAllAccess,        kKeyAllAccess};
    return kAccess[Draw(8)];
  }
  NarrowText Data() {
    NarrowText data;
    for (int length = Draw(40); length > 0; --length) {
      data += static_cast<char>(Draw(4) == 0 ? 0 : Draw(256));
    }
    return data;
  }

  void Query(std::ostream& log, KeyHandle key, const NarrowText& name) {
    NarrowText buffer(static_cast<std::size_t>(Draw(48)) + 1, 'z');
    std::uint32_t kind = 1000, size = 2000;
    const bool sizeOnly = Draw(4) == 0;
    log << (sizeOnly ? store_.QueryValue(key, name, kind, {}, size)
                     : store_.QueryValue(key, name, kind, buffer, size))
        << ' ' << kind << ' ' << size << ' ' << testing::PrintToString(buffer);
  }
  void EnumKeys(std::ostream& log, KeyHandle key) {
    NarrowText buffer(static_cast<std::size_t>(Draw(5)) + 1, '\0');
    for (std::uint32_t index = 0; index < 20; ++index) {
      const Status status = store_.EnumKey(key, index, buffer);
      log << status << ' ' << (status == kOk ? buffer.c_str() : "") << ' ';
    }
  }
  void EnumValues(std::ostream& log, KeyHandle key) {
    NarrowText name(static_cast<std::size_t>(Draw(12)) + 1, '\0');
    NarrowText data(static_cast<std::size_t>(Draw(48)) + 1, '\0');
    // The order depends on the platform, so the values are logged sorted.
    std::vector<std::string> values;
    for (std::uint32_t index = 0; index < 20; ++index) {
      std::uint32_t length = 0, kind = 0, size = 0;
      const Status status = store_.EnumValue(key, index, name, length, kind, data, size);
      std::ostringstream value;
      value << status << ' ';
      if (status == kMoreData) value << size;
      if (status == kOk) {
        value << NarrowText(name.data(), length) << ' ' << kind << ' '
              << testing::PrintToString(data.substr(0, size));
      }
      values.push_back(value.str());
    }
    std::sort(values.begin(), values.end());
    for (const std::string& value : values) log << value << ' ';
  }
  void Info(std::ostream& log, KeyHandle key) {
    // Without the right to read values, only some platforms allow the query.
    std::uint32_t kind = 0, size = 0;
    const Status may = store_.QueryValue(key, "none", kind, {}, size);
    log << may << ' ';
    if (may == kAccessDenied) return;
    KeyInfo info;
    log << store_.QueryInfo(key, info) << ' ' << info.subKeys << ' ' << info.longestSubKey << ' '
        << info.values << ' ' << info.longestValueName;
  }

  RegistryStore& store_;
  NarrowText root_;
  std::mt19937 random_;
};

TEST_P(RegistryContract, RandomOperationsGiveTheSameEverywhere) {
  constexpr unsigned kSeed = 20070304;
  constexpr int kSteps = 20000;
  const auto memory = MakeRegistryWorld(Backend::kMemory);
  OpenKeyHandle made;
  ASSERT_EQ(memory->store().CreateKey(kCurrentUser, path(), kKeyAllAccess, made), kOk);
  made.Reset();
  Walk here(store(), path(), kSeed);
  Walk there(memory->store(), path(), kSeed);
  for (int step = 0; step < kSteps; ++step) {
    const std::string result = here.Step();
    ASSERT_EQ(result, there.Step()) << "step " << step;
  }
}

}  // namespace
}  // namespace marl
