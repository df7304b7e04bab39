#include "network/ValidateNumericText.h"

#include <algorithm>
#include <array>

#include "support/Numbers.h"

namespace marl {

namespace {

constexpr TextView kRestoring = u"*";
constexpr TextView kEmptyField = u"|0|0";

bool IsGood(TextView text, std::int32_t minimum, std::int32_t maximum, bool allowEmpty) {
  if (text.empty()) return allowEmpty;
  std::int64_t value = 0;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') return false;
    // Once above the maximum, more digits cannot bring it back.
    value = std::min<std::int64_t>(value * 10 + (unit - u'0'), std::int64_t{1} << 32);
  }
  return value >= minimum && value <= maximum;
}

/// Text, start and length of the last valid state. Valid text contains no bar.
std::array<Text, 3> Split(TextView state) {
  std::array<Text, 3> pieces;
  std::size_t piece = 0;
  for (const char16_t unit : state) {
    if (unit != u'|') {
      pieces[piece] += unit;
    } else if (++piece == pieces.size()) {
      break;
    }
  }
  return pieces;
}

}  // namespace

void ValidateNumericText(TextBox& field, std::int32_t minimum, std::int32_t maximum,
                         bool allowEmpty) {
  if (field.Tag == kRestoring) return;
  if (field.Tag.empty()) field.Tag = kEmptyField;
  if (!IsGood(field.Text(), minimum, maximum, allowEmpty)) {
    const auto [text, start, length] = Split(field.Tag);
    field.Tag = kRestoring;
    field.SetText(text);
    field.Select(CLng(start), CLng(length));
  }
  field.Tag =
      field.Text() + u"|" + NumberText(field.SelStart()) + u"|" + NumberText(field.SelLength());
}

}  // namespace marl
