#include "settings/clsRegistry.h"

#include <algorithm>

#include "tests/contract/RegistryWorld.h"

namespace marl {
namespace {

class clsRegistryTest : public RegistryTest {
 protected:
  clsRegistryTest() : registry(store()) {
    registry.hkey = kCurrentUser;
    // The test's key is the last part of its path.
    const Text whole = wide();
    registry.KeyRoot = whole.substr(0, whole.rfind(u'\\'));
    registry.Subkey = whole.substr(whole.rfind(u'\\') + 1);
  }

  clsRegistry registry;
};
MARL_OVER_ALL_BACKENDS(clsRegistryTest);

const RegistryValue kText = Text(u"text");
const RegistryValue kDefault = Text(u"the default");

// Keys.

TEST_P(clsRegistryTest, KeyExistsJoinsRootAndSubkey) {
  EXPECT_TRUE(registry.KeyExists());
  registry.Subkey = u"none";
  EXPECT_FALSE(registry.KeyExists());
}

TEST_P(clsRegistryTest, CreateKeyGivesZeroAsText) {
  registry.KeyRoot = wide();
  registry.Subkey = u"sub";
  EXPECT_EQ(registry.CreateKey(), u"0");
  EXPECT_TRUE(Exists("sub"));
  EXPECT_EQ(registry.CreateKey(u"other\\deep"), u"0");
  EXPECT_TRUE(Exists("other\\deep"));
  EXPECT_EQ(registry.CreateKey(u""), u"0") << "an empty name given is not a name left out";
  registry.hkey = 0;
  EXPECT_EQ(registry.CreateKey(), u"");
}

TEST_P(clsRegistryTest, DeleteKeyGivesThePlatformsStatus) {
  Make("a\\b");
  registry.KeyRoot = wide();
  EXPECT_EQ(registry.DeleteKey(u"a"), kAccessDenied) << "it has a sub-key";
  EXPECT_EQ(registry.DeleteKey(u"a\\b"), kOk);
  EXPECT_EQ(registry.DeleteKey(u"a"), kOk);
  EXPECT_EQ(registry.DeleteKey(u"a"), kFileNotFound);
}

TEST_P(clsRegistryTest, DeleteValueGivesTheStatusOfOpeningOrDeleting) {
  Store("v", kRegSz, "x");
  EXPECT_EQ(registry.DeleteValue(u"v"), kOk);
  EXPECT_EQ(registry.DeleteValue(u"v"), kFileNotFound);
  registry.Subkey = u"none";
  EXPECT_EQ(registry.DeleteValue(u"v"), kFileNotFound);
  registry.hkey = 0;
  EXPECT_EQ(registry.DeleteValue(u"v"), kInvalidHandle);
}

// Reading.

TEST_P(clsRegistryTest, MissingKeyAndMissingValueGiveTheDefault) {
  EXPECT_EQ(registry.GetRegistryValue(u"v", kDefault), kDefault);
  EXPECT_EQ(registry.GetRegistryValue(u"v"), RegistryValue()) << "left out, it is empty";
  registry.Subkey = u"none";
  EXPECT_EQ(registry.GetRegistryValue(u"v", kDefault), kDefault);
  EXPECT_FALSE(registry.KeyExists()) << "reading makes no key";
}

TEST_P(clsRegistryTest, GetRegistryValueGivesWhatIsStored) {
  const struct {
    const char* name;
    std::uint32_t kind;
    NarrowText stored;
    RegistryValue read;
  } cases[] = {
      {"text", kRegSz, Raw("abc\0"), Text(u"abc")},
      {"text of one byte", kRegSz, Raw("\0"), Text()},
      {"text of no bytes", kRegSz, "", kDefault},
      {"code page", kRegSz, Raw("\x80\0"), Text(u"€")},
      {"inner NUL", kRegSz, Raw("a\0b\0"), Text(u"a\0b", 3)},
      {"no terminator: the last character goes for one", kRegSz, "abc", Text(u"ab")},
      {"two terminators", kRegSz, Raw("abc\0\0"), Text(u"abc\0", 4)},
      {"bytes, exactly", kRegBinary, Raw("\x01\0\xFF"), Bytes{1, 0, 255}},
      {"no bytes", kRegBinary, "", Bytes{}},
      {"number", kRegDword, "\x04\x03\x02\x01", std::int32_t{0x01020304}},
      {"negative number", kRegDword, "\xFE\xFF\xFF\xFF", std::int32_t{-2}},
      {"short number", kRegDword, "\x01", std::int32_t{1}},
      {"number of no bytes", kRegDword, "", std::int32_t{0}},
      {"long number: the first four bytes", kRegDword, "\1\1\1\1\2\2", std::int32_t{0x01010101}},
      {"multi-string", kRegMultiSz, Raw("a\0b\0\0"), Text(u"a\0b", 3)},
      {"multi-string with one terminator", kRegMultiSz, Raw("ab\0"), Text(u"a")},
      {"multi-string without terminator", kRegMultiSz, Raw("a\0b"), Text(u"a")},
      {"empty multi-string", kRegMultiSz, Raw("\0\0"), kDefault},
      {"multi-string that begins with NUL", kRegMultiSz, Raw("\0a\0\0"), kDefault},
      {"multi-string of one byte", kRegMultiSz, Raw("\0"), kDefault},
      {"multi-string of no bytes", kRegMultiSz, "", kDefault},
      {"no kind", kRegNone, "ab", kDefault},
      {"big-endian number", kRegDwordBigEndian, "\1\2\3\4", kDefault},
      {"64-bit number", 11, "12345678", kDefault},
      {"kind of nobody", 4711, "a", kDefault},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Plant("v", c.kind, c.stored);
    EXPECT_EQ(registry.GetRegistryValue(u"v", kDefault), c.read);
  }
}

TEST_P(clsRegistryTest, TextAroundAndBeyondTheBufferIsComplete) {
  for (const std::size_t length : {1022u, 1023u, 1024u, 1025u, 5000u, 1u << 20}) {
    Store("v", kRegSz, NarrowText(length, 't') + '\0');
    EXPECT_TRUE(registry.GetRegistryValue(u"v") == RegistryValue(Text(length, u't'))) << length;
  }
}

TEST_P(clsRegistryTest, ExpansionHasTheBufferOfTheStoredText) {
  world().SetEnvironment("ORU_S", "ab");
  world().SetEnvironment("ORU_E", "1234567");
  world().SetEnvironment("ORU_L", "1234567890");
  const struct {
    const char* name;
    NarrowText stored;
    RegistryValue read;
  } cases[] = {
      {"nothing to expand", Raw("plain\0"), Text(u"plain")},
      {"as long as its source", Raw("%ORU_E%\0"), Text(u"1234567")},
      {"longer than its source: what there is room for", Raw("%ORU_L%\0"), Text(u"1234567")},
      {"shorter: the length reported counts the terminator", Raw("%ORU_S%\0"), Text(u"ab\0", 3)},
      {"empty", Raw("\0"), Text()},
      {"of no bytes", "", kDefault},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Plant("v", kRegExpandSz, c.stored);
    EXPECT_EQ(registry.GetRegistryValue(u"v", kDefault), c.read);
  }
}

// Writing.

TEST_P(clsRegistryTest, SetRegistryValueOnAMissingKeyIsFalseAndMakesNothing) {
  registry.KeyRoot = wide();
  registry.Subkey = u"none";
  EXPECT_FALSE(registry.SetRegistryValue(u"v", kText, kRegSz));
  EXPECT_FALSE(Exists("none"));
  EXPECT_FALSE(registry.SetRegistryValue(u"v", kText, 5)) << "kinds that write nothing too";
}

TEST_P(clsRegistryTest, SetRegistryValueWritesByKind) {
  // Text is passed without its terminator; the platform finds the one after it and stores it too.
  const std::optional<StoredValue> nothing;
  const struct {
    const char* name;
    std::int32_t kind;
    RegistryValue value;
    bool result;
    std::optional<StoredValue> stored;
  } cases[] = {
      {"text", 1, kText, true, StoredValue{1, Raw("text\0")}},
      {"empty text of no bytes", 1, Text(), true, StoredValue{1, ""}},
      {"text with percent signs stays of its kind", 1, Text(u"%A%"), true,
       StoredValue{1, Raw("%A%\0")}},
      {"expandable text without percent signs too", 2, kText, true, StoredValue{2, Raw("text\0")}},
      {"multi-string", 7, Text(u"a\0b\0\0", 5), true, StoredValue{7, Raw("a\0b\0\0")}},
      {"number as text", 1, std::int32_t{-5}, true, StoredValue{1, Raw("-5\0")}},
      {"all the bytes", 3, Bytes{1, 2, 0}, true, StoredValue{3, Raw("\1\2\0")}},
      {"no bytes", 3, Bytes{}, true, StoredValue{3, ""}},
      {"number", 4, std::int32_t{-2}, true, StoredValue{4, "\xFE\xFF\xFF\xFF"}},
      {"16-bit number", 4, std::int16_t{1}, true, StoredValue{4, Raw("\1\0\0\0")}},
      {"text as bytes", 3, kText, false, nothing},
      {"text as number", 4, kText, false, nothing},
      {"kind 5", 5, std::int32_t{1}, true, nothing},
      {"kind 6", 6, kText, true, nothing},
      {"kind 0", 0, kText, true, nothing},
      {"kind 8", 8, kText, true, nothing},
      {"kind -1", -1, kText, true, nothing},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    store().DeleteValue(Open().get(), "v");
    EXPECT_EQ(registry.SetRegistryValue(u"v", c.value, c.kind), c.result);
    EXPECT_EQ(Stored("v"), c.stored);
  }
}

TEST_P(clsRegistryTest, WhatIsWrittenReadsBack) {
  for (const char16_t* text : {u"x", u"server.example.org", u"Grüße €"}) {
    EXPECT_TRUE(registry.SetRegistryValue(u"v", Text(text), kRegSz));
    EXPECT_EQ(registry.GetRegistryValue(u"v"), RegistryValue(Text(text)));
  }
}

// Enumerating.

TEST_P(clsRegistryTest, EnumRegistryKeys) {
  for (const char* name : {"b", "A", "\xC4"}) Make(name);
  EXPECT_EQ(registry.EnumRegistryKeys(kCurrentUser, wide()), (std::vector<Text>{u"A", u"b", u"Ä"}));
  EXPECT_TRUE(registry.EnumRegistryKeys(kCurrentUser, wide() + u"\\none").empty());
  const auto top = registry.EnumRegistryKeys(kCurrentUser, u"");
  EXPECT_NE(std::find(top.begin(), top.end(), u"Software"), top.end()) << "the root itself";
}

TEST_P(clsRegistryTest, EnumRegistryKeysTakesTheLongestNames) {
  const NarrowText longest(255, 'k');
  const OpenKeyHandle key = Open();
  OpenKeyHandle made;
  ASSERT_EQ(store().CreateKey(key.get(), longest, kKeyAllBasic, made), kOk);
  EXPECT_EQ(registry.EnumRegistryKeys(kCurrentUser, wide()), std::vector<Text>{Text(255, u'k')});
}

TEST_P(clsRegistryTest, EnumRegistryValuesGivesDataAsText) {
  world().SetEnvironment("ORU_LONG", "a text longer than its name");
  const struct {
    const char* name;
    std::uint32_t kind;
    NarrowText stored;
    Text text;
  } cases[] = {
      {"a text", kRegSz, Raw("abc\0"), u"abc"},
      {"b text of no bytes", kRegSz, "", u""},
      {"c expanded", kRegExpandSz, Raw("<%ORU_LONG%>\0"), u"<a text longer than its name>"},
      {"d expandable of no bytes", kRegExpandSz, "", u""},
      {"e bytes", kRegBinary, Raw("\0\x0F\xA1\xFF"), u"000FA1FF"},
      {"f no bytes", kRegBinary, "", u""},
      {"g number", kRegDword, "\xFE\xFF\xFF\xFF", u"-2"},
      {"h multi-string", kRegMultiSz, Raw("one\0two\0\0"), u"one,two"},
      {"i empty multi-string", kRegMultiSz, Raw("\0\0"), u""},
      {"j multi-string of one byte", kRegMultiSz, Raw("\0"), u""},
      {"k text beyond the buffer", kRegSz, NarrowText(10000, 'x') + '\0', Text(10000, u'x')},
      {"l other kind", 11, "12345678", u""},
      {"m \xE4", kRegSz, Raw("\xE4\0"), u"ä"},
  };
  std::vector<clsRegistry::NamedData> expected;
  for (const auto& c : cases) {
    Plant(c.name, c.kind, c.stored);
    expected.push_back({store().FromNarrow(c.name), c.text});
  }
  auto values = registry.EnumRegistryValues(kCurrentUser, wide());
  std::sort(values.begin(), values.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(values[i], expected[i]) << cases[i].name;
  }
  EXPECT_TRUE(registry.EnumRegistryValues(kCurrentUser, wide() + u"\\none").empty());
}

TEST_P(clsRegistryTest, EnumRegistryValuesSkipsNamesTooLongForItsBuffer) {
  Store("a", kRegSz, "1");
  Store(NarrowText(259, 'b'), kRegSz, "2");
  Store(NarrowText(260, 'c'), kRegSz, "3");
  Store("d", kRegSz, "4");
  auto values = registry.EnumRegistryValues(kCurrentUser, wide());
  std::sort(values.begin(), values.end(),
            [](const auto& a, const auto& b) { return a.data < b.data; });
  EXPECT_EQ(values, (std::vector<clsRegistry::NamedData>{
                        {u"a", u"1"}, {Text(259, u'b'), u"2"}, {u"d", u"4"}}));
}

// Other machines.

TEST_P(clsRegistryTest, RemotePairSaysErrorWhenTheMachineIsNotReached) {
  constexpr const char16_t* kNoMachine = u"\\\\no-such-machine.invalid";
  const RegistryValue error = Text(u"Error!");
  EXPECT_EQ(registry.ReadRemoteRegistryValue(kNoMachine, kCurrentUser, u"v", kDefault), error);
  EXPECT_EQ(registry.WriteRemoteRegistryValue(kNoMachine, kCurrentUser, u"v", kText, kRegSz),
            error);
}

TEST_P(clsRegistryTest, RemotePairOnThisMachineReadsAndWrites) {
  registry.hkey = 0;
  EXPECT_EQ(registry.ReadRemoteRegistryValue(u"", kCurrentUser, u"v", kDefault), kDefault);
  EXPECT_EQ(registry.WriteRemoteRegistryValue(u"", kCurrentUser, u"v", kText, kRegSz),
            RegistryValue(std::int16_t{-1}));
  EXPECT_EQ(Stored("v"), (StoredValue{kRegSz, Raw("text\0")}));
  EXPECT_EQ(registry.ReadRemoteRegistryValue(u"", kCurrentUser, u"v"), kText);
  registry.Subkey = u"none";
  EXPECT_EQ(registry.WriteRemoteRegistryValue(u"", kCurrentUser, u"v", kText, kRegSz),
            RegistryValue(std::int16_t{0}));
}

TEST_P(clsRegistryTest, TrimNullCutsAtTheFirstNul) {
  EXPECT_EQ(clsRegistry::TrimNull(u"whole"), u"whole");
  EXPECT_EQ(clsRegistry::TrimNull(TextView(u"a\0b\0", 4)), u"a");
  EXPECT_EQ(clsRegistry::TrimNull(TextView(u"\0b", 2)), u"");
  EXPECT_EQ(clsRegistry::TrimNull(u""), u"");
}

}  // namespace
}  // namespace marl
