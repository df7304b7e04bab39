#pragma once

#include <cstdint>

#include "platform/Font.h"
#include "platform/Locale.h"
#include "platform/Text.h"
#include "support/Numbers.h"

namespace marl {

class Form;

/// Gives the form's controls a font for the thread's locale. With code page 1252 the form keeps the
/// fonts of its design. Call it once, before the form's strings are loaded.
void ApplyLocaleFont(Form& form, const Locale& locales);

/// A locale's 8-bit code page; 0 if the platform has none.
std::int32_t GetLocaleCodePage(std::uint32_t locale, const Locale& locales);

/// The user's number format: the separators of the thread's locale, or "." and "," if the platform
/// has none.
NumberFormat UserNumberFormat(const Locale& locales);

/// The text up to its first NUL.
Text StripAtNul(TextView text);

/// Sets charset and face for a code page. For East Asian code pages a size below 9 points becomes
/// 9. A symbol font stays as it is.
void ApplyCodePageFont(Font& font, std::int32_t codePage);

}  // namespace marl
