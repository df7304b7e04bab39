#include "support/clsLanguages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/memory/MemoryComponents.h"
#include "support/BuiltInComponents.h"

namespace marl {
namespace {

using Arguments = std::vector<ComponentValue>;

/// A component with its own lists, and switches for failures.
struct Lists {
  struct Language {
    Text description, code;
    std::int32_t encoding, localeId;
  };
  struct CodePage {
    Text description, code;
    std::int32_t number;
  };
  std::vector<Language> languages;
  std::vector<CodePage> pages;
  ComponentValue languageCount, pageCount;  ///< reported instead of the true ones
  std::int32_t badLanguage = -1;            ///< filling it returns `status`
  std::int32_t badPage = -1;
  ComponentValue status = std::int32_t{5};
  bool raise = false;       ///< the call for the bad one fails
  bool wrongKinds = false;  ///< numbers come as texts, texts as numbers

  MemoryComponents::Body Body() {
    return
        [this](const Text& operation, Arguments& arguments, ComponentValue& result, Text& failure) {
          const auto reported = [](const ComponentValue& count, std::size_t size) {
            return count.index() ? count : ComponentValue(static_cast<std::int32_t>(size));
          };
          if (operation == u"LanguageCount") {
            result = reported(languageCount, languages.size());
            return true;
          }
          if (operation == u"CodePageCount") {
            result = reported(pageCount, pages.size());
            return true;
          }
          const std::int32_t index = std::get<std::int32_t>(arguments.at(0));
          const bool language = operation == u"GetLanguage";
          if (index == (language ? badLanguage : badPage)) {
            result = status;
            failure = u"no";
            return !raise;
          }
          result = std::int32_t{0};
          if (wrongKinds) {
            arguments = {arguments[0],     arguments[1],  std::int32_t{7},
                         ComponentValue(), Text(u"1253"), Text(u"many")};
            if (!language) arguments.pop_back();
          } else if (language) {
            const Language& row = languages.at(index);
            arguments = {arguments[0], arguments[1], row.description,
                         row.code,     row.encoding, row.localeId};
          } else {
            const CodePage& row = pages.at(index);
            arguments = {arguments[0], arguments[1], row.description, row.code, row.number};
          }
          return true;
        };
  }
};

class Languages : public testing::Test {
 protected:
  Languages() {
    lists.languages = {{u"French", u"fr", 1252, 12},
                       {u"Greek", u"el", 1253, 8},
                       {u"Hindi", u"hi", 0, 57},
                       {u"Thai", u"th", 874, 30}};
    lists.pages = {{u"Western", u"windows-1252", 1252},
                   {u"Greek", u"windows-1253", 1253},
                   {u"Greek again", u"cp1253", 1253}};
    components.registered[u"Marl.QaComponent"] = lists.Body();
  }

  /// All answers of the object, from below its first index to above its last.
  static void ExpectEmpty(const clsLanguages& languages) {
    EXPECT_EQ(languages.LanguageCount(), -1);
    EXPECT_EQ(languages.CodePageCount(), -1);
    for (int i = -1; i <= 1; ++i) ExpectNothingAt(languages, i);
    int runs = 0;
    for (int i = 0; i <= languages.LanguageCount(); ++i) ++runs;
    EXPECT_EQ(runs, 0);
  }

  static void ExpectNothingAt(const clsLanguages& languages, std::int32_t index) {
    EXPECT_EQ(languages.LanguageDescription(index), u"");
    EXPECT_EQ(languages.LanguageCode(index), u"");
    EXPECT_EQ(languages.LanguageEncoding(index), 0);
    EXPECT_EQ(languages.LanguageLCID(index), 0);
    EXPECT_EQ(languages.LanguageCodePage(index), -1);
    EXPECT_EQ(languages.CodePageDescription(index), u"");
    EXPECT_EQ(languages.CodePageNumber(index), 0);
    EXPECT_EQ(languages.CodePageCode(index), u"");
  }

