#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace marl {

/// The texts of a window, its child windows and its menus that are not marked (FormTexts.h), as
/// "class: text". Fields and lists are not checked: they may show data.
std::vector<std::string> UnmarkedWindows(HWND window);

}  // namespace marl
