#pragma once

#include "platform/Text.h"

namespace marl {

/// Title of the program, on its windows, messages and icon.
inline constexpr TextView kApplicationTitle = u"Marl";

/// Start of the title of a running switchboard, followed by a blank and the tracking server's name.
/// A second instance finds the first by it.
inline Text ServerTitleStart() { return Text(kApplicationTitle) + u" :"; }

}  // namespace marl
