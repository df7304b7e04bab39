#pragma once

#include "platform/Text.h"

namespace marl {

/// True if the whole text matches `pattern`, case included: "?" is any unit, "*" any number of
/// them, "#" a digit, "[abc]" or "[a-c]" one of a set, "[!abc]" one that is not in it; "[]" matches
/// the empty text. A set without an end, or with a reversed range, throws "Invalid pattern string"
/// when the match gets there.
bool Like(TextView text, TextView pattern);

}  // namespace marl
