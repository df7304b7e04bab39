#include "network/ServerTag.h"

#include <gtest/gtest.h>

namespace marl {
namespace {

clsXMLTag Read(TextView text) {
  clsXMLTag tag;
  ReadServerTag(text, tag);
  return tag;
}

Text Tag(TextView ssl, TextView port, TextView server = u"alpha") {
  Text tag = u"<project-tracking server=\"";
  tag += server;
  tag += u"\" ssl=\"";
  tag += ssl;
  tag += u"\" port=\"";
  tag += port;
  tag += u"\"/>";
  return tag;
}

TEST(ServerTag, IsComposedRaw) {
  EXPECT_EQ(ComposeServerTag(u"alpha", false, u"80"),
            u"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(ComposeServerTag(u"a\"b&<c>", true, u""),
            u"<project-tracking server=\"a\"b&<c>\" ssl=\"yes\" port=\"\"/>");
}

TEST(ServerTag, BareNameIsEscaped) {
  EXPECT_EQ(BareNameTag(u"alpha"), u"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(
      BareNameTag(u" R&D \"<x>\" "),
      u"<project-tracking server=\" R&amp;D &quot;&lt;x&gt;&quot; \" ssl=\"no\" port=\"80\"/>");
}

TEST(ServerTag, DocumentIsByteOrderMarkPrologAndTag) {
  EXPECT_EQ(ServerDocument(BareNameTag(u"alpha")),
            u"\uFEFF<?xml version=\"1.0\" standalone=\"no\"?>"
            u"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
}

TEST(ServerTag, DuplicateAttributeEndsTheParsing) {
  const clsXMLTag tag = Read(u"<project-tracking server=\"a\" server=\"b\" ssl=\"yes\"/>");
  EXPECT_EQ(tag.AttributeValue(u"server"), u"a");
  EXPECT_FALSE(UsesSsl(tag));
}

struct Row {
  Text tag;
  TextView address;
  TextView arguments;
};

class ServerTagRows : public testing::TestWithParam<Row> {};

TEST_P(ServerTagRows, GiveAddressAndArguments) {
  const clsXMLTag tag = Read(GetParam().tag);
  EXPECT_EQ(TrackingSite(tag), Text(GetParam().address) + u"/OruCadenceProjectTracking/logon.aspx");
  EXPECT_EQ(WardenArguments(tag), GetParam().arguments);
}

INSTANTIATE_TEST_SUITE_P(
    SchemesAndPorts, ServerTagRows,
    testing::Values(Row{Tag(u"no", u"80"), u"http://alpha", u"alpha /port=80"},
                    Row{Tag(u"no", u"443"), u"http://alpha:443", u"alpha /port=443"},
                    Row{Tag(u"no", u"8080"), u"http://alpha:8080", u"alpha /port=8080"},
                    Row{Tag(u"no", u"080"), u"http://alpha:080", u"alpha /port=080"},
                    Row{Tag(u"no", u""), u"http://alpha:", u"alpha"},
                    Row{Tag(u"yes", u"443"), u"https://alpha", u"alpha /ssl /port=443"},
                    Row{Tag(u"YES", u"443"), u"https://alpha", u"alpha /ssl /port=443"},
                    Row{Tag(u"Yes", u"80"), u"https://alpha:80", u"alpha /ssl /port=80"},
                    Row{Tag(u"yes", u"8080"), u"https://alpha:8080", u"alpha /ssl /port=8080"},
                    Row{Tag(u"yes", u""), u"https://alpha:", u"alpha /ssl"},
                    Row{Tag(u"true", u"80"), u"http://alpha", u"alpha /port=80"},
                    Row{Tag(u"", u"80"), u"http://alpha", u"alpha /port=80"},
                    Row{u"<project-tracking server=\"alpha\"/>", u"http://alpha:", u"alpha"}));

INSTANTIATE_TEST_SUITE_P(
    HostileNames, ServerTagRows,
    testing::Values(Row{Tag(u"no", u"80", u"R&amp;D"), u"http://R&D", u"R&D /port=80"},
                    Row{Tag(u"no", u"80", u"R&D"), u"http://R&D", u"R&D /port=80"},
                    // After the early quote the next attribute has lost its name.
                    Row{Tag(u"no", u"80", u"a\"b"), u"http://a", u"a /port=80"},
                    Row{Tag(u"yes", u"443", u"a\"b"), u"http://a:443", u"a /port=443"},
                    Row{Tag(u"no", u"80", u"a%20b"), u"http://a%20b", u"a%20b /port=80"},
                    Row{Tag(u"no", u"80", u"a b"), u"http://a b", u"a b /port=80"},
                    Row{Tag(u"no", u"80", u"/x -y"), u"http:///x -y", u"/x -y /port=80"},
                    Row{Tag(u"no", u"80", u"a&quot;b"), u"http://a\"b", u"a\"b /port=80"},
                    Row{Tag(u"no", u"8 /x", u"a"), u"http://a:8 /x", u"a /port=8 /x"}));

TEST(ServerTag, NoTagGivesNoArguments) {
  EXPECT_EQ(WardenArguments(Read(u"")), u"");
  EXPECT_EQ(WardenArguments(clsXMLTag()), u"");
}

TEST(ServerTag, LongNameIsKeptWhole) {
  const Text name(10000, u'n');
  EXPECT_EQ(WardenArguments(Read(BareNameTag(name))), name + u" /port=80");
}

}  // namespace
}  // namespace marl
