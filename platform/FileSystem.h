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

/// Files and folders by path. Paths are the platform's: drive letters, backslashes.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// True for a file that an exact folder listing of `path` shows: no folder, neither hidden nor
  /// system. Wildcards match nothing.
  virtual bool NormalFileExists(TextView path) const = 0;
  /// True for any file, hidden ones included, but no folder (GetFileAttributes).
  virtual bool FileExists(TextView path) const = 0;
  virtual bool FolderExists(TextView path) const = 0;

  /// Reads a file whole, in one operation; a length that changes meanwhile is a plain failure.
  /// `out` is untouched unless kOk.
  virtual Status ReadAll(TextView path, Bytes& out) const = 0;
  /// Creates `path` afresh, or cuts an existing file to nothing. Null on failure, `status` says
  /// why.
  virtual std::unique_ptr<OutputFile> Create(TextView path, Status& status) = 0;

  /// Deletes one file. With `force` a read-only one too.
  virtual Status Remove(TextView path, bool force) = 0;
  virtual Status Copy(TextView from, TextView to) = 0;
  virtual Status MakeFolder(TextView path) = 0;
  /// Attributes of a file or folder; kFileNotFound or kPathNotFound when there is none.
  virtual Status Attributes(TextView path, std::uint32_t& out) const = 0;
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
