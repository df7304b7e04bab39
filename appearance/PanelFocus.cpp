#include "appearance/PanelFocus.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "platform/Contrast.h"
#include "platform/forms/Controls.h"

namespace marl {

namespace {

const Box& FrameOf(const HitAreas& areas, int button) {
  return areas[static_cast<std::size_t>(button)].frame;
}

/// The position of the button in the order; past its end if it is not there.
std::size_t PlaceOf(const std::vector<int>& order, int button) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), button) - order.begin());
}

/// Calls `pixel(x, y)` for each pixel of a ring inside a picture of this size.
template <typename Pixel>
void WalkRing(const Size& size, int thickness, Pixel&& pixel) {
  for (int y = 0; y < size.height; ++y) {
    const bool across = y < thickness || y >= size.height - thickness;
    for (int x = 0; x < size.width; ++x) {
      if (!across && x == thickness) x = std::max(x, size.width - thickness);
      pixel(x, y);
    }
  }
}

Color GroundAt(const RingGround& ground, int x, int y) {
  const Picture* const gradient = ground.gradient;
  if (!gradient || gradient->width == 0 || gradient->height == 0) return ground.plain;
  const std::uint32_t pixel =
      gradient->At(std::clamp(x, 0, gradient->width - 1), std::clamp(y, 0, gradient->height - 1));
  return Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
}

std::uint32_t Opaque(Color color) {
  const auto bits = static_cast<std::uint32_t>(color);
  return 0xFF000000u | (bits & 0xFF) << 16 | (bits & 0xFF00) | (bits & 0xFF0000) >> 16;
}

constexpr Color kWhite = Rgb(255, 255, 255);
constexpr Color kBlack = Rgb(0, 0, 0);

}  // namespace

std::optional<FocusMove> FocusMoveOf(int key, int state) {
  if (state & kWithControl) return {};
  switch (key) {
    case kKeyTab: return state & kWithShift ? FocusMove::kPrevious : FocusMove::kNext;
    case kKeyLeft: return FocusMove::kLeft;
    case kKeyRight: return FocusMove::kRight;
    case kKeyUp: return FocusMove::kUp;
    case kKeyDown: return FocusMove::kDown;
    case kKeyHome: return FocusMove::kFirst;
    case kKeyEnd: return FocusMove::kLast;
    case kKeyPageUp: return FocusMove::kRowStart;
    case kKeyPageDown: return FocusMove::kRowEnd;
    default: return {};
  }
}

std::vector<int> PanelOrder(const HitAreas& areas) {
  std::vector<int> order;
  for (int i = 0; i < kButtonCount; ++i) {
    if (areas[static_cast<std::size_t>(i)].pictureVisible) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    const Box& first = FrameOf(areas, a);
    const Box& second = FrameOf(areas, b);
    return std::tie(first.top, first.left) < std::tie(second.top, second.left);
  });
  return order;
}

int MovedFocus(const HitAreas& areas, int focus, FocusMove move) {
  const std::vector<int> order = PanelOrder(areas);
  if (order.empty()) return -1;
  const std::size_t place = PlaceOf(order, focus);
  const std::size_t last = order.size() - 1;
  if (place > last) {
    const bool backwards = move == FocusMove::kPrevious || move == FocusMove::kLeft ||
                           move == FocusMove::kUp || move == FocusMove::kLast;
    return backwards ? order[last] : order[0];
  }
  const auto top = [&](std::size_t at) { return FrameOf(areas, order[at]).top; };
  const auto rowStart = [&](std::size_t at) {
    while (at > 0 && top(at - 1) == top(at)) --at;
    return at;
  };
  const auto rowEnd = [&](std::size_t at) {
    while (at < last && top(at + 1) == top(at)) ++at;
    return at;
  };
  /// The button in the column of the focus, in the row that contains `at`.
  const auto inColumn = [&](std::size_t at) {
    for (std::size_t i = rowStart(at); i <= rowEnd(at); ++i) {
      if (FrameOf(areas, order[i]).left == FrameOf(areas, focus).left) return order[i];
    }
    return focus;
  };
  const std::size_t start = rowStart(place);
  const std::size_t end = rowEnd(place);
  switch (move) {
    case FocusMove::kNext: return order[place == last ? 0 : place + 1];
    case FocusMove::kPrevious: return order[place == 0 ? last : place - 1];
    case FocusMove::kLeft: return order[place == 0 ? 0 : place - 1];
    case FocusMove::kRight: return order[std::min(place + 1, last)];
    case FocusMove::kUp: return start == 0 ? focus : inColumn(start - 1);
    case FocusMove::kDown: return end == last ? focus : inColumn(end + 1);
    case FocusMove::kFirst: return order[0];
    case FocusMove::kLast: return order[last];
    case FocusMove::kRowStart:
      return order[place > start || start == 0 ? start : rowStart(start - 1)];
    case FocusMove::kRowEnd: return order[place < end || end == last ? end : rowEnd(end + 1)];
  }
  return focus;
}

int KeptFocus(const std::vector<int>& before, const HitAreas& areas, int focus) {
  const auto visible = [&](int button) {
    return areas[static_cast<std::size_t>(button)].pictureVisible;
  };
  if (focus < 0 || visible(focus)) return focus;
  const auto place = before.begin() + static_cast<std::ptrdiff_t>(PlaceOf(before, focus));
  if (const auto next = std::find_if(place, before.end(), visible); next != before.end()) {
    return *next;
  }
  const auto previous = std::find_if(std::make_reverse_iterator(place), before.rend(), visible);
  if (previous != before.rend()) return *previous;
  const std::vector<int> now = PanelOrder(areas);
  return now.empty() ? -1 : now.front();
}

int RingThickness(int dpi) { return std::max(2, static_cast<int>(std::lround(2.0 * dpi / 96))); }

Picture RingAround(const PixelRect& frame, int thickness, const RingGround& ground,
                   std::span<const Color> colors) {
  const Size size{frame.width() + 2 * thickness, frame.height() + 2 * thickness};
  const auto groundAt = [&](int x, int y) {
    return GroundAt(ground, frame.left - thickness + x, frame.top - thickness + y);
  };
  // A gradient repeats few colours.
  std::vector<Color> grounds;
  WalkRing(size, thickness, [&](int x, int y) {
    const Color color = groundAt(x, y);
    if (grounds.empty() || grounds.back() != color) grounds.push_back(color);
  });
  std::sort(grounds.begin(), grounds.end());
  grounds.erase(std::unique(grounds.begin(), grounds.end()), grounds.end());

  Picture ring(size.width, size.height);
  const auto distinct = std::find_if(colors.begin(), colors.end(), [&](Color color) {
    return ContrastOf(color, grounds) >= kDistinct;
  });
  WalkRing(size, thickness, [&](int x, int y) {
    const Color color = distinct != colors.end()                          ? *distinct
                        : ContrastOf(kWhite, groundAt(x, y)) >= kDistinct ? kWhite
                                                                          : kBlack;
    ring.At(x, y) = Opaque(color);
  });
  return ring;
}

}  // namespace marl
