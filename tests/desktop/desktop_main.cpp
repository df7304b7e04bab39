// The tests of the real program: Marl.exe in a suite folder of stand-in tools, operated by real
// mouse and keyboard input. Runs on Windows and, unchanged, in a Wine desktop.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "platform/memory/MemoryStrings.h"
#include "tests/desktop/Harness.h"
#include "tests/desktop/StateAtFailure.h"
#include "tests/desktop/TestQueue.h"

namespace {

std::wstring FullPath(const std::wstring& path) {
  std::wstring full(32768, L'\0');
  full.resize(
      GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

bool Present(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// True if each further language has its program.
bool AllTranslations() {
  using marl::MemoryStrings;
  std::vector<std::string> languages = MemoryStrings::Languages();
  languages.front() = MemoryStrings::kMarked;
  return std::all_of(languages.begin(), languages.end(), [](const std::string& language) {
    const auto& translations = marl::desktop::g_programs.translations;
    const auto found = translations.find(language);
    return found != translations.end() && Present(found->second);
  });
}

/// Restricts the selected tests to those of one suite.
void KeepSuite(const std::string& suite) {
  std::string kept;
  for (const std::string& test : marl::desktop::SelectedTests(suite)) kept += test + ":";
  testing::GTEST_FLAG(filter) = kept.empty() ? "-*" : kept;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  using marl::desktop::g_programs;
  // Otherwise Windows would report lengths at 96 dpi, whatever the screen has.
  SetProcessDPIAware();
  // A crash of this program or of one that it starts ends the process, without a message box.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  testing::InitGoogleTest(&argc, argv);
  g_programs.marl = marl::desktop::Environment(L"MARL_PROGRAM");
  g_programs.standIn = marl::desktop::Environment(L"MARL_STAND_IN");
  std::wstring queue;
  for (int i = 1; i < argc; ++i) {
    const std::wstring argument = argv[i];
    if (argument == marl::desktop::kDyingClient) marl::desktop::DieInConversation();
    if (argument.starts_with(L"--marl=")) g_programs.marl = argument.substr(7);
    if (argument.starts_with(L"--marl-")) {
      const std::size_t end = argument.find(L'=');
      g_programs.translations[marl::desktop::ToUtf8(argument.substr(7, end - 7))] =
          FullPath(argument.substr(end + 1));
    }
    if (argument.starts_with(L"--stand-in=")) g_programs.standIn = argument.substr(11);
    if (argument.starts_with(L"--suite=")) KeepSuite(marl::desktop::ToUtf8(argument.substr(8)));
    if (argument.starts_with(L"--queue=")) queue = argument.substr(8);
  }
  g_programs.marl = FullPath(g_programs.marl);
  g_programs.standIn = FullPath(g_programs.standIn);
  if (!Present(g_programs.marl) || !Present(g_programs.standIn) || !AllTranslations()) {
    std::cerr << "desktop_tests --marl=PATH --marl-CODE=PATH... --stand-in=PATH [--suite=NAME] "
                 "[--queue=FOLDER] [GoogleTest options]\n";
    return 2;
  }
  // It takes ownership.
  testing::UnitTest::GetInstance()->listeners().Append(new marl::desktop::StateAtFailure);
  if (!queue.empty()) return marl::desktop::RunShared(queue);
  return RUN_ALL_TESTS();
}
