#pragma once

#include "platform/Text.h"

namespace marl {

/// Title of the program, on its windows, messages and icon.
inline constexpr TextView kApplicationTitle = u"Marl";

/// How the title of a running switchboard begins: a blank and the tracking server's name follow. A
/// second start finds the first by it.
inline Text ServerTitleStart() { return Text(kApplicationTitle) + u" :"; }

}  // namespace marl
