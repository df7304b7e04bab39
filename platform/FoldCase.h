#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>

#include "platform/Text.h"

namespace marl {

/// Every `step`th unit from `first` to `last` meets the other letter case at a distance, which
/// wraps round at 16 bits.
struct FoldRun {
  char16_t first;
  char16_t last;
  std::uint16_t step;
  std::uint16_t distance;
};

/// All units that are not their own meeting place, in their order.
inline constexpr FoldRun kFoldRuns[] = {
#include "platform/FoldCase.inc"
};

/// Where a unit meets its other letter cases, without regard to the locale: the capital of those
/// units that Unicode's simple case folding takes for one. Covers the basic plane; a unit stays one
/// unit, so the sharp s does not meet "ss". The dotted and the dotless i are no pair.
constexpr char16_t FoldCase(char16_t unit) {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  const FoldRun* const run =
      std::ranges::lower_bound(kFoldRuns, unit, std::ranges::less{}, &FoldRun::last);
  if (run == std::end(kFoldRuns) || unit < run->first || (unit - run->first) % run->step != 0) {
    return unit;
  }
  return static_cast<char16_t>(unit + run->distance);
}

/// The text in its meeting places: equal for texts that differ in letter case alone.
inline Text FoldCase(TextView text) {
  Text folded(text);
  for (char16_t& unit : folded) unit = FoldCase(unit);
  return folded;
}

/// True when both texts are the same but for case.
constexpr bool SameText(TextView a, TextView b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

/// True when `text` begins with `prefix`, but for case.
constexpr bool StartsWithText(TextView text, TextView prefix) {
  return text.size() >= prefix.size() && SameText(text.substr(0, prefix.size()), prefix);
}

}  // namespace marl
