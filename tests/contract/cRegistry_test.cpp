#include "settings/cRegistry.h"

#include <algorithm>

#include "tests/contract/RegistryWorld.h"

namespace marl {
namespace {

class cRegistryTest : public RegistryTest {
 protected:
  cRegistryTest() : registry(store()) {
    registry.ClassKey = kCurrentUser;
    registry.SectionKey = wide();
    registry.ValueKey = u"v";
  }

  /// Assigns with a kind and returns what is stored.
  std::optional<StoredValue> Assigned(std::int32_t kind, const RegistryValue& value) {
    store().DeleteValue(Open().get(), "v");
    registry.valueType = kind;
    registry.Value(value);
    return Stored("v");
  }

  cRegistry registry;
};
MARL_OVER_ALL_BACKENDS(cRegistryTest);

const RegistryValue kStoredText = Text(u"text");
const RegistryValue kDefaultValue = Text(u"the default");

// Keys.

TEST_P(cRegistryTest, KeyExistsAsksForTheSection) {
  EXPECT_TRUE(registry.KeyExists());
  registry.SectionKey += u"\\none";
  EXPECT_FALSE(registry.KeyExists());
}

TEST_P(cRegistryTest, CreateKeyMakesThePathAndIsContentWithOneThatIsThere) {
  registry.SectionKey += u"\\one\\two";
  EXPECT_TRUE(registry.CreateKey());
  EXPECT_TRUE(Exists("one\\two"));
  EXPECT_TRUE(registry.CreateKey());
  registry.ClassKey = 0;
  EXPECT_FALSE(registry.CreateKey());
}

TEST_P(cRegistryTest, DeleteKeyLeavesAKeyWithSubKeys) {
  Make("one\\two");
  registry.SectionKey = wide() + u"\\one";
  EXPECT_FALSE(registry.DeleteKey());
  EXPECT_TRUE(Exists("one\\two"));
  registry.SectionKey = wide() + u"\\one\\two";
  EXPECT_TRUE(registry.DeleteKey());
  EXPECT_FALSE(registry.DeleteKey());
  registry.SectionKey = wide() + u"\\one";
  EXPECT_TRUE(registry.DeleteKey());
}

TEST_P(cRegistryTest, DeleteValueSaysWhetherItExisted) {
  Store("v", kRegSz, "x");
  EXPECT_TRUE(registry.DeleteValue());
  EXPECT_EQ(Stored("v"), std::nullopt);
  EXPECT_FALSE(registry.DeleteValue());
  registry.SectionKey += u"\\none";
  EXPECT_FALSE(registry.DeleteValue()) << "a key that does not open";
  EXPECT_FALSE(Exists("none"));
}

// Reading.

TEST_P(cRegistryTest, ReadInAMissingKeyYieldsDefaultAndKeepsValueType) {
  registry.SectionKey += u"\\none";
  registry.Default = kDefaultValue;
  registry.valueType = 4;
  EXPECT_EQ(registry.Value(), kDefaultValue);
  EXPECT_EQ(registry.valueType, 4);
  EXPECT_FALSE(Exists("none")) << "reading makes no key";
}

TEST_P(cRegistryTest, ReadOfAMissingValueYieldsDefaultAndKeepsValueType) {
  registry.valueType = 3;
  EXPECT_EQ(registry.Value(), RegistryValue()) << "which starts empty";
  registry.Default = std::int16_t{-7};
  EXPECT_EQ(registry.Value(), RegistryValue(std::int16_t{-7}));
  EXPECT_EQ(registry.valueType, 3);
}

TEST_P(cRegistryTest, ReadGivesWhatIsStored) {
  world().SetEnvironment("ORU_LONG", "a text longer than its name");
  const struct {
    const char* name;
    std::uint32_t kind;
    NarrowText stored;
    RegistryValue read;
  } cases[] = {
      {"text", kRegSz, Raw("abc\0"), Text(u"abc")},
      {"empty text, not Default", kRegSz, Raw("\0"), Text()},
      {"code page", kRegSz, Raw("\x80\0"), Text(u"€")},
      {"inner NUL", kRegSz, Raw("a\0b\0"), Text(u"a\0b", 3)},
      {"no terminator: the last character goes for one", kRegSz, "abc", Text(u"ab")},
      {"two terminators", kRegSz, Raw("abc\0\0"), Text(u"abc\0", 4)},
      {"text of no bytes", kRegSz, "", kDefaultValue},
      {"multi-string", kRegMultiSz, Raw("a\0b\0\0"), Text(u"a\0b\0", 4)},
      {"multi-string of odd size", kRegMultiSz, Raw("a\0b"), Text(u"a\0", 2)},
      {"multi-string of no bytes", kRegMultiSz, "", kDefaultValue},
      {"expanded", kRegExpandSz, Raw("<%ORU_LONG%>\0"), Text(u"<a text longer than its name>")},
      {"nothing to expand", kRegExpandSz, Raw("plain\0"), Text(u"plain")},
      {"name unknown", kRegExpandSz, Raw("%ORU_NONE%\0"), Text(u"%ORU_NONE%")},
      {"expanded up to a NUL", kRegExpandSz, Raw("a\0b\0"), Text(u"a")},
      {"expandable of no bytes", kRegExpandSz, "", kDefaultValue},
      {"number", kRegDword, Raw("\x04\x03\x02\x01"), std::int32_t{0x01020304}},
      {"negative number", kRegDword, "\xFE\xFF\xFF\xFF", std::int32_t{-2}},
      {"short number", kRegDword, "\x01\x02", std::int32_t{0x0201}},
      {"number of no bytes", kRegDword, "", std::int32_t{0}},
      {"number that does not fit", kRegDword, "12345678", std::int32_t{0}},
      {"big-endian number", kRegDwordBigEndian, "\x01\x02\x03\x04", std::int32_t{0x01020304}},
      {"negative big-endian number", kRegDwordBigEndian, "\xFF\xFF\xFF\xFE", std::int32_t{-2}},
      {"bytes, and a zero behind", kRegBinary, "\x01\xFF", Bytes{1, 255, 0}},
      {"no bytes, and a zero behind", kRegBinary, "", Bytes{0}},
      {"no kind", kRegNone, "ab", Bytes{'a', 'b', 0}},
      {"64-bit number", 11, "12345678", Bytes{'1', '2', '3', '4', '5', '6', '7', '8', 0}},
      {"kind of nobody", 4711, "a", Bytes{'a', 0}},
  };
  registry.Default = kDefaultValue;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Plant("v", c.kind, c.stored);
    registry.valueType = 0;
    EXPECT_EQ(registry.Value(), c.read);
    EXPECT_EQ(registry.valueType, static_cast<std::int32_t>(c.kind));
  }
}

TEST_P(cRegistryTest, ReadsValuesOfEverySizeAroundTheFirstBuffer) {
  for (std::size_t size = 250; size <= 260; ++size) {
    SCOPED_TRACE(size);
    const NarrowText data(size, 't');
    const Text text(size, u't');
    Plant("v", kRegSz, data + '\0');
    EXPECT_EQ(registry.Value(), RegistryValue(text));
    Plant("v", kRegSz, data);
    EXPECT_EQ(registry.Value(), RegistryValue(text.substr(1)));
    Plant("v", kRegExpandSz, data + '\0');
    EXPECT_EQ(registry.Value(), RegistryValue(text));
    Plant("v", kRegBinary, data);
    Bytes bytes(size, 't');
    bytes.push_back(0);
    EXPECT_EQ(registry.Value(), RegistryValue(bytes));
    Plant("v", kRegDword, data);
    EXPECT_EQ(registry.Value(), RegistryValue(std::int32_t{0}));
  }
}

TEST_P(cRegistryTest, ReadsTheSameWhileTheKeyIsKeptOpen) {
  registry.Default = kDefaultValue;
  {
    const cRegistry::Reading reading(registry);
    registry.ValueKey = u"none";
    EXPECT_EQ(registry.Value(), kDefaultValue);
    Plant("v", kRegSz, Raw("abc\0"));
    registry.ValueKey = u"v";
    EXPECT_EQ(registry.Value(), RegistryValue(Text(u"abc")));
    Plant("v", kRegDword, Raw("\1\0\0\0"));
    EXPECT_EQ(registry.Value(), RegistryValue(std::int32_t{1})) << "not a copy of the first read";
  }
  Plant("v", kRegSz, Raw("later\0"));
  EXPECT_EQ(registry.Value(), RegistryValue(Text(u"later")));
}

TEST_P(cRegistryTest, AMissingKeyYieldsDefaultWhileItIsKeptOpen) {
  registry.Default = kDefaultValue;
  registry.SectionKey = wide() + u"\\none";
  const cRegistry::Reading reading(registry);
  EXPECT_EQ(registry.Value(), kDefaultValue);
}

TEST_P(cRegistryTest, ReadsAMegabyte) {
  Store("v", kRegSz, NarrowText(1 << 20, 't') + '\0');
  EXPECT_TRUE(registry.Value() == RegistryValue(Text(1 << 20, u't')));
}

TEST_P(cRegistryTest, TheEmptyNameIsTheDefaultValue) {
  registry.ValueKey = u"";
  registry.valueType = 1;
  registry.Value(kStoredText);
  EXPECT_EQ(Stored(""), (StoredValue{kRegSz, Raw("text\0")}));
  EXPECT_EQ(registry.Value(), kStoredText);
}

// Writing.

TEST_P(cRegistryTest, AssigningMakesTheKey) {
  registry.SectionKey += u"\\one\\two";
  registry.valueType = 4;
  registry.Value(std::int32_t{1});
  EXPECT_EQ(Stored("v", "one\\two"), (StoredValue{kRegDword, Raw("\1\0\0\0")}));
}

TEST_P(cRegistryTest, AssigningMakesTheKeyEvenWhenNothingIsWritten) {
  registry.SectionKey += u"\\one";
  registry.Value(kStoredText);
  EXPECT_TRUE(Exists("one"));
  EXPECT_EQ(Stored("v", "one"), std::nullopt);
}

TEST_P(cRegistryTest, AssigningWritesByValueType) {
  const RegistryValue bytes = Bytes{1, 2, 3, 4, 5};
  const std::optional<StoredValue> nothing;
  const struct {
    const char* name;
    std::int32_t valueType;
    RegistryValue value;
    std::optional<StoredValue> stored;
  } cases[] = {
      {"text with its terminator", 1, kStoredText, StoredValue{1, Raw("text\0")}},
      {"the empty text is one byte", 1, Text(), StoredValue{1, Raw("\0")}},
      {"in the code page", 1, Text(u"€日"), StoredValue{1, Raw("\x80?\0")}},
      {"with inner NULs", 1, Text(u"a\0b", 3), StoredValue{1, Raw("a\0b\0")}},
      {"16-bit number as text", 1, std::int16_t{-3}, StoredValue{1, Raw("-3\0")}},
      {"32-bit number as text", 1, std::int32_t{70000}, StoredValue{1, Raw("70000\0")}},
      {"nothing as text", 1, {}, StoredValue{1, Raw("\0")}},
      {"bytes as text", 1, Bytes{'a', 0, 'b', 0, 'c'}, StoredValue{1, Raw("ab\0")}},
      {"kind 2 without percent signs", 2, kStoredText, StoredValue{1, Raw("text\0")}},
      {"kind 2 with a name", 2, Text(u"%A%"), StoredValue{2, Raw("%A%\0")}},
      {"two bytes fewer than the array has", 3, bytes, StoredValue{3, "\1\2\3"}},
      {"array of two", 3, Bytes{1, 2}, StoredValue{3, ""}},
      {"array too short for its count", 3, Bytes{1}, nothing},
      {"empty array", 3, Bytes{}, nothing},
      {"text as bytes", 3, kStoredText, nothing},
      {"number as bytes", 3, std::int32_t{1}, nothing},
      {"32-bit number", 4, std::int32_t{-2}, StoredValue{4, "\xFE\xFF\xFF\xFF"}},
      {"16-bit number", 4, std::int16_t{258}, StoredValue{4, Raw("\2\1\0\0")}},
      {"negative 16-bit number", 4, std::int16_t{-1}, StoredValue{4, "\xFF\xFF\xFF\xFF"}},
      {"kind 5 writes kind 4", 5, std::int32_t{1}, StoredValue{4, Raw("\1\0\0\0")}},
      {"text as number", 4, Text(u"1"), nothing},
      {"text as big-endian number", 5, Text(u"1"), nothing},
      {"nothing as number", 4, {}, nothing},
      {"bytes as number", 4, bytes, nothing},
      {"kind 0", 0, kStoredText, nothing},
      {"kind 6", 6, kStoredText, nothing},
      {"kind 7", 7, kStoredText, nothing},
      {"kind 11", 11, std::int32_t{1}, nothing},
      {"kind -1", -1, kStoredText, nothing},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Assigned(c.valueType, c.value), c.stored);
    store().DeleteValue(Open().get(), "v");
    EXPECT_EQ(registry.SetValue(c.value), c.stored.has_value());
    EXPECT_EQ(Stored("v"), c.stored);
    EXPECT_EQ(registry.valueType, c.valueType);
  }
}

