#include "appearance/SkinSettings.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/RuntimeError.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "settings/RegistryValue.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

const NarrowText kGuiKey = "Software\\Oru\\Marl\\GUI";

class Skin : public testing::Test {
 protected:
  MemoryRegistryStore store;

  void PutNumber(const NarrowText& name, std::int32_t number) {
    store.Plant(kCurrentUser, kGuiKey, name, kRegDword, DwordBytes(number));
  }
  void PutText(const NarrowText& name, const NarrowText& text) {
    store.Plant(kCurrentUser, kGuiKey, name, kRegSz, text + '\0');
  }
  std::pair<std::uint32_t, NarrowText> Stored(const NarrowText& name) {
    OpenKeyHandle key;
    EXPECT_EQ(store.OpenKey(kCurrentUser, kGuiKey, kKeyQueryValue, key), kOk);
    std::uint32_t kind = 0;
    char buffer[300];
    std::uint32_t size = sizeof buffer;
    if (store.QueryValue(key.get(), name, kind, buffer, size) != kOk) return {0, "absent"};
    return {kind, NarrowText(buffer, size)};
  }
};

SkinSettings OddSkin() {
  SkinSettings skin;
  skin.Angle = 217;
  skin.Color1 = 1;
  skin.Color2 = 2;
  skin.Border1 = 3;
  skin.Border2 = 4;
  skin.BorderWidth = 2;
  skin.Text1 = 5;
  skin.Text2 = SystemColor(8);
  skin.Icons = 3;
  skin.TwoStateOffset = 18;
  skin.IconsPerRow = 6;
  skin.Font1 = u"Tom & Jerry|8.25|";
  skin.Font2 = u"Verdana|12|iu";
  skin.DisplayIcons = u"171|160|151|141|131|121|111|101|091|081|071|061|051|041|031|021|011|000";
  return skin;
}

TEST_F(Skin, IsReadThroughOneOpenKeyWithOneQueryForEachValue) {
  struct Counting : WatchedRegistry {
    std::size_t queries = 0;
    Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                      std::span<char> buffer, std::uint32_t& size) override {
      ++queries;
      return WatchedRegistry::QueryValue(key, name, kind, buffer, size);
    }
  } counting;
  WriteSkin(counting, OddSkin());
  counting.opened.clear();
  EXPECT_EQ(ReadSkin(counting, 5), OddSkin());
  EXPECT_EQ(counting.opened,
            (std::vector<WatchedRegistry::Opened>{{kCurrentUser, kGuiKey, kKeyQueryValue}}));
  EXPECT_EQ(counting.queries, kSkinParameterCount);
}

TEST_F(Skin, EmptyKeyYieldsTheDefaultPanel) {
  const SkinSettings skin = ReadSkin(store, 5);
  EXPECT_EQ(skin, SkinSettings());
  EXPECT_EQ(skin.Angle, 90);
  EXPECT_EQ(skin.Color1, 12962742);
  EXPECT_EQ(skin.Color2, 3755264);
  EXPECT_EQ(skin.Border1, 16777215);
  EXPECT_EQ(skin.Border2, 0);
  EXPECT_EQ(skin.BorderWidth, 1);
  EXPECT_EQ(skin.Text1, 16777215);
  EXPECT_EQ(skin.Text2, 2733534);
  EXPECT_EQ(skin.Icons, 0);
  EXPECT_EQ(skin.TwoStateOffset, 0);
  EXPECT_EQ(skin.IconsPerRow, 5);
  EXPECT_EQ(skin.Font1, u"Arial|10|b");
  EXPECT_EQ(skin.Font2, u"Arial|10|bu");
  const DisplayOrder order = ParseDisplayIcons(skin.DisplayIcons);
  for (int p = 0; p < 18; ++p) {
    EXPECT_EQ(order[static_cast<std::size_t>(p)], (DisplayPosition{p, 1}));
  }
  OpenKeyHandle key;
  EXPECT_EQ(store.OpenKey(kCurrentUser, kGuiKey, kKeyQueryValue, key), kFileNotFound);
}

