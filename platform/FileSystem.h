#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/Status.h"
#include "platform/Text.h"

namespace marl {

/// Attribute bits of an entry, with the platform's numbers.
enum FileAttribute : std::uint32_t {
  kReadOnly = 1,
  kHidden = 2,
  kSystem = 4,
  kDirectory = 16,
  kArchive = 32,
};

/// One entry of a folder listing (WIN32_FIND_DATA: attributes and name).
struct FoundEntry {
  std::uint32_t attributes = 0;
  Text name;
};

/// A listing that is under way; closing it is its destructor (FindClose).
class FileSearch {
 public:
  virtual ~FileSearch() = default;
  /// Gives the next entry (FindNextFile). kNoMoreFiles at the end, `out` untouched then.
  virtual Status Next(FoundEntry& out) = 0;
};

/// A file open for writing; its destructor closes it.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  /// Appends the bytes (WriteFile); anything less than all of them is a failure.
  virtual Status Write(const void* data, std::size_t size) = 0;
};

/// Files and folders by path. Paths are the platform's: drive letters, backslashes, names that are
/// found without regard to case; blanks and dots at the end of a path do not count, and one that
/// ends in a backslash is that of a folder. A path that begins with `\\?\` is taken as it stands.
///
/// A failure tells why: kFileNotFound where only the last name is missing, kPathNotFound where a
/// folder before it is missing or no folder, or the text is empty or holds a NUL, kInvalidName for
/// a character that no name has, kAccessDenied, kSharingViolation for a file that is open for
/// writing.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// True for a file that an exact folder listing of `path` shows: no folder, neither hidden nor
  /// system. Wildcards match nothing, quotes and angle brackets among them (IsExactPath).
  virtual bool NormalFileExists(TextView path) const = 0;
  /// True for any file, hidden ones included, but no folder (GetFileAttributes).
  virtual bool FileExists(TextView path) const = 0;
  virtual bool FolderExists(TextView path) const = 0;

  /// Reads a file whole, in one operation; a length that changes meanwhile is a plain failure. A
  /// file that is open for writing can be read. `out` is untouched unless kOk.
  virtual Status ReadAll(TextView path, Bytes& out) const = 0;
  /// Creates `path` afresh, or cuts an existing file to nothing (CreateFile with CREATE_ALWAYS).
  /// Null on failure, `status` says why; a file that is read-only, hidden or system is refused with
  /// kAccessDenied and stays.
  virtual std::unique_ptr<OutputFile> Create(TextView path, Status& status) = 0;

  /// Deletes one file (DeleteFile). A read-only one is refused with kAccessDenied, but for `force`.
  virtual Status Remove(TextView path, bool force) = 0;
  /// Copies content and attributes (CopyFile). What stands at `to` is replaced; a folder and a file
  /// that is read-only or hidden are refused with kAccessDenied, `from` itself with
  /// kSharingViolation.
  virtual Status Copy(TextView from, TextView to) = 0;
  /// Makes one folder (CreateDirectory); kAlreadyExists where something has that name.
  virtual Status MakeFolder(TextView path) = 0;
  /// Attributes of a file or folder (GetFileAttributes); other bits than those of FileAttribute
  /// have no meaning. `out` is untouched unless kOk.
  virtual Status Attributes(TextView path, std::uint32_t& out) const = 0;
  /// Sets them (SetFileAttributes). A folder stays one, a file becomes none.
  virtual Status SetAttributes(TextView path, std::uint32_t attributes) = 0;

  /// Starts a listing (FindFirstFile) of a path whose last part may hold wildcards; the first
  /// Next gives the first entry. Null when nothing matches or the folder cannot be listed.
  virtual std::unique_ptr<FileSearch> Find(TextView pattern) const = 0;

  /// The temporary folder with its trailing backslash (GetTempPath).
  virtual Text TempPath() const = 0;
  /// A generated file name without folder, not in use before, for a temporary file.
  virtual Text TempName() = 0;
};

}  // namespace marl
