#include "appearance/CaptionContrast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "appearance/GradientRect.h"
#include "appearance/PanelLayout.h"
#include "platform/Contrast.h"

namespace marl {

namespace {

/// Of a pixel at 96 dpi. The gradient is the same at other resolutions, in more steps.
constexpr double kPixel = 15;
/// Size of large bold text, in ten-thousandths of a point.
constexpr std::int64_t kLargeBold = 140000;

/// The line of the sweep through a point, as a fraction of lines.
double LineAt(const GradientSweep& sweep, double x, double y) {
  const double across = sweep.to.x - sweep.from.x;
  const double down = sweep.to.y - sweep.from.y;
  if (sweep.stepX != 0) {
    return (x - sweep.from.x - across * (y - sweep.from.y) / down) / sweep.stepX;
  }
  return (y - sweep.from.y - down * (x - sweep.from.x) / across) / sweep.stepY;
}

/// The colours under the labels of the first cells.
std::vector<Color> Grounds(const GradientSweep& sweep, int columns, int shown) {
  std::vector<bool> under(sweep.ramp.size());
  const double last = static_cast<double>(sweep.ramp.size()) - 1;
  for (int k = 0; k < shown; ++k) {
    const Point at = CellAt(k, columns).label;
    std::array<double, 4> corners;  // the lines are straight: a label's extremes are there
    for (std::size_t i = 0; i < corners.size(); ++i) {
      corners[i] = LineAt(sweep, (at.x + (i % 2 ? kLabelSize.width : 0)) / kPixel,
                          (at.y + (i / 2 ? kLabelSize.height : 0)) / kPixel);
    }
    const auto [low, high] = std::minmax_element(corners.begin(), corners.end());
    const auto from = static_cast<std::size_t>(std::clamp(std::floor(*low), 0., last));
    const auto to = static_cast<std::size_t>(std::clamp(std::ceil(*high), 0., last));
    for (std::size_t line = from; line <= to; ++line) under[line] = true;
  }
  std::vector<Color> grounds;
  for (std::size_t line = 0; line < under.size(); ++line) {
    const Color color = sweep.ramp[line];
    if (under[line] && (grounds.empty() || grounds.back() != color)) grounds.push_back(color);
  }
  return grounds;
}

}  // namespace

CaptionContrast ContrastOfCaptions(Desktop& desktop, const SkinSettings& skin, int shown) {
  if (shown <= 0) return {};
  const int columns = std::max(skin.IconsPerRow, 1);
  const int rows = (shown + columns - 1) / columns;
  clsGradient gradient(desktop);
  gradient.SetAngle(static_cast<float>(skin.Angle));
  gradient.SetColor1(skin.Color1);
  gradient.SetColor2(skin.Color2);
  const Size inner = PanelSize(columns, rows);
  const GradientSweep sweep = gradient.Sweep(static_cast<int>(inner.width / kPixel),
                                             static_cast<int>(inner.height / kPixel));
  const std::vector<Color> grounds = Grounds(sweep, columns, shown);
  const auto contrast = [&](Color text) {
    return ContrastOf(text < 0 ? desktop.SystemColorValue(text & 0x7FFFFFFF) : text, grounds);
  };
  return {contrast(skin.Text1), contrast(skin.Text2)};
}

double NeededContrast(const Font& font) {
  return font.Bold && font.Size >= kLargeBold ? kDistinct : kReadable;
}

}  // namespace marl
