#include "settings/SegmentationRules.h"

#include <gtest/gtest.h>

#include "tests/unit/StoredValues.h"
#include "tests/unit/WatchedRegistry.h"

namespace marl {
namespace {

const NarrowText kKey = "Software\\Oru\\Marl\\Segmentation";

class Segmentation : public testing::Test {
 protected:
  StoredValues Values() { return ValuesOf(registry, kCurrentUser, kKey); }
  void Plant(const NarrowText& name, std::uint32_t kind, const NarrowText& data) {
    registry.Plant(kCurrentUser, kKey, name, kind, data);
  }

  WatchedRegistry registry;
};

TEST_F(Segmentation, NothingStoredIsNoRules) {
  EXPECT_EQ(SegmentationRules::Load(registry), SegmentationRules{});
}

TEST_F(Segmentation, BothListsLieUnderOneKeyInTheirOrder) {
  const SegmentationRules rules{{u"Mr.", u"z. B.", u"e.g. "}, {u";"}};
  rules.Store(registry);
  EXPECT_EQ(Values(), (StoredValues{{"DontSplit1", Sz("Mr.")},
                                    {"DontSplit2", Sz("z. B.")},
                                    {"DontSplit3", Sz("e.g. ")},
                                    {"ForceSplit1", Sz(";")}}));
  EXPECT_EQ(SegmentationRules::Load(registry), rules);
}

TEST_F(Segmentation, StoringReplacesAllThatWasThere) {
  SegmentationRules{{u"a", u"b"}, {u"c", u"d"}}.Store(registry);
  SegmentationRules{{u"b"}, {}}.Store(registry);
  EXPECT_EQ(Values(), (StoredValues{{"DontSplit1", Sz("b")}}));
}

TEST_F(Segmentation, WithoutRulesThereIsNoKey) {
  SegmentationRules{{u"a"}, {}}.Store(registry);
  SegmentationRules{{u""}, {u""}}.Store(registry);
  EXPECT_FALSE(HasKey(registry, kCurrentUser, kKey));
}

TEST_F(Segmentation, EmptyAndRepeatedStringsAreLeftOut) {
  SegmentationRules{{u"a", u"", u"b", u"a"}, {u"", u"c", u"b", u"c", u"A"}}.Store(registry);
  EXPECT_EQ(SegmentationRules::Load(registry), (SegmentationRules{{u"a", u"b"}, {u"c", u"A"}}));
}

TEST_F(Segmentation, StringsBeyondTheCodePageAreKeptAsUnits) {
  const SegmentationRules rules{{u"\u20AC", u"\u3002"},
                                {u"\U0001F600", Text(1, char16_t{0xD800}), u"a\u2003"}};
  rules.Store(registry);
  EXPECT_EQ(Values().at("DontSplit1"), Sz("\x80"));
  EXPECT_EQ(Values().at("DontSplit2"), (Stored{kRegBinary, NarrowText("\x02\x30", 2)}));
  EXPECT_EQ(SegmentationRules::Load(registry), rules);
}

TEST_F(Segmentation, PercentSignsAreNotExpanded) {
  registry.SetEnvironment("PATH", "expanded");
  const SegmentationRules rules{{u"%PATH%"}, {}};
  rules.Store(registry);
  EXPECT_EQ(Values(), (StoredValues{{"DontSplit1", Sz("%PATH%")}}));
  EXPECT_EQ(SegmentationRules::Load(registry), rules);
}

TEST_F(Segmentation, AGapEndsAList) {
  Plant("DontSplit1", kRegSz, NarrowText("a\0", 2));
  Plant("DontSplit3", kRegSz, NarrowText("c\0", 2));
  Plant("ForceSplit2", kRegSz, NarrowText("x\0", 2));
  EXPECT_EQ(SegmentationRules::Load(registry), (SegmentationRules{{u"a"}, {}}));
}

TEST_F(Segmentation, ForeignKindsAndHostileDataDoNoHarm) {
  Plant("DontSplit1", kRegDword, DwordBytes(7));
  EXPECT_EQ(SegmentationRules::Load(registry), (SegmentationRules{{u"7"}, {}}));
  const NarrowText data[] = {"", "x", NarrowText("\0", 1), NarrowText("\xFF\xFE\x00", 3),
                             NarrowText(3000, 'A')};
  for (const std::uint32_t kind : {0u, 1u, 2u, 3u, 5u, 6u, 7u, 11u, 0xFFFFFFFFu}) {
    for (const NarrowText& bytes : data) {
      Plant("ForceSplit1", kind, bytes);
      EXPECT_LE(SegmentationRules::Load(registry).forceSplit.size(), 1u);
    }
  }
}

TEST_F(Segmentation, ARegistryThatRefusesKeepsWhatItHas) {
  SegmentationRules{{u"a"}, {}}.Store(registry);
  registry.Plant(kCurrentUser, kKey + "\\Sub", "x", kRegSz, NarrowText("x\0", 2));
  registry.refuseWriting = true;
  SegmentationRules{{u"b"}, {}}.Store(registry);
  EXPECT_EQ(SegmentationRules::Load(registry), (SegmentationRules{{u"a"}, {}}));
}

TEST_F(Segmentation, ThousandsOfRulesComeBack) {
  SegmentationRules rules;
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(i);
    rules.dontSplit.push_back(Text(number.begin(), number.end()));
  }
  rules.Store(registry);
  EXPECT_EQ(SegmentationRules::Load(registry), rules);
}

}  // namespace
}  // namespace marl
