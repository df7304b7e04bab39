#pragma once

#include "platform/Text.h"
#include "resources/strings/ids.h"

namespace marl {

class Form;
class StringTable;

/// The `Tag` of a control whose caption is the text of a string id.
Text StringTag(int id);

/// Replaces the string ids in the design of a form and its controls by their texts. A `Tag` that is
/// a number is the id of the caption (for a tab, tool bar button or column, of that part's), a
/// `ToolTipText` that is a number the id of the tool tip, a menu's caption its own. Other texts
/// stay, and so do ids that the table does not have. Call it once, when the form loads.
void LoadFormStrings(Form& form, const StringTable& strings);

}  // namespace marl
