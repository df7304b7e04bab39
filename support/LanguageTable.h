#pragma once

#include <cstdint>
#include <span>

#include "platform/Text.h"

namespace marl {

/// A locale as the platform's tables have it.
struct LanguageRow {
  TextView code;          ///< the platform's locale name: "fr", "fr-CA"
  TextView description;   ///< in English
  std::int32_t codePage;  ///< for programs that are not Unicode; 0 where there is none
  std::int32_t localeId;
};

/// A code page as the platform's tables have it.
struct CodePageRow {
  std::int32_t number;
  TextView code;  ///< as documents name it: "windows-1252"
  TextView description;
};

/// Languages without and with a region, by code.
std::span<const LanguageRow> LanguageTable();
/// Code pages, by number.
std::span<const CodePageRow> CodePageTable();

}  // namespace marl
