#include "platform/win32/IconsWin32.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "appearance/modSetIcon.h"
#include "platform/memory/MemoryShell.h"
#include "platform/win32/Handle.h"

// The icon library that is built with the program, and the icons of windows.

namespace marl::win32 {
namespace {

/// Full path of the library, with the platform's own separators.
Text LibraryPath() {
  char full[MAX_PATH] = {};
  const DWORD length = GetFullPathNameA(MARL_ICON_LIBRARY, MAX_PATH, full, nullptr);
  return Text(full, full + length);
}

int WidthOf(IconHandle icon) {
  ICONINFO info = {};
  if (!GetIconInfo(static_cast<HICON>(LongToHandle(icon)), &info)) return 0;
  BITMAP bitmap = {};
  GetObjectW(info.hbmColor, sizeof bitmap, &bitmap);
  DeleteObject(info.hbmColor);
  DeleteObject(info.hbmMask);
  return bitmap.bmWidth;
}

class IconLibrary : public testing::Test {
 protected:
  IconsWin32 icons;
};

TEST_F(IconLibrary, HasTheProgramsIconInEverySizeOfTheScreensPeopleUse) {
  const LibraryHandle library = icons.OpenLibrary(LibraryPath());
  ASSERT_NE(library, 0);
  for (const int size : {16, 20, 24, 32, 40, 48, 64, 256}) {
    const IconHandle icon = icons.Load(library, kMarlIcon, size, size);
    ASSERT_NE(icon, 0) << size;
    EXPECT_EQ(WidthOf(icon), size);
  }
  EXPECT_EQ(icons.Load(library, kMarlIcon + 1, 32, 32), 0);
  icons.CloseLibrary(library);
}

TEST_F(IconLibrary, IconOutlivesItsLibrary) {
  const LibraryHandle library = icons.OpenLibrary(LibraryPath());
  const IconHandle icon = icons.Load(library, kMarlIcon, 32, 32);
  icons.CloseLibrary(library);
  EXPECT_EQ(WidthOf(icon), 32);
}

TEST_F(IconLibrary, WhatIsNoLibraryIsNotOpened) {
  EXPECT_EQ(icons.OpenLibrary(u"C:\\no such folder\\q17icl.oru"), 0);
  EXPECT_EQ(icons.OpenLibrary(u""), 0);
  wchar_t folder[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, folder);
  const std::wstring path = std::wstring(folder) + L"marl-no-library.oru";
  for (const std::string& bytes : {std::string(), std::string("MZ"), std::string(4096, 'x'),
                                   std::string("MZ") + std::string(4096, '\xff')}) {
    std::ofstream(std::string(path.begin(), path.end()), std::ios::binary) << bytes;
    EXPECT_EQ(icons.OpenLibrary(FromWide(path.data(), path.size())), 0) << bytes.size();
  }
  DeleteFileW(path.c_str());
}

TEST_F(IconLibrary, WindowsTakeTheirIconsFromIt) {
  struct Beside : MemoryProcess {
    Beside() { programPath = LibraryPath(); }
  } process;
  const auto make = [](HWND owner) {
    return CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 9, 9, owner, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  };
  const HWND top = make(nullptr);
  const HWND middle = make(top);
  const HWND window = make(middle);
  EXPECT_EQ(icons.OwnerOf(HandleToLong(window)), HandleToLong(middle));
  EXPECT_EQ(icons.OwnerOf(HandleToLong(top)), 0);
  const auto iconOf = [](HWND of, int which) {
    return static_cast<IconHandle>(SendMessageW(of, WM_GETICON, static_cast<WPARAM>(which), 0));
  };
  const modSetIcon module(icons, process);
  module.SetFormIcon(HandleToLong(window), kMarlIcon, true);
  for (const HWND of : {window, top}) {
    EXPECT_EQ(WidthOf(iconOf(of, kBigIcon)), GetSystemMetrics(SM_CXICON));
    EXPECT_EQ(WidthOf(iconOf(of, kSmallIcon)), GetSystemMetrics(SM_CXSMICON));
  }
  EXPECT_EQ(iconOf(middle, kBigIcon), 0);

  const IconHandle tray = module.LoadIconHandle(kMarlIcon, false);
  EXPECT_EQ(WidthOf(tray), GetSystemMetrics(SM_CXSMICON));
  module.ReleaseIcon(tray);
  EXPECT_EQ(WidthOf(iconOf(window, kSmallIcon)), GetSystemMetrics(SM_CXSMICON))
      << "a shared icon stays for those who show it";
  DestroyWindow(top);
}

}  // namespace
}  // namespace marl::win32
