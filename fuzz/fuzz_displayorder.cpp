#include "appearance/PanelLayout.h"
#include "documents/modUTF8.h"
#include "platform/RuntimeError.h"
#include "tests/unit/FuzzTarget.h"

// The first byte is the number of columns; the rest is any text, read as a display order and laid
// out.
MARL_FUZZ_TARGET(displayorder) {
  using namespace marl;
  if (size == 0) return;
  const std::int32_t columns = static_cast<std::int8_t>(data[0]);
  const Text text = DecodeUTF8(Bytes(data + 1, data + size));
  DisplayOrder order;
  if (!Skip([&] { order = ParseDisplayIcons(text); })) return;

  DisplayOrder normal = order;
  bool known = true;
  for (DisplayPosition& position : normal) {
    position.shown = position.shown != 0 ? 1 : 0;
    known = known && position.button >= 0 && position.button < kButtonCount;
  }
  fuzz::Expect(ParseDisplayIcons(FormatDisplayIcons(order)) == normal,
               "the normal form tells the same order");

  PanelLayout layout;
  const bool arranged = Skip([&] { layout = ArrangePanel(order, columns, {}); });
  if (known && columns != 0) fuzz::Expect(arranged, "known buttons are placed");
  if (!known) fuzz::Expect(!arranged, "unknown buttons are refused");
  if (!arranged) return;
  for (std::size_t p = 0; p < order.size(); ++p) {
    fuzz::Expect(layout.steps[p].button == order[p].button, "each position has its step");
    fuzz::Expect(layout.steps[p].shown == (order[p].shown != 0), "the flag decides");
  }
}
