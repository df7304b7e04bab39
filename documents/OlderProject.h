#pragma once

#include <cstdint>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/clsCommon.h"

namespace marl {

/// Reads project files of the older format, INI files with numbered keys (".qpj"). A missing key or
/// file gives the default. Numbers throw "Type mismatch" or "Overflow" if their text is not one.
class OlderProject {
 public:
  OlderProject(const FileSystem& files, const clsCommon& common, TextView path)
      : files_(files), common_(common), path_(path) {}

  /// 1 if language folders are named by code.
  std::int16_t ShortLang() const;
  std::int32_t LangCount() const;
  std::int32_t DocCount() const;

  /// The values, in order, of the keys numbered 0 to `count` - 1; empty ones are left out.
  std::vector<Text> Languages(std::int32_t count) const;
  std::vector<Text> Documents(std::int32_t count) const;

 private:
  std::vector<Text> Values(TextView section, TextView prefix, std::int32_t count) const;

  const FileSystem& files_;
  const clsCommon& common_;
  Text path_;
};

}  // namespace marl
