#pragma once

#include "platform/FileSystem.h"

namespace marl::win32 {

/// Real files and folders, through the wide entry points.
class FileSystemWin32 : public FileSystem {
 public:
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
  Text TempPath() const override;
  Text TempName() override;

 private:
  unsigned tempNumber_ = 0;
};

}  // namespace marl::win32
