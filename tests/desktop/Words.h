#pragma once

#include <cwctype>
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
  /// The underlined letter of a text, small; 0 if there is none.
  wchar_t AccessKey(int id) const {
    const std::wstring caption = (*this)(id);
    const std::size_t at = caption.find(L'&');
    return at == std::wstring::npos ? L'\0' : static_cast<wchar_t>(towlower(caption[at + 1]));
  }

 private:
  MemoryStrings strings_;
};

}  // namespace marl::desktop