TEST_F(Skin, MissingColumnsStayAsTheyAre) {
  EXPECT_EQ(ReadSkin(store, 4).IconsPerRow, 4);
  PutNumber("IconsPerRow", 3);
  EXPECT_EQ(ReadSkin(store, 4).IconsPerRow, 3);
}

TEST_F(Skin, ColumnsAreNotCheckedOnRead) {
  for (const int columns : {0, -1, 1000000}) {
    PutNumber("IconsPerRow", columns);
    EXPECT_EQ(ReadSkin(store, 5).IconsPerRow, columns);
  }
}

TEST_F(Skin, NumbersAreNormalisedOnRead) {
  const struct {
    const char* name;
    std::int32_t SkinSettings::*field;
    std::int32_t stored;
    std::int32_t read;
  } cases[] = {
      {"Icons", &SkinSettings::Icons, 0, 0},
      {"Icons", &SkinSettings::Icons, 3, 3},
      {"Icons", &SkinSettings::Icons, 4, 1},
      {"Icons", &SkinSettings::Icons, 7, 1},
      {"Icons", &SkinSettings::Icons, -1, 1},
      {"BorderWidth", &SkinSettings::BorderWidth, 1, 1},
      {"BorderWidth", &SkinSettings::BorderWidth, 0, 2},
      {"BorderWidth", &SkinSettings::BorderWidth, 2, 2},
      {"BorderWidth", &SkinSettings::BorderWidth, 5, 2},
      {"BorderWidth", &SkinSettings::BorderWidth, -1, 2},
      {"TwoState", &SkinSettings::TwoStateOffset, 0, 0},
      {"TwoState", &SkinSettings::TwoStateOffset, 1, 18},
      {"TwoState", &SkinSettings::TwoStateOffset, 18, 18},
      {"TwoState", &SkinSettings::TwoStateOffset, -7, 18},
      {"Angle", &SkinSettings::Angle, -90, -90},
      {"Angle", &SkinSettings::Angle, 100000, 100000},
      {"Color1", &SkinSettings::Color1, SystemColor(15), SystemColor(15)},
  };
  for (const auto& row : cases) {
    PutNumber(row.name, row.stored);
    EXPECT_EQ(ReadSkin(store, 5).*row.field, row.read) << row.name << " " << row.stored;
  }
}

TEST_F(Skin, PlainReadGivesWhatIsStored) {
  PutNumber("Icons", 7);
  PutNumber("BorderWidth", 5);
  PutNumber("TwoState", 1);
  const SkinSettings skin = ReadSkinValues(store, OddSkin());
  EXPECT_EQ(skin.Icons, 7);
  EXPECT_EQ(skin.BorderWidth, 5);
  EXPECT_EQ(skin.TwoStateOffset, 1);
}

TEST_F(Skin, PlainReadTakesEveryDefaultFromTheCaller) {
  EXPECT_EQ(ReadSkinValues(store, OddSkin()), OddSkin());
}

TEST_F(Skin, WrittenValuesReadBack) {
  WriteSkin(store, OddSkin());
  EXPECT_EQ(ReadSkin(store, 5), OddSkin());
  EXPECT_EQ(ReadSkinValues(store, SkinSettings()), OddSkin());
  EXPECT_EQ(store.OpenKeys(), 0u);
}

TEST_F(Skin, ElevenNumbersAndThreeTextsAreStored) {
  WriteSkin(store, OddSkin());
  for (const char* name : {"Angle", "Color1", "Color2", "Border1", "Border2", "BorderWidth",
                           "Text1", "Text2", "Icons", "TwoState", "IconsPerRow"}) {
    EXPECT_EQ(Stored(name).first, kRegDword) << name;
  }
  EXPECT_EQ(Stored("Angle").second, NarrowText("\xD9\0\0\0", 4));
  EXPECT_EQ(Stored("TwoState").second, NarrowText("\x12\0\0\0", 4));
  EXPECT_EQ(Stored("Font1"),
            (std::pair<std::uint32_t, NarrowText>(kRegSz, NarrowText("Tom & Jerry|8.25|\0", 18))));
  EXPECT_EQ(Stored("Font2").first, kRegSz);
  EXPECT_EQ(Stored("DisplayIcons").first, kRegSz);
}

