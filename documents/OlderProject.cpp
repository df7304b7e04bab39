#include "documents/OlderProject.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "support/Numbers.h"

namespace marl {

namespace {

constexpr TextView kTargetFiles = u"Target Files";
constexpr TextView kLanguages = u"Languages";
constexpr TextView kSourceFiles = u"Source Files";
constexpr TextView kCount = u"Count";

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

/// The numbers below `count` (above 0) that follow `prefix` anywhere in the file, in order. Keys
/// with other numbers have no value, and a damaged count may be two thousand million: too many keys
/// to ask for.
std::vector<std::int32_t> Numbers(const Bytes& file, TextView prefix, std::int32_t count) {
  if (count <= 0) return {};
  std::string content;
  // A file of wide characters has the same letters with zeros in between.
  for (const unsigned char byte : file) {
    if (byte != 0) content += Capital(static_cast<char>(byte));
  }
  std::string wanted;
  for (const char16_t unit : prefix) wanted += Capital(static_cast<char>(unit));

  std::vector<std::int32_t> numbers;
  for (std::size_t at = 0; (at = content.find(wanted, at)) != std::string::npos;) {
    at += wanted.size();
    std::int64_t number = 0;
    std::size_t digits = 0;
    for (; at < content.size() && content[at] >= '0' && content[at] <= '9'; ++at) {
      number = std::min<std::int64_t>(number * 10 + (content[at] - '0'), count);
      ++digits;
    }
    if (digits > 0 && number < count) numbers.push_back(static_cast<std::int32_t>(number));
  }
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

}  // namespace

std::int16_t OlderProject::ShortLang() const {
  return CInt(common_.GetINISetting(kTargetFiles, u"ShortLang", u"0", path_));
}

std::int32_t OlderProject::LangCount() const {
  return CLng(common_.GetINISetting(kLanguages, kCount, u"0", path_));
}

std::int32_t OlderProject::DocCount() const {
  return CLng(common_.GetINISetting(kSourceFiles, kCount, u"0", path_));
}

std::vector<Text> OlderProject::Languages(std::int32_t count) const {
  return Values(kLanguages, u"Target", count);
}

std::vector<Text> OlderProject::Documents(std::int32_t count) const {
  return Values(kSourceFiles, u"File", count);
}

std::vector<Text> OlderProject::Values(TextView section, TextView prefix,
                                       std::int32_t count) const {
  std::vector<Text> values;
  if (count <= 0) return values;
  Bytes file;
  if (files_.ReadAll(path_, file) != kOk) return values;
  for (const std::int32_t number : Numbers(file, prefix, count)) {
    Text value = common_.GetINISetting(section, Text(prefix) + NumberText(number), u"", path_);
    if (!value.empty()) values.push_back(std::move(value));
  }
  return values;
}

}  // namespace marl
