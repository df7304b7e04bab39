#include "support/clsLanguages.h"

#include "platform/RuntimeError.h"
#include "support/Numbers.h"

namespace marl {

namespace {

using Arguments = std::vector<ComponentValue>;

/// A late-bound value as a number: nothing counts as 0, a text as the number it writes. False for
/// any other text.
bool ToNumber(const ComponentValue& value, std::int32_t& number) {
  if (const auto* const plain = std::get_if<std::int32_t>(&value)) {
    number = *plain;
    return true;
  }
  const auto* const text = std::get_if<Text>(&value);
  if (!text) {
    number = 0;
    return true;
  }
  return Skip([&] { number = CLng(*text); });
}

std::int32_t NumberField(const ComponentValue& value) {
  std::int32_t number = 0;
  return ToNumber(value, number) ? number : 0;
}

Text TextField(const ComponentValue& value) {
  if (const auto* const text = std::get_if<Text>(&value)) return *text;
  const auto* const number = std::get_if<std::int32_t>(&value);
  return number ? NumberText(*number) : Text();
}

/// Calls `operation`; false when the call fails or gives no number.
bool Ask(Component& component, TextView operation, Arguments& arguments, std::int32_t& number) {
  ComponentValue result;
  Text failure;
  return component.Call(operation, arguments, result, failure) && ToNumber(result, number);
}

/// Reads a list: asks for its length, then for each record until one is refused. `blank` holds the
/// arguments of a record with the index first, `add` takes the filled ones.
template <typename Add>
void ReadList(Component& component, TextView countOperation, TextView fillOperation,
              const Arguments& blank, Add&& add) {
  Arguments none;
  std::int32_t count = 0;
  if (!Ask(component, countOperation, none, count)) return;
  for (std::int32_t i = 0; i < count; ++i) {
    Arguments record = blank;
    record[0] = i;
    std::int32_t status = 0;
    if (!Ask(component, fillOperation, record, status) || status != 0) return;
    add(record);
  }
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
  const auto component = components.Create(u"Marl.QaComponent");
  if (!component) return;
  ReadList(*component, u"LanguageCount", u"GetLanguage",
           {std::int32_t{0}, kTag, Text(), Text(), std::int32_t{0}, std::int32_t{0}},
           [this](const Arguments& record) {
             languages_.push_back({TextField(record[2]), TextField(record[3]),
                                   NumberField(record[4]), NumberField(record[5])});
           });
  ReadList(
      *component, u"CodePageCount", u"GetCodePage",
      {std::int32_t{0}, kTag, Text(), Text(), std::int32_t{0}}, [this](const Arguments& record) {
        codePages_.push_back({TextField(record[2]), TextField(record[3]), NumberField(record[4])});
      });
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
