#include "support/LanguageTable.h"

namespace marl {

namespace {

constexpr LanguageRow kLanguages[] = {
#define LANGUAGE(code, description, codePage, localeId) {code, description, codePage, localeId},
#define CODEPAGE(number, code, description)
#include "support/LanguageTable.inc"
#undef CODEPAGE
#undef LANGUAGE
};

constexpr CodePageRow kCodePages[] = {
#define LANGUAGE(code, description, codePage, localeId)
#define CODEPAGE(number, code, description) {number, code, description},
#include "support/LanguageTable.inc"
#undef CODEPAGE
#undef LANGUAGE
};

}  // namespace

std::span<const LanguageRow> LanguageTable() { return kLanguages; }

std::span<const CodePageRow> CodePageTable() { return kCodePages; }

}  // namespace marl
