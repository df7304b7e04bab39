#pragma once

#include <cstdint>

#include "platform/Text.h"
#include "platform/Variant.h"
#include "support/Numbers.h"

namespace marl {

/// Data of a registry value: nothing, text, a 16-bit or 32-bit integer, or bytes.
using RegistryValue = Variant<std::monostate, Text, std::int16_t, std::int32_t, Bytes>;

/// The value as text: numbers in decimal, nothing as an empty text, bytes as 16-bit units, low byte
/// first; an odd last byte is dropped.
Text RegistryText(const RegistryValue& value);

/// The value as a 32-bit integer, if it is a 16-bit or 32-bit one.
bool RegistryInteger(const RegistryValue& value, std::int32_t& out);

/// The value as a 32-bit integer by the runtime's rules: nothing is 0, text is parsed in `format`.
/// Throws "Type mismatch" for any other text and for bytes, and "Overflow" beyond 32 bits.
std::int32_t RegistryNumber(const RegistryValue& value, const NumberFormat& format);

/// Four bytes, low byte first, as REG_DWORD stores them.
NarrowText DwordBytes(std::int32_t value);
/// The reverse; bytes that are missing count as zero.
std::int32_t DwordValue(std::string_view bytes);

}  // namespace marl
