#include "tests/desktop/Registry.h"

namespace marl::desktop {

namespace {

constexpr const wchar_t* kSettingsKeys[] = {
    L"Software\\VB and VBA Program Settings\\Marl",
    L"Software\\VB and VBA Program Settings\\Marl Project Wizard",
    L"Software\\Oru\\Marl",
    L"Software\\Oru\\Oru Bench",
};
constexpr wchar_t kMarlSection[] = L"Software\\VB and VBA Program Settings\\Marl\\Settings";

KeyImage ReadKey(HKEY key) {
  KeyImage image;
  std::wstring name(16384, L'\0');
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    DWORD kind = 0;
    DWORD size = 0;
    if (RegEnumValueW(key, index, name.data(), &length, nullptr, &kind, nullptr, &size) !=
        ERROR_SUCCESS) {
      break;
    }
    KeyImage::Value value{kind, std::vector<BYTE>(size)};
    const std::wstring own = name.substr(0, length);
    RegQueryValueExW(key, own.c_str(), nullptr, &kind, value.data.data(), &size);
    image.values[own] = value;
  }
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    const std::wstring own = name.substr(0, length);
    HKEY inner = nullptr;
    if (RegOpenKeyExW(key, own.c_str(), 0, KEY_READ, &inner) != ERROR_SUCCESS) continue;
    image.keys[own] = ReadKey(inner);
    RegCloseKey(inner);
  }
  return image;
}

std::optional<KeyImage> ReadKey(const wchar_t* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
  KeyImage image = ReadKey(key);
  RegCloseKey(key);
  return image;
}

void WriteKey(HKEY parent, const std::wstring& path, const KeyImage& image) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    return;
  }
  for (const auto& [name, value] : image.values) {
    RegSetValueExW(key, name.c_str(), 0, value.kind, value.data.data(),
                   static_cast<DWORD>(value.data.size()));
  }
  for (const auto& [name, inner] : image.keys) WriteKey(key, name, inner);
  RegCloseKey(key);
}

void WriteValue(const std::wstring& path, const std::wstring& name, DWORD kind, const void* data,
                std::size_t size) {
  RegSetKeyValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), kind, data,
                  static_cast<DWORD>(size));
}

void WriteText(const std::wstring& path, const std::wstring& name, const std::wstring& text) {
  WriteValue(path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

bool WriteClass(HKEY key, const std::wstring& text) {
  return RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

}  // namespace

Settings::Settings() {
  for (const wchar_t* key : kSettingsKeys) before_.push_back(ReadKey(key));
  Clear();
}

Settings::~Settings() {
  Clear();
  for (std::size_t i = 0; i < before_.size(); ++i) {
    if (before_[i]) WriteKey(HKEY_CURRENT_USER, kSettingsKeys[i], *before_[i]);
  }
}

void Settings::Clear() const {
  for (const wchar_t* key : kSettingsKeys) {
    RegDeleteTreeW(HKEY_CURRENT_USER, key);
    RegDeleteKeyW(HKEY_CURRENT_USER, key);
  }
}

std::optional<std::wstring> Settings::Get(const std::wstring& key) const {
  const auto image = ReadKey(kMarlSection);
  if (!image) return {};
  const auto found = image->values.find(key);
  if (found == image->values.end() || found->second.kind != REG_SZ) return {};
  const auto& data = found->second.data;
  std::wstring text(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
  return text.substr(0, text.find(L'\0'));
}

void Settings::Set(const std::wstring& key, const std::wstring& value) const {
  WriteText(kMarlSection, key, value);
}

void Settings::SetRegistry(const std::wstring& key, const std::wstring& value,
                           const std::wstring& text) const {
  WriteText(std::wstring(kSettingsKeys[2]) + L"\\" + key, value, text);
}

void Settings::SetRegistryBytes(const std::wstring& key, const std::wstring& value, DWORD kind,
                                const std::vector<BYTE>& bytes) const {
  WriteValue(std::wstring(kSettingsKeys[2]) + L"\\" + key, value, kind, bytes.data(), bytes.size());
}

void Settings::SetRegistryNumber(const std::wstring& key, const std::wstring& value,
                                 DWORD number) const {
  WriteValue(std::wstring(kSettingsKeys[2]) + L"\\" + key, value, REG_DWORD, &number,
             sizeof number);
}

std::vector<KeyImage> Settings::Image() const {
  std::vector<KeyImage> images;
  for (const wchar_t* key : kSettingsKeys) images.push_back(ReadKey(key).value_or(KeyImage{}));
  return images;
}

ClassKey::ClassKey(const std::wstring& path, const std::wstring& text)
    : path_(L"Software\\Classes\\" + path) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                      &key, &disposition) != ERROR_SUCCESS) {
    return;
  }
  created_ = disposition == REG_CREATED_NEW_KEY;
  wchar_t before[1024];
  auto size = static_cast<DWORD>(sizeof before);
  if (RegQueryValueExW(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(before), &size) ==
      ERROR_SUCCESS) {
    before_ = before;
  }
  made_ = WriteClass(key, text);
  RegCloseKey(key);
}

ClassKey::~ClassKey() {
  if (created_) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, path_.c_str());
    return;
  }
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), 0, KEY_SET_VALUE, &key)) return;
  if (before_) {
    WriteClass(key, *before_);
  } else {
    RegDeleteValueW(key, nullptr);
  }
  RegCloseKey(key);
}

HtmlBrowser::HtmlBrowser(const std::wstring& program)
    : extension_(L".html", L"MarlTestPage"),
      type_(L"MarlTestPage", L"Page"),
      shell_(L"MarlTestPage\\shell", L""),
      open_(L"MarlTestPage\\shell\\open", L""),
      command_(L"MarlTestPage\\shell\\open\\command", L"\"" + program + L"\" \"%1\"") {}

namespace {

constexpr wchar_t kOpenAddress[] = L"http\\shell\\open\\command";

bool OpenAddressesBy(const std::wstring& command) {
  return RegSetKeyValueW(HKEY_CLASSES_ROOT, kOpenAddress, nullptr, REG_SZ, command.c_str(),
                         static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t))) ==
         ERROR_SUCCESS;
}

}  // namespace

WebAddresses::WebAddresses(const std::wstring& program) {
  if (!GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")) return;
  wchar_t text[1024] = {};
  DWORD size = sizeof text;
  if (RegGetValueW(HKEY_CLASSES_ROOT, kOpenAddress, nullptr, RRF_RT_REG_SZ, nullptr, text, &size) !=
      ERROR_SUCCESS) {
    return;
  }
  before_ = text;
  made_ = OpenAddressesBy(L"\"" + program + L"\" \"%1\"");
}

WebAddresses::~WebAddresses() {
  if (made_) OpenAddressesBy(before_);
}

}  // namespace marl::desktop
