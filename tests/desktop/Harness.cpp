#include "tests/desktop/Harness.h"

#include <objidl.h>
#include <gdiplus.h>
#include <psapi.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace marl::desktop {

namespace {

constexpr const wchar_t* kSettingsKeys[] = {
    L"Software\\VB and VBA Program Settings\\Marl",
    L"Software\\VB and VBA Program Settings\\Marl Project Wizard",
    L"Software\\Oru\\Marl",
    L"Software\\Oru\\Oru Bench",
};
constexpr wchar_t kIconLibrary[] = L"q17icl.oru";
constexpr wchar_t kMarlSection[] = L"Software\\VB and VBA Program Settings\\Marl\\Settings";

// The design of the panel, in twips: columns, the pitch of the grid, and in a cell the middle of
// icon and label.
constexpr int kColumns = 5;
constexpr int kCellWidth = 1740;
constexpr int kCellHeight = 1260;
constexpr int kMiddle = 900;
constexpr int kIconMiddle = 480;
constexpr int kLabelMiddle = 1050;

int ScreenDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi;
}

std::wstring FreshFolder() {
  std::array<wchar_t, MAX_PATH + 1> temp = {};
  GetTempPathW(static_cast<DWORD>(temp.size()), temp.data());
  static int number = 0;
  for (;;) {
    std::wstring folder = temp.data();
    folder += L"marl-desktop-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
              std::to_wstring(++number);
    if (CreateDirectoryW(folder.c_str(), nullptr)) return folder;
    if (GetLastError() != ERROR_ALREADY_EXISTS) return folder;
  }
}

template <typename Visit>
void ForEachFile(const std::wstring& folder, Visit visit) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = found.cFileName;
    if (name != L"." && name != L"..") visit(folder + L"\\" + name, found);
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

void RemoveTree(const std::wstring& folder) {
  ForEachFile(folder, [](const std::wstring& path, const WIN32_FIND_DATAW& found) {
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      RemoveTree(path);
    } else {
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      // A program that has just ended may hold its file a moment longer.
      WaitUntil(
          [&] { return DeleteFileW(path.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND; });
    }
  });
  RemoveDirectoryW(folder.c_str());
}

/// A file's bytes from `offset` on.
std::string ReadAll(const std::wstring& path, LONG offset) {
  std::string bytes;
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return bytes;
  SetFilePointer(file, offset, nullptr, FILE_BEGIN);
  std::array<char, 4096> part;
  DWORD got = 0;
  while (ReadFile(file, part.data(), static_cast<DWORD>(part.size()), &got, nullptr) && got > 0) {
    bytes.append(part.data(), got);
  }
  CloseHandle(file);
  return bytes;
}

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

/// Counts a process's handles in the table of all handles; Wine keeps no count for each process.
std::size_t HandlesInSystemTable(DWORD process) {
  struct Entry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT trace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
  };
  struct Table {
    ULONG_PTR count;
    ULONG_PTR reserved;
    Entry entries[1];
  };
  constexpr int kExtendedHandleTable = 64;
  constexpr LONG kTooSmall = static_cast<LONG>(0xC0000004);
  using Query = LONG(NTAPI*)(int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  if (!query) return 0;
  std::vector<ULONG_PTR> room(16384);
  LONG status;
  while ((status = query(kExtendedHandleTable, room.data(),
                         static_cast<ULONG>(room.size() * sizeof(ULONG_PTR)), nullptr)) ==
         kTooSmall) {
    room.resize(room.size() * 2);
  }
  if (status < 0) return 0;
  const auto* const table = reinterpret_cast<const Table*>(room.data());
  return static_cast<std::size_t>(
      std::count_if(table->entries, table->entries + table->count,
                    [&](const Entry& entry) { return entry.process == process; }));
}

