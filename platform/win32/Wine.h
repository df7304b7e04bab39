#pragma once

#include <windows.h>

namespace marl::win32 {

/// True where the program runs on Wine, for the few places at which its controls know less than
/// those of Windows.
inline bool OnWine() {
  static const bool wine =
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return wine;
}

}  // namespace marl::win32
