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

double Luminance(Color color) {
  constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};  // red, green, blue
  const std::array<int, 3> channels = Channels(color);
  double sum = 0;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const double value = channels[i] / 255.0;
    const double linear = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    sum += kWeights[i] * linear;
  }
  return sum;
}

}  // namespace

double ContrastOf(Color a, Color b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

double ContrastOf(Color text, std::span<const Color> backgrounds) {
  double smallest = ContrastOf(text, backgrounds.front());
  for (const Color background : backgrounds) {
    smallest = std::min(smallest, ContrastOf(text, background));
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