/// The name of a file outside of Wine; empty on Windows.
std::wstring UnixNameOf(const std::wstring& path) {
  using Translate = char*(CDECL*)(const wchar_t*);
  const auto translate = reinterpret_cast<Translate>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  if (!translate) return {};
  char* const name = translate(path.c_str());
  if (!name) return {};
  const std::wstring result = FromUtf8(name);
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

/// Wine keeps its drives as links, beside the one of drive C.
std::wstring WineDriveLink(wchar_t letter) {
  std::wstring link = UnixNameOf(L"C:\\");
  link.resize(link.rfind(L"c:"));
  return link + static_cast<wchar_t>(letter - L'A' + L'a') + L":";
}

bool RunUnixTool(const std::wstring& command) {
  std::wstring line = command;
  const std::wstring program = L"Z:\\bin\\" + command.substr(0, command.find(L' '));
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &info, &started)) {
    return false;
  }
  // The handle may be signalled before the tool is done: callers look for what it does.
  WaitForSingleObject(started.hProcess, static_cast<DWORD>(kDeadline.count()));
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return true;
}

/// The environment of this process with some variables set anew, as CreateProcess takes it.
std::wstring EnvironmentBlock(const std::map<std::wstring, std::wstring>& changes) {
  std::wstring block;
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* at = all; *at; at += wcslen(at) + 1) {
    const std::wstring entry = at;
    const std::wstring name = entry.substr(0, entry.find(L'=', 1));
    const bool changed = std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
      return _wcsicmp(change.first.c_str(), name.c_str()) == 0;
    });
    if (!changed) block += entry + L'\0';
  }
  FreeEnvironmentStringsW(all);
  for (const auto& [name, value] : changes) block += name + L"=" + value + L'\0';
  block += L'\0';
  return block;
}

struct WindowSearch {
  DWORD process;
  std::function<bool(HWND)> matches;
  HWND found = nullptr;
};

BOOL CALLBACK TestWindow(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<WindowSearch*>(data);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner != search.process || !search.matches(window)) return TRUE;
  search.found = window;
  return FALSE;
}

HWND FindWindowOf(DWORD process, std::function<bool(HWND)> matches) {
  WindowSearch search{process, std::move(matches)};
  EnumWindows(TestWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

POINT OnScreen(HWND window, int xTwips, int yTwips) {
  POINT at = {PixelsOf(xTwips), PixelsOf(yTwips)};
  ClientToScreen(window, &at);
  return at;
}

POINT InCell(HWND main, int button, int x, int y) {
  return OnScreen(main, button % kColumns * kCellWidth + x, button / kColumns * kCellHeight + y);
}

/// Walks along one line of a stand-in's log.
class JsonLine {
 public:
  explicit JsonLine(std::string_view text) : text_(text) {}

  bool Take(char c) {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  std::optional<std::wstring> String() {
    if (!Take('"')) return {};
    std::wstring result;
    std::string plain;
    while (at_ < text_.size()) {
      const char c = text_[at_++];
      if (c == '"') return result + FromUtf8(plain);
      if (c != '\\') {
        plain += c;
        continue;
      }
      if (at_ >= text_.size()) return {};
      const char escape = text_[at_++];
      if (escape != 'u') {
        plain += escape;
        continue;
      }
      if (at_ + 4 > text_.size()) return {};
      result += FromUtf8(plain);
      plain.clear();
      result += static_cast<wchar_t>(std::stoul(std::string(text_.substr(at_, 4)), nullptr, 16));
      at_ += 4;
    }
    return {};
  }

  std::optional<int> Number() {
    Take(' ');
    const std::size_t end = text_.find_first_not_of("-0123456789", at_);
    if (end == at_ || end == std::string_view::npos) return {};
    const int value = std::stoi(std::string(text_.substr(at_, end - at_)));
    at_ = end;
    return value;
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

HDDEDATA CALLBACK ClientCallback(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
  return nullptr;
}

void SavePng(HBITMAP bitmap, const std::wstring& path) {
  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) return;
  {
    constexpr CLSID kPng = {
        0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    Gdiplus::Bitmap picture(bitmap, nullptr);
    picture.Save(path.c_str(), &kPng, nullptr);
  }
  Gdiplus::GdiplusShutdown(token);
}

/// An area of the screen as a bitmap, with its bits.
class ScreenPart {
 public:
  explicit ScreenPart(const RECT& area)
      : width_(area.right - area.left), height_(area.bottom - area.top) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<const DWORD*>(bits);
    const HGDIOBJ before = SelectObject(memory, bitmap_);
    BitBlt(memory, 0, 0, width_, height_, screen, area.left, area.top, SRCCOPY);
    GdiFlush();
    SelectObject(memory, before);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
  }
  ~ScreenPart() { DeleteObject(bitmap_); }
  ScreenPart(const ScreenPart&) = delete;
  ScreenPart& operator=(const ScreenPart&) = delete;

  HBITMAP bitmap() const { return bitmap_; }
  Pixels Read() const {
    Pixels pixels{width_, height_, {}};
    const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    pixels.colors.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const DWORD bgr = bits_[i];
      pixels.colors.push_back(RGB(bgr >> 16 & 0xFF, bgr >> 8 & 0xFF, bgr & 0xFF));
    }
    return pixels;
  }

 private:
  int width_;
  int height_;
  HBITMAP bitmap_;
  const DWORD* bits_;
};

}  // namespace

Programs g_programs;

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds deadline) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  for (;;) {
    if (holds()) return true;
    if (std::chrono::steady_clock::now() >= end) return false;
    // Windows of this thread answer meanwhile: nobody who sends to all windows waits for them.
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    Sleep(5);
  }
}

