#pragma once

#include <algorithm>

#include "platform/FoldCase.h"

namespace marl {

/// Capital of a unit, as the platform uses it to compare names of files, keys and values
/// (RtlUpcaseUnicodeChar). It does not fold 31 units that FoldCase folds: signs and variants of
/// letters, whose capital already belongs to another letter.
constexpr char16_t UpperCase(char16_t unit) {
  constexpr char16_t kAlone[] = {0x00B5, 0x017F, 0x01C5, 0x01C8, 0x01CB, 0x01F2, 0x0345, 0x03C2,
                                 0x03D0, 0x03D1, 0x03D5, 0x03D6, 0x03F0, 0x03F1, 0x03F4, 0x03F5,
                                 0x1C80, 0x1C81, 0x1C82, 0x1C83, 0x1C84, 0x1C85, 0x1C86, 0x1C87,
                                 0x1C88, 0x1E9B, 0x1E9E, 0x1FBE, 0x2126, 0x212A, 0x212B};
  return std::ranges::binary_search(kAlone, unit) ? unit : FoldCase(unit);
}

/// A name in capitals: equal for names of the same object.
inline Text UpperCase(TextView name) {
  Text upper(name);
  for (char16_t& unit : upper) unit = UpperCase(unit);
  return upper;
}

}  // namespace marl
