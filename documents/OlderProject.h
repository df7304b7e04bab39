#pragma once

#include <cstdint>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/clsCommon.h"

namespace marl {

/// Reads project files of the older form, INI files with numbered keys (".qpj"). A missing key, or
/// a missing file, has its default. All numbers throw "Type mismatch" or "Overflow" when their
/// texts are none.
class OlderProject {
 public:
  OlderProject(const FileSystem& files, const clsCommon& common, TextView path)
      : files_(files), common_(common), path_(path) {}

  /// 1 when language folders are named by code.
  std::int16_t ShortLang() const;
  std::int32_t LangCount() const;
  std::int32_t DocCount() const;

  /// The values of the keys numbered from 0 up to `count` less 1 that are not empty, in order.
  std::vector<Text> Languages(std::int32_t count) const;
  std::vector<Text> Documents(std::int32_t count) const;

 private:
  std::vector<Text> Values(TextView section, TextView prefix, std::int32_t count) const;

  const FileSystem& files_;
  const clsCommon& common_;
  Text path_;
};

}  // namespace marl
