#include "documents/clsXMLEngine.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "documents/clsXMLTag.h"
#include "platform/RuntimeError.h"
#include "platform/memory/MemoryFileSystem.h"
#include "tests/unit/XMLReference.h"

namespace marl {
namespace {

using reference::Documents;
using reference::Token;
using TokenList = std::vector<Token>;

constexpr TextView kDocument = u"C:\\Docs\\a.xml";

class XmlTokens : public testing::Test {
 protected:
  /// The remaining tokens, without the end, which must repeat.
  TokenList Rest() {
    TokenList tokens;
    Token token{};
    while ((token.kind = engine.GetToken(token.text)) != xtEndOfDocument) tokens.push_back(token);
    EXPECT_EQ(token.text, u"");
    token.text = u"old";
    EXPECT_EQ(engine.GetToken(token.text), xtEndOfDocument);
    EXPECT_EQ(token.text, u"");
    return tokens;
  }

  TokenList ScanFile(Bytes bytes) {
    files.Put(kDocument, std::move(bytes));
    EXPECT_TRUE(engine.OpenDocument(kDocument));
    return Rest();
  }

  TokenList Scan(TextView text) { return ScanFile(reference::Encode(text)); }

  MemoryFileSystem files;
  clsXMLEngine engine{files};
};

TEST_F(XmlTokens, NothingIsLeftAfterConstruction) { EXPECT_EQ(Rest(), TokenList()); }

TEST_F(XmlTokens, EmptyFileOpensAndEndsAtOnce) { EXPECT_EQ(ScanFile({}), TokenList()); }

TEST_F(XmlTokens, FileOfNothingButAByteOrderMarkEndsAtOnce) {
  EXPECT_EQ(ScanFile({0xEF, 0xBB, 0xBF}), TokenList());
}

TEST_F(XmlTokens, OneByteOrderMarkIsDroppedAndTheNextIsText) {
  EXPECT_EQ(Scan(u"\xFEFF<a>"), TokenList({{xtOpenTag, u"<a>"}}));
  EXPECT_EQ(Scan(u"\xFEFF\xFEFFx"), TokenList({{xtText, u"\xFEFFx"}}));
  EXPECT_EQ(Scan(u"x\xFEFF"), TokenList({{xtText, u"x\xFEFF"}}));
}

TEST_F(XmlTokens, MissingFileLeavesTheDocumentOpenedBefore) {
  files.Put(kDocument, "<a><b>");
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  Text token;
  engine.GetToken(token);
  EXPECT_FALSE(engine.OpenDocument(u"C:\\Docs\\none.xml"));
  EXPECT_EQ(Rest(), TokenList({{xtOpenTag, u"<b>"}}));
}

TEST_F(XmlTokens, FoldersHiddenAndSystemFilesCountAsMissing) {
  files.PutFolder(u"C:\\Docs\\folder");
  files.Put(u"C:\\Docs\\hidden", "<a>", kHidden);
  files.Put(u"C:\\Docs\\system", "<a>", kSystem);
  files.Put(u"C:\\Docs\\readonly", "<a>", kReadOnly);
  EXPECT_FALSE(engine.OpenDocument(u"C:\\Docs\\folder"));
  EXPECT_FALSE(engine.OpenDocument(u"C:\\Docs\\hidden"));
  EXPECT_FALSE(engine.OpenDocument(u"C:\\Docs\\system"));
  EXPECT_FALSE(engine.OpenDocument(u""));
  EXPECT_EQ(Rest(), TokenList());
  EXPECT_TRUE(engine.OpenDocument(u"C:\\Docs\\readonly"));
}

TEST_F(XmlTokens, UnreadableFileLeavesTheDocumentOpenedBefore) {
  files.Put(kDocument, "<a>");
  files.Put(u"C:\\Docs\\b.xml", "<b>");
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  files.FailNext(FileAction::kRead, kSharingViolation);
  EXPECT_FALSE(engine.OpenDocument(u"C:\\Docs\\b.xml"));
  EXPECT_EQ(Rest(), TokenList({{xtOpenTag, u"<a>"}}));
}

TEST_F(XmlTokens, FileThatVanishesAfterTheTestIsAPlainFailure) {
  files.Put(kDocument, "<a>");
  files.Vanish(kDocument);
  EXPECT_FALSE(engine.OpenDocument(kDocument));
  EXPECT_EQ(Rest(), TokenList());
}

TEST_F(XmlTokens, FileIsReadWholeInOneOperation) {
  files.Put(kDocument, "<a>");
  files.ForgetTouched();
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  Rest();
  using Touch = MemoryFileSystem::Touch;
  EXPECT_EQ(files.Touched(), std::vector<Touch>({Touch{FileAction::kTest, Text(kDocument)},
                                                 Touch{FileAction::kRead, Text(kDocument)}}));
}

TEST_F(XmlTokens, SuccessfulOpenReplacesTheRemainder) {
  files.Put(kDocument, "<a><b>");
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  Text token;
  engine.GetToken(token);
  EXPECT_EQ(Scan(u"<c>"), TokenList({{xtOpenTag, u"<c>"}}));
  EXPECT_EQ(ScanFile({}), TokenList());
}

TEST_F(XmlTokens, DocumentsAndTheirTokens) {
  const struct {
    const char* what;
    TextView document;
    TokenList tokens;
  } rows[] = {
      {"element", u"<a>x</a>", {{xtOpenTag, u"<a>"}, {xtText, u"x"}, {xtCloseTag, u"</a>"}}},
      {"lone angle", u"<", {{xtOpenTag, u"<"}}},
      {"lone closing angle is text", u">", {{xtText, u">"}}},
      {"empty tag", u"<a/>", {{xtEmptyTag, u"<a/>"}}},
      {"empty close tag", u"</a/>", {{xtCloseTag, u"</a/>"}}},
      {"nothing within", u"<>", {{xtOpenTag, u"<>"}}},
      {"only a slash", u"</>", {{xtCloseTag, u"</>"}}},
      {"angle within an attribute ends the tag",
       u"<a b=\"1 > 2\">",
       {{xtOpenTag, u"<a b=\"1 >"}, {xtText, u" 2\">"}}},
      {"slash before an angle within an attribute",
       u"<a b=\"/>\">",
       {{xtEmptyTag, u"<a b=\"/>"}, {xtText, u"\">"}}},
      {"prolog", u"<?xml a=\"b\"?>", {{xtInstruction, u"<?xml a=\"b\"?>"}}},
      {"instruction over angles", u"<?a > <b> ?>", {{xtInstruction, u"<?a > <b> ?>"}}},
      {"shortest instruction", u"<?>", {{xtInstruction, u"<?>"}}},
      {"declaration", u"<!ELEMENT x>", {{xtDeclaration, u"<!ELEMENT x>"}}},
      {"empty declaration", u"<!>", {{xtDeclaration, u"<!>"}}},
      {"doctype", u"<!DOCTYPE x [ y ]>", {{xtDocType, u"<!DOCTYPE x [ y ]>"}}},
      {"doctype in small letters", u"<!doctype x [ y ]>", {{xtDocType, u"<!doctype x [ y ]>"}}},
      {"doctype in both", u"<!dOcTyPe[]>", {{xtDocType, u"<!dOcTyPe[]>"}}},
      {"doctype with declarations within",
       u"<!DOCTYPE x [<!ELEMENT y>]><a>",
       {{xtDocType, u"<!DOCTYPE x [<!ELEMENT y>]>"}, {xtOpenTag, u"<a>"}}},
      {"doctype without subset runs on to the first one anywhere",
       u"<!DOCTYPE x><a>1]><b>",
       {{xtDocType, u"<!DOCTYPE x><a>1]>"}, {xtOpenTag, u"<b>"}}},
      {"doctype without subset swallows the rest",
       u"<!DOCTYPE x><a></a>",
       {{xtDocType, u"<!DOCTYPE x><a></a>"}}},
      {"doctype cut short is a declaration", u"<!DOCTYP>", {{xtDeclaration, u"<!DOCTYP>"}}},
      {"comment", u"<!-- <a> -- > -->x", {{xtComment, u"<!-- <a> -- > -->"}, {xtText, u"x"}}},
      {"shortest comment", u"<!-->x", {{xtComment, u"<!-->"}, {xtText, u"x"}}},
      {"short comment", u"<!--->", {{xtComment, u"<!--->"}}},
      {"comment needs both dashes", u"<!- -->", {{xtDeclaration, u"<!- -->"}}},
      {"character data", u"<![CDATA[<a>]>]]>x", {{xtCData, u"<![CDATA[<a>]>]]>"}, {xtText, u"x"}}},
      {"character data in small letters", u"<![cdata[]]>", {{xtCData, u"<![cdata[]]>"}}},
      {"character data needs its bracket", u"<![CDATA>", {{xtDeclaration, u"<![CDATA>"}}},
      {"text keeps space and entities",
       u" \r\n\t<a>&amp; &#65;\r\n",
       {{xtText, u" \r\n\t"}, {xtOpenTag, u"<a>"}, {xtText, u"&amp; &#65;\r\n"}}},
      {"text alone", u"a>b", {{xtText, u"a>b"}}},
      {"two angles", u"<<a>", {{xtOpenTag, u"<<a>"}}},
      {"blank before the name", u"< /a>", {{xtOpenTag, u"< /a>"}}},
      {"zero unit", TextView(u"\0<\0>", 4), {{xtText, Text(1, 0)}, {xtOpenTag, Text(u"<\0>", 3)}}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Scan(row.document), row.tokens) << row.what;
    ASSERT_TRUE(engine.OpenXMLW(row.document));
    EXPECT_EQ(Rest(), row.tokens) << row.what << ", as text";
  }
}

TEST_F(XmlTokens, MissingTerminatorTakesTheRestWithTheKindOfItsStart) {
  const struct {
    TextView document;
    XMLTokenKind kind;
  } rows[] = {
      {u"<a", xtOpenTag},           {u"<a/", xtOpenTag},
      {u"</a", xtCloseTag},         {u"</", xtCloseTag},
      {u"<?", xtInstruction},       {u"<?a>", xtInstruction},
      {u"<!", xtDeclaration},       {u"<!a", xtDeclaration},
      {u"<!--", xtComment},         {u"<!-- > ->", xtComment},
      {u"<![CDATA[", xtCData},      {u"<![CDATA[ ]>", xtCData},
      {u"<!DOCTYPE", xtDocType},    {u"<!DOCTYPE>", xtDocType},
      {u"<!DOCTYP", xtDeclaration}, {u"<!doctype ] >", xtDocType},
      {u"<![CDATA", xtDeclaration}, {u"<!-", xtDeclaration},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Scan(row.document), TokenList({{row.kind, Text(row.document)}}))
        << testing::PrintToString(Text(row.document));
  }
}

TEST_F(XmlTokens, KindsHaveTheirNumbers) {
  EXPECT_EQ(sizeof(XMLTokenKind), 4u);
  EXPECT_EQ(xtDeclaration, 0);
  EXPECT_EQ(xtInstruction, 1);
  EXPECT_EQ(xtDocType, 2);
  EXPECT_EQ(xtComment, 3);
  EXPECT_EQ(xtCData, 4);
  EXPECT_EQ(xtText, 5);
  EXPECT_EQ(xtOpenTag, 6);
  EXPECT_EQ(xtCloseTag, 7);
  EXPECT_EQ(xtEmptyTag, 8);
  EXPECT_EQ(xtEndOfDocument, 9);
}

TEST_F(XmlTokens, FilesAreReadAsUTF8WhateverTheyAre) {
  const struct {
    const char* what;
    Bytes bytes;
    Text text;
  } rows[] = {
      {"UTF-16 with its mark", {0xFF, 0xFE, 0x61, 0x00}, {0xFFA1, 0x00}},
      {"ANSI", {0x61, 0xE9, 0x62, 0x63}, {u'a', 9 * 4096 + 34 * 64 + 35}},
      {"overlong angle is an angle", {0xC0, 0xBC, 0x61, 0xC0, 0xBE}, u"<a>"},
      {"lone lead at the end", {0xC3}, {195}},
  };
  for (const auto& row : rows) {
    Text all;
    for (const Token& token : ScanFile(row.bytes)) all += token.text;
    EXPECT_EQ(all, row.text) << row.what;
  }
}

TEST_F(XmlTokens, OpenXMLWOfAnEmptyTextFailsAndLeavesNothing) {
  files.Put(kDocument, "<a>");
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  try {
    engine.OpenXMLW(u"");
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 5);
  }
  EXPECT_EQ(Rest(), TokenList());
}

