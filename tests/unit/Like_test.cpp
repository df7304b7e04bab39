#include "support/Like.h"

#include <gtest/gtest.h>

#include "platform/RuntimeError.h"

namespace marl {
namespace {

struct Case {
  TextView text;
  TextView pattern;
  bool expected;
};

constexpr Case kCases[] = {
    {u"", u"", true},
    {u"a", u"", false},
    {u"", u"*", true},
    {u"", u"?", false},
    {u"REPORT.QTD", u"*.QTD", true},
    {u"REPORT.QTD.BAK", u"*.QTD", false},
    {u".QTD", u"*.QTD", true},
    {u"report.qtd", u"*.QTD", false},
    {u"C:\\A\\", u"*", true},
    {u"abc", u"a?c", true},
    {u"ac", u"a?c", false},
    {u"abcbc", u"a*bc", true},
    {u"abcbd", u"a*bc", false},
    {u"abc", u"**a*b**c*", true},
    {u"a1", u"a#", true},
    {u"aa", u"a#", false},
    {u"a#", u"a[#]", true},
    {u"b", u"[a-c]", true},
    {u"d", u"[a-c]", false},
    {u"d", u"[!a-c]", true},
    {u"b", u"[!a-c]", false},
    {u"", u"[!a]", false},
    {u"!", u"[!]", true},
    {u"-", u"[a-]", true},
    {u"-", u"[-a]", true},
    {u"*", u"[*]", true},
    {u"x", u"[*]", false},
    {u"ab", u"a[]b", true},
    {u"]", u"]", true},
    {u"a.b", u"a.b", true},
    {u"axb", u"a.b", false},
};

TEST(Like, FollowsItsTable) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Like(c.text, c.pattern), c.expected)
        << testing::PrintToString(Text(c.text)) << " " << testing::PrintToString(Text(c.pattern));
  }
}

TEST(Like, SetWithoutEndAndRangeBackwardsAreRefused) {
  EXPECT_THROW(Like(u"a", u"[a"), RuntimeError);
  EXPECT_THROW(Like(u"b", u"[c-a]"), RuntimeError);
}

TEST(Like, ManyStarsAreFast) {
  Text pattern;
  for (int i = 0; i < 500; ++i) pattern += u"*a";
  EXPECT_FALSE(Like(Text(20000, u'a') + u'b', pattern));
  EXPECT_TRUE(Like(Text(20000, u'a'), pattern));
}

}  // namespace
}  // namespace marl
