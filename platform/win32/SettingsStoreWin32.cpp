#include "platform/win32/SettingsStoreWin32.h"

#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

Text SectionPath(TextView application, TextView section) {
  Text path = u"Software\\VB and VBA Program Settings\\";
  path += application;
  path += u'\\';
  path += section;
  return path;
}

}  // namespace

Text SettingsStoreWin32::GetSetting(TextView application, TextView section, TextView key,
                                    TextView default_) const {
  if (!AreNames(application, section, key)) return Text(default_);
  HKEY raw = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide(SectionPath(application, section)), 0, KEY_QUERY_VALUE,
                    &raw) != ERROR_SUCCESS) {
    return Text(default_);
  }
  const UniqueKey opened(raw);
  const Text name(key);
  for (DWORD size = 512;;) {
    Text value(size / sizeof(char16_t), u'\0');
    DWORD kind = 0;
    const LSTATUS status = RegQueryValueExW(opened.get(), Wide(name), nullptr, &kind,
                                            reinterpret_cast<BYTE*>(value.data()), &size);
    if (status == ERROR_MORE_DATA) {  // another program may write between two reads
      ++size;
      size += size % 2;
      continue;
    }
    if (status != ERROR_SUCCESS || (kind != REG_SZ && kind != REG_EXPAND_SZ)) return Text(default_);
    value.resize(size / sizeof(char16_t));
    return value.substr(0, value.find(u'\0'));
  }
}

Status SettingsStoreWin32::SaveSetting(TextView application, TextView section, TextView key,
                                       TextView value) {
  if (!AreNames(application, section, key)) return kInvalidParameter;
  HKEY raw = nullptr;
  LSTATUS status =
      RegCreateKeyExW(HKEY_CURRENT_USER, Wide(SectionPath(application, section)), 0, nullptr,
                      REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &raw, nullptr);
  if (status != ERROR_SUCCESS) return static_cast<Status>(status);
  const UniqueKey opened(raw);
  const Text name(key);
  const Text text(value.substr(0, value.find(u'\0')));
  const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(char16_t));
  status = RegSetValueExW(opened.get(), Wide(name), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(text.c_str()), size);
  return static_cast<Status>(status);
}

}  // namespace marl::win32
