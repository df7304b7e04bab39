#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

// Saves, empties, fills and restores the registry for tests.

namespace marl::desktop {

/// A registry key in memory, with everything below it.
struct KeyImage {
  struct Value {
    DWORD kind;
    std::vector<BYTE> data;
    bool operator==(const Value&) const = default;
  };
  std::map<std::wstring, Value> values;
  std::map<std::wstring, KeyImage> keys;
  bool operator==(const KeyImage&) const = default;
};

/// The settings of the user who runs the tests: empty while this lives, restored afterwards.
class Settings {
 public:
  Settings();
  ~Settings();
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  /// A setting of application Marl, section Settings; nothing if there is none.
  std::optional<std::wstring> Get(const std::wstring& key) const;
  void Set(const std::wstring& key, const std::wstring& value) const;
  /// A text below HKEY_CURRENT_USER\Software\Oru\Marl, in the subkey `key`.
  void SetRegistry(const std::wstring& key, const std::wstring& value,
                   const std::wstring& text) const;
  /// A value of any kind there, byte by byte.
  void SetRegistryBytes(const std::wstring& key, const std::wstring& value, DWORD kind,
                        const std::vector<BYTE>& bytes) const;
  /// A number (REG_DWORD) there.
  void SetRegistryNumber(const std::wstring& key, const std::wstring& value, DWORD number) const;
  /// Everything in the keys.
  std::vector<KeyImage> Image() const;

 private:
  void Clear() const;
  std::vector<std::optional<KeyImage>> before_;
};

/// A key with a text below Software\Classes of the machine, while this lives.
class ClassKey {
 public:
  ClassKey(const std::wstring& path, const std::wstring& text);
  ~ClassKey();
  ClassKey(const ClassKey&) = delete;
  ClassKey& operator=(const ClassKey&) = delete;
  bool made() const { return made_; }

 private:
  std::wstring path_;
  std::optional<std::wstring> before_;
  bool created_ = false;
  bool made_ = false;
};

/// Makes a program the one that opens web pages (.html) while this lives.
class HtmlBrowser {
 public:
  explicit HtmlBrowser(const std::wstring& program);
  bool made() const { return command_.made(); }

 private:
  ClassKey extension_;
  ClassKey type_;
  ClassKey shell_;
  ClassKey open_;
  ClassKey command_;
};

/// Makes a program the one that opens web addresses while this lives. On Windows only the user can
/// choose that: it is not made there.
class WebAddresses {
 public:
  explicit WebAddresses(const std::wstring& program);
  ~WebAddresses();
  WebAddresses(const WebAddresses&) = delete;
  WebAddresses& operator=(const WebAddresses&) = delete;
  bool made() const { return made_; }

 private:
  std::wstring before_;
  bool made_ = false;
};

}  // namespace marl::desktop
