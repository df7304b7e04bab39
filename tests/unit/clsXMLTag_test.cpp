#include "documents/clsXMLTag.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "platform/RuntimeError.h"
#include "tests/unit/XMLReference.h"

namespace marl {
namespace {

using reference::Documents;

/// Attribute names cannot be enumerated, so the reference's names are checked one by one.
struct Expected {
  Text name;
  std::vector<std::pair<Text, Text>> attributes;
};

void ExpectTag(const clsXMLTag& tag, const Expected& expected, const Text& source) {
  const std::string where = testing::PrintToString(source);
  EXPECT_EQ(Text(tag.name()), expected.name) << where;
  ASSERT_EQ(tag.AttributeCount(), static_cast<int>(expected.attributes.size())) << where;
  for (int i = 1; i <= tag.AttributeCount(); ++i) {
    const auto& [name, value] = expected.attributes[i - 1];
    EXPECT_EQ(Text(tag.AttributeValue(i)), value) << where << " at " << i;
    EXPECT_EQ(Text(tag.AttributeValue(name)), value) << where << " at " << i;
  }
}

TEST(XmlTag, IsEmptyAfterConstruction) {
  clsXMLTag tag;
  EXPECT_EQ(tag.name(), u"");
  EXPECT_EQ(tag.TextContent(), u"");
  EXPECT_EQ(tag.AttributeCount(), 0);
}

TEST(XmlTag, EmptyTextLeavesAnEmptyNameAndNoAttributes) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"1\">");
  tag.ParseTag(u"");
  EXPECT_EQ(tag.name(), u"");
  EXPECT_EQ(tag.AttributeCount(), 0);
  EXPECT_EQ(tag.AttributeValue(u"b"), u"");
}

TEST(XmlTag, TagsAndWhatTheyHold) {
  const struct {
    const char* what;
    Text tag;
    Expected expected;
  } rows[] = {
      {"name alone", u"<a>", {u"a", {}}},
      {"empty tag", u"<a/>", {u"a", {}}},
      {"close tag", u"</a>", {u"a", {}}},
      {"no angles", u"a", {u"a", {}}},
      {"only an angle", u"<", {u"", {}}},
      {"blank ends an empty name", u"< a b=\"1\">", {u"", {{u"a b", u"1"}}}},
      {"slash within the name is dropped", u"<a/b>", {u"ab", {}}},
      {"angle within the name is dropped", u"<a<b c=\"1\"/>", {u"ab", {{u"c", u"1"}}}},
      {"question mark is kept", u"<?xml version=\"1.0\"?>", {u"?xml", {{u"version", u"1.0"}}}},
      {"tab ends the name", u"<a\tb=\"1\">", {u"a", {{u"b", u"1"}}}},
      {"line break ends the name", u"<a\rb=\"1\">", {u"a", {{u"b", u"1"}}}},
      {"line feed ends the name", u"<a\nb=\"1\">", {u"a", {{u"b", u"1"}}}},
      {"angle ends the name", u"<a>b=\"1\"", {u"a", {{u"b", u"1"}}}},
      {"no blank before the first attribute", u"<a/b=\"c\">", {u"ab=\"c\"", {}}},
      {"two attributes", u"<a b=\"1\" c=\"2\">", {u"a", {{u"b", u"1"}, {u"c", u"2"}}}},
      {"many blanks", u"<a   b=\"1\"   c=\"2\"  />", {u"a", {{u"b", u"1"}, {u"c", u"2"}}}},
      {"no blank between", u"<a b=\"1\"c=\"2\"/>", {u"a", {{u"b", u"1"}, {u"c", u"2"}}}},
      {"single quotes", u"<a b='1\"2'>", {u"a", {{u"b", u"1\"2"}}}},
      {"single quote within double ones", u"<a b=\"1'2\">", {u"a", {{u"b", u"1'2"}}}},
      {"unquoted value ends at its own first character", u"<a b=1221>", {u"a", {{u"b", u"22"}}}},
      {"unquoted value without a second one", u"<a b=12>", {u"a", {}}},
      {"empty value", u"<a b=\"\">", {u"a", {{u"b", u""}}}},
      {"empty name", u"<a =\"1\">", {u"a", {{u"", u"1"}}}},
      {"cut within the second attribute", u"<a b=\"1\" c=\"2", {u"a", {{u"b", u"1"}}}},
      {"cut behind the equals sign", u"<a b=\"1\" c=", {u"a", {{u"b", u"1"}}}},
      {"cut behind the quote", u"<a b=\"1\" c=\"", {u"a", {{u"b", u"1"}}}},
      {"lone quote", u"<a \">", {u"a", {}}},
      {"blank before the equals sign stays in the name", u"<a b =\"1\">", {u"a", {{u"b ", u"1"}}}},
      {"blank behind the equals sign becomes the quote",
       u"<a b= \"1\" c=\"2\">",
       {u"a", {{u"b", u"\"1\""}, {u"c", u"2"}}}},
      {"blank at the very end is no quote", u"<a b=  ", {u"a", {}}},
      {"line break before an attribute stays in its name",
       u"<a b=\"1\"\r\nc=\"2\">",
       {u"a", {{u"b", u"1"}, {u"\r\nc", u"2"}}}},
      {"tab before an attribute stays in its name",
       u"<a b=\"1\" \tc=\"2\">",
       {u"a", {{u"b", u"1"}, {u"\tc", u"2"}}}},
      {"entities", u"<a b=\"&lt;&gt;&quot;&amp;\">", {u"a", {{u"b", u"<>\"&"}}}},
      {"an escaped entity reads back as the entity",
       u"<a b=\"&amp;lt;\">",
       {u"a", {{u"b", u"&lt;"}}}},
      {"other entities stay", u"<a b=\"&#65;&apos;\">", {u"a", {{u"b", u"&#65;&apos;"}}}},
      {"entities in names stay", u"<a &lt;=\"1\">", {u"a", {{u"&lt;", u"1"}}}},
      {"entities are no quotes", u"<a b=&quot;1&quot;>", {u"a", {{u"b", u"quot;1"}}}},
      {"equals sign within a value", u"<a b=\"c=d\">", {u"a", {{u"b", u"c=d"}}}},
      {"not ASCII", u"<é ü=\"€\">", {u"é", {{u"ü", u"€"}}}},
  };
  clsXMLTag tag;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    tag.ParseTag(row.tag);
    ExpectTag(tag, row.expected, row.tag);
  }
}