TEST_P(cRegistryTest, ThePercentRule) {
  const struct {
    const char16_t* text;
    std::uint32_t kind;
  } cases[] = {
      {u"no sign", kRegSz},      {u"%", kRegSz},           {u"100%", kRegSz},
      {u"%%", kRegSz},           {u"a%%b", kRegSz},        {u"\"C:\\x.exe\" \"%1\"", kRegSz},
      {u"%TEMP%", kRegExpandSz}, {u"%1 %2", kRegExpandSz}, {u"%a%", kRegExpandSz},
      {u"%%%", kRegExpandSz},    {u"%%a%", kRegExpandSz},  {u"50% of 100%", kRegExpandSz},
  };
  for (const auto& c : cases) {
    for (const std::int32_t valueType : {1, 2}) {
      const NarrowText bytes = store().ToNarrow(c.text) + '\0';
      EXPECT_EQ(Assigned(valueType, Text(c.text)), (StoredValue{c.kind, bytes}));
    }
  }
}

TEST_P(cRegistryTest, ANameBetweenPercentSignsReadsBackExpanded) {
  world().SetEnvironment("ORU_NAME", "expanded");
  registry.valueType = 1;
  registry.Value(Text(u"%ORU_NAME%!"));
  EXPECT_EQ(Stored("v"), (StoredValue{kRegExpandSz, Raw("%ORU_NAME%!\0")}));
  EXPECT_EQ(registry.Value(), RegistryValue(Text(u"expanded!")));
  EXPECT_EQ(registry.valueType, 2);
}

