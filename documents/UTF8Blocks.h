#pragma once

#include <cstddef>

#include "documents/modUTF8.h"
#include "platform/Text.h"

namespace marl {

// UTF-8 of one- and two-byte forms in any order, 16 bytes or units at a time, with the byte shuffle
// (SSSE3) and the bit count (POPCNT) of newer processors. Where the running processor or the build
// has none, these functions do nothing. MARL_BASELINE_SCAN leaves them out of a build.

/// Decodes leading well-formed one- and two-byte forms. May stop at any character; always stops 15
/// bytes or units before the end of either range.
DecodedUTF8 DecodeBlocks(const unsigned char* bytes, std::size_t size, char16_t* out,
                         std::size_t room);

/// How far an encoding got: units read and bytes written.
struct EncodedUTF8 {
  std::size_t units = 0;
  std::size_t bytes = 0;
};

/// Bytes that must be free for EncodeBlocks to encode a block.
constexpr std::size_t kEncodedBlock = 32;

/// Encodes leading units below 2048 in blocks of 16, as long as kEncodedBlock bytes are free.
EncodedUTF8 EncodeBlocks(TextView text, unsigned char* out, std::size_t room);

}  // namespace marl
