#pragma once

#include <windows.h>

namespace marl::win32 {

/// True if the program runs under Wine, for the few features that its controls lack.
inline bool OnWine() {
  static const bool wine =
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return wine;
}

}  // namespace marl::win32
