#include "appearance/FontSpec.h"
#include "documents/modUTF8.h"
#include "tests/unit/FuzzTarget.h"

// Any text, applied as a font spec with both decimal separators.
MARL_FUZZ_TARGET(fontspec) {
  using namespace marl;
  const Text spec = DecodeUTF8(Bytes(data, data + size));
  for (const NumberFormat format : {NumberFormat{u'.', u','}, NumberFormat{u',', u'.'}}) {
    Font font;
    ApplyFontSpec(font, spec, format);
    fuzz::Expect(font.Size > 0 && font.Size <= 2048 * 10000, "the size is one that fonts have");
    fuzz::Expect(font.Name.find(u'|') == Text::npos, "the name ends at the first bar");

    Font again;
    ApplyFontSpec(again, GetFontSpec(font, format), format);
    fuzz::Expect(again == font, "a font's spec gives the font");
  }
}