std::wstring FromUtf8(const std::string& text) {
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), needed);
  return wide;
}

std::string ToUtf8(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(), needed, nullptr, nullptr);
  return narrow;
}

std::wstring Environment(const wchar_t* name) {
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::ostream& operator<<(std::ostream& out, const Started& started) {
  return out << ToUtf8(started.path) << " [" << ToUtf8(started.arguments) << "] in "
             << ToUtf8(started.directory) << ", show " << started.show;
}

std::optional<Started> ParseStarted(const std::string& line) {
  JsonLine json(line);
  Started started;
  if (!json.Take('{')) return {};
  do {
    const auto key = json.String();
    if (!key || !json.Take(':')) return {};
    if (*key == L"show") {
      const auto number = json.Number();
      if (!number) return {};
      started.show = *number;
      continue;
    }
    const auto value = json.String();
    if (!value) return {};
    if (*key == L"program") started.program = *value;
    if (*key == L"path") started.path = *value;
    if (*key == L"arguments") started.arguments = *value;
    if (*key == L"directory") started.directory = *value;
  } while (json.Take(','));
  if (!json.Take('}')) return {};
  return started;
}

const std::vector<std::wstring>& Tools() {
  static const std::vector<std::wstring> tools = {
      L"Q17Gauge.exe", L"Q17Pair.exe",   L"Q17Lexis.exe",  L"Q17Cadence.exe", L"Q17Batch.exe",
      L"Q17Bench.exe", L"Q17Warden.exe", L"Q17Kit.exe",    L"Q17Vault.exe",   L"Q17Renew.exe",
      L"Q17Diff.exe",  L"Q17Bridge.exe", L"Q17Cleave.exe", L"Q17Xlf.exe",     L"MarlTour.exe",
      L"RegLib.EXE",   L"Q17Shell.exe",  L"FaceMap.exe",   L"Q17Morph.exe",   L"WordRich.exe",
      L"PageTool.exe", L"FrameTool.exe"};
  return tools;
}

SuiteFolder::SuiteFolder(const std::wstring& name, const std::vector<std::wstring>& without)
    : root_(FreshFolder()),
      path_(root_ + L"\\" + name),
      temp_(root_ + L"\\temp"),
      log_(root_ + L"\\starts.json") {
  CreateDirectoryW(path_.c_str(), nullptr);
  CreateDirectoryW(temp_.c_str(), nullptr);
  CopyFileW(g_programs.marl.c_str(), marl().c_str(), FALSE);
  const std::wstring built = g_programs.marl.substr(0, g_programs.marl.rfind(L'\\') + 1);
  CopyFileW((built + kIconLibrary).c_str(), (path_ + L"\\" + kIconLibrary).c_str(), FALSE);
  for (const std::wstring& tool : Tools()) {
    if (std::find(without.begin(), without.end(), tool) != without.end()) continue;
    CopyFileW(g_programs.standIn.c_str(), (path_ + L"\\" + tool).c_str(), FALSE);
  }
}

// In the form of path that has no limit of length.
SuiteFolder::~SuiteFolder() { RemoveTree(L"\\\\?\\" + root_); }

void SuiteFolder::Remove(const std::wstring& tool) const {
  DeleteFileW((path_ + L"\\" + tool).c_str());
}

const std::vector<Started>& SuiteFolder::Starts() const {
  const std::string log = ReadAll(log_, read_);
  std::size_t at = 0;
  for (std::size_t end; (end = log.find('\n', at)) != std::string::npos; at = end + 1) {
    if (auto started = ParseStarted(log.substr(at, end - at))) {
      starts_.push_back(std::move(*started));
    }
  }
  read_ += static_cast<LONG>(at);
  return starts_;
}

std::vector<Started> SuiteFolder::WaitForTools(std::size_t count) const {
  const auto ofRegistrar = [](const Started& started) { return started.program == L"RegLib.EXE"; };
  WaitUntil([&] {
    const auto& starts = Starts();
    const auto others = std::count_if(starts.begin(), starts.end(), std::not_fn(ofRegistrar));
    return static_cast<std::size_t>(others) >= count;
  });
  std::vector<Started> tools = starts_;
  std::erase_if(tools, ofRegistrar);
  return tools;
}

std::map<std::wstring, std::pair<std::uint64_t, std::uint64_t>> SuiteFolder::Files() const {
  std::map<std::wstring, std::pair<std::uint64_t, std::uint64_t>> files;
  for (const std::wstring& folder : {path_, temp_}) {
    ForEachFile(folder, [&](const std::wstring& path, const WIN32_FIND_DATAW& found) {
      files[path] = {std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow,
                     std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << 32 |
                         found.ftLastWriteTime.dwLowDateTime};
    });
  }
  return files;
}

DriveLetter::DriveLetter(const std::wstring& folder) : folder_(folder) {
  const DWORD taken = GetLogicalDrives();
  for (wchar_t letter = L'R'; letter <= L'Y'; ++letter) {
    if (taken >> (letter - L'A') & 1) continue;
    name_ = std::wstring(1, letter) + L":";
    if (UnixNameOf(folder_).empty()) {
      made_ = DefineDosDeviceW(0, name_.c_str(), folder_.c_str()) != FALSE;
    } else {
      made_ =
          RunUnixTool(L"ln -s \"" + UnixNameOf(folder_) + L"\" \"" + WineDriveLink(letter) + L"\"");
    }
    return;
  }
}

DriveLetter::~DriveLetter() {
  if (!made_) return;
  if (UnixNameOf(folder_).empty()) {
    DefineDosDeviceW(DDD_REMOVE_DEFINITION, name_.c_str(), nullptr);
  } else {
    RunUnixTool(L"rm \"" + WineDriveLink(name_.front()) + L"\"");
  }
}

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

Pixels Capture(const RECT& area) { return ScreenPart(area).Read(); }

void Screenshot(const std::string& name, HWND window) {
  const std::wstring folder = Environment(L"MARL_SHOTS");
  if (folder.empty()) return;
  RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  if (window) GetWindowRect(window, &area);
  // Painted through: nothing has changed for a while.
  constexpr std::chrono::milliseconds kStill{150};
  auto since = std::chrono::steady_clock::now();
  Pixels last = Capture(area);
  WaitUntil([&] {
    Pixels now = Capture(area);
    if (now == last) return std::chrono::steady_clock::now() - since >= kStill;
    last = std::move(now);
    since = std::chrono::steady_clock::now();
    return false;
  });
  SavePng(ScreenPart(area).bitmap(), folder + L"\\" + FromUtf8(name) + L".png");
}

namespace {

bool WriteClass(HKEY key, const std::wstring& text) {
  return RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

}  // namespace

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

INPUT MouseAt(int x, int y, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
  // The screen is 65536 units wide and high; the middle of a pixel survives any rounding.
  const auto units = [](int pixel, int size) {
    return static_cast<LONG>((std::int64_t{pixel} * 2 + 1) * 32768 / size);
  };
  input.mi.dx = units(x, GetSystemMetrics(SM_CXSCREEN));
  input.mi.dy = units(y, GetSystemMetrics(SM_CYSCREEN));
  return input;
}

}  // namespace

void MoveMouse(int x, int y) {
  INPUT input = MouseAt(x, y, 0);
  SendInput(1, &input, sizeof input);
}

void MoveMouse(POINT to) { MoveMouse(to.x, to.y); }

void MouseButtons(std::initializer_list<DWORD> changes) {
  for (const DWORD change : changes) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = change;
    SendInput(1, &input, sizeof input);
  }
}