TEST_F(Skin, TextThatIsANumberServesAsNumber) {
  PutText("Angle", "45");
  PutText("Color1", "&HFF");
  PutText("Icons", " 2 ");
  const SkinSettings skin = ReadSkin(store, 5);
  EXPECT_EQ(skin.Angle, 45);
  EXPECT_EQ(skin.Color1, 255);
  EXPECT_EQ(skin.Icons, 2);
}

TEST_F(Skin, BytesInReverseOrderServeAsNumber) {
  store.Plant(kCurrentUser, kGuiKey, "Angle", kRegDwordBigEndian, NarrowText("\0\0\0\x2D", 4));
  EXPECT_EQ(ReadSkin(store, 5).Angle, 45);
}

TEST_F(Skin, NumberServesAsText) {
  PutNumber("Font1", 12);
  EXPECT_EQ(ReadSkin(store, 5).Font1, u"12");
}

TEST_F(Skin, ValueThatIsNoNumberIsATypeMismatch) {
  const auto expectMismatch = [&](const char* what) {
    try {
      ReadSkin(store, 5);
      ADD_FAILURE() << what;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.text(), u"Type mismatch") << what;
    }
  };
  PutText("Angle", "steep");
  expectMismatch("text");
  PutText("Angle", "");
  expectMismatch("empty text");
  store.Plant(kCurrentUser, kGuiKey, "Angle", kRegBinary, NarrowText("\x01\x02", 2));
  expectMismatch("bytes");
}

TEST_F(Skin, NumberBeyond32BitsIsAnOverflow) {
  PutText("Color2", "99999999999");
  EXPECT_THROW(ReadSkin(store, 5), RuntimeError);
}

TEST_F(Skin, HostileDataNeverDoesMoreThanFail) {
  const NarrowText datas[] = {"",
                              NarrowText(1, '\0'),
                              "1",
                              "x",
                              NarrowText(3, '\xFF'),
                              NarrowText("\0\0", 2),
                              "%PATH%",
                              "%",
                              "%%%%",
                              "|||||||||||||||||",
                              NarrowText(5000, '9'),
                              NarrowText(5000, '|')};
  const auto isText = [](std::string_view name) {
    return name.starts_with("Font") || name == "DisplayIcons";
  };
  int read = 0;
  int refused = 0;
  for (const char* name : {"Angle", "Color1", "Border2", "BorderWidth", "Text2", "Icons",
                           "TwoState", "IconsPerRow", "Font1", "Font2", "DisplayIcons"}) {
    for (std::uint32_t kind = 0; kind < 12; ++kind) {
      for (const NarrowText& data : datas) {
        MemoryRegistryStore fresh;
        fresh.Plant(kCurrentUser, kGuiKey, name, kind, data);
        SkinSettings skin;
        try {
          skin = ReadSkin(fresh, 5);
        } catch (const RuntimeError& error) {
          EXPECT_TRUE(error.text() == u"Type mismatch" || error.text() == u"Overflow")
              << name << " " << kind;
          // A number can have any number of bytes.
          EXPECT_NE(kind, kRegDword) << name;
          EXPECT_FALSE(isText(name) && IsTextKind(kind)) << name << " " << kind;
          ++refused;
          continue;
        }
        ++read;
        EXPECT_TRUE(skin.Icons >= 0 && skin.Icons <= 3);
        EXPECT_TRUE(skin.BorderWidth == 1 || skin.BorderWidth == 2);
        EXPECT_TRUE(skin.TwoStateOffset == 0 || skin.TwoStateOffset == 18);
        try {
          ParseDisplayIcons(skin.DisplayIcons);
        } catch (const RuntimeError&) {
          EXPECT_STREQ(name, "DisplayIcons") << "the order of the other values is the default";
        }
      }
    }
  }
  EXPECT_EQ(read + refused, 11 * 12 * 12);
  EXPECT_GT(read, 300);
  EXPECT_GT(refused, 300);
}

