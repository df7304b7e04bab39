#pragma once

#include <array>
#include <cstdint>

#include "appearance/SkinSettings.h"
#include "platform/Geometry.h"

namespace marl {

/// Twips from one column, or row, of the panel to the next.
inline constexpr std::int32_t kColumnPitch = 1740;
inline constexpr std::int32_t kRowPitch = 1260;

/// Sizes of a button's three controls, in twips; the picture has 48 pixels at 96 dpi.
inline constexpr Size kFrameSize{1695, 1215};
inline constexpr Size kLabelSize{1695, 435};
inline constexpr Size kPictureSize{720, 720};

/// Positions of a button's three controls, in twips from the form's inner corner.
struct PanelCell {
  Point frame;
  Point label;
  Point picture;

  bool operator==(const PanelCell&) const = default;
};

/// Cell `k`, from 0, of a grid that is filled row by row. Throws "Division by zero" for no columns.
PanelCell CellAt(std::int32_t k, std::int32_t columns);

/// Inner size of the form, in twips, that has room for a grid, the status line below it and the
/// margins.
constexpr Size PanelSize(std::int32_t columns, std::int32_t rows) {
  return {columns * kColumnPitch + 90, rows * kRowPitch + 390};
}

/// A button's label before the panel is laid out.
struct LabelPlace {
  bool visible = false;
  std::int32_t top = 0;
};

/// The result for one position of the display order. A hidden button gets no cell and stays where
/// it is.
struct PanelStep {
  std::int32_t button = 0;
  bool shown = false;
  PanelCell cell;  ///< valid if the button is shown

  bool operator==(const PanelStep&) const = default;
};

/// The layout: steps to take in this order, and the lowest label before and after.
struct PanelLayout {
  std::array<PanelStep, kButtonCount> steps;
  std::int32_t oldBottom = 0;
  std::int32_t newBottom = 0;
};

/// Places the buttons of a display order. A button at two positions is moved twice, the second time
/// from where the first one has put it. Throws "Subscript out of range" for a button that does not
/// exist and "Division by zero" for no columns.
PanelLayout ArrangePanel(const DisplayOrder& order, std::int32_t columns,
                         std::array<LabelPlace, kButtonCount> labels);

/// How much wider and higher the form becomes, in twips, when the panel goes from `oldColumns` to
/// `newColumns` with this layout. Throws "Overflow" beyond 32 bits.
Size PanelGrowth(const PanelLayout& layout, std::int32_t oldColumns, std::int32_t newColumns);

/// The form's bounds after it has grown: left and top stay. Throws "Overflow" beyond 32 bits.
Box Grown(const Box& bounds, const Size& growth);

/// What hit testing needs to know of a button.
struct HitArea {
  Box frame;
  bool pictureVisible = false;
};

/// True if a mouse position, in twips from the inner corner, counts as over the form: up to its
/// outer size, inclusive, and only while it is the foreground window.
bool OverForm(float x, float y, const Size& outer, bool inForeground);

/// The first button, in button order, whose frame contains the position (edges included) and whose
/// picture is visible; -1 if there is none.
int ButtonAt(const std::array<HitArea, kButtonCount>& areas, float x, float y);

/// Number of a button's highlighted picture in its icon set, from 1: they follow the dull ones.
constexpr int BrightImage(int button) { return kButtonCount + button + 1; }
/// Number of its normal picture: the dull one if two-state icons are on.
constexpr int DullImage(int button, bool twoState) {
  return twoState ? button + 1 : BrightImage(button);
}

/// One line of the bevel, in twips.
struct BevelLine {
  Point from;
  Point to;
  bool lit = false;  ///< colour `Border1`, else `Border2`

  bool operator==(const BevelLine&) const = default;
};

/// The two nested squares of a bevel around a frame, rounded to whole twips. A thin bevel shows the
/// first four lines, a wide one all.
std::array<BevelLine, 8> BevelLines(const Box& frame, const PixelTwips& pixel);

}  // namespace marl
