#pragma once

#include <cstdint>
#include <span>

#include "platform/Text.h"

namespace marl {

/// A locale, as in the platform's tables.
struct LanguageRow {
  TextView code;          ///< the platform's locale name: "fr", "fr-CA"
  TextView description;   ///< in English
  std::int32_t codePage;  ///< for programs that are not Unicode; 0 if there is none
  std::int32_t localeId;
};

/// A code page, as in the platform's tables.
struct CodePageRow {
  std::int32_t number;
  TextView code;  ///< the name that documents use: "windows-1252"
  TextView description;
};

/// Languages with and without a region, sorted by code.
std::span<const LanguageRow> LanguageTable();
/// Code pages, sorted by number.
std::span<const CodePageRow> CodePageTable();

}  // namespace marl