void Click(int x, int y) {
  INPUT input[] = {MouseAt(x, y, 0), MouseAt(x, y, MOUSEEVENTF_LEFTDOWN),
                   MouseAt(x, y, MOUSEEVENTF_LEFTUP)};
  SendInput(3, input, sizeof input[0]);
}

void Click(POINT at) { Click(at.x, at.y); }

void PressMouse(POINT at) {
  INPUT input[] = {MouseAt(at.x, at.y, 0), MouseAt(at.x, at.y, MOUSEEVENTF_LEFTDOWN)};
  SendInput(2, input, sizeof input[0]);
}

void ReleaseMouse(POINT at) {
  INPUT input[] = {MouseAt(at.x, at.y, 0), MouseAt(at.x, at.y, MOUSEEVENTF_LEFTUP)};
  SendInput(2, input, sizeof input[0]);
}

void Keys(const std::wstring& text) {
  for (const wchar_t c : text) {
    const SHORT key = VkKeyScanW(c);
    Chord(HIBYTE(key) & 1 ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{}, LOBYTE(key));
  }
}

void Chord(const std::vector<WORD>& held, WORD key) {
  std::vector<INPUT> input;
  const auto add = [&](WORD code, DWORD flags) {
    INPUT one = {};
    one.type = INPUT_KEYBOARD;
    one.ki.wVk = code;
    one.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
    one.ki.dwFlags = flags;
    input.push_back(one);
  };
  for (const WORD code : held) add(code, 0);
  add(key, 0);
  add(key, KEYEVENTF_KEYUP);
  for (auto code = held.rbegin(); code != held.rend(); ++code) add(*code, KEYEVENTF_KEYUP);
  SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
}

