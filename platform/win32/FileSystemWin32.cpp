#include "platform/win32/FileSystemWin32.h"

#include <algorithm>
#include <limits>

#include "platform/FileNames.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

Status LastStatus() {
  const DWORD error = GetLastError();
  return error == ERROR_SUCCESS ? kGeneralFailure : static_cast<Status>(error);
}

/// A path too long for the plain form gets the prefix without a limit.
Text Native(TextView path) {
  constexpr std::size_t kPlainLimit = 248;
  Text plain(path);
  if (path.size() < kPlainLimit || path.starts_with(kLongPathPrefix)) return plain;
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
  if (!IsPath(path)) {
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

/// Starts a listing and reads its first entry.
UniqueSearch Start(TextView pattern, WIN32_FIND_DATAW& first) {
  // Without short names, which are not used, and many entries at a time.
  const HANDLE search = FindFirstFileExW(Wide(Native(pattern)), FindExInfoBasic, &first,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  return UniqueSearch(search == INVALID_HANDLE_VALUE ? nullptr : search);
}

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
  if (!IsExactPath(path)) return false;
  WIN32_FIND_DATAW data;
  return Start(path, data) && !(data.dwFileAttributes & (kDirectory | kHidden | kSystem));
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
  if (!IsPath(path)) return kPathNotFound;
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
  if (!IsPath(path)) {
    status = kPathNotFound;
    return nullptr;
  }
  // Windows refuses these by itself; Wine lets some users through.
  const DWORD attributes = AttributesOf(path);
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (kDirectory | kReadOnly | kHidden | kSystem))) {
    status = kAccessDenied;
    return nullptr;
  }
  UniqueFile file = Open(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS);
  status = file ? kOk : LastStatus();
  if (!file) return nullptr;
  return std::make_unique<Output>(std::move(file));
}

Status FileSystemWin32::Remove(TextView path, bool force) {
  if (!IsPath(path)) return kPathNotFound;
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
  if (!IsPath(from) || !IsPath(to)) return kPathNotFound;
  const Text source = Native(from);
  const Text target = Native(to);
  const DWORD wanted = GetFileAttributesW(Wide(source));
  const DWORD before = GetFileAttributesW(Wide(target));
  const bool there = before != INVALID_FILE_ATTRIBUTES;
  // As for Create; also, under Wine the replaced file would keep its attributes.
  if (wanted != INVALID_FILE_ATTRIBUTES && there && (before & (kReadOnly | kHidden))) {
    return kAccessDenied;
  }
  if (!CopyFileW(Wide(source), Wide(target), FALSE)) return LastStatus();
  if (there) SetFileAttributesW(Wide(target), wanted);
  return kOk;
}

Status FileSystemWin32::MakeFolder(TextView path) {
  if (!IsPath(path)) return kPathNotFound;
  return CreateDirectoryW(Wide(Native(path)), nullptr) ? kOk : LastStatus();
}

Status FileSystemWin32::Attributes(TextView path, std::uint32_t& out) const {
  const DWORD attributes = AttributesOf(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return LastStatus();
  out = attributes;
  return kOk;
}

Status FileSystemWin32::SetAttributes(TextView path, std::uint32_t attributes) {
  if (!IsPath(path)) return kPathNotFound;
  return SetFileAttributesW(Wide(Native(path)), attributes) ? kOk : LastStatus();
}

std::unique_ptr<FileSearch> FileSystemWin32::Find(TextView pattern) const {
  if (!IsPath(pattern)) return nullptr;
  WIN32_FIND_DATAW first;
  UniqueSearch search = Start(pattern, first);
  if (!search) return nullptr;
  return std::make_unique<Search>(std::move(search), first);
}

Text FileSystemWin32::TempPath() const {
  Text path(1024, u'\0');
  const DWORD length =
      GetTempPathW(static_cast<DWORD>(path.size()), reinterpret_cast<wchar_t*>(path.data()));
  path.resize(length < path.size() ? length : 0);
  return path;
}

Text FileSystemWin32::TempName() {
  // Process, clock and a running number make the name unique.
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::uint64_t seed = (std::uint64_t{GetCurrentProcessId()} << 32) ^ GetTickCount64();
  seed = (seed + ++tempNumber_) * 0x9E3779B97F4A7C15u;
  Text name = u"ORU";
  for (int i = 0; i < 8; ++i, seed >>= 4) name += kDigits[seed >> 28 & 15];
  return name + u".tmp";
}

}  // namespace marl::win32