TEST_P(cRegistryTest, AReadGovernsTheNextAssignment) {
  Store("number", kRegDword, Raw("\7\0\0\0"));
  registry.ValueKey = u"number";
  EXPECT_EQ(registry.Value(), RegistryValue(std::int32_t{7}));
  registry.Value(kStoredText);
  EXPECT_EQ(Stored("number"), (StoredValue{kRegDword, Raw("\7\0\0\0")})) << "text is no number";
  EXPECT_FALSE(registry.SetValue(kStoredText));
  registry.valueType = 1;
  registry.Value(kStoredText);
  EXPECT_EQ(Stored("number"), (StoredValue{kRegSz, Raw("text\0")}));
}

TEST_P(cRegistryTest, EmptyTextReadsBackAsEmptyTextAndNotAsDefault) {
  registry.Default = kDefaultValue;
  registry.valueType = 1;
  registry.Value(Text());
  EXPECT_EQ(Stored("v"), (StoredValue{kRegSz, Raw("\0")}));
  EXPECT_EQ(registry.Value(), RegistryValue(Text()));
}

TEST_P(cRegistryTest, BytesLoseOneWithEachReadAndAssignment) {
  Store("v", kRegBinary, "1234");
  registry.Value(registry.Value());
  EXPECT_EQ(Stored("v"), (StoredValue{kRegBinary, "123"}));
}

