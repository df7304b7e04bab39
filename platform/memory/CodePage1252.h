#pragma once

#include <string_view>

#include "platform/Text.h"

namespace marl {

/// Text to bytes in code page 1252, the way WideCharToMultiByte does it without flags: what the
/// page lacks becomes the byte that looks most like it, or a question mark.
NarrowText ToCodePage1252(TextView text);

/// Bytes in code page 1252 to text. Every byte stands for one character.
Text FromCodePage1252(std::string_view text);

}  // namespace marl
