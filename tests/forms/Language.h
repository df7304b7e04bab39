#pragma once

#include <string>

namespace marl {

/// The language whose texts this program carries: the command line's --language=CODE.
extern std::string g_language;

}  // namespace marl