TEST_F(XmlTokens, OpenXMLWDropsAByteOrderMark) {
  EXPECT_TRUE(engine.OpenXMLW(u"\xFEFF"));
  EXPECT_EQ(Rest(), TokenList());
  EXPECT_TRUE(engine.OpenXMLW(u"\xFEFFx"));
  EXPECT_EQ(Rest(), TokenList({{xtText, u"x"}}));
}

TEST_F(XmlTokens, OpenXMLWTakesATokenOfTheSameEngine) {
  ASSERT_TRUE(engine.OpenXMLW(u"<![CDATA[<a>]]>"));
  TextView token;
  engine.GetToken(token);
  ASSERT_TRUE(engine.OpenXMLW(token.substr(9, 3)));
  EXPECT_EQ(Rest(), TokenList({{xtOpenTag, u"<a>"}}));
}

// The engine decodes in steps; terminators and keywords must be found across step boundaries.
TEST_F(XmlTokens, TokensAcrossEveryPositionOfTheDecodingStep) {
  const Text tail = u"<![CDATA[]]><!DOCTYPE []><!-- --><?a?><a b=\"é\"/></a>€<!b>";
  for (std::size_t fill = 4096 - tail.size() - 4; fill < 4100; ++fill) {
    for (const Text& head : {Text(fill, u'x'), u"<" + Text(fill - 1, u'-')}) {
      const Text document = head + tail;
      ASSERT_EQ(Scan(document), reference::Tokens(document)) << fill;
    }
  }
}