bool BringForward(HWND window) {
  SetForegroundWindow(window);
  WaitUntil([&] { return GetForegroundWindow() == window || !IsWindow(window); });
  return GetForegroundWindow() == window;
}

std::wstring TextOf(HWND window) {
  // Another program that hangs must not hang the test with it.
  constexpr UINT kHung = 5000;
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, kHung, &length)) {
    return {};
  }
  std::wstring text(length + 1, L'\0');
  DWORD_PTR got = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                      SMTO_NORMAL, kHung, &got);
  text.resize(got);
  return text;
}

std::wstring ClassOf(HWND window) {
  std::array<wchar_t, 257> name = {};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

std::wstring MessageBoxWindow::Text() const {
  // The icon is a static of its own; the text has this number.
  return TextOf(GetDlgItem(window_, 0xFFFF));
}

std::vector<int> MessageBoxWindow::Buttons() const {
  std::vector<int> buttons;
  for (int id = IDOK; id <= IDCONTINUE; ++id) {
    const HWND button = GetDlgItem(window_, id);
    if (button && IsWindowVisible(button)) buttons.push_back(id);
  }
  return buttons;
}

bool MessageBoxWindow::Press(int button) const {
  const HWND child = GetDlgItem(window_, button);
  if (!child) return false;
  SetForegroundWindow(window_);
  RECT area;
  if (!GetWindowRect(child, &area)) return false;
  const POINT middle = {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  // The box may still be on its way to the front.
  if (!WaitUntil([&] { return WindowFromPoint(middle) == child; })) return false;
  const auto gone = [&] { return !IsWindow(window_) || !IsWindowVisible(window_); };
  // A box that just came up may lose the click on its way; the box is the platform's, not ours.
  for (int attempt = 0; attempt < 3; ++attempt) {
    Click(middle);
    if (WaitUntil(gone, std::chrono::seconds(3))) return true;
  }
  return false;
}

RunningMarl::RunningMarl(const SuiteFolder& suite, const std::wstring& commandLine,
                         const std::wstring& program) {
  const std::wstring path = program.empty() ? suite.marl() : program;
  std::wstring line = L"\"" + path + L"\"";
  if (!commandLine.empty()) line += L" " + commandLine;
  std::wstring environment = EnvironmentBlock({{L"MARL_SUITE_LOG", suite.log()},
                                               {L"MARL_SUITE_LINGER", L"0"},
                                               {L"TEMP", suite.temp()},
                                               {L"TMP", suite.temp()}});
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  PROCESS_INFORMATION started = {};
  // Elsewhere than in its own folder: the tools' working directory is Marl's doing.
  if (CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                     environment.data(), suite.temp().c_str(), &info, &started)) {
    CloseHandle(started.hThread);
    process_ = started.hProcess;
    id_ = started.dwProcessId;
  }
}

RunningMarl::~RunningMarl() {
  if (!process_) return;
  if (Running()) {
    TerminateProcess(process_, 99);
    WaitForSingleObject(process_, static_cast<DWORD>(kDeadline.count()));
  }
  CloseHandle(process_);
}

bool RunningMarl::Running() const {
  return process_ && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
}

std::optional<DWORD> RunningMarl::WaitForExit() const {
  if (!process_ || !WaitUntil([&] { return !Running(); })) return {};
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return code;
}

HWND RunningMarl::Window() const {
  return FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"MarlForm" &&
           (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_APPWINDOW) != 0 &&
           TextOf(window).starts_with(L"Marl");
  });
}

