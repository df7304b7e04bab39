#include "support/modI18N.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/forms/Control.h"
#include "platform/forms/Form.h"
#include "support/Numbers.h"

namespace marl {

namespace {

constexpr std::int32_t kWesternCodePage = 1252;
constexpr int kSymbolCharset = 2;
constexpr int kDefaultCharset = 1;
constexpr std::int64_t kSmallestFarEastSize = 9 * 10000;

struct CodePageFont {
  std::int32_t codePage;
  int charset;
  TextView face;  ///< only if the script needs one
};

constexpr CodePageFont kCodePageFonts[] = {
    {874, 222, u""},
    {932, 128, u"\uFF2D\uFF33\u0020\uFF30\u30B4\u30B7\u30C3\u30AF"},
    {936, 134, u"\u5B8B\u4F53"},
    {949, 129, u"\uAD74\uB9BC"},
    {950, 136, u"\u65B0\u7D30\u660E\u9AD4"},
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
};

}  // namespace

void ApplyLocaleFont(Form& form, const Locale& locales) {
  const std::int32_t codePage = GetLocaleCodePage(locales.ThreadLocale(), locales);
  if (codePage == kWesternCodePage) return;
  Font own = form.Font();
  own.Name.clear();
  form.SetFont(own);
  for (Control* control : form.controls()) {
    if (!HasFont(control->kind())) continue;
    Font font = control->Font();
    ApplyCodePageFont(font, codePage);
    control->SetFont(font);
  }
}

NumberFormat UserNumberFormat(const Locale& locales) {
  NumberFormat format;
  const auto read = [&](std::uint32_t fact, char16_t& separator) {
    std::array<char, 16> buffer{};
    if (locales.LocaleInfo(locales.ThreadLocale(), fact, buffer) > 0 && buffer[0] != '\0') {
      separator = static_cast<unsigned char>(buffer[0]);
    }
  };
  read(kLocaleDecimal, format.decimal);
  read(kLocaleThousand, format.group);
  return format;
}

std::int32_t GetLocaleCodePage(std::uint32_t locale, const Locale& locales) {
  std::array<char, 16> buffer = {};
  locales.LocaleInfo(locale, kLocaleDefaultAnsiCodePage, buffer);
  const Text text = StripAtNul(Text(buffer.begin(), buffer.end()));
  const double number = ParseNumber(text).value_or(0);
  constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
  return number >= 0 && number <= kLargest ? CLng(number) : 0;
}

Text StripAtNul(TextView text) { return Text(text.substr(0, text.find(u'\0'))); }

void ApplyCodePageFont(Font& font, std::int32_t codePage) {
  if (font.Charset == kSymbolCharset) return;
  const auto* const found =
      std::find_if(std::begin(kCodePageFonts), std::end(kCodePageFonts),
                   [codePage](const CodePageFont& row) { return row.codePage == codePage; });
  const bool known = found != std::end(kCodePageFonts);
  font.Charset = known ? found->charset : kDefaultCharset;
  font.Name = known ? found->face : TextView();
  if (!font.Name.empty()) font.Size = std::max(font.Size, kSmallestFarEastSize);
}

}  // namespace marl
