#pragma once

#include "platform/Text.h"

namespace marl {

/// Capital form of a unit, without regard to the locale: Latin, Greek, Cyrillic, Armenian and
/// full-width letters. Every other unit is its own.
constexpr char16_t FoldCase(char16_t unit) {
  const auto within = [unit](char16_t first, char16_t last) {
    return unit >= first && unit <= last;
  };
  const auto less = [unit](int distance) { return static_cast<char16_t>(unit - distance); };
  const bool odd = (unit & 1) != 0;

  if (unit < 0x80) return within(u'a', u'z') ? less(32) : unit;
  if (unit < 0x100) {
    if (unit == 0xFF) return 0x178;
    return within(0xE0, 0xFE) && unit != 0xF7 ? less(32) : unit;
  }
  // Latin: capital and small letters alternate. The dotted and the dotless i are no pair.
  if (within(0x100, 0x137) && !within(0x130, 0x131)) return odd ? less(1) : unit;
  if (within(0x139, 0x148)) return odd ? unit : less(1);
  if (within(0x14A, 0x177)) return odd ? less(1) : unit;
  if (within(0x179, 0x17E)) return odd ? unit : less(1);
  if (within(0x1E00, 0x1E95) || within(0x1EA0, 0x1EFF)) return odd ? less(1) : unit;
  // Greek.
  if (unit == 0x3AC) return 0x386;
  if (within(0x3AD, 0x3AF)) return less(37);
  if (within(0x3B1, 0x3CB) && unit != 0x3C2) return less(32);
  if (unit == 0x3CC) return 0x38C;
  if (within(0x3CD, 0x3CE)) return less(63);
  // Cyrillic.
  if (within(0x430, 0x44F)) return less(32);
  if (within(0x450, 0x45F)) return less(80);
  if (within(0x460, 0x481) || within(0x48A, 0x4BF) || within(0x4D0, 0x52F)) {
    return odd ? less(1) : unit;
  }
  if (within(0x4C1, 0x4CE)) return odd ? unit : less(1);
  if (unit == 0x4CF) return 0x4C0;
  // Armenian and full-width forms.
  if (within(0x561, 0x586)) return less(48);
  if (within(0xFF41, 0xFF5A)) return less(32);
  return unit;
}

/// The text in capitals.
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