HWND RunningMarl::Splash() const {
  return FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"MarlForm" && IsWindowVisible(window) &&
           (GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) == 0;
  });
}

void RunningMarl::DismissSplash() const {
  const HWND splash = Splash();
  if (!splash) return;
  PostMessageW(splash, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(9, 9));
  PostMessageW(splash, WM_LBUTTONUP, 0, MAKELPARAM(9, 9));
}

HWND RunningMarl::WaitForWindow() const {
  HWND window = nullptr;
  WaitUntil([&] {
    DismissSplash();
    window = Window();
    if (window && !IsWindowVisible(window)) window = nullptr;
    return window || !Running();
  });
  return window;
}

MessageBoxWindow RunningMarl::Box() const {
  return MessageBoxWindow(FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"#32770" && IsWindowVisible(window) && GetDlgItem(window, 0xFFFF);
  }));
}

MessageBoxWindow RunningMarl::WaitForBox() const {
  MessageBoxWindow box;
  WaitUntil([&] {
    box = Box();
    return box || !Running();
  });
  return box;
}

HWND RunningMarl::Window(const wchar_t* windowClass, const wchar_t* title) const {
  for (HWND window = nullptr;
       (window = FindWindowExW(nullptr, window, windowClass, title)) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == id_ && IsWindowVisible(window)) return window;
  }
  return nullptr;
}

HWND RunningMarl::WaitForWindow(const wchar_t* windowClass, const wchar_t* title) const {
  HWND window = nullptr;
  WaitUntil([&] { return (window = Window(windowClass, title)) != nullptr || !Running(); });
  return window;
}

bool RunningMarl::WaitForIdle() const {
  return process_ && WaitForInputIdle(process_, static_cast<DWORD>(kDeadline.count())) == 0;
}

DWORD RunningMarl::GuiObjects() const {
  return GetGuiResources(process_, GR_GDIOBJECTS) + GetGuiResources(process_, GR_USEROBJECTS);
}

bool RunningMarl::PressMenu(wchar_t top, wchar_t entry) const {
  const auto opened = [&] {
    return FindWindowOf(
        id_, [](HWND window) { return ClassOf(window) == L"#32768" && IsWindowVisible(window); });
  };
  // A message box that has just gone may not have given the window back yet, and the key with it.
  if (!WaitUntil([&] { return IsWindowEnabled(Window()) != FALSE; })) return false;
  const auto isOpen = [&] { return opened() != nullptr; };
  for (int attempt = 0; attempt < 3 && !isOpen(); ++attempt) {
    if (!BringForward(Window())) return false;
    Chord({VK_MENU}, LOBYTE(VkKeyScanW(top)));
    WaitUntil(isOpen, std::chrono::seconds(3));
  }
  if (!isOpen()) return false;
  Keys(std::wstring(1, entry));
  return WaitUntil([&] { return opened() == nullptr; });
}

