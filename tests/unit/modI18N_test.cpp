#include "support/modI18N.h"

#include <gtest/gtest.h>

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"

namespace marl {
namespace {

constexpr std::int64_t Points(int points) { return std::int64_t{points} * 10000; }

Font MakeFont(TextView name, std::int64_t size, int charset) {
  Font font;
  font.Name = name;
  font.Size = size;
  font.Bold = true;
  font.Charset = charset;
  return font;
}

/// A form with controls of a small, a large and a symbol font, and some without a font.
class LocaleFonts : public testing::Test {
 protected:
  MemoryDesktop desktop;
  MemoryLocale locales;
  Form form{desktop, "frmAny"};
  Label small{form, "lblSmall"};
  CommandButton large{form, "cmdLarge"};
  CheckBox symbols{form, "chkSymbols"};
  Image image{form, "imgAny"};
  Shape shape{form, "shpAny"};
  Line line{form, "linAny"};
  Timer timer{form, "tmrAny"};
  Menu menu{form, "mnuAny"};
  const Font design = MakeFont(u"Design", Points(8), 0);

  LocaleFonts() {
    form.SetFont(design);
    small.SetFont(design);
    large.SetFont(MakeFont(u"Design", Points(12), 0));
    symbols.SetFont(MakeFont(u"Pictures", Points(8), 2));
    for (Control* control : WithoutFont()) control->SetFont(design);
  }
  std::vector<Control*> WithoutFont() { return {&image, &shape, &line, &timer, &menu}; }
};

TEST_F(LocaleFonts, UnderCodePage1252NoFontChanges) {
  locales.UseCodePage("1252");
  ApplyLocaleFont(form, locales);
  EXPECT_EQ(form.Font(), design);
  EXPECT_EQ(small.Font(), design);
  EXPECT_EQ(large.Font(), MakeFont(u"Design", Points(12), 0));
  EXPECT_EQ(symbols.Font(), MakeFont(u"Pictures", Points(8), 2));
}

TEST_F(LocaleFonts, UnderCodePage932SmallFontsGrowToNinePoints) {
  locales.UseCodePage("932");
  ApplyLocaleFont(form, locales);
  const Text face{0xFF2D, 0xFF33, 0x20, 0xFF30, 0x30B4, 0x30B7, 0x30C3, 0x30AF};
  EXPECT_EQ(small.Font(), MakeFont(face, Points(9), 128));
  EXPECT_EQ(large.Font(), MakeFont(face, Points(12), 128));
  EXPECT_EQ(symbols.Font(), MakeFont(u"Pictures", Points(8), 2));
  // Only the name of the form's own font changes.
  EXPECT_EQ(form.Font(), MakeFont(u"", Points(8), 0));
}

TEST_F(LocaleFonts, UnderCodePage1251OnlyCharsetAndFaceChange) {
  locales.UseCodePage("1251");
  ApplyLocaleFont(form, locales);
  EXPECT_EQ(small.Font(), MakeFont(u"", Points(8), 204));
  EXPECT_EQ(large.Font(), MakeFont(u"", Points(12), 204));
  EXPECT_EQ(symbols.Font(), MakeFont(u"Pictures", Points(8), 2));
  EXPECT_EQ(form.Font(), MakeFont(u"", Points(8), 0));
}

TEST_F(LocaleFonts, ALocaleOfUnicodeOnlyGetsTheDefaultCharset) {
  locales.UseCodePage("0");
  ApplyLocaleFont(form, locales);
  EXPECT_EQ(small.Font(), MakeFont(u"", Points(8), 1));
}

TEST_F(LocaleFonts, ALocaleThatThePlatformDoesNotKnowGetsTheDefaultCharset) {
  locales.threadLocale = 0x1234;
  EXPECT_EQ(GetLocaleCodePage(locales.ThreadLocale(), locales), 0);
  ApplyLocaleFont(form, locales);
  EXPECT_EQ(small.Font(), MakeFont(u"", Points(8), 1));
  EXPECT_EQ(large.Font(), MakeFont(u"", Points(12), 1));
  EXPECT_EQ(symbols.Font(), MakeFont(u"Pictures", Points(8), 2));
  EXPECT_EQ(form.Font(), MakeFont(u"", Points(8), 0));
}

TEST_F(LocaleFonts, ControlsWithoutAFontAreSkipped) {
  locales.UseCodePage("932");
  ApplyLocaleFont(form, locales);
  for (Control* control : WithoutFont()) EXPECT_EQ(control->Font(), design) << control->name();
}

TEST(LocaleCodePage, IsTheLocalesNumber) {
  MemoryLocale locales;
  const struct {
    const char* number;
    std::int32_t codePage;
  } rows[] = {{"1252", 1252},   {"932", 932}, {"0", 0},  {"", 0},
              {"65001", 65001}, {"many", 0},  {"-5", 0}, {"99999999999", 0}};
  for (const auto& row : rows) {
    locales.UseCodePage(row.number);
    EXPECT_EQ(GetLocaleCodePage(locales.ThreadLocale(), locales), row.codePage) << row.number;
  }
  EXPECT_EQ(GetLocaleCodePage(0x411, locales), 932);
  // The platform returns nothing that does not fit the buffer.
  locales.UseCodePage("1252000000000000");
  EXPECT_EQ(GetLocaleCodePage(locales.ThreadLocale(), locales), 0);
}

TEST(StripAtNul, CutsAtTheFirst) {
  EXPECT_EQ(StripAtNul(TextView(u"12\0 34\0", 7)), u"12");
  EXPECT_EQ(StripAtNul(u"whole"), u"whole");
  EXPECT_EQ(StripAtNul(TextView(u"\0x", 2)), u"");
  EXPECT_EQ(StripAtNul(u""), u"");
}

TEST(CodePageFont, EveryCodePageHasItsCharsetAndFace) {
  const struct {
    std::int32_t codePage;
    int charset;
    Text face;
  } rows[] = {
      {874, 222, u""},
      {932, 128, {0xFF2D, 0xFF33, 0x0020, 0xFF30, 0x30B4, 0x30B7, 0x30C3, 0x30AF}},
      {936, 134, {0x5B8B, 0x4F53}},
      {949, 129, {0xAD74, 0xB9BC}},
      {950, 136, {0x65B0, 0x7D30, 0x660E, 0x9AD4}},
      {1250, 238, u""},
      {1251, 204, u""},
      {1252, 0, u""},
      {1253, 161, u""},
      {1254, 162, u""},
      {1255, 177, u""},
      {1256, 178, u""},
      {1257, 186, u""},
      {1258, 163, u""},
      {1361, 130, u""},
      {0, 1, u""},
      {437, 1, u""},
      {65001, 1, u""},
      {-1, 1, u""},
  };
  for (const auto& row : rows) {
    const bool farEast = !row.face.empty();
    for (const std::int64_t size : {Points(1), Points(8), Points(9) - 1, Points(9), Points(12)}) {
      Font font = MakeFont(u"Design", size, 0);
      ApplyCodePageFont(font, row.codePage);
      const std::int64_t expected = farEast && size < Points(9) ? Points(9) : size;
      EXPECT_EQ(font, MakeFont(row.face, expected, row.charset)) << row.codePage << " " << size;
    }
    Font symbols = MakeFont(u"Pictures", Points(8), 2);
    ApplyCodePageFont(symbols, row.codePage);
    EXPECT_EQ(symbols, MakeFont(u"Pictures", Points(8), 2)) << row.codePage;
  }
}

TEST(UserNumberFormat, SeparatorsAreThoseOfTheThreadsLocale) {
  MemoryLocale locales;
  EXPECT_EQ(UserNumberFormat(locales).decimal, u'.');
  EXPECT_EQ(UserNumberFormat(locales).group, u',');
  locales.threadLocale = 0x407;
  EXPECT_EQ(UserNumberFormat(locales).decimal, u',');
  EXPECT_EQ(UserNumberFormat(locales).group, u'.');
}

TEST(UserNumberFormat, AnUnknownLocaleHasPointAndComma) {
  MemoryLocale locales;
  locales.threadLocale = 0x10000;
  EXPECT_EQ(UserNumberFormat(locales).decimal, u'.');
  locales.facts[{0x10000, kLocaleDecimal}] = "";
  locales.facts[{0x10000, kLocaleThousand}] = "\xA0";
  EXPECT_EQ(UserNumberFormat(locales).decimal, u'.');
  EXPECT_EQ(UserNumberFormat(locales).group, u'\u00A0');
}

}  // namespace
}  // namespace marl
