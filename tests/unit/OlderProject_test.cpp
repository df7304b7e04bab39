#include "documents/OlderProject.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/RuntimeError.h"
#include "tests/unit/ProjectWorld.h"

namespace marl {
namespace {

constexpr TextView kOlderProject = u"C:\\P\\job.qpj";
constexpr std::int32_t kMost = 2147483647;

class OlderProjectTest : public testing::Test, protected ProjectWorld {
 protected:
  using Values = std::vector<Text>;

  void Put(std::string_view content) { files.Put(kOlderProject, content); }
  /// The error that reading a number throws; 0 for none.
  template <typename Number>
  int Raises(Number (OlderProject::*number)() const) {
    try {
      (project.*number)();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }

  OlderProject project{files, common, kOlderProject};
};

TEST_F(OlderProjectTest, ReadsAWholeProject) {
  Put("[Target Files]\r\nShortLang=1\r\n[Languages]\r\nCount=2\r\nTarget0=de\r\nTarget1=fr\r\n"
      "[Source Files]\r\nCount=1\r\nFile0=sub\\report.doc\r\n");
  EXPECT_EQ(project.ShortLang(), 1);
  EXPECT_EQ(project.LangCount(), 2);
  EXPECT_EQ(project.DocCount(), 1);
  EXPECT_EQ(project.Languages(2), (Values{u"de", u"fr"}));
  EXPECT_EQ(project.Documents(1), Values{u"sub\\report.doc"});
}

TEST_F(OlderProjectTest, MissingKeysAndFilesHaveTheirDefaults) {
  EXPECT_EQ(project.ShortLang(), 0);
  EXPECT_EQ(project.LangCount(), 0);
  EXPECT_EQ(project.DocCount(), 0);
  EXPECT_EQ(project.Languages(5), Values());
  Put("nonsense");
  EXPECT_EQ(project.LangCount(), 0);
  EXPECT_EQ(project.Documents(5), Values());
}

TEST_F(OlderProjectTest, EmptyAndMissingEntriesAreSkipped) {
  Put("[Languages]\r\nTarget0=\r\nTarget2=fr\r\nTarget10=it\r\nTarget1=\"\"\r\n");
  EXPECT_EQ(project.Languages(11), (Values{u"fr", u"it"}));
  EXPECT_EQ(project.Languages(10), Values{u"fr"}) << "numbers stop below the count";
}

TEST_F(OlderProjectTest, OrderIsThatOfTheNumbers) {
  Put("[Source Files]\r\nfile10=k\r\nFILE2=c\r\nFile0=a\r\n");
  EXPECT_EQ(project.Documents(11), (Values{u"a", u"c", u"k"}));
}

TEST_F(OlderProjectTest, KeysOfOtherSectionsAndSpellingsDontCount) {
  Put("[Other]\r\nTarget0=de\r\n[Languages]\r\nTarget01=fr\r\nTarget=it\r\nTargets1=es\r\n");
  EXPECT_EQ(project.Languages(5), Values());
}

TEST_F(OlderProjectTest, TextsThatAreNoNumbersAreTypeMismatches) {
  Put("[Target Files]\r\nShortLang=abc\r\n[Languages]\r\nCount=two\r\n[Source "
      "Files]\r\nCount=\r\n");
  const int mismatch = RuntimeError::TypeMismatch().number();
  EXPECT_EQ(Raises(&OlderProject::ShortLang), mismatch);
  EXPECT_EQ(Raises(&OlderProject::LangCount), mismatch);
  EXPECT_EQ(Raises(&OlderProject::DocCount), mismatch) << "an empty value is no number either";
}

TEST_F(OlderProjectTest, NumbersBeyondTheirRangeOverflow) {
  Put("[Target Files]\r\nShortLang=32768\r\n[Languages]\r\nCount=2147483648\r\n");
  const int overflow = RuntimeError::Overflow().number();
  EXPECT_EQ(Raises(&OlderProject::ShortLang), overflow);
  EXPECT_EQ(Raises(&OlderProject::LangCount), overflow);
}

TEST_F(OlderProjectTest, HostileCountsAreFast) {
  Put("[Languages]\r\nTarget2147483646=de\r\nTarget5=fr\r\nTarget99999999999999999999=it\r\n");
  EXPECT_EQ(project.Languages(kMost), (Values{u"fr", u"de"}));
  EXPECT_EQ(project.Languages(-1), Values());
  EXPECT_EQ(project.Languages(-kMost - 1), Values());
}

TEST_F(OlderProjectTest, LongValuesAreCutAtTheBuffer) {
  Put("[Source Files]\r\nFile0=" + std::string(2000, 'x') + "\r\n");
  ASSERT_EQ(project.Documents(1).size(), 1u);
  EXPECT_EQ(project.Documents(1)[0].size(), 1023u);
}

}  // namespace
}  // namespace marl
