#pragma once

#include "platform/Text.h"

namespace marl {

/// True if the bytes of an execute command are 16-bit units: clients may be wide or 8-bit, and the
/// data does not say which. A valid command begins with an ASCII letter, so the second byte
/// decides.
inline bool IsWideCommand(const Bytes& data) { return data.size() >= 2 && data[1] == 0; }

/// Text of a wide command: up to its first NUL, or to the end of the data; an odd last byte is
/// ignored.
inline Text WideCommand(const Bytes& data) {
  Text text;
  for (std::size_t i = 0; i + 1 < data.size(); i += 2) {
    const auto unit = static_cast<char16_t>(data[i] | data[i + 1] << 8);
    if (unit == 0) break;
    text += unit;
  }
  return text;
}

/// The bytes of an 8-bit command: up to its first NUL, or to the end of the data.
inline NarrowText NarrowCommand(const Bytes& data) {
  NarrowText text;
  for (const unsigned char byte : data) {
    if (byte == 0) break;
    text += static_cast<char>(byte);
  }
  return text;
}

}  // namespace marl
