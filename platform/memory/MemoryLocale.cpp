#include "platform/memory/MemoryLocale.h"

#include "platform/memory/UpperCase.h"

namespace marl {

namespace {

struct Composition {
  char16_t composed;
  char16_t letter;
  char16_t accent;  ///< 0: the composed unit is a duplicate of the letter
};

// Capitals of the European and Vietnamese letters with accents.
constexpr Composition kCompositions[] = {
    {u'\u00C0', u'A', 0x300},      {u'\u00C1', u'A', 0x301},      {u'\u00C2', u'A', 0x302},
    {u'\u00C3', u'A', 0x303},      {u'\u00C4', u'A', 0x308},      {u'\u00C5', u'A', 0x30A},
    {u'\u00C7', u'C', 0x327},      {u'\u00C8', u'E', 0x300},      {u'\u00C9', u'E', 0x301},
    {u'\u00CA', u'E', 0x302},      {u'\u00CB', u'E', 0x308},      {u'\u00CC', u'I', 0x300},
    {u'\u00CD', u'I', 0x301},      {u'\u00CE', u'I', 0x302},      {u'\u00CF', u'I', 0x308},
    {u'\u00D1', u'N', 0x303},      {u'\u00D2', u'O', 0x300},      {u'\u00D3', u'O', 0x301},
    {u'\u00D4', u'O', 0x302},      {u'\u00D5', u'O', 0x303},      {u'\u00D6', u'O', 0x308},
    {u'\u00D9', u'U', 0x300},      {u'\u00DA', u'U', 0x301},      {u'\u00DB', u'U', 0x302},
    {u'\u00DC', u'U', 0x308},      {u'\u00DD', u'Y', 0x301},      {u'\u0102', u'A', 0x306},
    {u'\u011E', u'G', 0x306},      {u'\u0130', u'I', 0x307},      {u'\u015E', u'S', 0x327},
    {u'\u0162', u'T', 0x327},      {u'\u01A0', u'O', 0x31B},      {u'\u01AF', u'U', 0x31B},
    {u'\u0218', u'S', 0x326},      {u'\u021A', u'T', 0x326},      {u'\u0386', u'\u0391', 0x301},
    {u'\u0388', u'\u0395', 0x301}, {u'\u0389', u'\u0397', 0x301}, {u'\u038A', u'\u0399', 0x301},
    {u'\u038C', u'\u039F', 0x301}, {u'\u038E', u'\u03A5', 0x301}, {u'\u038F', u'\u03A9', 0x301},
    {u'\u03AA', u'\u0399', 0x308}, {u'\u03AB', u'\u03A5', 0x308}, {u'\u1EA4', u'\u00C2', 0x301},
    {u'\u2126', u'\u03A9', 0},     {u'\u212A', u'K', 0},          {u'\u212B', u'\u00C5', 0},
};

void Reduce(char16_t unit, Text& to) {
  for (const Composition& row : kCompositions) {
    if (row.composed != unit) continue;
    Reduce(row.letter, to);
    if (row.accent != 0) to += row.accent;
    return;
  }
  switch (unit) {
    case u'\u00DF':
    case u'\u1E9E': to += u"SS"; return;
    case u'\u00C6': to += u"AE"; return;
    case u'\u03C2': to += u'\u03A3'; return;
    default: to += unit; return;
  }
}

/// A text's collation key: capitals, decomposed into letters and accents.
Text Reduced(TextView text) {
  Text reduced;
  for (const char16_t unit : text) Reduce(UpperCase(unit), reduced);
  return reduced;
}

}  // namespace

bool MemoryLocale::SameText(TextView a, TextView b) const { return Reduced(a) == Reduced(b); }

}  // namespace marl
