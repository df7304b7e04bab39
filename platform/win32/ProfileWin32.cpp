#include "platform/win32/ProfileWin32.h"

#include <algorithm>

#include "platform/win32/CodePage.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

/// Length of a path as it is given or as the platform completes it, whichever is more.
std::size_t WholeLength(const Text& path) {
  // Both lengths count the terminator, in whose place a bare name has the backslash before it.
  if (IsBareProfile(path)) return GetWindowsDirectoryW(nullptr, 0) + path.size();
  const std::size_t completed = GetFullPathNameW(Wide(path), 0, nullptr, nullptr);
  return std::max(path.size() + 1, completed) - 1;
}

/// The path up to its first NUL. One that is too long becomes a name that no file has.
NarrowText FileOf(TextView file) {
  const Text path(file.substr(0, file.find(u'\0')));
  return ToSystemCodePage(WholeLength(path) <= kLongestProfilePath ? path : Text(u"?"));
}

}  // namespace

Text ProfileWin32::GetString(TextView section, TextView key, TextView defaultText,
                             std::size_t bufferSize, TextView file) const {
  if (bufferSize == 0) return {};
  NarrowText buffer(bufferSize, '\0');
  const DWORD length =
      GetPrivateProfileStringA(ToSystemCodePage(section).c_str(), ToSystemCodePage(key).c_str(),
                               ToSystemCodePage(defaultText).c_str(), buffer.data(),
                               static_cast<DWORD>(buffer.size()), FileOf(file).c_str());
  return FromSystemCodePage(std::string_view(buffer).substr(0, length));
}

bool ProfileWin32::SetString(TextView section, TextView key, TextView value, TextView file) {
  return WritePrivateProfileStringA(ToSystemCodePage(section).c_str(),
                                    ToSystemCodePage(key).c_str(), ToSystemCodePage(value).c_str(),
                                    FileOf(file).c_str()) != FALSE;
}

}  // namespace marl::win32
