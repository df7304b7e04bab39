#include "platform/Contrast.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace marl {

namespace {

// The backgrounds are samples: what is between them may differ by a rounding.
constexpr double kRoom = 0.1;

std::array<int, 3> Channels(Color color) {
  return {color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF};
}

/// The relative luminance of a channel's value in sRGB, 0 to 1.
double Linear(int value) {
  static const std::array<double, 256> table = [] {
    std::array<double, 256> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
      const double share = static_cast<double>(i) / 255.0;
      all[i] = share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    }
    return all;
  }();
  return table[static_cast<std::size_t>(value)];
}

double Luminance(Color color) {
  const std::array<int, 3> channels = Channels(color);
  return 0.2126 * Linear(channels[0]) + 0.7152 * Linear(channels[1]) + 0.0722 * Linear(channels[2]);
}

/// Of two luminances, 1 to 21.
double Contrast(double a, double b) { return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05); }

}  // namespace

double ContrastOf(Color a, Color b) { return Contrast(Luminance(a), Luminance(b)); }

double ContrastOf(Color text, std::span<const Color> backgrounds) {
  const double own = Luminance(text);
  double smallest = Contrast(own, Luminance(backgrounds.front()));
  for (const Color background : backgrounds) {
    smallest = std::min(smallest, Contrast(own, Luminance(background)));
  }
  return smallest;
}

Color Mixed(Color from, Color to, double share) {
  const std::array<int, 3> a = Channels(from);
  const std::array<int, 3> b = Channels(to);
  const auto channel = [&](std::size_t i) {
    return static_cast<int>(std::lround(a[i] + (b[i] - a[i]) * share));
  };
  return Rgb(channel(0), channel(1), channel(2));
}

Color Muted(Color text, std::span<const Color> backgrounds) {
  constexpr int kSteps = 32;
  const Color middle = backgrounds[backgrounds.size() / 2];
  for (int step = kSteps / 2; step > 0; --step) {
    const Color mixed = Mixed(text, middle, 1.0 * step / kSteps);
    if (ContrastOf(mixed, backgrounds) >= kReadable + kRoom) return mixed;
  }
  return text;
}

Color GreyOn(Color text, std::span<const Color> backgrounds) {
  const std::array<Color, 3> candidates = {text, Rgb(0, 0, 0), Rgb(255, 255, 255)};
  for (const Color color : candidates) {
    if (ContrastOf(color, backgrounds) >= kReadable) return Muted(color, backgrounds);
  }
  return *std::max_element(candidates.begin(), candidates.end(), [&](Color a, Color b) {
    return ContrastOf(a, backgrounds) < ContrastOf(b, backgrounds);
  });
}

Color ReadableOn(Color background, std::span<const Color> colors) {
  for (const Color color : colors) {
    if (ContrastOf(color, background) >= kReadable) return color;
  }
  return *std::max_element(colors.begin(), colors.end(), [&](Color a, Color b) {
    return ContrastOf(a, background) < ContrastOf(b, background);
  });
}

}  // namespace marl