  MemoryComponents components;
  Lists lists;
};

TEST_F(Languages, WithoutAComponentTheListsAreEmpty) {
  components.registered.clear();
  ExpectEmpty(clsLanguages(components));
}

TEST_F(Languages, CountsAreTheHighestIndexes) {
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageCount(), 3);
  EXPECT_EQ(languages.CodePageCount(), 2);
}

TEST_F(Languages, AnswersFromItsCopies) {
  const clsLanguages languages(components);
  lists.languages.clear();
  components.registered.clear();
  EXPECT_EQ(languages.LanguageDescription(0), u"French");
  EXPECT_EQ(languages.LanguageCode(1), u"el");
  EXPECT_EQ(languages.LanguageEncoding(3), 874);
  EXPECT_EQ(languages.LanguageLCID(2), 57);
  EXPECT_EQ(languages.CodePageDescription(0), u"Western");
  EXPECT_EQ(languages.CodePageCode(2), u"cp1253");
  EXPECT_EQ(languages.CodePageNumber(1), 1253);
}

TEST_F(Languages, OutOfRangeYieldsNothing) {
  const clsLanguages languages(components);
  for (const std::int32_t index :
       {-1, languages.LanguageCount() + 1, 2147483647, -2147483647 - 1}) {
    ExpectNothingAt(languages, index);
  }
  EXPECT_EQ(languages.CodePageCode(languages.CodePageCount() + 1), u"");
}

TEST_F(Languages, OutOfRangeHasNoCodePageEvenWhereOneHasTheNumberNought) {
  lists.pages.push_back({u"Any", u"any", 0});
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageCodePage(2), 3) << "the encoding that is 0";
  EXPECT_EQ(languages.LanguageCodePage(-1), -1);
  EXPECT_EQ(languages.LanguageCodePage(4), -1);
}

TEST_F(Languages, CodePageIsTheFirstWithTheNumberOfTheEncoding) {
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageCodePage(0), 0);
  EXPECT_EQ(languages.LanguageCodePage(1), 1);
}

TEST_F(Languages, AnEncodingInNoCodePageYieldsMinusOne) {
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageCodePage(2), -1);
  EXPECT_EQ(languages.LanguageCodePage(3), -1);
}

TEST_F(Languages, TheComponentIsAskedOnceInOrderWithTheTagSetAndReleased) {
  lists.languages.resize(1);
  lists.pages.resize(1);
  {
    const clsLanguages languages(components);
    EXPECT_EQ(components.live, 0);
    languages.LanguageCode(0);
  }
  const Text name = u"Marl.QaComponent";
  const std::int32_t zero = 0, one = 1;
  using Record = MemoryComponents::CallRecord;
  EXPECT_EQ(components.calls,
            std::vector<Record>({
                Record{name, u"LanguageCount", {}},
                Record{name, u"GetLanguage", {zero, one, Text(), Text(), zero, zero}},
                Record{name, u"CodePageCount", {}},
                Record{name, u"GetCodePage", {zero, one, Text(), Text(), zero}},
            }));
}

TEST_F(Languages, AStatusOtherThanZeroEndsTheListAndKeepsWhatWasRead) {
  for (int bad = 0; bad < 3; ++bad) {
    lists.badLanguage = bad;
    lists.badPage = 2 - bad;
    components.calls.clear();
    const clsLanguages languages(components);
    EXPECT_EQ(languages.LanguageCount(), bad - 1);
    EXPECT_EQ(languages.CodePageCount(), 1 - bad);
    EXPECT_EQ(languages.LanguageCode(bad), u"");
    EXPECT_EQ(languages.LanguageCode(bad - 1), bad == 0 ? u"" : lists.languages[bad - 1].code);
    EXPECT_EQ(components.calls.size(), 2u + bad + 1 + (2 - bad) + 1) << "none after it";
  }
}

TEST_F(Languages, ACallThatFailsAnywhereLeavesBothListsEmpty) {
  lists.raise = true;
  for (const auto& [language, page] : {std::pair{0, -1}, {2, -1}, {-1, 0}, {-1, 2}}) {
    lists.badLanguage = language;
    lists.badPage = page;
    components.calls.clear();
    ExpectEmpty(clsLanguages(components));
    EXPECT_EQ(components.live, 0);
    const std::size_t before = language >= 0 ? 2 : lists.languages.size() + 3;
    EXPECT_EQ(components.calls.size(), before + static_cast<std::size_t>(language + page + 1))
        << "none after it";
  }
}

TEST_F(Languages, FieldsOfAnotherKindAreConvertedOrLeftEmpty) {
  lists.wrongKinds = true;
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageCount(), 3);
  EXPECT_EQ(languages.LanguageDescription(0), u"7");
  EXPECT_EQ(languages.LanguageCode(0), u"");
  EXPECT_EQ(languages.LanguageEncoding(0), 1253);
  EXPECT_EQ(languages.LanguageLCID(0), 0);
  EXPECT_EQ(languages.CodePageDescription(0), u"7");
  EXPECT_EQ(languages.CodePageCode(0), u"");
  EXPECT_EQ(languages.CodePageNumber(0), 1253);
}

