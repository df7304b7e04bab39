#include "platform/win32/Hardening.h"

#include "platform/win32/SystemLibrary.h"

namespace marl::win32 {

namespace {

// What dialogs, the shell and COM load by name on Windows 7, each before those that need it.
constexpr const wchar_t* kLoadedByName[] = {
    L"cryptbase.dll", L"version.dll",  L"uxtheme.dll",  L"dwmapi.dll",  L"winmm.dll",
    L"msimg32.dll",   L"propsys.dll",  L"ntmarta.dll",  L"profapi.dll", L"userenv.dll",
    L"secur32.dll",   L"wtsapi32.dll", L"winspool.drv", L"oleacc.dll",  L"rsaenh.dll",
    L"linkinfo.dll",  L"ntshrui.dll",  L"cscapi.dll",   L"slc.dll",     L"apphelp.dll",
};

}  // namespace

void HardenProcess() {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  RestrictLibrarySearch(reinterpret_cast<SetLibraryFolders*>(
      reinterpret_cast<void*>(GetProcAddress(kernel, "SetDefaultDllDirectories"))));
  HeapSetInformation(nullptr, HeapEnableTerminationOnCorruption, nullptr, 0);
  SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS);
}

void RestrictLibrarySearch(SetLibraryFolders* setFolders) {
  if (setFolders && setFolders(LOAD_LIBRARY_SEARCH_SYSTEM32)) return;
  SetDllDirectoryW(L"");
  for (const wchar_t* const name : kLoadedByName) SystemLibrary{name};
}

}  // namespace marl::win32
