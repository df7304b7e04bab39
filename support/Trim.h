#pragma once

#include "platform/Text.h"

namespace marl {

/// The text without the spaces at both ends. Other blanks, such as tabs, stay.
inline TextView Trim(TextView text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == TextView::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace marl
