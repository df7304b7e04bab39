#pragma once

#include <memory>

#include "platform/FileSystem.h"
#include "tests/contract/Backends.h"

namespace marl {

/// A file system with a private folder, which is deleted at the end.
class FileWorld {
 public:
  explicit FileWorld(Backend backend);
  ~FileWorld();
  FileWorld(const FileWorld&) = delete;
  FileWorld& operator=(const FileWorld&) = delete;

  FileSystem& files() { return *files_; }
  /// The folder's full path, without a trailing backslash.
  const Text& folder() const { return folder_; }
  Text At(TextView name) const { return folder_ + u'\\' + Text(name); }

  void Put(TextView name, std::string_view content = {}, std::uint32_t attributes = 0);
  /// Content of the file; "-" if it cannot be read.
  std::string Content(TextView name) const;

 private:
  void Empty(const Text& folder);

  Backend backend_;
  std::unique_ptr<FileSystem> files_;
  Text folder_;
};

/// The bits that both backends keep. One of them sets the archive bit on every file.
constexpr std::uint32_t kKeptAttributes = kReadOnly | kHidden | kSystem | kDirectory;

}  // namespace marl
