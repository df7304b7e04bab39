#pragma once

#include <string>
#include <vector>

#include "platform/forms/Form.h"

// The texts of a form, and whether they come from the string table. In the language "marked" every
// text of the table is between "[!!! " and " !!!]" (cmake/Languages.cmake).

namespace marl {

struct FormText {
  std::string where;  ///< "frmUI.cmdLoad", "frmFont.chkStyle(1)"; the form's own name for its title
  Text text;
};

/// The texts of a form and its controls: titles, captions, tips, tabs, columns, menus, rows and
/// fields, shown or hidden.
std::vector<FormText> TextsOf(const Form& form);

/// True if there are no letters outside the marks, other than the program's title and version.
bool IsMarked(TextView text);

/// The texts of a form that are not marked, as "where: text". Controls that show data are not
/// checked: names of fonts, files, servers and languages.
std::vector<std::string> Unmarked(const Form& form);

}  // namespace marl
