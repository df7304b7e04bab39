#include "documents/clsQPRX.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/RuntimeError.h"
#include "platform/memory/MemoryFileSystem.h"
#include "tests/unit/XMLReference.h"

namespace marl {
namespace {

constexpr TextView kProjectFile = u"C:\\Project\\a.qprx";

class ProjectFile : public testing::Test {
 protected:
  bool Parse(std::string_view content) {
    files.Put(kProjectFile, content);
    return project.ParseProjectFile(kProjectFile);
  }

  std::vector<std::pair<Text, Text>> Languages() {
    std::vector<std::pair<Text, Text>> all;
    Text lc, description;
    for (int i = 0; project.GetLanguage(i, lc, description); ++i) all.emplace_back(lc, description);
    EXPECT_EQ(project.LangCount, static_cast<int>(all.size()));
    return all;
  }

  std::vector<Text> Documents() {
    std::vector<Text> all;
    Text path;
    for (int i = 0; project.GetDocument(i, path); ++i) all.push_back(path);
    EXPECT_EQ(project.DocCount, static_cast<int>(all.size()));
    return all;
  }

  using LanguageList = std::vector<std::pair<Text, Text>>;
  using DocumentList = std::vector<Text>;

  MemoryFileSystem files;
  clsQPRX project{files};
};

TEST_F(ProjectFile, IsEmptyAfterConstruction) {
  EXPECT_EQ(project.LangCount, 0);
  EXPECT_EQ(project.DocCount, 0);
  EXPECT_FALSE(project.ShortLang);
  EXPECT_EQ(Languages(), LanguageList());
  EXPECT_EQ(Documents(), DocumentList());
}

TEST_F(ProjectFile, ReadsAWholeProject) {
  EXPECT_TRUE(
      Parse("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
            "<!DOCTYPE project [ <!ELEMENT project ANY> ]>\r\n"
            "<project name=\"Demo\">\r\n"
            " <!-- <language lc=\"xx\"/> -->\r\n"
            " <target-files shortlang=\"Yes\" folder=\"x\"/>\r\n"
            " <language lc=\"pt-BR\" description=\"Portugu\xC3\xAAs &amp; Brasil\">\r\n"
            "  <document path=\"pt-br\\one.doc\" words=\"5\"></document>\r\n"
            "  <document path=\"PT-BR\\sub\\two.doc\"/>\r\n"
            " </language>\r\n"
            " <![CDATA[<document path=\"no\"/>]]>\r\n"
            "</project>\r\n"));
  EXPECT_TRUE(project.ShortLang);
  EXPECT_EQ(Languages(), LanguageList({{u"pt-BR", u"Português & Brasil"}}));
  EXPECT_EQ(Documents(), DocumentList({u"one.doc", u"sub\\two.doc"}));
}

TEST_F(ProjectFile, DocumentsOfTheFirstLanguageAreThoseOfAll) {
  EXPECT_TRUE(
      Parse("<language lc=\"fr\"/><document path=\"1\"/><document path=\"2\"/>"
            "<language lc=\"de\"/><document path=\"3\"/><document path=\"4\"/>"));
  EXPECT_EQ(project.LangCount, 2);
  EXPECT_EQ(project.DocCount, 2);
  EXPECT_EQ(Documents(), DocumentList({u"1", u"2"}));
}

TEST_F(ProjectFile, DocumentsBeforeTheFirstLanguageAreKeptAndLoseThePrefixToo) {
  EXPECT_TRUE(
      Parse("<document path=\"French\\0\"/><language lc=\"fr\" description=\"French\"/>"
            "<document path=\"French\\1\"/>"));
  EXPECT_EQ(Documents(), DocumentList({u"0", u"1"}));
}

TEST_F(ProjectFile, PrefixIsTheDescriptionOrTheCode) {
  const std::string head = "<language lc=\"fr\" description=\"French\"/>";
  const std::string tail = "<document path=\"FRENCH\\sub\\a.qtd\"/><document path=\"fr\\a.qtd\"/>";
  const struct {
    const char* what;
    std::string content;
    bool shortLang;
    DocumentList documents;
  } rows[] = {
      {"no element", head + tail, false, {u"sub\\a.qtd", u"fr\\a.qtd"}},
      {"yes",
       "<target-files shortlang=\"yes\">" + head + tail,
       true,
       {u"FRENCH\\sub\\a.qtd", u"a.qtd"}},
      {"yes in capitals, at the end",
       head + tail + "<target-files SHORTLANG=\"YES\"/>",
       true,
       {u"FRENCH\\sub\\a.qtd", u"a.qtd"}},
      {"no",
       head + tail + "<target-files shortlang=\"no\"/>",
       false,
       {u"sub\\a.qtd", u"fr\\a.qtd"}},
      {"yes and a blank",
       head + tail + "<target-files shortlang=\"yes \"/>",
       false,
       {u"sub\\a.qtd", u"fr\\a.qtd"}},
      {"the last one counts",
       "<target-files shortlang=\"yes\"/>" + head + tail + "<target-files/>",
       false,
       {u"sub\\a.qtd", u"fr\\a.qtd"}},
      {"close tags say nothing",
       "<target-files shortlang=\"yes\"/>" + head + tail + "</target-files>",
       true,
       {u"FRENCH\\sub\\a.qtd", u"a.qtd"}},
  };
  for (const auto& row : rows) {
    project.ShortLang = false;
    EXPECT_TRUE(Parse(row.content)) << row.what;
    EXPECT_EQ(project.ShortLang, row.shortLang) << row.what;
    EXPECT_EQ(Documents(), row.documents) << row.what;
  }
}

TEST_F(ProjectFile, PrefixIgnoresCaseInEveryScript) {
  EXPECT_TRUE(
      Parse("<language description=\"Ph\u01B0\u01A1ng \u0219 \u10D0 \u03C2\"/>"
            "<document path=\"PH\u01AF\u01A0NG \u0218 \u1C90 \u03A3\\a.qtd\"/>"));
  EXPECT_EQ(Documents(), DocumentList({u"a.qtd"}));
}

TEST_F(ProjectFile, OnlyOneWholePrefixIsCut) {
  EXPECT_TRUE(
      Parse("<language description=\"French\"/><document path=\"French\"/>"
            "<document path=\"French\\\"/><document path=\"French\\French\\a\"/>"
            "<document path=\"FrenchCanada\\a\"/><document path=\"\\French\\a\"/>"
            "<document path=\"French/a\"/>"));
  EXPECT_EQ(Documents(), DocumentList({u"French", u"", u"French\\a", u"FrenchCanada\\a",
                                       u"\\French\\a", u"French/a"}));
}

TEST_F(ProjectFile, AnEmptyPrefixIsABackslash) {
  EXPECT_TRUE(Parse("<language/><document path=\"\\a\"/><document path=\"b\"/>"));
  EXPECT_EQ(Documents(), DocumentList({u"a", u"b"}));
}

TEST_F(ProjectFile, WithoutLanguagesPathsStayWhole) {
  EXPECT_TRUE(Parse("<document path=\"\\a\"/>"));
  EXPECT_EQ(Documents(), DocumentList({u"\\a"}));
  EXPECT_EQ(project.LangCount, 0);
}

TEST_F(ProjectFile, DeclarationsMakeItInvalidAndKeepWhatWasRead) {
  for (const char* declaration : {"<!ELEMENT x>", "<!>", "<!", "<!--x", "<![CDATA x]]>"}) {
    const bool comment = std::string_view(declaration) == "<!--x";
    EXPECT_EQ(Parse("<language lc=\"fr\" description=\"French\"/><document path=\"French\\a\"/>" +
                    std::string(declaration) + "<language lc=\"de\"/>"),
              comment)
        << declaration;
    EXPECT_EQ(Languages(), LanguageList({{u"fr", u"French"}})) << declaration;
    // Without a result the path is not shortened either.
    EXPECT_EQ(Documents(), DocumentList({comment ? u"a" : u"French\\a"})) << declaration;
  }
}

TEST_F(ProjectFile, ADoctypeWithAnInternalSubsetIsHarmless) {
  EXPECT_TRUE(Parse("<!DOCTYPE x [<!ELEMENT y>]><language/>"));
  EXPECT_EQ(project.LangCount, 1);
}

TEST_F(ProjectFile, ElementNamesAreComparedExactlyAndAttributeNamesAreNot) {
  EXPECT_TRUE(
      Parse("<Language lc=\"fr\"/><LANGUAGE/><Document path=\"a\"/><languages/><x:language/>"
            "<Target-Files shortlang=\"yes\"/><language LC=\"de\" Description=\"German\"/>"
            "<document PATH=\"b\"/>"));
  EXPECT_EQ(Languages(), LanguageList({{u"de", u"German"}}));
  EXPECT_EQ(Documents(), DocumentList({u"b"}));
  EXPECT_FALSE(project.ShortLang);
}

TEST_F(ProjectFile, MissingAttributesGiveEmptyTexts) {
  EXPECT_TRUE(Parse("<language/><document/>"));
  EXPECT_EQ(Languages(), LanguageList({{u"", u""}}));
  EXPECT_EQ(Documents(), DocumentList({u""}));
}

TEST_F(ProjectFile, NeitherEmptyNorRepeatedCodesAreRefused) {
  EXPECT_TRUE(Parse("<language lc=\"fr\"/><language lc=\"fr\"/><language lc=\"\"/>"));
  EXPECT_EQ(Languages(), LanguageList({{u"fr", u""}, {u"fr", u""}, {u"", u""}}));
}

TEST_F(ProjectFile, AFileWithNoneOfTheElementsIsASuccess) {
  EXPECT_TRUE(Parse(""));
  EXPECT_TRUE(Parse("[Settings]\r\nLanguages=1\r\n"));
  EXPECT_TRUE(Parse("<a><b/></a>"));
  EXPECT_EQ(project.LangCount, 0);
  EXPECT_EQ(project.DocCount, 0);
}

TEST_F(ProjectFile, AMissingFileIsFalseWithEmptyLists) {
  EXPECT_TRUE(Parse("<target-files shortlang=\"yes\"/><language/><document/>"));
  EXPECT_FALSE(project.ParseProjectFile(u"C:\\Project\\none.qprx"));
  EXPECT_EQ(project.LangCount, 0);
  EXPECT_EQ(project.DocCount, 0);
  EXPECT_TRUE(project.ShortLang) << "it keeps its value";
}

TEST_F(ProjectFile, AnUnreadableFileIsFalse) {
  files.Put(kProjectFile, "<language/>");
  files.FailNext(FileAction::kRead, kAccessDenied);
  EXPECT_FALSE(project.ParseProjectFile(kProjectFile));
  EXPECT_EQ(project.LangCount, 0);
}

TEST_F(ProjectFile, ASecondParseStartsAfresh) {
  EXPECT_TRUE(Parse("<language lc=\"fr\"/><document path=\"a\"/>"));
  EXPECT_TRUE(Parse("<language lc=\"de\"/><document path=\"b\"/>"));
  EXPECT_EQ(Languages(), LanguageList({{u"de", u""}}));
  EXPECT_EQ(Documents(), DocumentList({u"b"}));
}

TEST_F(ProjectFile, OutOfRangeLeavesTheOutputsUntouched) {
  EXPECT_TRUE(Parse("<language lc=\"fr\"/><document path=\"a\"/>"));
  Text lc = u"old", description = u"old", path = u"old";
  for (const int index : {-1, 1, 2147483647, -2147483647 - 1}) {
    EXPECT_FALSE(project.GetLanguage(index, lc, description)) << index;
    EXPECT_FALSE(project.GetDocument(index, path)) << index;
  }
  EXPECT_EQ(lc + description + path, u"oldoldold");
}

TEST_F(ProjectFile, ACountSetFromOutsideDoesNotReadBeyondTheList) {
  Text text;
  project.LangCount = 5;
  project.DocCount = 5;
  EXPECT_THROW(project.GetLanguage(0, text, text), RuntimeError);
  EXPECT_THROW(project.GetDocument(0, text), RuntimeError);
}

TEST_F(ProjectFile, ADuplicateAttributeFailsTheParse) {
  files.Put(kProjectFile, "<language lc=\"fr\"/><document path=\"a\" Path=\"b\"/>");
  try {
    project.ParseProjectFile(kProjectFile);
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 457);
  }
  EXPECT_EQ(project.LangCount, 1);
  EXPECT_EQ(project.DocCount, 0);
}

/// A second implementation, step by step on the reference's tokens.
struct ReferenceProject {
  std::vector<std::pair<Text, Text>> languages;
  std::vector<Text> documents;
  bool shortLang = false;
  enum { kTrue, kFalse, kFailed } result = kTrue;

