#pragma once

#include <cstdint>

#include "platform/Font.h"
#include "platform/Text.h"
#include "platform/forms/Controls.h"
#include "support/Numbers.h"

namespace marl {

/// Sets the font from a font spec, the text "name|size|styles": the size is in points, a decimal in
/// the user's format; the styles are letters of "biu", in any order and case. Missing parts leave
/// the font as it is, an empty third part clears the styles. A part that is not valid (no number, a
/// size outside 0 to 2048 points) is skipped; nothing is reported.
void ApplyFontSpec(Font& font, TextView spec, const NumberFormat& format = {});
/// The same for a control.
void ApplyFontSpec(Control& control, TextView spec, const NumberFormat& format = {});

/// Sets the size, in ten-thousandths of a point. Throws "Invalid property value" outside 0 to 2048
/// points, and for 0.
void SetFontSize(Font& font, std::int64_t size);

/// The font as a font spec; all three parts are present.
Text GetFontSpec(const Font& font, const NumberFormat& format = {});
Text GetFontSpec(const Control& control, const NumberFormat& format = {});

/// Copies name, size, bold, italic and underline, and then the text colour.
void CopyFontAndColour(const Label& source, Label& destination);

}  // namespace marl
