#pragma once

#include <map>

#include "platform/StringResource.h"

namespace marl {

/// The texts of a language as they stand in its file, without a program that carries them.
class MemoryStrings : public StringResource {
 public:
  /// `language` is the name of a file below resources/strings: "en", "de".
  explicit MemoryStrings(std::string_view language = "en");

  bool Load(int id, Text& out) const override;

  std::map<int, Text> texts;
};

}  // namespace marl
