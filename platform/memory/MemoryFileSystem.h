#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace marl {

/// What is done to a path; one line of the record that `MemoryFileSystem` keeps.
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

/// A small working file system in memory: drives, folders, names that keep their case and are
/// found without it, attributes, listings in the order of the names. Drive C is there from the
/// start, with the temporary folder on it; other drives come with their first `Put`.
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

  // What follows is for tests. None of it is recorded, fails on request or minds attributes.

  /// Puts a file there with all folders above it, in place of what stood there.
  void Put(TextView path, Bytes bytes, std::uint32_t attributes = kArchive);
  void Put(TextView path, std::string_view bytes, std::uint32_t attributes = kArchive);
  /// Puts a folder there with all folders above it. A folder that exists takes the attributes.
  void PutFolder(TextView path, std::uint32_t attributes = 0);
  /// Takes a file, or a folder with all below it, away.
  void Erase(TextView path);
  /// The next operation that meets the file finds it, and then it is gone.
  void Vanish(TextView path);
  /// The next operation of this kind ends with `status`, or the one after `skip` others.
  void FailNext(FileAction action, Status status, int skip = 0);
  /// Content of a file; nothing when there is no such file.
  std::optional<Bytes> Content(TextView path) const;
  /// Files open for writing now.
  int OpenFiles() const;
  /// Full paths of all files, in the order of the names.
  std::vector<Text> Files() const;

  struct Touch {
    FileAction action;
    Text path;  ///< as the caller wrote it
    bool operator==(const Touch&) const = default;
  };
  /// All that was done since the start or the last `ForgetTouched`, failures included.
  const std::vector<Touch>& Touched() const { return touched_; }
  void ForgetTouched() { touched_.clear(); }

  /// The temporary folder becomes this one, which is made; a missing last backslash is added.
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

  std::map<Text, NodePointer> nodes_;  // by folded full path, without the last backslash
  Text tempPath_;
  int nextTempName_ = 1;
  mutable std::vector<Failure> failures_;
  mutable std::vector<Touch> touched_;
  mutable std::vector<NodePointer> vanished_;
};

}  // namespace marl
