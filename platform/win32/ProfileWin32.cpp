#include "platform/win32/ProfileWin32.h"

#include "platform/win32/CodePage.h"

namespace marl::win32 {

Text ProfileWin32::GetString(TextView section, TextView key, TextView defaultText,
                             std::size_t bufferSize, TextView file) const {
  if (bufferSize == 0) return {};
  NarrowText buffer(bufferSize, '\0');
  const DWORD length =
      GetPrivateProfileStringA(ToSystemCodePage(section).c_str(), ToSystemCodePage(key).c_str(),
                               ToSystemCodePage(defaultText).c_str(), buffer.data(),
                               static_cast<DWORD>(buffer.size()), ToSystemCodePage(file).c_str());
  return FromSystemCodePage(std::string_view(buffer).substr(0, length));
}

bool ProfileWin32::SetString(TextView section, TextView key, TextView value, TextView file) {
  return WritePrivateProfileStringA(ToSystemCodePage(section).c_str(),
                                    ToSystemCodePage(key).c_str(), ToSystemCodePage(value).c_str(),
                                    ToSystemCodePage(file).c_str()) != FALSE;
}

}  // namespace marl::win32
