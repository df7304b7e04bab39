#include "platform/win32/ProfileWin32.h"

#include "platform/win32/CodePage.h"

namespace marl::win32 {

namespace {

/// The path up to its first NUL. One that is too long becomes a name that no file has.
NarrowText FileOf(TextView file) {
  const TextView path = file.substr(0, file.find(u'\0'));
  return ToSystemCodePage(path.size() <= kLongestProfilePath ? path : TextView(u"?"));
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
