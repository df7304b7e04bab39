#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/StringResource.h"

namespace marl {

/// The texts of a language as they stand in its file, without a program that carries them.
class MemoryStrings : public StringResource {
 public:
  /// The language whose texts are the first one's between marks, a third longer.
  static constexpr std::string_view kMarked = "marked";

  /// `language` is a code of resources/strings/languages.txt, or `kMarked`. Others have no texts.
  explicit MemoryStrings(std::string_view language = "en");

  bool Load(int id, Text& out) const override;

  /// The codes of all languages that the program is built in, the one that ships first.
  static std::vector<std::string> Languages();

  std::map<int, Text> texts;
};

}  // namespace marl
