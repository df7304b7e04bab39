#include "appearance/PanelColors.h"

namespace marl {

PanelColors SkinColors(const SkinSettings& skin) {
  PanelColors colors;
  colors.text = skin.Text1;
  colors.highlightedText = skin.Text2;
  colors.border1 = skin.Border1;
  colors.border2 = skin.Border2;
  return colors;
}

PanelColors HighContrastColors() {
  PanelColors colors;
  colors.plain = true;
  colors.background = kWindowBackground;
  colors.text = kWindowText;
  colors.highlightedText = kHighlightText;
  colors.highlightFilled = true;
  colors.highlight = kHighlight;
  colors.border1 = kWindowText;
  colors.border2 = kWindowText;
  return colors;
}

}  // namespace marl
