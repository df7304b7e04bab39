#include "platform/FoldCase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

namespace marl {
namespace {

TEST(FoldCase, LettersOfOneRowAreEqualAndNoOthers) {
  const std::vector<Text> rows = {u"aA",
                                  u"zZ",
                                  u"[",
                                  u"{",
                                  u"@",
                                  u"`",
                                  u"\u00E4\u00C4",
                                  u"\u00FF\u0178",
                                  u"\u00F7",
                                  u"\u00D7",
                                  u"sS\u017F",
                                  u"kK\u212A",
                                  u"\u00E5\u00C5\u212B",
                                  u"iI",
                                  u"\u0130",
                                  u"\u0131",        // the Turkish letters do not match
                                  u"\u00DF\u1E9E",  // the sharp s is one unit
                                  u"\u0219\u0218",
                                  u"\u015F\u015E",  // Romanian
                                  u"\u01B0\u01AF",
                                  u"\u01A1\u01A0",
                                  u"\u1EE3\u1EE2",  // Vietnamese
                                  u"\u0259\u018F",
                                  u"\u01DD\u018E",  // Azerbaijani, and its neighbour
                                  u"\u0180\u0243",
                                  u"\u2C65\u023A",        // capitals in another block
                                  u"\u01C4\u01C5\u01C6",  // three cases
                                  u"\u03C3\u03C2\u03A3",
                                  u"\u03B8\u03D1\u0398\u03F4",
                                  u"\u00B5\u03BC\u039C",
                                  u"\u03B9\u0399\u0345\u1FBE",
                                  u"\u03C9\u03A9\u2126",
                                  u"\u03AC\u0386",
                                  u"\u1F80\u1F88",
                                  u"\u0432\u0412\u1C80",
                                  u"\u0450\u0400",
                                  u"\uA64B\uA64A\u1C88",
                                  u"\u04CF\u04C0",
                                  u"\u0561\u0531",
                                  u"\u0587",  // Armenian
                                  u"\u10D0\u1C90",
                                  u"\u2D00\u10A0",  // Georgian, both kinds
                                  u"\u13A0\uAB70",
                                  u"\u13F0\u13F8",  // Cherokee
                                  u"\u2170\u2160",
                                  u"\u24D0\u24B6",
                                  u"\uFF41\uFF21",
                                  u"\u1E01\u1E00",
                                  u"\u1E61\u1E60\u1E9B",
                                  u"\u0149",
                                  u"\u01F0",
                                  u"\uFB00",
                                  u"\u4E2D",
                                  u"\uAC00",
                                  Text(1, char16_t{0xD83D}),
                                  Text(1, char16_t{0xDC28}),
                                  u"\uE000",
                                  u"\uFFFD"};
  std::map<char16_t, Text> meeting;
  for (char16_t unit = 0xFFFF; unit != 0; --unit) meeting[FoldCase(unit)].insert(0, 1, unit);
  for (Text row : rows) {
    std::sort(row.begin(), row.end());
    EXPECT_EQ(meeting[FoldCase(row[0])], row) << testing::PrintToString(row);
  }
}

TEST(FoldCase, GivesTheCapital) {
  EXPECT_EQ(FoldCase(u"marl_ix \u01B0\u01C6\u03C2\u017F\u10D0\uAB70"),
            u"MARL_IX \u01AF\u01C4\u03A3S\u1C90\u13A0");
}

// The count for Unicode 15: this many units fold to another one, and none of those folds any
// further.
TEST(FoldCase, CoversTheBasicPlane) {
  int led = 0;
  for (int number = 0; number < 0x10000; ++number) {
    const auto unit = static_cast<char16_t>(number);
    const char16_t to = FoldCase(unit);
    EXPECT_EQ(FoldCase(to), to) << number;
    if (to != unit) ++led;
  }
  EXPECT_EQ(led, 1194);
}

TEST(FoldCase, TextsOfDifferentLengthAreNeverTheSame) {
  EXPECT_FALSE(SameText(u"\u00DF", u"ss"));
  EXPECT_FALSE(SameText(u"a", u"ab"));
  EXPECT_TRUE(SameText(u"Ph\u01B0\u01A1ng", u"PH\u01AF\u01A0NG"));
  EXPECT_TRUE(StartsWithText(u"\u03C3\u03C2x", u"\u03A3\u03A3"));
  EXPECT_FALSE(StartsWithText(u"\u03C3", u"\u03A3\u03A3"));
}

}  // namespace
}  // namespace marl
