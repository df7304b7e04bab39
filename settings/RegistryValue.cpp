#include "settings/RegistryValue.h"

#include "platform/RuntimeError.h"

namespace marl {

Text RegistryText(const RegistryValue& value) {
  if (const auto* text = std::get_if<Text>(&value)) return *text;
  if (std::int32_t number = 0; RegistryInteger(value, number)) return NumberText(number);
  Text text;
  if (const auto* bytes = std::get_if<Bytes>(&value)) {
    for (std::size_t i = 0; i + 1 < bytes->size(); i += 2) {
      text += static_cast<char16_t>((*bytes)[i] | (*bytes)[i + 1] << 8);
    }
  }
  return text;
}

bool RegistryInteger(const RegistryValue& value, std::int32_t& out) {
  if (const auto* wide = std::get_if<std::int32_t>(&value)) {
    out = *wide;
  } else if (const auto* narrow = std::get_if<std::int16_t>(&value)) {
    out = *narrow;
  } else {
    return false;
  }
  return true;
}

std::int32_t RegistryNumber(const RegistryValue& value, const NumberFormat& format) {
  if (std::int32_t number = 0; RegistryInteger(value, number)) return number;
  if (std::holds_alternative<std::monostate>(value)) return 0;
  if (const auto* const text = std::get_if<Text>(&value)) return CLng(*text, format);
  throw RuntimeError::TypeMismatch();
}

NarrowText DwordBytes(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  NarrowText bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFF);
  return bytes;
}

std::int32_t DwordValue(std::string_view bytes) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i) {
    bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return static_cast<std::int32_t>(bits);
}

}  // namespace marl
