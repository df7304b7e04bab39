#pragma once

#include <array>
#include <cstdint>

#include "appearance/SkinSettings.h"
#include "platform/forms/Geometry.h"

namespace marl {

/// Twips from one column, or row, of the panel to the next.
inline constexpr std::int32_t kColumnPitch = 1740;
inline constexpr std::int32_t kRowPitch = 1260;

/// Where a button's three controls stand, in twips from the form's inner corner.
struct PanelCell {
  Point frame;
  Point label;
  Point picture;

  bool operator==(const PanelCell&) const = default;
};

/// The cell number `k`, from 0, of a grid that is filled row by row. Throws "Division by zero" for
/// no columns.
PanelCell CellAt(std::int32_t k, std::int32_t columns);

/// A button's label as it stands before the panel is arranged.
struct LabelPlace {
  bool visible = false;
  std::int32_t top = 0;
};

/// What one position of the display order does. A hidden button takes no cell and keeps its place.
struct PanelStep {
  std::int32_t button = 0;
  bool shown = false;
  PanelCell cell;  ///< of meaning when the button is shown

  bool operator==(const PanelStep&) const = default;
};

/// The panel arranged: the steps to take in this order, and the lowest label before and after.
struct PanelLayout {
  std::array<PanelStep, kButtonCount> steps;
  std::int32_t oldBottom = 0;
  std::int32_t newBottom = 0;
};

/// Places the buttons of a display order. A button that stands at two positions is moved twice, and
/// its second visit finds it where the first one left it. Throws "Subscript out of range" for a
/// button that does not exist and "Division by zero" for no columns.
PanelLayout ArrangePanel(const DisplayOrder& order, std::int32_t columns,
                         std::array<LabelPlace, kButtonCount> labels);

/// How much wider and higher the form becomes, in twips, when the panel goes from `oldColumns` to
/// `newColumns` with this layout. Throws "Overflow" beyond 32 bits.
Size PanelGrowth(const PanelLayout& layout, std::int32_t oldColumns, std::int32_t newColumns);

/// The form's place after it has grown: left and top stay. Throws "Overflow" beyond 32 bits.
Box Grown(const Box& bounds, const Size& growth);

/// A button as the mouse meets it.
struct HitArea {
  Box frame;
  bool pictureVisible = false;
};

/// True when a mouse position, in twips from the inner corner, counts as over the form: up to its
/// outer size, both ends included, and only while it is the foreground window.
bool OverForm(float x, float y, const Size& outer, bool inForeground);

/// The first button, in button order, whose frame holds the position (edges included) and whose
/// picture is visible; -1 if there is none.
int ButtonAt(const std::array<HitArea, kButtonCount>& areas, float x, float y);

/// Number of a button's highlighted picture in its icon set, from 1: they stand behind the dull
/// ones.
constexpr int BrightImage(int button) { return kButtonCount + button + 1; }
/// Number of its normal picture: the dull one where two-state icons are on.
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

/// The two nested squares of a bevel around a frame; each place is rounded to whole twips. A thin
/// bevel shows the first four lines, a wide one all.
std::array<BevelLine, 8> BevelLines(const Box& frame, const PixelTwips& pixel);

}  // namespace marl
