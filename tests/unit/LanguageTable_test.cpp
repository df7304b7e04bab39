#include "support/LanguageTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "platform/FoldCase.h"

namespace marl {
namespace {

TEST(LanguageTable, HoldsNeutralAndRegionalLanguagesEachOnce) {
  const auto rows = LanguageTable();
  EXPECT_GE(rows.size(), 200u);
  std::set<Text> codes;
  std::set<std::int32_t> ids;
  for (const LanguageRow& row : rows) {
    EXPECT_FALSE(row.code.empty());
    EXPECT_FALSE(row.description.empty());
    EXPECT_GT(row.localeId, 0);
    EXPECT_TRUE(codes.insert(FoldCase(row.code)).second) << testing::PrintToString(Text(row.code));
    EXPECT_TRUE(ids.insert(row.localeId).second) << row.localeId;
  }
  const auto regional = std::count_if(rows.begin(), rows.end(), [](const LanguageRow& row) {
    return row.code.find(u'-') != TextView::npos;
  });
  EXPECT_GT(regional, 100);
  EXPECT_GT(static_cast<std::ptrdiff_t>(rows.size()) - regional, 50);
}

TEST(LanguageTable, WellKnownLanguages) {
  const struct {
    TextView code, description;
    std::int32_t codePage, localeId;
  } known[] = {
      {u"de-DE", u"German (Germany)", 1252, 0x407},
      {u"el", u"Greek", 1253, 0x08},
      {u"en-US", u"English (United States)", 1252, 0x409},
      {u"ja-JP", u"Japanese (Japan)", 932, 0x411},
      {u"ru-RU", u"Russian (Russia)", 1251, 0x419},
      {u"hi-IN", u"Hindi (India)", 0, 0x439},
      {u"nb-NO", u"Norwegian Bokmål (Norway)", 1252, 0x414},
      {u"ko", u"Korean", 949, 0x12},
  };
  for (const auto& wanted : known) {
    const auto rows = LanguageTable();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const LanguageRow& candidate) {
      return candidate.code == wanted.code;
    });
    ASSERT_NE(row, rows.end()) << testing::PrintToString(Text(wanted.code));
    EXPECT_EQ(row->description, wanted.description);
    EXPECT_EQ(row->codePage, wanted.codePage);
    EXPECT_EQ(row->localeId, wanted.localeId);
  }
}

TEST(LanguageTable, EveryCodePageOfALanguageIsInTheOtherTable) {
  std::set<std::int32_t> numbers;
  for (const CodePageRow& page : CodePageTable()) {
    EXPECT_TRUE(numbers.insert(page.number).second) << page.number;
    EXPECT_FALSE(page.code.empty()) << page.number;
    EXPECT_FALSE(page.description.empty()) << page.number;
  }
  for (const LanguageRow& row : LanguageTable()) {
    // Languages without an 8-bit code page have none.
    if (row.codePage == 0) continue;
    EXPECT_TRUE(numbers.contains(row.codePage)) << row.codePage;
  }
}

}  // namespace
}  // namespace marl
