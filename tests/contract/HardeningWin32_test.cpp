#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cwctype>
#include <string>

#include "platform/win32/Hardening.h"
#include "platform/win32/SystemLibrary.h"
#include "platform/win32/Themes.h"
#include "platform/win32/Window.h"

// The protections of the process, on Windows alone. Whether the program itself asks for them is
// tested with the program (desktop/Loading, desktop/Image).

namespace marl::win32 {
namespace {

std::wstring LowerCase(std::wstring text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
  return text;
}

std::wstring SystemFolder() {
  std::array<wchar_t, MAX_PATH> folder = {};
  GetSystemDirectoryW(folder.data(), MAX_PATH);
  return LowerCase(folder.data());
}

std::wstring FileOf(HMODULE module) {
  std::array<wchar_t, MAX_PATH> path = {};
  GetModuleFileNameW(module, path.data(), MAX_PATH);
  return LowerCase(path.data());
}

TEST(HardeningWin32, LibraryIsBoundFromTheSystemFolder) {
  const SystemLibrary version(L"version.dll");
  ASSERT_TRUE(version);
  EXPECT_TRUE((version.Find<DWORD WINAPI(LPCWSTR, LPDWORD)>("GetFileVersionInfoSizeW")));
  EXPECT_FALSE((version.Find<void WINAPI()>("NoSuchFunction")));
  EXPECT_EQ(FileOf(GetModuleHandleW(L"version.dll")), SystemFolder() + L"\\version.dll");
}

TEST(HardeningWin32, MissingLibraryHasNoFunctions) {
  const SystemLibrary missing(L"marl-has-no-such-library.dll");
  EXPECT_FALSE(missing);
  EXPECT_FALSE((missing.Find<void WINAPI()>("Anything")));
}

// Windows 7 without update KB2533623.
TEST(HardeningWin32, WithoutSearchFlagsTheLibrariesAreLoadedBeforeTheyAreSearchedFor) {
  RestrictLibrarySearch(nullptr);
  for (const wchar_t* name : {L"uxtheme.dll", L"dwmapi.dll", L"propsys.dll", L"version.dll",
                              L"winmm.dll", L"cryptbase.dll", L"msimg32.dll"}) {
    const HMODULE module = GetModuleHandleW(name);
    // Not every version of Windows, and of Wine, has each of them.
    if (!module &&
        GetFileAttributesW((SystemFolder() + L"\\" + name).c_str()) == INVALID_FILE_ATTRIBUTES) {
      continue;
    }
    ASSERT_TRUE(module) << std::string(name, name + wcslen(name));
    EXPECT_EQ(FileOf(module), SystemFolder() + L"\\" + name);
  }
  std::array<wchar_t, 4> folder = {L'x'};
  EXPECT_EQ(GetDllDirectoryW(static_cast<DWORD>(folder.size()), folder.data()), 0u)
      << "an empty entry: not the current folder";
  EXPECT_EQ(folder.front(), L'\0');
  SetDllDirectoryW(nullptr);
}

BOOL WINAPI Refuse(DWORD) { return FALSE; }
DWORD g_askedFor;
BOOL WINAPI Note(DWORD folders) {
  g_askedFor = folders;
  return TRUE;
}

TEST(HardeningWin32, SearchIsRestrictedToTheSystemFolder) {
  g_askedFor = 0;
  RestrictLibrarySearch(Note);
  EXPECT_EQ(g_askedFor, 0x800u) << "LOAD_LIBRARY_SEARCH_SYSTEM32 alone";
  // If the platform refuses, the older way is taken.
  RestrictLibrarySearch(Refuse);
  EXPECT_TRUE(GetModuleHandleW(L"uxtheme.dll"));
  SetDllDirectoryW(nullptr);
}

TEST(HardeningWin32, DriveWithoutAMediumIsAFailureAndNoBox) {
  const UINT before = GetErrorMode();
  SetErrorMode(SEM_NOOPENFILEERRORBOX);
  HardenProcess();
  EXPECT_EQ(GetErrorMode(), UINT{SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX})
      << "added to what was there";
  SetErrorMode(before);
}

// Overruns a local array, as a fault in the program would.
[[gnu::noinline]] void Overrun(std::size_t count) {
  volatile char room[16];
  volatile char* at = room;
  for (std::size_t i = 0; i < count; ++i) at[i] = 'x';
}

// Runs in a process of its own. The guard may be one word behind the array.
TEST(HardeningWin32, DISABLED_Overrun) { Overrun(16 + 2 * sizeof(void*)); }

TEST(HardeningWin32, OverrunOfALocalArrayEndsTheProcess) {
  Overrun(16);
  std::wstring line = L"\"" + FileOf(nullptr) +
                      L"\" --gtest_filter=HardeningWin32.DISABLED_Overrun"
                      L" --gtest_also_run_disabled_tests";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started = {};
  ASSERT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &started));
  WaitForSingleObject(started.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(started.hProcess, &code);
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  EXPECT_EQ(code, DWORD{0xC0000409}) << "STATUS_STACK_BUFFER_OVERRUN";
}

// ---- Handles have 32 significant bits, and are sign-extended in 64-bit programs.

TEST(HardeningWin32, HandlesKeepTheirSignInBothWidths) {
  for (const std::int32_t number : {0, 1, 0x00010046, 0x7FFFFFFF, -1, -0x7FFEFFFB}) {
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(Window(number)), std::intptr_t{number});
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(Icon(number)), std::intptr_t{number});
    EXPECT_EQ(HandleToLong(Window(number)), number);
  }
}

TEST(HardeningWin32, WithoutAThemeNothingIsDrawnAndNoSizeKnown) {
  SIZE size = {7, 9};
  EXPECT_FALSE(Themes::PartSize(nullptr, 1, 1, size));
  EXPECT_EQ(size.cx, 7);
  EXPECT_EQ(size.cy, 9);
  EXPECT_FALSE(Themes::DrawBackground(nullptr, nullptr, 1, 1, RECT{}));
}

}  // namespace
}  // namespace marl::win32
