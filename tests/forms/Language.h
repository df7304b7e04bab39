#pragma once

#include <string>

namespace marl {

/// The language of this program's texts: the command line's --language=CODE.
extern std::string g_language;

/// High contrast is on: light text on black, without visual styles.
extern bool g_contrast;

}  // namespace marl
