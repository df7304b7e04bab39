// UTF-8 in both directions, compared with ICU and iconv.

#include <iconv.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/Race.h"
#include "documents/modUTF8.h"
#include "platform/memory/OneFile.h"

namespace marl {
namespace {

/// `sentence` repeated to about `units` units.
Text Repeat(TextView sentence, std::size_t units) {
  Text text;
  while (text.size() < units) text += sentence;
  return text;
}

/// Decodes or encodes with iconv; returns the number of bytes.
std::size_t Iconv(iconv_t converter, const char* in, std::size_t size, char* out,
                  std::size_t room) {
  char* from = const_cast<char*>(in);
  const std::size_t before = room;
  iconv(converter, &from, &size, &out, &room);
  return before - room;
}

/// How many times faster than ICU both directions have to be.
struct Bounds {
  double decode;
  double encode;
};

void Measure(const std::string& name, const Text& text, Bounds bounds, bench::Goals& goals) {
  const OneFile file(nullptr, 0);
  OneFile files = file;
  modUTF8 utf8(files);
  utf8.ToUTF8Bytes(text);
  const Bytes bytes = utf8.OutputBytes();
  const auto size = static_cast<double>(bytes.size());
  Text units(text.size() + 1, u'\0');
  std::string narrow(bytes.size() + 1, '\0');
  const iconv_t decoder = iconv_open("UTF-16LE", "UTF-8");
  const iconv_t encoder = iconv_open("UTF-8", "UTF-16LE");

  const auto decode = [&] {
    return DecodeUTF8(bytes.data(), bytes.size(), units.data(), text.size()).units;
  };
  const auto decodeIcu = [&] {
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length,
                  reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::int32_t>(bytes.size()), &error);
    return static_cast<std::size_t>(length);
  };
  const auto decodeIconv = [&] {
    return Iconv(decoder, reinterpret_cast<const char*>(bytes.data()), bytes.size(),
                 reinterpret_cast<char*>(units.data()), units.size() * sizeof(char16_t)) /
           sizeof(char16_t);
  };
  const auto encode = [&] { return static_cast<std::size_t>(utf8.ToUTF8Bytes(text)); };
  const auto encodeIcu = [&] {
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(narrow.data(), static_cast<std::int32_t>(narrow.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &error);
    return static_cast<std::size_t>(length);
  };
  const auto encodeIconv = [&] {
    return Iconv(encoder, reinterpret_cast<const char*>(text.data()),
                 text.size() * sizeof(char16_t), narrow.data(), narrow.size());
  };
  if (decode() != text.size() || decodeIcu() != text.size() || decodeIconv() != text.size() ||
      encode() != bytes.size() || encodeIcu() != bytes.size() || encodeIconv() != bytes.size()) {
    std::puts("the converters do not agree");
    std::exit(2);
  }

  bench::Race decoding(name + "-decode");
  decoding.Add("ours", [&] { bench::Keep(decode()); });
  decoding.Add("icu", [&] { bench::Keep(decodeIcu()); });
  decoding.Add("iconv", [&] { bench::Keep(decodeIconv()); });
  decoding.Run(60, 1, size);
  goals.AtLeast("utf8-decode-" + name + "-icu", decoding.Against("icu"), bounds.decode);

  bench::Race encoding(name + "-encode");
  encoding.Add("ours", [&] { bench::Keep(encode()); });
  encoding.Add("icu", [&] { bench::Keep(encodeIcu()); });
  encoding.Add("iconv", [&] { bench::Keep(encodeIconv()); });
  encoding.Run(60, 1, size);
  goals.AtLeast("utf8-encode-" + name + "-icu", encoding.Against("icu"), bounds.encode);
  iconv_close(decoder);
  iconv_close(encoder);
}

}  // namespace
}  // namespace marl

int main() {
  using namespace marl;
  constexpr TextView kAscii = u"The document is opened in the editor, and each segment is shown. ";
  constexpr TextView kLatin = u"L'éditeur français gère les mémoires à l'aide d'un réseau établi. ";
  constexpr TextView kCyrillic = u"Переводчик открывает проект и выбирает нужный документ. ";
  constexpr TextView kChinese = u"翻译人员打开项目并选择需要的文档，然后开始工作。";
  constexpr std::size_t kUnits = 1'000'000;
  bench::Goals goals;
  constexpr Bounds kOthers = {1.5, 1.3};
  Measure("ascii", Repeat(kAscii, kUnits), {5, 5}, goals);
  Measure("latin", Repeat(kLatin, kUnits), kOthers, goals);
  Measure("cyrillic", Repeat(kCyrillic, kUnits), kOthers, goals);
  Measure("chinese", Repeat(kChinese, kUnits), kOthers, goals);
  Measure("mixed", Repeat(Text(kAscii) + Text(kLatin) + Text(kCyrillic) + Text(kChinese), kUnits),
          kOthers, goals);
  goals.Tell();
}
