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

/// What the platform knows of languages and regions.
class Locale {
 public:
  virtual ~Locale() = default;
  /// Locale id of the running thread (GetThreadLocale).
  virtual std::uint32_t ThreadLocale() const = 0;
  /// Puts one fact of a locale, with its terminator, into the buffer (GetLocaleInfoA). Returns the
  /// bytes written; 0, and an untouched buffer, for an unknown locale or fact or too little room.
  virtual int LocaleInfo(std::uint32_t locale, std::uint32_t type,
                         std::span<char> buffer) const = 0;
  /// True when both texts are the same in the user's collation but for case (CompareStringW with
  /// NORM_IGNORECASE): a letter and its accent count as the letter with the accent, the sharp s as
  /// "ss"; the dotted and the dotless i are two letters.
  virtual bool SameText(TextView a, TextView b) const = 0;
};

}  // namespace marl
