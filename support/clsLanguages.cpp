#include "support/clsLanguages.h"

#include "platform/RuntimeError.h"
#include "support/Numbers.h"

namespace marl {

namespace {

using Arguments = std::vector<ComponentValue>;

/// A late-bound value as a number: nothing is 0, text is parsed, and anything else is `otherwise`.
std::int32_t NumberOr(const ComponentValue& value, std::int32_t otherwise) {
  if (const auto* const plain = std::get_if<std::int32_t>(&value)) return *plain;
  if (std::holds_alternative<std::monostate>(value)) return 0;
  if (const auto* const text = std::get_if<Text>(&value)) {
    Skip([&] { otherwise = CLng(*text); });
  }
  return otherwise;
}

Text TextField(const ComponentValue& value) {
  if (const auto* const text = std::get_if<Text>(&value)) return *text;
  const auto* const number = std::get_if<std::int32_t>(&value);
  return number ? NumberText(*number) : Text();
}

/// Reads a list: asks for its length, then for each record until a status is not 0. `blank` has the
/// arguments of a record with the index first, `add` takes the filled ones. False if a call fails.
template <typename Add>
bool ReadList(Component& component, TextView countOperation, TextView fillOperation,
              const Arguments& blank, Add&& add) {
  ComponentValue result;
  Text ignored;
  Arguments none;
  if (!component.Call(countOperation, none, result, ignored)) return false;
  const std::int32_t count = NumberOr(result, 0);
  for (std::int32_t i = 0; i < count; ++i) {
    Arguments record = blank;
    record[0] = i;
    if (!component.Call(fillOperation, record, result, ignored)) return false;
    constexpr std::int32_t kNoStatus = -1;  // a status that is no number is not 0
    if (NumberOr(result, kNoStatus) != 0) return true;
    add(record);
  }
  return true;
}

/// The record at `index`, or an empty one.
template <typename Record>
const Record& At(const std::vector<Record>& records, std::int32_t index) {
  static const Record kNone;
  const bool valid = index >= 0 && static_cast<std::size_t>(index) < records.size();
  return valid ? records[static_cast<std::size_t>(index)] : kNone;
}

constexpr std::int32_t kTag = 1;

}  // namespace

clsLanguages::clsLanguages(Components& components) {
  Text ignored;
  const auto component = components.Create(u"Marl.QaComponent", ignored);
  if (!component) return;
  const bool read =
      ReadList(*component, u"LanguageCount", u"GetLanguage",
               {std::int32_t{0}, kTag, Text(), Text(), std::int32_t{0}, std::int32_t{0}},
               [this](const Arguments& record) {
                 languages_.push_back({TextField(record[2]), TextField(record[3]),
                                       NumberOr(record[4], 0), NumberOr(record[5], 0)});
               }) &&
      ReadList(*component, u"CodePageCount", u"GetCodePage",
               {std::int32_t{0}, kTag, Text(), Text(), std::int32_t{0}},
               [this](const Arguments& record) {
                 codePages_.push_back(
                     {TextField(record[2]), TextField(record[3]), NumberOr(record[4], 0)});
               });
  if (read) return;
  languages_.clear();
  codePages_.clear();
}

Text clsLanguages::LanguageDescription(std::int32_t index) const {
  return At(languages_, index).description;
}

Text clsLanguages::LanguageCode(std::int32_t index) const { return At(languages_, index).code; }

std::int32_t clsLanguages::LanguageEncoding(std::int32_t index) const {
  return At(languages_, index).encoding;
}

std::int32_t clsLanguages::LanguageLCID(std::int32_t index) const {
  return At(languages_, index).localeId;
}

std::int32_t clsLanguages::LanguageCodePage(std::int32_t index) const {
  if (index < 0 || index > LanguageCount()) return -1;
  const std::int32_t wanted = LanguageEncoding(index);
  for (std::int32_t i = 0; i <= CodePageCount(); ++i) {
    if (CodePageNumber(i) == wanted) return i;
  }
  return -1;
}

Text clsLanguages::CodePageDescription(std::int32_t index) const {
  return At(codePages_, index).description;
}

std::int32_t clsLanguages::CodePageNumber(std::int32_t index) const {
  return At(codePages_, index).number;
}

Text clsLanguages::CodePageCode(std::int32_t index) const { return At(codePages_, index).code; }

}  // namespace marl
