#include "tests/desktop/Suite.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace marl::desktop {

namespace {

constexpr wchar_t kIconLibrary[] = L"q17icl.oru";

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
      // A program that has just ended may keep its file open a moment longer.
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

/// The native name of a file under Wine; empty on Windows.
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
  // The handle may be signalled before the tool is done, so callers wait for its effect.
  WaitForSingleObject(started.hProcess, static_cast<DWORD>(kDeadline.count()));
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return true;
}

/// Parses one line of a stand-in's log.
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

}  // namespace

Programs g_programs;

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

std::wstring ToolOf(int button) {
  switch (button) {
    case 0: return L"Q17Gauge.exe";
    case 1: return L"Q17Pair.exe";
    case 2: return L"Q17Lexis.exe";
    case 3: return L"Q17Cadence.exe";
    case 4: return L"Q17Batch.exe";
    case 5: return L"Q17Bench.exe";
    case 8: return L"Q17Warden.exe";
    case 9: return L"Q17Kit.exe";
    case 11: return L"Q17Vault.exe";
    case 12: return L"Q17Renew.exe";
    case 13: return L"Q17Diff.exe";
    case 14: return L"Q17Bridge.exe";
    case 15: return L"Q17Cleave.exe";
    case 16: return L"Q17Xlf.exe";
    default: return {};
  }
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

// With the prefix \\?\, so that the path has no length limit.
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

NetworkShare::NetworkShare(const std::wstring& folder) {
  if (UnixNameOf(folder).empty()) {
    name_ = L"\\\\localhost\\" + folder.substr(0, 1) + L"$" + folder.substr(2);
  } else {
    name_ = L"\\\\marltest\\jobs";
    link_ = WineDriveLink(L'U');
    // Beside the drives, a folder for each server.
    link_.resize(link_.size() - 2);
    link_ += L"unc";
    // A tool's folder could come too late for the link in it.
    CreateDirectoryW((L"Z:" + link_).c_str(), nullptr);
    link_ += L"/marltest";
    CreateDirectoryW((L"Z:" + link_).c_str(), nullptr);
    RunUnixTool(L"ln -s \"" + UnixNameOf(folder) + L"\" \"" + link_ + L"/jobs\"");
  }
  made_ = WaitUntil([&] { return GetFileAttributesW(name_.c_str()) != INVALID_FILE_ATTRIBUTES; },
                    std::chrono::seconds(5));
}

NetworkShare::~NetworkShare() {
  if (!link_.empty()) RunUnixTool(L"rm -r \"" + link_ + L"\"");
}

}  // namespace marl::desktop
