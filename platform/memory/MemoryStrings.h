#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/StringResource.h"

namespace marl {

/// The texts of a language, from its file.
class MemoryStrings : public StringResource {
 public:
  /// The language for tests: the texts of the first language between marks, a third longer.
  static constexpr std::string_view kMarked = "marked";

  /// `language` is a code in resources/strings/languages.txt, or `kMarked`. Others have no texts.
  explicit MemoryStrings(std::string_view language = "en");

  bool Load(int id, Text& out) const override;

  /// The codes of all languages of the program, the one that ships first.
  static std::vector<std::string> Languages();

  std::map<int, Text> texts;
};

}  // namespace marl
