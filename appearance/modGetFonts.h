#pragma once

#include "platform/FontList.h"
#include "platform/forms/Controls.h"

namespace marl {

/// Adds the names of all fonts to the combo box, which sorts them.
void FillFontList(ComboBox& combo, FontList& fonts);

}  // namespace marl
