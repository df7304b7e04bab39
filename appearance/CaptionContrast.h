#pragma once

#include "appearance/SkinSettings.h"
#include "platform/Font.h"
#include "platform/forms/Desktop.h"

namespace marl {

/// Contrast of the panel's captions with what is behind them, from 1 to 21.
struct CaptionContrast {
  double normal = 21;
  double highlighted = 21;
};

/// The smallest contrast of `Text1` and `Text2` with any point of the gradient under the labels of
/// the first `shown` cells; the highest contrast if there is none. The desktop knows the system's
/// colours.
///
/// The caption of a dead button needs no figure of its own: it is readable wherever `Text1` is, by
/// the rule of its colour (GreyOn).
CaptionContrast ContrastOfCaptions(Desktop& desktop, const SkinSettings& skin, int shown);

/// The contrast that text of this font needs to be readable: `kDistinct` if it is bold and has 14
/// points at least, else `kReadable`.
double NeededContrast(const Font& font);

}  // namespace marl
