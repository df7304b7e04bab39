#pragma once

#include <cstdint>
#include <vector>

#include "platform/Components.h"
#include "platform/Text.h"

namespace marl {

/// The translation languages of the suite and the code pages behind them. Copies both lists from
/// "Marl.QaComponent" when it is created. The component's operations are late-bound; a record is
/// passed as its fields, by reference:
///   LanguageCount() and CodePageCount() return a number;
///   GetLanguage(index, tag, description, code, encoding, localeId) and
///   GetCodePage(index, tag, description, code, number) fill the fields behind the index, from 0,
///   and give a status, 0 when they did. The tag goes in as 1.
/// If the component is missing or fails, the lists are empty; nothing is reported.
class clsLanguages {
 public:
  explicit clsLanguages(Components& components);

  // All indexes are from 0. Out of range, texts are empty and numbers 0.
  Text LanguageDescription(std::int32_t index) const;
  Text LanguageCode(std::int32_t index) const;
  std::int32_t LanguageEncoding(std::int32_t index) const;
  std::int32_t LanguageLCID(std::int32_t index) const;
  /// Index of the first code page with the number of the language's encoding; -1 if there is none.
  std::int32_t LanguageCodePage(std::int32_t index) const;
  Text CodePageDescription(std::int32_t index) const;
  std::int32_t CodePageNumber(std::int32_t index) const;
  Text CodePageCode(std::int32_t index) const;

  /// The highest valid index, not the number of languages: -1 for an empty list.
  std::int32_t LanguageCount() const { return static_cast<std::int32_t>(languages_.size()) - 1; }
  /// The highest valid index, not the number of code pages: -1 for an empty list.
  std::int32_t CodePageCount() const { return static_cast<std::int32_t>(codePages_.size()) - 1; }

 private:
  struct Language {
    Text description;
    Text code;
    std::int32_t encoding = 0;
    std::int32_t localeId = 0;
  };
  struct CodePage {
    Text description;
    Text code;
    std::int32_t number = 0;
  };

  std::vector<Language> languages_;
  std::vector<CodePage> codePages_;
};

}  // namespace marl
