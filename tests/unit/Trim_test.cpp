#include "support/Trim.h"

#include <gtest/gtest.h>

namespace marl {
namespace {

TEST(Trim, TakesTheSpacesAtBothEnds) {
  EXPECT_EQ(Trim(u"  a b "), u"a b");
  EXPECT_EQ(Trim(u"a b"), u"a b");
  EXPECT_EQ(Trim(u" a"), u"a");
  EXPECT_EQ(Trim(u"a "), u"a");
}

TEST(Trim, LeavesNothingOfSpaces) {
  EXPECT_EQ(Trim(u""), u"");
  EXPECT_EQ(Trim(u" "), u"");
  EXPECT_EQ(Trim(u"   "), u"");
}

TEST(Trim, LeavesOtherBlanks) {
  EXPECT_EQ(Trim(u" \ta\n "), u"\ta\n");
  EXPECT_EQ(Trim(u"\u00A0a\u3000"), u"\u00A0a\u3000");
}

}  // namespace
}  // namespace marl
