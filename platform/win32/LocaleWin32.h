#pragma once

#include "platform/Locale.h"

namespace marl::win32 {

/// The platform's locales.
class LocaleWin32 : public Locale {
 public:
  std::uint32_t ThreadLocale() const override;
  int LocaleInfo(std::uint32_t locale, std::uint32_t type, std::span<char> buffer) const override;
  bool SameText(TextView a, TextView b) const override;
};

}  // namespace marl::win32
