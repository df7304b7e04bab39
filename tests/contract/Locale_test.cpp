#include "platform/Locale.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/memory/MemoryLocale.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/LocaleWin32.h"
#endif

namespace marl {
namespace {

class LocaleContract : public BackendTest {
 protected:
  std::unique_ptr<Locale> locales = Make();

  static std::unique_ptr<Locale> Make() {
#ifdef _WIN32
    if (real()) return std::make_unique<win32::LocaleWin32>();
#endif
    return std::make_unique<MemoryLocale>();
  }
};

TEST_P(LocaleContract, GivesTheCodePageWithItsTerminator) {
  const struct {
    std::uint32_t locale;
    std::string codePage;
  } rows[] = {{0x409, "1252"}, {0x407, "1252"}, {0x411, "932"}, {0x419, "1251"}, {0x439, "0"}};
  for (const auto& row : rows) {
    std::array<char, 16> buffer = {};
    const int size = locales->LocaleInfo(row.locale, kLocaleDefaultAnsiCodePage, buffer);
    EXPECT_EQ(size, static_cast<int>(row.codePage.size()) + 1) << row.locale;
    EXPECT_EQ(std::string(buffer.data()), row.codePage) << row.locale;
  }
}

TEST_P(LocaleContract, GivesNothingForAnUnknownLocale) {
  std::array<char, 16> buffer = {};
  EXPECT_EQ(locales->LocaleInfo(0x3FF, kLocaleDefaultAnsiCodePage, buffer), 0);
  EXPECT_EQ(buffer, (std::array<char, 16>{}));
}

TEST_P(LocaleContract, GivesNothingIfTheBufferIsTooShort) {
  std::array<char, 4> buffer = {};
  EXPECT_EQ(locales->LocaleInfo(0x409, kLocaleDefaultAnsiCodePage, buffer), 0);
  EXPECT_EQ(locales->LocaleInfo(0x409, kLocaleDefaultAnsiCodePage, {}), 0);
}

TEST_P(LocaleContract, TheThreadHasALocaleWithACodePage) {
  std::array<char, 16> buffer = {};
  EXPECT_GT(locales->LocaleInfo(locales->ThreadLocale(), kLocaleDefaultAnsiCodePage, buffer), 1);
}

// Texts in one row are equal, ignoring case; texts in different rows never are.
TEST_P(LocaleContract, TextsAreTheSameAsTheCollationOfTheUserSeesThem) {
  const std::vector<std::vector<TextView>> rows = {
      {u""},
      {u" "},
      {u"server", u"SERVER", u"Server"},
      {u"server "},
      {u"se-rver"},
      // Turkish: two letters i, with and without a dot.
      {u"i", u"I"},
      {u"\u0131"},
      {u"\u0130", u"I\u0307", u"i\u0307"},
      {u"g\u00FC\u00E7", u"G\u00DC\u00C7", u"gu\u0308c\u0327"},
      {u"da\u011F", u"DA\u011E"},
      // Romanian: a comma below is not a cedilla.
      {u"\u0219", u"\u0218", u"s\u0326", u"S\u0326"},
      {u"\u015F", u"\u015E", u"s\u0327"},
      {u"\u021Bar\u0103", u"\u021AAR\u0102", u"t\u0326ara\u0306"},
      {u"\u0163ar\u0103", u"\u0162AR\u0102"},
      {u"s", u"S"},
      // Greek: final sigma equals sigma; accents count.
      {u"\u03BF\u03B4\u03CC\u03C2", u"\u039F\u0394\u038C\u03A3", u"\u03BF\u03B4\u03BF\u0301\u03C3"},
      {u"\u03BF\u03B4\u03BF\u03C2", u"\u039F\u0394\u039F\u03A3"},
      {u"\u03A9", u"\u03C9", u"\u2126"},
      {u"\u03BC", u"\u039C"},
      {u"\u00B5"},
      // German: sharp s equals "ss".
      {u"stra\u00DFe", u"STRASSE", u"STRA\u1E9EE", u"Strasse"},
      {u"strase"},
      {u"\u00E4rger", u"\u00C4RGER", u"a\u0308rger"},
      {u"arger", u"Arger"},
      {u"aerger"},
      // Vietnamese, and letters with two accents.
      {u"Ph\u01B0\u01A1ng", u"PH\u01AF\u01A0NG", u"phu\u031Bo\u031Bng"},
      {u"\u1EA5", u"\u1EA4", u"\u00E2\u0301", u"A\u0302\u0301"},
      {u"\u00E2", u"\u00C2"},
      // Signs that equal letters.
      {u"k", u"K", u"\u212A"},
      {u"\u00E5", u"\u00C5", u"\u212B", u"a\u030A"},
      {u"\u00E6", u"AE", u"\u00C6"},
      {u"\u017F"},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < rows.size(); ++j) {
      for (const TextView a : rows[i]) {
        for (const TextView b : rows[j]) {
          EXPECT_EQ(locales->SameText(a, b), i == j)
              << testing::PrintToString(Text(a)) << " and " << testing::PrintToString(Text(b));
        }
      }
    }
  }
}

TEST_P(LocaleContract, ANulIsAUnitLikeAnyOther) {
  EXPECT_FALSE(locales->SameText(u"a", TextView(u"a\0b", 3)));
  EXPECT_TRUE(locales->SameText(TextView(u"a\0b", 3), TextView(u"A\0B", 3)));
}

MARL_OVER_ALL_BACKENDS(LocaleContract);

}  // namespace
}  // namespace marl
