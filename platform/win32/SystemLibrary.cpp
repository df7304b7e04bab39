#include "platform/win32/SystemLibrary.h"

#include <array>
#include <string>

namespace marl::win32 {

namespace {

// A full path, because LOAD_LIBRARY_SEARCH_SYSTEM32 needs update KB2533623 on Windows 7. The flag
// makes the library's own folder the first one for the libraries that it needs.
HMODULE Load(const wchar_t* name) {
  std::array<wchar_t, MAX_PATH + 1> folder = {};
  const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
  if (length == 0 || length >= folder.size()) return nullptr;
  const std::wstring path = std::wstring(folder.data(), length) + L'\\' + name;
  return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace

SystemLibrary::SystemLibrary(const wchar_t* name) : module_(Load(name)) {}

}  // namespace marl::win32
