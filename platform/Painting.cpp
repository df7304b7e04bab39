#include "platform/Painting.h"

#include <algorithm>

namespace marl {

namespace {

/// More areas than this are composed as one.
constexpr std::size_t kMostAreas = 8;

/// Two channels at a time, in bits 0 to 7 and 16 to 23: each times `part`, divided by 255 and
/// rounded.
constexpr std::uint32_t Scale(std::uint32_t channels, std::uint32_t part) {
  const std::uint32_t product = channels * part + 0x800080;
  return (product + (product >> 8 & 0xFF00FF)) >> 8 & 0xFF00FF;
}

std::int64_t AreaOf(const PixelRect& rect) {
  return std::int64_t{rect.width()} * std::int64_t{rect.height()};
}

}  // namespace

void BlendPixels(std::uint32_t* under, const std::uint32_t* over, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t pixel = over[i];
    const std::uint32_t rest = 255 - (pixel >> 24);
    const std::uint32_t low = Scale(under[i] & 0xFF00FF, rest);
    const std::uint32_t high = Scale(under[i] >> 8 & 0xFF00FF, rest);
    under[i] = pixel + low + (high << 8);
  }
}

std::vector<PixelRect> AreasToPaint(std::span<const PixelRect> region, const PixelRect& bounds) {
  std::int64_t sum = 0;
  PixelRect around = region.empty() ? bounds : region.front();
  for (const PixelRect& rect : region) {
    sum += AreaOf(rect);
    around = {std::min(around.left, rect.left), std::min(around.top, rect.top),
              std::max(around.right, rect.right), std::max(around.bottom, rect.bottom)};
  }
  const bool few = !region.empty() && region.size() <= kMostAreas;
  if (few && around == bounds && sum <= AreaOf(bounds) / 4 * 3) {
    return {region.begin(), region.end()};
  }
  return {bounds};
}

}  // namespace marl
