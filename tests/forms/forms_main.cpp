#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <iostream>
#include <string_view>

#include "platform/memory/MemoryStrings.h"
#include "tests/forms/Language.h"

std::string marl::g_language;

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  constexpr std::string_view kLanguage = "--language=";
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument.starts_with(kLanguage)) marl::g_language = argument.substr(kLanguage.size());
  }
  if (marl::MemoryStrings(marl::g_language).texts.empty()) {
    std::cerr << "forms_tests --language=CODE\n";
    return 2;
  }
  SetProcessDPIAware();
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  const INITCOMMONCONTROLSEX record = {sizeof record, ICC_WIN95_CLASSES | ICC_USEREX_CLASSES};
  InitCommonControlsEx(&record);
  return RUN_ALL_TESTS();
}