TEST_F(XmlTokens, LongDocumentsAgreeWithTheReference) {
  Documents documents(7);
  for (int round = reference::Rounds(3); round > 0; --round) {
    Text document;
    while (document.size() < 60000) document += documents.Make(40) + u">-->]]>?>";
    ASSERT_EQ(Scan(document), reference::Tokens(reference::WithoutMark(document)));
    // And one token longer than any window, between short ones.
    document.insert(document.size() / 2, Text(50000, u'x'));
    ASSERT_EQ(Scan(document), reference::Tokens(reference::WithoutMark(document)));
  }
}

TEST_F(XmlTokens, RandomDocumentsAgreeWithTheReference) {
  Documents documents(1);
  for (int round = reference::Rounds(40000); round > 0; --round) {
    const Bytes bytes = documents.MakeBytes(12);
    const Text document = reference::WithoutMark(reference::Decode(bytes));
    ASSERT_EQ(ScanFile(bytes), reference::Tokens(document)) << testing::PrintToString(document);
  }
}

TEST_F(XmlTokens, TokensWithoutDecodingAreTheSame) {
  Documents documents(10);
  clsXMLEngine other(files);
  clsXMLTag fast, plain;
  int asBytes = 0, asUnits = 0;
  for (int round = reference::Rounds(20000); round > 0; --round) {
    files.Put(kDocument, documents.MakeBytes(round % 100 == 0 ? 300 : 12));
    ASSERT_TRUE(engine.OpenDocument(kDocument) && other.OpenDocument(kDocument));
    for (;;) {
      XMLToken token;
      Text text;
      const XMLTokenKind kind = engine.GetToken(token);
      ASSERT_EQ(kind, other.GetToken(text));
      ASSERT_EQ(token.kind, kind);
      ASSERT_EQ(token.text(), text);
      if (kind == xtEndOfDocument) break;
      ++(token.bytes.empty() ? asUnits : asBytes);
      const bool failed = !Skip([&] { fast.ParseTag(token); });
      ASSERT_EQ(failed, !Skip([&] { plain.ParseTag(text); }));
      ASSERT_EQ(fast.name(), plain.name());
      ASSERT_EQ(fast.AttributeCount(), plain.AttributeCount());
      for (int i = 1; i <= fast.AttributeCount(); ++i) {
        ASSERT_EQ(fast.AttributeValue(i), plain.AttributeValue(i));
      }
    }
  }
  EXPECT_GT(asBytes, 0);
  EXPECT_GT(asUnits, 0);
}

