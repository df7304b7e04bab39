#include "support/BuiltInComponents.h"

#include "platform/FoldCase.h"
#include "support/LanguageTable.h"

namespace marl {

namespace {

// Status of the two operations that fill a record.
constexpr std::int32_t kFilled = 0;
constexpr std::int32_t kNoSuchRecord = 1;

class BuiltInLists : public Component {
 public:
  bool Call(TextView operation, std::vector<ComponentValue>& arguments, ComponentValue& result,
            Text& failure) override {
    const auto languages = LanguageTable();
    const auto pages = CodePageTable();
    if (SameText(operation, u"LanguageCount") && arguments.empty()) {
      result = static_cast<std::int32_t>(languages.size());
      return true;
    }
    if (SameText(operation, u"CodePageCount") && arguments.empty()) {
      result = static_cast<std::int32_t>(pages.size());
      return true;
    }
    if (SameText(operation, u"GetLanguage") && arguments.size() == 6) {
      const LanguageRow* const row = Row(languages, arguments[0]);
      if (row) {
        arguments[2] = Text(row->description);
        arguments[3] = Text(row->code);
        arguments[4] = row->codePage;
        arguments[5] = row->localeId;
      }
      result = row ? kFilled : kNoSuchRecord;
      return true;
    }
    if (SameText(operation, u"GetCodePage") && arguments.size() == 5) {
      const CodePageRow* const row = Row(pages, arguments[0]);
      if (row) {
        arguments[2] = Text(row->description);
        arguments[3] = Text(row->code);
        arguments[4] = row->number;
      }
      result = row ? kFilled : kNoSuchRecord;
      return true;
    }
    failure = u"The component does not support this operation";
    return false;
  }

 private:
  template <typename T>
  static const T* Row(std::span<const T> rows, const ComponentValue& index) {
    const auto* const number = std::get_if<std::int32_t>(&index);
    if (!number || *number < 0 || static_cast<std::size_t>(*number) >= rows.size()) return nullptr;
    return &rows[static_cast<std::size_t>(*number)];
  }
};

}  // namespace

std::unique_ptr<Component> BuiltInComponents::Create(TextView name, Text& failure) {
  auto component = installed_.Create(name, failure);
  if (!component && failure.empty() && SameText(name, u"Marl.QaComponent")) {
    component = std::make_unique<BuiltInLists>();
  }
  return component;
}

}  // namespace marl
