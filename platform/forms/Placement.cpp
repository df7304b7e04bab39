#include "platform/forms/Placement.h"

#include <algorithm>

namespace marl {

namespace {

// Of an inch: the height of a title bar, and the width that is enough to drag it by.
constexpr double kTitleHeight = 0.25;
constexpr double kGripWidth = 0.75;

}  // namespace

Point CornerInside(const PixelRect& window, const PixelRect& work) {
  return {std::max(work.left, std::min(window.left, work.right - window.width())),
          std::max(work.top, std::min(window.top, work.bottom - window.height()))};
}

bool CanBeReached(const PixelRect& window, const PixelRect& work, int scale) {
  const int grip = std::min(static_cast<int>(kGripWidth * scale), window.width());
  const int across = std::min(window.right, work.right) - std::max(window.left, work.left);
  return across >= grip && window.top >= work.top &&
         window.top + static_cast<int>(kTitleHeight * scale) <= work.bottom;
}

}  // namespace marl