TEST_F(XmlTokens, KindsOfTokensMayBeAskedForInTurn) {
  files.Put(kDocument, "<a><b/>\xC3<<c>x</c>");
  ASSERT_TRUE(engine.OpenDocument(kDocument));
  XMLToken held;
  TextView view;
  Text text;
  EXPECT_EQ(engine.GetToken(held), xtOpenTag);
  EXPECT_EQ(held.bytes, "<a>");
  EXPECT_EQ(engine.GetToken(view), xtEmptyTag);
  EXPECT_EQ(view, u"<b/>");
  // Here a lead byte consumes the "<", so cutting by bytes and by units differ.
  EXPECT_EQ(engine.GetToken(held), xtText);
  EXPECT_EQ(held.units, Text(1, 3 * 64 + 60));
  EXPECT_EQ(engine.GetToken(text), xtOpenTag);
  EXPECT_EQ(text, u"<c>");
}

TEST_F(XmlTokens, ConcatenatedTokensGiveBackTheDocument) {
  Documents documents(2);
  for (int round = reference::Rounds(20000); round > 0; --round) {
    const Text document = documents.Make(20);
    if (document.empty()) continue;
    ASSERT_TRUE(engine.OpenXMLW(document));
    Text all;
    for (const Token& token : Rest()) all += token.text;
    ASSERT_EQ(all, reference::WithoutMark(document));
  }
}

// The benchmarks measure how long they take.
TEST_F(XmlTokens, LargeDocumentsOfOneKindComeBackWhole) {
  // Without "<", unterminated, and only shortest tokens.
  for (const std::string_view pattern :
       {"x", "<!--", "<![CDATA[ ]>", "<>", "<!DOCTYPE>", "<a>\n"}) {
    Bytes bytes;
    while (bytes.size() < 2'000'000) bytes.insert(bytes.end(), pattern.begin(), pattern.end());
    const std::size_t size = bytes.size();
    files.Put(kDocument, std::move(bytes));
    ASSERT_TRUE(engine.OpenDocument(kDocument));
    std::size_t units = 0;
    TextView token;
    while (engine.GetToken(token) != xtEndOfDocument) units += token.size();
    EXPECT_EQ(units, size) << pattern;
  }
}

}  // namespace
}  // namespace marl