TEST_F(Languages, NegativeAndSenselessCountsLeaveTheListEmpty) {
  for (const ComponentValue& count :
       {ComponentValue(std::int32_t{0}), ComponentValue(std::int32_t{-1}),
        ComponentValue(std::int32_t{-2147483647 - 1}), ComponentValue(Text(u"many")),
        ComponentValue(ForeignValue())}) {
    lists.languageCount = lists.pageCount = count;
    ExpectEmpty(clsLanguages(components));
  }
}

TEST_F(Languages, CountsBeyondTheListEndWithItsStatus) {
  lists.languageCount = std::int32_t{2147483647};
  lists.badLanguage = 4;
  EXPECT_EQ(clsLanguages(components).LanguageCount(), 3);
}

TEST_F(Languages, ATextThatIsANumberCountsAsOne) {
  lists.languageCount = Text(u"2");
  EXPECT_EQ(clsLanguages(components).LanguageCount(), 1);
}

TEST_F(Languages, AStatusThatIsNoNumberEndsTheList) {
  lists.badLanguage = 1;
  for (const ComponentValue& status :
       {ComponentValue(Text(u"bad")), ComponentValue(Text()), ComponentValue(ForeignValue())}) {
    lists.status = status;
    const clsLanguages languages(components);
    EXPECT_EQ(languages.LanguageCount(), 0);
    EXPECT_EQ(languages.CodePageCount(), 2) << "it is no failure of the component";
  }
}

TEST_F(Languages, NoStatusCountsAsZero) {
  lists.badLanguage = 1;
  lists.status = {};
  EXPECT_EQ(clsLanguages(components).LanguageCount(), 3);
}

TEST_F(Languages, ARegisteredComponentThatCannotBeMadeLeavesEmptyLists) {
  components.broken[u"Marl.QaComponent"] = u"Module not found";
  BuiltInComponents builtIn(components);
  ExpectEmpty(clsLanguages(builtIn));
  EXPECT_TRUE(components.calls.empty());
}

TEST_F(Languages, AComponentThatFailsLeavesEmptyLists) {
  components.registered[u"Marl.QaComponent"] = [](const Text&, Arguments&, ComponentValue&,
                                                  Text& failure) {
    failure = u"broken";
    return false;
  };
  ExpectEmpty(clsLanguages(components));
  EXPECT_EQ(components.live, 0);
}

TEST_F(Languages, FieldsOfTheWrongTypeAreConvertedOrEmpty) {
  components.registered[u"Marl.QaComponent"] = [](const Text& operation, Arguments& arguments,
                                                  ComponentValue& result, Text&) {
    result = std::int32_t{operation.ends_with(u"Count") ? 1 : 0};
    if (operation == u"GetLanguage") {
      arguments = {std::int32_t{0}, {}, ForeignValue(), std::int32_t{7}, Text(u"1252"), Text(u"x")};
    }
    return true;
  };
  const clsLanguages languages(components);
  EXPECT_EQ(languages.LanguageDescription(0), u"");
  EXPECT_EQ(languages.LanguageCode(0), u"7");
  EXPECT_EQ(languages.LanguageEncoding(0), 1252);
  EXPECT_EQ(languages.LanguageLCID(0), 0);
  EXPECT_EQ(languages.CodePageNumber(0), 0);
}

TEST_F(Languages, TheBuiltInListsServeWhereNoComponentIsRegistered) {
  components.registered.clear();
  BuiltInComponents builtIn(components);
  const clsLanguages languages(builtIn);
  ASSERT_GE(languages.LanguageCount(), 199);
  int found = 0;
  for (int i = 0; i <= languages.LanguageCount(); ++i) {
    if (languages.LanguageCode(i) != u"pt-BR") continue;
    ++found;
    EXPECT_EQ(languages.LanguageDescription(i), u"Portuguese (Brazil)");
    EXPECT_EQ(languages.LanguageEncoding(i), 1252);
    EXPECT_EQ(languages.LanguageLCID(i), 0x416);
    const int page = languages.LanguageCodePage(i);
    EXPECT_EQ(languages.CodePageNumber(page), 1252);
    EXPECT_EQ(languages.CodePageCode(page), u"windows-1252");
    EXPECT_EQ(languages.CodePageDescription(page), u"Western European (Windows)");
  }
  EXPECT_EQ(found, 1);
}

TEST_F(Languages, ARegisteredComponentGoesBeforeTheBuiltInLists) {
  BuiltInComponents builtIn(components);
  EXPECT_EQ(clsLanguages(builtIn).LanguageCount(), 3);
}

}  // namespace
}  // namespace marl