std::size_t RunningMarl::PrivateBytes() const {
  // Windows gives the same number as private usage; Wine knows it under this name alone.
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(process_, &counters, sizeof counters);
  return counters.PagefileUsage;
}

std::size_t RunningMarl::Handles() const {
  DWORD count = 0;
  GetProcessHandleCount(process_, &count);
  return count ? count : HandlesInSystemTable(id_);
}

int Twips(int pixels) { return MulDiv(pixels, 1440, ScreenDpi()); }
int PixelsOf(int twips) { return MulDiv(twips, ScreenDpi(), 1440); }

POINT IconOf(HWND main, int button) { return InCell(main, button, kMiddle, kIconMiddle); }
POINT LabelOf(HWND main, int button) { return InCell(main, button, kMiddle, kLabelMiddle); }

RECT CellOf(HWND main, int button) {
  const POINT from = InCell(main, button, 0, 0);
  const POINT to = InCell(main, button, kCellWidth, kCellHeight);
  return {from.x, from.y, to.x, to.y};
}

std::optional<POINT> CloseBoxOf(HWND window) {
  RECT frame;
  if (!GetWindowRect(window, &frame)) return {};
  const int half = GetSystemMetrics(SM_CYCAPTION) / 2;
  const int y = frame.top + GetSystemMetrics(SM_CYFIXEDFRAME) + half;
  std::optional<int> first;
  int last = 0;
  for (int x = frame.right - 1; x > frame.left; --x) {
    const bool hit = SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == HTCLOSE;
    if (hit && !first) first = x;
    if (hit) last = x;
    if (first && !hit) break;
  }
  if (!first) return {};
  return POINT{(*first + last) / 2, y};
}

DdeClient::DdeClient(Kind kind) : kind_(kind) {
  if (kind == Kind::kWide) {
    DdeInitializeW(&instance_, ClientCallback, APPCMD_CLIENTONLY, 0);
  } else {
    DdeInitializeA(&instance_, ClientCallback, APPCMD_CLIENTONLY, 0);
  }
}

DdeClient::~DdeClient() {
  if (conversation_) DdeDisconnect(conversation_);
  if (instance_) DdeUninitialize(instance_);
}

bool DdeClient::Connect(const std::wstring& service, const std::wstring& topic) {
  const HSZ serviceName = DdeCreateStringHandleW(instance_, service.c_str(), CP_WINUNICODE);
  const HSZ topicName = DdeCreateStringHandleW(instance_, topic.c_str(), CP_WINUNICODE);
  conversation_ = DdeConnect(instance_, serviceName, topicName, nullptr);
  if (!conversation_) error_ = DdeGetLastError(instance_);
  DdeFreeStringHandle(instance_, topicName);
  DdeFreeStringHandle(instance_, serviceName);
  return conversation_ != nullptr;
}

bool DdeClient::Execute(const std::wstring& command) {
  std::vector<BYTE> bytes;
  if (kind_ == Kind::kWide) {
    const auto* const from = reinterpret_cast<const BYTE*>(command.c_str());
    bytes.assign(from, from + (command.size() + 1) * sizeof(wchar_t));
  } else {
    const int needed =
        WideCharToMultiByte(CP_ACP, 0, command.c_str(), -1, nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(needed));
    WideCharToMultiByte(CP_ACP, 0, command.c_str(), -1, reinterpret_cast<char*>(bytes.data()),
                        needed, nullptr, nullptr);
  }
  return ExecuteBytes(bytes);
}

bool DdeClient::ExecuteBytes(const std::vector<BYTE>& bytes) {
  std::vector<BYTE> data = bytes;
  const HDDEDATA result =
      DdeClientTransaction(data.data(), static_cast<DWORD>(data.size()), conversation_, nullptr, 0,
                           XTYP_EXECUTE, static_cast<DWORD>(kDeadline.count()), nullptr);
  error_ = result ? DMLERR_NO_ERROR : DdeGetLastError(instance_);
  return result != nullptr;
}

}  // namespace marl::desktop
