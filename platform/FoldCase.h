#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>

#include "platform/Text.h"

namespace marl {

/// Every `step`th unit from `first` to `last` folds to the unit at `distance`, modulo 2^16.
struct FoldRun {
  char16_t first;
  char16_t last;
  std::uint16_t step;
  std::uint16_t distance;
};

/// All units that do not fold to themselves, sorted.
inline constexpr FoldRun kFoldRuns[] = {
#include "platform/FoldCase.inc"
};

/// Folds a unit, independently of the locale: units that are equal by Unicode's simple case folding
/// become their capital. Covers the basic plane; a unit stays one unit, so sharp s does not equal
/// "ss". Dotted and dotless i differ.
constexpr char16_t FoldCase(char16_t unit) {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  const FoldRun* const run =
      std::ranges::lower_bound(kFoldRuns, unit, std::ranges::less{}, &FoldRun::last);
  if (run == std::end(kFoldRuns) || unit < run->first || (unit - run->first) % run->step != 0) {
    return unit;
  }
  return static_cast<char16_t>(unit + run->distance);
}

/// The folded text: equal for texts that differ only in letter case.
inline Text FoldCase(TextView text) {
  Text folded(text);
  for (char16_t& unit : folded) unit = FoldCase(unit);
  return folded;
}

/// True if both texts are equal, ignoring case.
constexpr bool SameText(TextView a, TextView b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

/// True if `text` begins with `prefix`, ignoring case.
constexpr bool StartsWithText(TextView text, TextView prefix) {
  return text.size() >= prefix.size() && SameText(text.substr(0, prefix.size()), prefix);
}

}  // namespace marl
