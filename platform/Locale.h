#pragma once

#include <cstdint>
#include <span>

#include "platform/Text.h"

namespace marl {

/// LOCALE_IDEFAULTANSICODEPAGE: the number of a locale's 8-bit code page, in decimal.
constexpr std::uint32_t kLocaleDefaultAnsiCodePage = 4100;
/// LOCALE_SDECIMAL and LOCALE_STHOUSAND: the separators of numbers.
constexpr std::uint32_t kLocaleDecimal = 14;
constexpr std::uint32_t kLocaleThousand = 15;

/// Languages and regions, as the platform knows them.
class Locale {
 public:
  virtual ~Locale() = default;
  /// Locale id of the running thread (GetThreadLocale).
  virtual std::uint32_t ThreadLocale() const = 0;
  /// Writes a property of a locale, with its terminator, into the buffer (GetLocaleInfoA). Returns
  /// the number of bytes written; 0, with the buffer unchanged, if locale or property is unknown or
  /// the buffer is too short.
  virtual int LocaleInfo(std::uint32_t locale, std::uint32_t type,
                         std::span<char> buffer) const = 0;
  /// True if both texts are equal in the user's collation, ignoring case (CompareStringW with
  /// NORM_IGNORECASE): a letter followed by an accent equals the precomposed letter, sharp s equals
  /// "ss"; dotted and dotless i differ.
  virtual bool SameText(TextView a, TextView b) const = 0;
};

}  // namespace marl
