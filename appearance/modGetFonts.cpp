#include "appearance/modGetFonts.h"

namespace marl {

void FillFontList(ComboBox& combo, FontList& fonts) {
  fonts.EnumFamilies(combo.form(), [&combo](TextView faceName) {
    const TextView name = faceName.substr(0, faceName.find(u'\0'));
    if (!name.empty()) combo.AddItem(name);
    return true;
  });
}

}  // namespace marl
