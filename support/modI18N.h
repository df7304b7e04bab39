#pragma once

#include <cstdint>

#include "platform/Locale.h"
#include "platform/Text.h"
#include "platform/forms/Font.h"
#include "support/Numbers.h"

namespace marl {

class Form;

/// Gives the form's controls a font that shows the texts of the thread's locale. Under code page
/// 1252 the form keeps the fonts of its design. Runs once, before the form's strings are loaded.
void ApplyLocaleFont(Form& form, const Locale& locales);

/// Number of a locale's 8-bit code page; 0 when the platform does not tell.
std::int32_t GetLocaleCodePage(std::uint32_t locale, const Locale& locales);

/// How the user writes numbers: the separators of the thread's locale, "." and "," where the
/// platform does not tell.
NumberFormat UserNumberFormat(const Locale& locales);

/// The text up to its first NUL.
Text StripAtNul(TextView text);

/// Sets charset and face for a code page. In the Far East a size below 9 points becomes 9. A font
/// of symbols stays as it is.
void ApplyCodePageFont(Font& font, std::int32_t codePage);

}  // namespace marl
