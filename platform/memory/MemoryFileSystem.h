#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace marl {

/// An operation on a path, in the record that `MemoryFileSystem` keeps.
enum class FileAction {
  kTest,
  kRead,
  kCreate,
  kWrite,
  kRemove,
  kCopy,
  kMakeFolder,
  kAttributes,
  kSetAttributes,
  kFind,
};

/// A small working file system in memory: drives, folders, names that keep but ignore case,
/// attributes, sorted listings. Drive C with the temporary folder exists from the start; other
/// drives are created by their first `Put`.
class MemoryFileSystem : public FileSystem {
 public:
  MemoryFileSystem();
  ~MemoryFileSystem() override;
  MemoryFileSystem(const MemoryFileSystem&) = delete;
  MemoryFileSystem& operator=(const MemoryFileSystem&) = delete;

  bool NormalFileExists(TextView path) const override;
  bool FileExists(TextView path) const override;
  bool FolderExists(TextView path) const override;
  Status ReadAll(TextView path, Bytes& out) const override;
  std::unique_ptr<OutputFile> Create(TextView path, Status& status) override;
  Status Remove(TextView path, bool force) override;
  Status Copy(TextView from, TextView to) override;
  Status MakeFolder(TextView path) override;
  Status Attributes(TextView path, std::uint32_t& out) const override;
  Status SetAttributes(TextView path, std::uint32_t attributes) override;
  std::unique_ptr<FileSearch> Find(TextView pattern) const override;
  Text TempPath() const override { return tempPath_; }
  Text TempName() override;

  // The rest is for tests. It is not recorded, does not fail on request, and ignores attributes.

  /// Creates or replaces a file, with all folders above it.
  void Put(TextView path, Bytes bytes, std::uint32_t attributes = kArchive);
  void Put(TextView path, std::string_view bytes, std::uint32_t attributes = kArchive);
  /// Creates a folder with all folders above it. An existing folder gets the attributes.
  void PutFolder(TextView path, std::uint32_t attributes = 0);
  /// Deletes a file, or a folder with its contents.
  void Erase(TextView path);
  /// The next operation on the file still finds it, and then it is gone.
  void Vanish(TextView path);
  /// The next operation of this kind, after skipping `skip` of them, returns `status`.
  void FailNext(FileAction action, Status status, int skip = 0);
  /// Content of a file; nothing if there is no such file.
  std::optional<Bytes> Content(TextView path) const;
  /// Number of files that are open for writing.
  int OpenFiles() const;
  /// Full paths of all files, sorted.
  std::vector<Text> Files() const;

  struct Touch {
    FileAction action;
    Text path;  ///< as the caller wrote it
    bool operator==(const Touch&) const = default;
  };
  /// All operations since the start or the last `ForgetTouched`, including failures.
  const std::vector<Touch>& Touched() const { return touched_; }
  void ForgetTouched() { touched_.clear(); }

  /// Creates this folder and makes it the temporary one; a missing trailing backslash is added.
  void SetTempPath(TextView folder);

 private:
  struct Node;
  class Writer;
  struct Failure {
    FileAction action;
    Status status;
    int skip;
  };
  using NodePointer = std::shared_ptr<Node>;

  static Text FullPath(TextView path);
  static Text Key(TextView fullPath);
  NodePointer Look(TextView path) const;
  NodePointer Meet(TextView path) const;
  Status Absence(TextView path) const;
  std::optional<Status> Begin(FileAction action, TextView path) const;

  std::map<Text, NodePointer> nodes_;  // by folded full path, without a trailing backslash
  Text tempPath_;
  int nextTempName_ = 1;
  mutable std::vector<Failure> failures_;
  mutable std::vector<Touch> touched_;
  mutable std::vector<NodePointer> vanished_;
};

}  // namespace marl
