#pragma once

#include <string>

#include "platform/memory/MemoryStrings.h"
#include "resources/strings/ids.h"

namespace marl::desktop {

/// The program's texts in a language, by id.
class Words {
 public:
  explicit Words(const std::string& language) : strings_(language) {}
  std::wstring operator()(int id) const {
    const marl::Text& text = strings_.texts.at(id);
    return {text.begin(), text.end()};
  }

 private:
  MemoryStrings strings_;
};

}  // namespace marl::desktop