TEST(XmlTag, AttributesAreFoundWithoutRegardToCase) {
  clsXMLTag tag;
  tag.ParseTag(u"<a server=\"x\" ÉTÉ=\"y\">");
  EXPECT_EQ(tag.AttributeValue(u"SERVER"), u"x");
  EXPECT_EQ(tag.AttributeValue(u"été"), u"y");
}

TEST(XmlTag, UnknownKeysAndPositionsGiveAnEmptyText) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"1\">");
  EXPECT_EQ(tag.AttributeValue(u"c"), u"");
  EXPECT_EQ(tag.AttributeValue(u""), u"");
  EXPECT_EQ(tag.AttributeValue(u" b"), u"");
  EXPECT_EQ(tag.AttributeValue(-1), u"");
  EXPECT_EQ(tag.AttributeValue(0), u"");
  EXPECT_EQ(tag.AttributeValue(1), u"1");
  EXPECT_EQ(tag.AttributeValue(2), u"");
}

TEST(XmlTag, AnAttributeAfterALineBreakIsNotFoundByItsPlainName) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"1\"\nc=\"2\">");
  EXPECT_EQ(tag.AttributeValue(u"c"), u"");
  EXPECT_EQ(tag.AttributeValue(u"\nc"), u"2");
}

TEST(XmlTag, TextContentIsTheCallersAndClearedByTheNextTag) {
  clsXMLTag tag;
  tag.TextContent(u"free");
  EXPECT_EQ(tag.TextContent(), u"free");
  tag.ParseTag(u"<a>");
  EXPECT_EQ(tag.TextContent(), u"");
}

TEST(XmlTag, ADuplicateNameFailsAndKeepsWhatWasRead) {
  clsXMLTag tag;
  try {
    tag.ParseTag(u"<a b=\"1\" c=\"2\" B=\"3\" d=\"4\">");
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 457);
  }
  EXPECT_EQ(tag.name(), u"a");
  EXPECT_EQ(tag.AttributeCount(), 2);
  EXPECT_EQ(tag.AttributeValue(u"b"), u"1");
  EXPECT_EQ(tag.AttributeValue(u"d"), u"");
  tag.ParseTag(u"<e f=\"5\">");
  EXPECT_EQ(tag.AttributeCount(), 1);
}

TEST(XmlTag, ParsesATextOfItsOwn) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"c d='x'\" e=\"&lt;f g='y'&gt;\">");
  clsXMLTag raw = tag;
  raw.ParseTag(raw.AttributeValue(u"b"));
  ExpectTag(raw, {u"c", {{u"d", u"x"}}}, u"own raw text");
  tag.ParseTag(tag.AttributeValue(u"e"));
  ExpectTag(tag, {u"f", {{u"g", u"y"}}}, u"own unescaped text");
}

TEST(XmlTag, CopiesAreIndependent) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"&lt;1\" c=\"2\">");
  const clsXMLTag copy = tag;
  tag.ParseTag(u"<zzzzzzzzzzzzzzzzzzzzzzzzzzz>");
  ExpectTag(copy, {u"a", {{u"b", u"<1"}, {u"c", u"2"}}}, u"copy");
}

