#include "platform/win32/FileSystemWin32.h"

#include <algorithm>
#include <limits>

#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

using UniqueFile = Unique<HANDLE, HandleKind::kFile, CloseAny>;

Status LastStatus() {
  const DWORD error = GetLastError();
  return error == ERROR_SUCCESS ? kGeneralFailure : static_cast<Status>(error);
}

/// A text that holds a NUL is the name of nothing: the platform would take what stands before it.
bool IsName(TextView path) { return !path.empty() && path.find(u'\0') == TextView::npos; }

/// A path too long for the plain form is given in the form that has no limit.
Text Native(TextView path) {
  constexpr std::size_t kPlainLimit = 248;
  Text plain(path);
  if (path.size() < kPlainLimit || path.starts_with(u"\\\\?\\")) return plain;
  Text full(32768, u'\0');
  const DWORD length = GetFullPathNameW(Wide(plain), static_cast<DWORD>(full.size()),
                                        reinterpret_cast<wchar_t*>(full.data()), nullptr);
  if (length == 0 || length >= full.size()) return plain;
  full.resize(length);
  return full.starts_with(u"\\\\") ? u"\\\\?\\UNC" + full.substr(1) : u"\\\\?\\" + full;
}

UniqueFile Open(TextView path, DWORD access, DWORD share, DWORD disposition) {
  const HANDLE file = CreateFileW(Wide(Native(path)), access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  return UniqueFile(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

DWORD AttributesOf(TextView path) {
  if (!IsName(path)) {
    SetLastError(ERROR_PATH_NOT_FOUND);
    return INVALID_FILE_ATTRIBUTES;
  }
  return GetFileAttributesW(Wide(Native(path)));
}

class Output : public OutputFile {
 public:
  explicit Output(UniqueFile file) : file_(std::move(file)) {}
  Status Write(const void* data, std::size_t size) override {
    const char* next = static_cast<const char*>(data);
    while (size > 0) {
      const auto chunk = static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
      DWORD written = 0;
      if (!WriteFile(file_.get(), next, chunk, &written, nullptr)) return LastStatus();
      if (written != chunk) return kGeneralFailure;
      next += chunk;
      size -= chunk;
    }
    return kOk;
  }

 private:
  UniqueFile file_;
};

void CloseSearch(HANDLE search) { FindClose(search); }
using UniqueSearch = Unique<HANDLE, HandleKind::kFile, CloseSearch>;

class Search : public FileSearch {
 public:
  Search(UniqueSearch search, const WIN32_FIND_DATAW& first)
      : search_(std::move(search)), data_(first) {}
  Status Next(FoundEntry& out) override {
    if (!pending_ && !FindNextFileW(search_.get(), &data_)) return LastStatus();
    pending_ = false;
    out.attributes = data_.dwFileAttributes;
    out.name.assign(reinterpret_cast<const char16_t*>(data_.cFileName));
    return kOk;
  }

 private:
  UniqueSearch search_;
  WIN32_FIND_DATAW data_;
  bool pending_ = true;
};

}  // namespace

bool FileSystemWin32::NormalFileExists(TextView path) const {
  if (!IsName(path) || path.find_first_of(u"*?\"<>") != TextView::npos) return false;
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(Wide(Native(path)), &data);
  if (search == INVALID_HANDLE_VALUE) return false;
  FindClose(search);
  return !(data.dwFileAttributes & (kDirectory | kHidden | kSystem));
}

bool FileSystemWin32::FileExists(TextView path) const {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & kDirectory);
}

bool FileSystemWin32::FolderExists(TextView path) const {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & kDirectory);
}

Status FileSystemWin32::ReadAll(TextView path, Bytes& out) const {
  if (!IsName(path)) return kPathNotFound;
  const UniqueFile file = Open(
      path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
  if (!file) return LastStatus();
  LARGE_INTEGER size;
  if (!GetFileSizeEx(file.get(), &size)) return LastStatus();
  if (size.QuadPart > std::numeric_limits<std::int32_t>::max()) return kGeneralFailure;
  Bytes bytes;
  try {
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
  } catch (const std::bad_alloc&) {
    return kGeneralFailure;
  }
  DWORD read = 0;
  if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
    return LastStatus();
  }
  LARGE_INTEGER after;
  if (read != bytes.size() || !GetFileSizeEx(file.get(), &after) ||
      after.QuadPart != size.QuadPart) {
    return kGeneralFailure;
  }
  out = std::move(bytes);
  return kOk;
}

std::unique_ptr<OutputFile> FileSystemWin32::Create(TextView path, Status& status) {
  if (!IsName(path)) {
    status = kPathNotFound;
    return nullptr;
  }
  UniqueFile file = Open(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS);
  status = file ? kOk : LastStatus();
  if (!file) return nullptr;
  return std::make_unique<Output>(std::move(file));
}

Status FileSystemWin32::Remove(TextView path, bool force) {
  if (!IsName(path)) return kPathNotFound;
  const Text name = Native(path);
  const DWORD attributes = GetFileAttributesW(Wide(name));
  const bool locked = attributes != INVALID_FILE_ATTRIBUTES && (attributes & kReadOnly);
  if (locked && !force) return kAccessDenied;
  if (locked) SetFileAttributesW(Wide(name), attributes & ~DWORD{kReadOnly});
  if (DeleteFileW(Wide(name))) return kOk;
  const Status status = LastStatus();
  if (locked) SetFileAttributesW(Wide(name), attributes);
  return status;
}

Status FileSystemWin32::Copy(TextView from, TextView to) {
  if (!IsName(from) || !IsName(to)) return kPathNotFound;
  return CopyFileW(Wide(Native(from)), Wide(Native(to)), FALSE) ? kOk : LastStatus();
}

Status FileSystemWin32::MakeFolder(TextView path) {
  if (!IsName(path)) return kPathNotFound;
  return CreateDirectoryW(Wide(Native(path)), nullptr) ? kOk : LastStatus();
}

Status FileSystemWin32::Attributes(TextView path, std::uint32_t& out) const {
  const DWORD attributes = AttributesOf(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastStatus();
  out = attributes;
  return kOk;
}

Status FileSystemWin32::SetAttributes(TextView path, std::uint32_t attributes) {
  if (!IsName(path)) return kPathNotFound;
  return SetFileAttributesW(Wide(Native(path)), attributes) ? kOk : LastStatus();
}

std::unique_ptr<FileSearch> FileSystemWin32::Find(TextView pattern) const {
  if (!IsName(pattern)) return nullptr;
  WIN32_FIND_DATAW data;
  // Without the short names that nobody asks for, and many entries at a time.
  const HANDLE search = FindFirstFileExW(Wide(Native(pattern)), FindExInfoBasic, &data,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  if (search == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<Search>(UniqueSearch(search), data);
}

Text FileSystemWin32::TempPath() const {
  Text path(1024, u'\0');
  const DWORD length =
      GetTempPathW(static_cast<DWORD>(path.size()), reinterpret_cast<wchar_t*>(path.data()));
  path.resize(length < path.size() ? length : 0);
  return path;
}

Text FileSystemWin32::TempName() {
  // Process, clock and a running number: nobody else makes the same name at the same time.
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::uint64_t seed = (std::uint64_t{GetCurrentProcessId()} << 32) ^ GetTickCount64();
  seed = (seed + ++tempNumber_) * 0x9E3779B97F4A7C15u;
  Text name = u"rad";
  for (int i = 0; i < 8; ++i, seed >>= 4) name += kDigits[seed >> 28 & 15];
  return name + u".tmp";
}

}  // namespace marl::win32
