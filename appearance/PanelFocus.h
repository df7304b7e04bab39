#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "appearance/PanelLayout.h"
#include "platform/Picture.h"

namespace marl {

/// How a key moves the focus over the visible buttons of the panel.
enum class FocusMove {
  kNext,      ///< Tab: the next one; after the last one, the first
  kPrevious,  ///< Shift+Tab: the one before; before the first one, the last
  kLeft,      ///< the one before, also at a row's start
  kRight,     ///< the next one, also at a row's end
  kUp,        ///< the same column of the row above
  kDown,      ///< the same column of the row below
  kFirst,     ///< Home
  kLast,      ///< End
  kRowStart,  ///< Page Up: the row's first one; from there, that of the row above
  kRowEnd,    ///< Page Down: the row's last one; from there, that of the row below
};

/// The move of a key (a `KeyCode`), with the `KeyState` bits of the keys that are held with it.
/// None for keys that do not move the focus, and for all of them with Ctrl.
std::optional<FocusMove> FocusMoveOf(int key, int state);

using HitAreas = std::array<HitArea, kButtonCount>;

/// The visible buttons in their order on the panel: row by row, from left to right.
std::vector<int> PanelOrder(const HitAreas& areas);

/// The button that has the focus after a move; `focus` is the one before, or -1 for none. Without a
/// focus the moves backwards and End begin at the last button, and all others at the first. A move
/// that leads nowhere, such as up in the first row, leaves the focus. -1 if no button is visible.
int MovedFocus(const HitAreas& areas, int focus, FocusMove move);

/// The button that has the focus after a new layout: the same one if it is visible, or else the
/// next one in the order `before` the layout that still is, or else the one before it. -1 for none.
int KeptFocus(const std::vector<int>& before, const HitAreas& areas, int focus);

/// Thickness of the ring around the button with the focus, in pixels: 2 at 96 dpi.
int RingThickness(int dpi);

/// What the ring is painted on.
struct RingGround {
  const Picture* gradient = nullptr;  ///< from the inner corner of the form; may be null
  Color plain = 0;                    ///< without a gradient; no system colour
};

/// The ring around a frame, in pixels of the client area: a picture of the frame and `thickness`
/// pixels on each side, transparent inside. It has the first of the colours that stands out from
/// everything under it (kDistinct), else white where that stands out and black elsewhere. No
/// system colours.
Picture RingAround(const PixelRect& frame, int thickness, const RingGround& ground,
                   std::span<const Color> colors);

}  // namespace marl
