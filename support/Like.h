#pragma once

#include "platform/Text.h"

namespace marl {

/// True when the whole text is made as `pattern` says, case included: "?" is any unit, "*" any
/// number of them, "#" a digit, "[abc]" or "[a-c]" one of a set, "[!abc]" one that is not in it;
/// a set of nothing is nothing. A set without an end, or with a range that runs backwards, throws
/// "Invalid pattern string" once it is met.
bool Like(TextView text, TextView pattern);

}  // namespace marl
