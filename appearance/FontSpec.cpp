#include "appearance/FontSpec.h"

#include <vector>

#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {
namespace {

constexpr std::int64_t kLargestSize = 2048 * 10000;

/// The first three parts of the font spec; further ones are ignored. An empty spec has none.
std::vector<TextView> Parts(TextView spec) {
  std::vector<TextView> parts;
  if (spec.empty()) return parts;
  std::size_t from = 0;
  while (parts.size() < 3) {
    const std::size_t bar = spec.find(u'|', from);
    parts.push_back(spec.substr(from, bar == TextView::npos ? bar : bar - from));
    if (bar == TextView::npos) break;
    from = bar + 1;
  }
  return parts;
}

bool HasLetter(TextView styles, char16_t capital) {
  for (const char16_t letter : styles) {
    if (FoldCase(letter) == capital) return true;
  }
  return false;
}

}  // namespace

void ApplyFontSpec(Font& font, TextView spec, const NumberFormat& format) {
  const std::vector<TextView> parts = Parts(spec);
  if (!parts.empty()) font.Name = parts[0];
  if (parts.size() > 1) Skip([&] { SetFontSize(font, CCur(parts[1], format)); });
  if (parts.size() > 2) {
    font.Bold = HasLetter(parts[2], u'B');
    font.Italic = HasLetter(parts[2], u'I');
    font.Underline = HasLetter(parts[2], u'U');
  }
}

void ApplyFontSpec(Control& control, TextView spec, const NumberFormat& format) {
  Font font = control.Font();
  ApplyFontSpec(font, spec, format);
  control.SetFont(font);
}

void SetFontSize(Font& font, std::int64_t size) {
  if (size <= 0 || size > kLargestSize) throw RuntimeError::InvalidPropertyValue();
  font.Size = size;
}

Text GetFontSpec(const Font& font, const NumberFormat& format) {
  Text spec = font.Name + u'|' + CurrencyText(font.Size, format) + u'|';
  if (font.Bold) spec += u'b';
  if (font.Italic) spec += u'i';
  if (font.Underline) spec += u'u';
  return spec;
}

Text GetFontSpec(const Control& control, const NumberFormat& format) {
  return GetFontSpec(control.Font(), format);
}

void CopyFontAndColour(const Label& source, Label& destination) {
  Font font = destination.Font();
  font.Name = source.Font().Name;
  font.Size = source.Font().Size;
  font.Bold = source.Font().Bold;
  font.Italic = source.Font().Italic;
  font.Underline = source.Font().Underline;
  destination.SetFont(font);
  destination.SetForeColor(source.ForeColor());
}

}  // namespace marl
