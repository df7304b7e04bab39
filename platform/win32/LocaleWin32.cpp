#include "platform/win32/LocaleWin32.h"

#include <windows.h>

namespace marl::win32 {

std::uint32_t LocaleWin32::ThreadLocale() const { return GetThreadLocale(); }

int LocaleWin32::LocaleInfo(std::uint32_t locale, std::uint32_t type,
                            std::span<char> buffer) const {
  // With an empty buffer the platform would return the required size.
  if (buffer.empty()) return 0;
  return GetLocaleInfoA(locale, type, buffer.data(), static_cast<int>(buffer.size()));
}

bool LocaleWin32::SameText(TextView a, TextView b) const {
  // The platform's lengths are signed, and an empty text must not be a null pointer.
  const auto text = [](TextView of) {
    return of.empty() ? L"" : reinterpret_cast<const wchar_t*>(of.data());
  };
  return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text(a), static_cast<int>(a.size()),
                        text(b), static_cast<int>(b.size())) == CSTR_EQUAL;
}

}  // namespace marl::win32