TEST(XmlTag, AMovedFromObjectCanBeUsedAgain) {
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"1\">");
  const clsXMLTag taken = std::move(tag);
  ExpectTag(taken, {u"a", {{u"b", u"1"}}}, u"taken");
  tag.ParseTag(u"<c d=\"2\" e='3'>");
  ExpectTag(tag, {u"c", {{u"d", u"2"}, {u"e", u"3"}}}, u"used again");
}

// The reader handles many units at once; nothing may be lost at block boundaries.
TEST(XmlTag, TextsAcrossEveryPositionOfTheSteps) {
  clsXMLTag tag;
  for (std::size_t fill = 0; fill < 300; ++fill) {
    const Text filled(fill, u'x');
    for (const Text& source : {
             u"<a" + filled + u" b=\"1\" c='2'/>",
             u"<a/" + filled + u"< b=\"&lt;1\" c='2'>",
             u"<a b=\"" + filled + u"\" c=\"&amp;2\" d=3443>",
             u"<a b='" + filled + u"\"' c=\"2=\" d=\"e\"/>",
             u"<a b=\"&quot;" + filled + u"&quot;\" &amp;=\"1\">",
             u"<a b=\"1\" " + filled + u"=\"2\" c=\"3\">",
             u"<a b=\"1\" c=\"" + filled,
             u"<a b=\"1\"" + Text(fill, u' ') + u"c=\"2\"" + Text(fill, u' '),
         }) {
      const reference::Tag expected = reference::ReadTag(source);
      tag.ParseTag(source);
      ExpectTag(tag, {expected.name, expected.attributes}, source);

      const Bytes bytes = reference::Encode(source);
      XMLToken token;
      token.bytes = {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
      tag.ParseTag(token);
      ExpectTag(tag, {expected.name, expected.attributes}, source);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(XmlTag, AMillionAttributesTakeLinearTimeAndAreFound) {
  constexpr int kCount = 1'000'000;
  Text text = u"<a";
  for (int i = 0; i < kCount; ++i) {
    const std::string digits = std::to_string(i);
    text += u" n" + Text(digits.begin(), digits.end()) + u"=\"v\"";
  }
  clsXMLTag tag;
  EXPECT_THROW(tag.ParseTag(text + u" N500000=\"2\" last=\"3\">"), RuntimeError);
  EXPECT_EQ(tag.AttributeCount(), kCount);
  EXPECT_EQ(tag.AttributeValue(u"N999999"), u"v");
  EXPECT_EQ(tag.AttributeValue(u"n500000"), u"v");
  EXPECT_EQ(tag.AttributeValue(u"n1000000"), u"");
}

TEST(XmlTag, ManyEntitiesTakeLinearTime) {
  Text value;
  for (int i = 0; i < 300'000; ++i) value += u"&amp;&x";
  clsXMLTag tag;
  tag.ParseTag(u"<a b=\"" + value + u"\">");
  EXPECT_EQ(tag.AttributeValue(1).size(), 300'000u * 3);
}

/// Parses `source` as text and as a file's bytes; returns whether there was a duplicate name.
bool ExpectLikeReference(clsXMLTag& tag, const Text& source) {
  const reference::Tag expected = reference::ReadTag(source);
  const Bytes bytes = reference::Encode(source);
  XMLToken token;
  token.bytes = {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  for (const bool asBytes : {false, true}) {
    bool failed = false;
    try {
      asBytes ? tag.ParseTag(token) : tag.ParseTag(source);
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 457);
      failed = true;
    }
    EXPECT_EQ(failed, expected.duplicate) << testing::PrintToString(source);
    ExpectTag(tag, {expected.name, expected.attributes}, source);
  }
  return expected.duplicate;
}

TEST(XmlTag, RandomTagsAgreeWithTheReference) {
  Documents documents(3);
  clsXMLTag tag;
  int duplicates = 0;
  for (int round = reference::Rounds(60000); round > 0 && !HasFailure(); --round) {
    duplicates += ExpectLikeReference(
        tag, (round % 3 == 0 ? u"" : u"<tag") + documents.Make(round % 50 == 0 ? 120 : 9));
  }
  EXPECT_GT(duplicates, 0);
}

TEST(XmlTag, LongerTagsAgreeWithTheReference) {
  Documents documents(11);
  clsXMLTag tag;
  int duplicates = 0;
  std::int32_t most = 0;
  for (int round = reference::Rounds(3000); round > 0 && !HasFailure(); --round) {
    duplicates += ExpectLikeReference(tag, documents.MakeTag());
    most = std::max(most, tag.AttributeCount());
  }
  EXPECT_GT(duplicates, 0);
  EXPECT_GT(most, 16) << "some have to outgrow the short list";
}

}  // namespace
}  // namespace marl