  void Read(const Bytes& bytes) {
    for (const auto& token : reference::Tokens(reference::WithoutMark(reference::Decode(bytes)))) {
      if (token.kind == xtDeclaration) {
        result = kFalse;
        return;
      }
      if (token.kind != xtOpenTag && token.kind != xtEmptyTag) continue;
      const reference::Tag tag = reference::ReadTag(token.text);
      if (tag.duplicate) {
        result = kFailed;
        return;
      }
      if (tag.name == u"language") {
        languages.emplace_back(tag.Value(u"lc"), tag.Value(u"description"));
      }
      if (tag.name == u"document" && languages.size() <= 1) {
        documents.push_back(tag.Value(u"path"));
      }
      if (tag.name == u"target-files") shortLang = FoldCase(tag.Value(u"shortlang")) == u"YES";
    }
    if (languages.empty()) return;
    const Text prefix = (shortLang ? languages[0].first : languages[0].second) + u"\\";
    for (Text& path : documents) {
      if (FoldCase(path.substr(0, prefix.size())) == FoldCase(prefix)) path.erase(0, prefix.size());
    }
  }
};

TEST_F(ProjectFile, DamagedFilesAgreeWithTheReference) {
  reference::Documents documents(9);
  int met[3] = {};
  for (int round = reference::Rounds(10000); round > 0; --round) {
    const Bytes bytes = documents.MakeBytes(20);
    ReferenceProject expected;
    expected.Read(bytes);
    ++met[expected.result];
    files.Put(kProjectFile, bytes);
    project.ShortLang = false;
    bool result = false;
    const bool done = Skip([&] { result = project.ParseProjectFile(kProjectFile); });
    ASSERT_EQ(done, expected.result != ReferenceProject::kFailed);
    ASSERT_EQ(result, expected.result == ReferenceProject::kTrue);
    ASSERT_EQ(project.ShortLang, expected.shortLang);
    ASSERT_EQ(Languages(), expected.languages);
    ASSERT_EQ(Documents(), expected.documents);
  }
  for (const int count : met) EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace marl
