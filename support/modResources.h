#pragma once

namespace marl {

class Form;
class StringTable;

/// Puts the table's texts in place of the numbers that a form and its controls were designed with.
/// A `Tag` that is a number names the caption (of a tab, tool bar button or column: of that part),
/// a `ToolTipText` that is a number names the tool tip, a menu's caption names itself. All other
/// texts stay, as does a number that the table does not know. Runs once, when the form loads.
void LoadFormStrings(Form& form, const StringTable& strings);

}  // namespace marl
