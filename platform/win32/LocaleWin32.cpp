#include "platform/win32/LocaleWin32.h"

#include <windows.h>

namespace marl::win32 {

std::uint32_t LocaleWin32::ThreadLocale() const { return GetThreadLocale(); }

int LocaleWin32::LocaleInfo(std::uint32_t locale, std::uint32_t type,
                            std::span<char> buffer) const {
  // Without room the platform would only tell how much it wants.
  if (buffer.empty()) return 0;
  return GetLocaleInfoA(locale, type, buffer.data(), static_cast<int>(buffer.size()));
}

}  // namespace marl::win32