TEST_P(cRegistryTest, AKeyThatCannotBeCreatedIsReportedBySetValueAlone) {
  registry.ClassKey = 0;
  registry.valueType = 1;
  registry.Value(kStoredText);
  EXPECT_FALSE(registry.SetValue(kStoredText));
  EXPECT_EQ(registry.Value(), RegistryValue());
}

// Enumerating.

TEST_P(cRegistryTest, EnumerateValuesFromIndexOne) {
  std::vector<Text> names = {u"old"};
  std::int32_t count = 5;
  EXPECT_TRUE(registry.EnumerateValues(names, count));
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(names.empty());

  for (const char* name : {"a rather long name of a value", "short", "\xE4", ""}) {
    Store(name, kRegBinary, NarrowText(5000, 'x'));
  }
  EXPECT_TRUE(registry.EnumerateValues(names, count));
  EXPECT_EQ(count, 4);
  ASSERT_EQ(names.size(), 5u);
  std::sort(names.begin() + 1, names.end());
  EXPECT_EQ(names, (std::vector<Text>{u"", u"", u"a rather long name of a value", u"short", u"ä"}));
}

TEST_P(cRegistryTest, EnumerateValuesOfAMissingKeyIsTrueAndEmpty) {
  registry.SectionKey += u"\\none";
  std::vector<Text> names = {u"old"};
  std::int32_t count = 5;
  EXPECT_TRUE(registry.EnumerateValues(names, count));
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(names.empty());
}

TEST_P(cRegistryTest, EnumerateSectionsFromIndexOne) {
  for (const char* name : {"b", "\xC4", "A"}) Make(name);
  std::vector<Text> names;
  std::int32_t count = 0;
  EXPECT_TRUE(registry.EnumerateSections(names, count));
  EXPECT_EQ(count, 3);
  EXPECT_EQ(names, (std::vector<Text>{u"", u"A", u"b", u"Ä"}));
  registry.SectionKey += u"\\none";
  EXPECT_TRUE(registry.EnumerateSections(names, count));
  EXPECT_EQ(count, 0);
}

TEST_P(cRegistryTest, EnumerateSectionsEndsAtANameThatFillsItsBuffer) {
  const OpenKeyHandle key = Open();
  for (const NarrowText& name : {NarrowText(254, 'a'), NarrowText(255, 'b'), NarrowText("c")}) {
    OpenKeyHandle made;
    ASSERT_EQ(store().CreateKey(key.get(), name, kKeyAllBasic, made), kOk);
  }
  std::vector<Text> names;
  std::int32_t count = 0;
  EXPECT_TRUE(registry.EnumerateSections(names, count));
  EXPECT_EQ(count, 1);
  EXPECT_EQ(names, (std::vector<Text>{u"", Text(254, u'a')}));
}

}  // namespace
}  // namespace marl
