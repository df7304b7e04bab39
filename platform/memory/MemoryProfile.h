#pragma once

#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Profile.h"

namespace marl {

/// INI files on a given file system, in code page 1252. A file name without a folder means a file
/// in `windowsFolder`.
class MemoryProfile : public Profile {
 public:
  explicit MemoryProfile(FileSystem& files) : files_(files) {}

  Text windowsFolder = u"C:\\Windows";

  Text GetString(TextView section, TextView key, TextView defaultText, std::size_t bufferSize,
                 TextView file) const override;
  bool SetString(TextView section, TextView key, TextView value, TextView file) override;

 private:
  Text PathOf(TextView file) const;
  std::vector<std::string> Lines(TextView file) const;

  FileSystem& files_;
};

}  // namespace marl