TEST(DisplayIcons, EntriesAreButtonAndFlag) {
  const DisplayOrder order = ParseDisplayIcons(
      u"171|000|011|0512|050|06-1|070.4| 81|091|091|101|111|121|131|141|151|161|161");
  EXPECT_EQ(order[0], (DisplayPosition{17, 1}));
  EXPECT_EQ(order[1], (DisplayPosition{0, 0}));
  EXPECT_EQ(order[2], (DisplayPosition{1, 1}));
  EXPECT_EQ(order[3], (DisplayPosition{5, 12}));
  EXPECT_EQ(order[4], (DisplayPosition{5, 0}));
  EXPECT_EQ(order[5], (DisplayPosition{6, -1}));
  EXPECT_EQ(order[6], (DisplayPosition{7, 0}));
  EXPECT_EQ(order[7], (DisplayPosition{8, 1}));
}

const Text kSeventeen = u"001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161";

TEST(DisplayIcons, FewerThan18EntriesAreOutOfRange) {
  for (const Text& text : {Text(), Text(u"001"), kSeventeen}) {
    try {
      ParseDisplayIcons(text);
      ADD_FAILURE();
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.text(), u"Subscript out of range");
    }
  }
}

TEST(DisplayIcons, EntriesAfterThe18thAreIgnored) {
  EXPECT_EQ(ParseDisplayIcons(kSeventeen + u"|170|garbage||999"),
            ParseDisplayIcons(kSeventeen + u"|170"));
}

TEST(DisplayIcons, EntryThatIsNoNumberIsATypeMismatch) {
  for (const TextView entry : {u"", u"17", u"1", u"x71", u"17x", u"1 x"}) {
    try {
      ParseDisplayIcons(kSeventeen + u"|" + Text(entry));
      ADD_FAILURE();
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.text(), u"Type mismatch");
    }
  }
}

TEST(DisplayIcons, ButtonsThatDoNotExistAreNotChecked) {
  EXPECT_EQ(ParseDisplayIcons(kSeventeen + u"|991")[17], (DisplayPosition{99, 1}));
  EXPECT_EQ(ParseDisplayIcons(kSeventeen + u"|-11")[17], (DisplayPosition{-1, 1}));
}

TEST(DisplayIcons, NormalFormReadsBack) {
  for (const Text& text : {SkinSettings().DisplayIcons, OddSkin().DisplayIcons}) {
    EXPECT_EQ(FormatDisplayIcons(ParseDisplayIcons(text)), text);
  }
  EXPECT_EQ(FormatDisplayIcons(ParseDisplayIcons(kSeventeen + u"|5 7")), kSeventeen + u"|051");
}

TEST(SkinParameters, EachHasALineOfItsOwnAndOneField) {
  std::set<int> lines;
  for (const SkinParameter& parameter : kSkinParameters) {
    EXPECT_NE(parameter.number == nullptr, parameter.text == nullptr);
    EXPECT_EQ(parameter.number != nullptr, parameter.normal != nullptr);
    lines.insert(parameter.line);
  }
  EXPECT_EQ(lines.size(), kSkinParameterCount);
  EXPECT_EQ(*lines.begin(), 0);
  EXPECT_EQ(*lines.rbegin(), static_cast<int>(kSkinParameterCount) - 1);
}

TEST(DisplayOrder, OneOfFewerButtonsGetsTheNewOnesAppended) {
  std::vector<DisplayPosition> order = SplitDisplayIcons(SkinSettings().DisplayIcons, 1000);
  ASSERT_EQ(order.size(), 18u);
  order[0].shown = 0;
  const std::vector<DisplayPosition> stored = order;
  CompleteOrder(order, 20);
  ASSERT_EQ(order.size(), 20u);
  EXPECT_TRUE(std::equal(stored.begin(), stored.end(), order.begin()));
  EXPECT_EQ(order[18], (DisplayPosition{18, 1}));
  EXPECT_EQ(order[19], (DisplayPosition{19, 1}));
}

TEST(DisplayOrder, OneOfSeventeenIsRefused) {
  std::vector<DisplayPosition> order(17);
  EXPECT_THROW(CompleteOrder(order, 19), RuntimeError);
  EXPECT_EQ(order.size(), 17u);
}

TEST(DisplayOrder, OneThatIsLongEnoughStaysAsItIs) {
  std::vector<DisplayPosition> order(25, {3, 1});
  CompleteOrder(order, 19);
  EXPECT_EQ(order, std::vector<DisplayPosition>(25, {3, 1}));
}

}  // namespace
}  // namespace marl
