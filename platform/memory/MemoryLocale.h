#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "platform/Locale.h"

namespace marl {

/// A few locales, and those that a test adds.
class MemoryLocale : public Locale {
 public:
  std::uint32_t threadLocale = 0x409;
  /// Properties by locale and type.
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::string> facts = {
      {{0x409, kLocaleDefaultAnsiCodePage}, "1252"},
      {{0x407, kLocaleDefaultAnsiCodePage}, "1252"},
      {{0x411, kLocaleDefaultAnsiCodePage}, "932"},
      {{0x419, kLocaleDefaultAnsiCodePage}, "1251"},
      {{0x439, kLocaleDefaultAnsiCodePage}, "0"},
      {{0x407, kLocaleDecimal}, ","},
      {{0x407, kLocaleThousand}, "."},
      {{0x409, kLocaleDecimal}, "."},
      {{0x409, kLocaleThousand}, ","},
  };

  /// Gives the thread a locale with this code page.
  void UseCodePage(std::string codePage) {
    threadLocale = 0x10000;
    facts[{threadLocale, kLocaleDefaultAnsiCodePage}] = std::move(codePage);
  }

  bool SameText(TextView a, TextView b) const override;

  std::uint32_t ThreadLocale() const override { return threadLocale; }
  int LocaleInfo(std::uint32_t locale, std::uint32_t type, std::span<char> buffer) const override {
    const auto found = facts.find({locale, type});
    if (found == facts.end() || found->second.size() + 1 > buffer.size()) return 0;
    *std::copy(found->second.begin(), found->second.end(), buffer.begin()) = '\0';
    return static_cast<int>(found->second.size()) + 1;
  }
};

}  // namespace marl
