#pragma once

#include <string_view>

#include "platform/Text.h"

namespace marl {

/// Text to bytes in code page 1252, the way WideCharToMultiByte does it without flags: a missing
/// character becomes the most similar one, or a question mark.
NarrowText ToCodePage1252(TextView text);

/// Bytes in code page 1252 to text. Every byte is one character.
Text FromCodePage1252(std::string_view text);

}  // namespace marl
