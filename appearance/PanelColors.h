#pragma once

#include "appearance/SkinSettings.h"
#include "platform/Geometry.h"

namespace marl {

/// The colours in which the panel is painted. With high contrast they are the system's, whatever
/// the skin says; its stored values stay.
struct PanelColors {
  bool plain = false;    ///< a plain background in place of the gradient
  Color background = 0;  ///< the plain one
  Color text = 0;
  Color highlightedText = 0;
  bool highlightFilled = false;  ///< the highlighted button has a plain area of its own
  Color highlight = 0;           ///< of that area
  Color border1 = 0;             ///< the bevel
  Color border2 = 0;

  bool operator==(const PanelColors&) const = default;
};

/// The colours of a skin.
PanelColors SkinColors(const SkinSettings& skin);

/// The colours with high contrast: references to system colours, in the pairs that the platform
/// makes for being read.
PanelColors HighContrastColors();

}  // namespace marl
