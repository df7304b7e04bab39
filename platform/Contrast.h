#pragma once

#include <span>

#include "platform/Geometry.h"

namespace marl {

/// Contrast that text of the usual size needs to be readable, by the Web Content Accessibility
/// Guidelines 2 (1.4.3).
inline constexpr double kReadable = 4.5;

/// Contrast that parts of controls need to be seen (1.4.11), and large text.
inline constexpr double kDistinct = 3.0;

/// Contrast of two colours, from 1 to 21: the ratio of their relative luminances, each plus 0.05,
/// as those guidelines define it. No system colours.
double ContrastOf(Color a, Color b);

/// The smallest contrast of the text with any of the backgrounds, of which there is one at least.
double ContrastOf(Color text, std::span<const Color> backgrounds);

/// A colour between two, `share` from 0 (the first) to 1.
Color Mixed(Color from, Color to, double share);

/// The text colour mixed with the backgrounds, up to a half, as far as it stays readable on each;
/// the text colour itself if not even that is readable.
Color Muted(Color text, std::span<const Color> backgrounds);

/// A weaker colour for text that cannot be used now, readable on each of the backgrounds: a muted
/// form of `text`, or of black or white if that is not readable there. If nothing is, the one of
/// the three with the highest contrast.
Color GreyOn(Color text, std::span<const Color> backgrounds);

/// The first of the colours that is readable on the background, or else the one with the highest
/// contrast.
Color ReadableOn(Color background, std::span<const Color> colors);

}  // namespace marl
