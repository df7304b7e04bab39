#include "appearance/PanelLayout.h"

#include <algorithm>
#include <limits>

#include "platform/RuntimeError.h"
#include "support/Numbers.h"

namespace marl {
namespace {

std::int32_t Checked(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    throw RuntimeError::Overflow();
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace

PanelCell CellAt(std::int32_t k, std::int32_t columns) {
  if (columns == 0) throw RuntimeError::DivisionByZero();
  const std::int32_t x = k % columns * kColumnPitch;
  const std::int32_t y = k / columns * kRowPitch;
  return {{x + 60, y + 60}, {x + 60, y + 840}, {x + 540, y + 120}};
}

PanelLayout ArrangePanel(const DisplayOrder& order, std::int32_t columns,
                         std::array<LabelPlace, kButtonCount> labels) {
  PanelLayout layout;
  std::int32_t cell = -1;
  for (std::size_t p = 0; p < order.size(); ++p) {
    const std::int32_t button = order[p].button;
    if (button < 0 || button >= kButtonCount) throw RuntimeError::SubscriptOutOfRange();
    LabelPlace& label = labels[static_cast<std::size_t>(button)];
    if (label.visible) layout.oldBottom = std::max(layout.oldBottom, label.top);

    PanelStep& step = layout.steps[p];
    step.button = button;
    step.shown = order[p].shown != 0;
    label.visible = step.shown;
    if (!step.shown) continue;
    step.cell = CellAt(++cell, columns);
    label.top = step.cell.label.y;
    layout.newBottom = std::max(layout.newBottom, label.top);
  }
  return layout;
}

Size PanelGrowth(const PanelLayout& layout, std::int32_t oldColumns, std::int32_t newColumns) {
  return {Checked((std::int64_t{newColumns} - oldColumns) * kColumnPitch),
          Checked(std::int64_t{layout.newBottom} - layout.oldBottom)};
}

Box Grown(const Box& bounds, const Size& growth) {
  return {bounds.left, bounds.top, Checked(std::int64_t{bounds.width} + growth.width),
          Checked(std::int64_t{bounds.height} + growth.height)};
}

bool OverForm(float x, float y, const Size& outer, bool inForeground) {
  return x >= 0 && double{x} <= outer.width && y >= 0 && double{y} <= outer.height && inForeground;
}

int ButtonAt(const std::array<HitArea, kButtonCount>& areas, float x, float y) {
  const auto within = [](double position, std::int32_t start, std::int32_t length) {
    return position >= start && position <= static_cast<double>(start) + length;
  };
  for (int i = 0; i < kButtonCount; ++i) {
    const HitArea& area = areas[static_cast<std::size_t>(i)];
    if (area.pictureVisible && within(x, area.frame.left, area.frame.width) &&
        within(y, area.frame.top, area.frame.height)) {
      return i;
    }
  }
  return -1;
}

std::array<BevelLine, 8> BevelLines(const Box& frame, const PixelTwips& pixel) {
  std::int32_t left = frame.left;
  std::int32_t top = frame.top;
  std::int32_t right = CLng(1.0 * frame.left + frame.width - pixel.x);
  std::int32_t bottom = CLng(1.0 * frame.top + frame.height - pixel.y);
  std::array<BevelLine, 8> lines;
  for (std::size_t i = 0; i < lines.size(); i += 4) {
    lines[i] = {{left, bottom}, {left, top}, true};
    lines[i + 1] = {{left, top}, {right, top}, true};
    lines[i + 2] = {{right, top}, {right, bottom}, false};
    lines[i + 3] = {{right, bottom}, {left, bottom}, false};
    // The inner square: the top moves by a pixel's width and the right side by its height. The
    // bevel keeps this rule even where pixels are not square.
    left = CLng(left + pixel.x);
    top = CLng(top + pixel.x);
    right = CLng(right - pixel.y);
    bottom = CLng(bottom - pixel.y);
  }
  return lines;
}

}  // namespace marl
