#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/FileSystem.h"

namespace marl {

/// A read-only file system in which every path is the same file.
class OneFile : public FileSystem {
 public:
  OneFile(const std::uint8_t* data, std::size_t size) : bytes_(data, data + size) {}

  bool NormalFileExists(TextView) const override { return true; }
  bool FileExists(TextView) const override { return true; }
  bool FolderExists(TextView) const override { return false; }
  Status ReadAll(TextView, Bytes& out) const override {
    out = bytes_;
    return kOk;
  }
  std::unique_ptr<OutputFile> Create(TextView, Status& status) override {
    status = kAccessDenied;
    return nullptr;
  }
  Status Remove(TextView, bool) override { return kAccessDenied; }
  Status Copy(TextView, TextView) override { return kAccessDenied; }
  Status MakeFolder(TextView) override { return kAccessDenied; }
  Status Attributes(TextView, std::uint32_t& out) const override {
    out = kArchive;
    return kOk;
  }
  Status SetAttributes(TextView, std::uint32_t) override { return kAccessDenied; }
  std::unique_ptr<FileSearch> Find(TextView) const override { return nullptr; }
  Text TempPath() const override { return u"C:\\"; }
  Text TempName() override { return u"a.tmp"; }

 private:
  Bytes bytes_;
};

}  // namespace marl
