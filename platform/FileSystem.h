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

/// A running listing; the destructor closes it (FindClose).
class FileSearch {
 public:
  virtual ~FileSearch() = default;
  /// Reads the next entry (FindNextFile). kNoMoreFiles at the end, with `out` unchanged.
  virtual Status Next(FoundEntry& out) = 0;
};

/// A file open for writing; its destructor closes it.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  /// Appends the bytes (WriteFile); a partial write is a failure.
  virtual Status Write(const void* data, std::size_t size) = 0;
};

/// Files and folders by path. Paths are the platform's: drive letters, backslashes, names that
/// ignore case; blanks and dots at the end of a path are ignored, and a path that ends in a
/// backslash names a folder. A path that begins with `\\?\` is not normalised.
///
/// Failures: kFileNotFound if only the last name is missing; kPathNotFound if a folder before it is
/// missing or not a folder, or the text is empty or contains a NUL; kInvalidName for an invalid
/// character; kAccessDenied; kSharingViolation for a file that is open for writing.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// True for an existing file at exactly `path` that is neither a folder nor hidden nor system.
  /// Wildcards match nothing, including quotes and angle brackets (IsExactPath).
  virtual bool NormalFileExists(TextView path) const = 0;
  /// True for any file, even a hidden one, but not for a folder (GetFileAttributes).
  virtual bool FileExists(TextView path) const = 0;
  virtual bool FolderExists(TextView path) const = 0;

  /// Reads a whole file in one operation; fails if its length changes meanwhile. A file that is
  /// open for writing can be read. `out` is unchanged unless kOk.
  virtual Status ReadAll(TextView path, Bytes& out) const = 0;
  /// Creates `path`, or truncates an existing file (CreateFile with CREATE_ALWAYS). Null on
  /// failure, with the reason in `status`; a file that is read-only, hidden or system stays, with
  /// kAccessDenied.
  virtual std::unique_ptr<OutputFile> Create(TextView path, Status& status) = 0;

  /// Deletes one file (DeleteFile). A read-only file is refused with kAccessDenied, unless `force`
  /// is set.
  virtual Status Remove(TextView path, bool force) = 0;
  /// Copies content and attributes (CopyFile), replacing an existing `to`. If `to` is a folder or a
  /// read-only or hidden file: kAccessDenied; if it is `from` itself: kSharingViolation.
  virtual Status Copy(TextView from, TextView to) = 0;
  /// Creates one folder (CreateDirectory); kAlreadyExists if the name is taken.
  virtual Status MakeFolder(TextView path) = 0;
  /// Attributes of a file or folder (GetFileAttributes); bits outside FileAttribute are undefined.
  /// `out` is unchanged unless kOk.
  virtual Status Attributes(TextView path, std::uint32_t& out) const = 0;
  /// Sets them (SetFileAttributes). The folder bit cannot be changed.
  virtual Status SetAttributes(TextView path, std::uint32_t attributes) = 0;

  /// Starts a listing (FindFirstFile) of a path whose last part may contain wildcards; the first
  /// Next reads the first entry. Null if nothing matches or the folder cannot be listed.
  virtual std::unique_ptr<FileSearch> Find(TextView pattern) const = 0;

  /// The temporary folder with its trailing backslash (GetTempPath); empty if there is none.
  virtual Text TempPath() const = 0;
  /// A generated file name without folder, not in use before: ORU, more and ".tmp".
  virtual Text TempName() = 0;
};

}  // namespace marl
