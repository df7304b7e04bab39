#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Screen contents.

namespace marl::desktop {

/// A rectangle of the screen's pixels, row by row.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<COLORREF> colors;

  bool operator==(const Pixels&) const = default;
  COLORREF At(int x, int y) const {
    return colors[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
};
/// Reads an area of the screen.
Pixels Capture(const RECT& area);
/// Saves a screenshot of the screen or of a window as NAME.png in the folder given by the
/// environment variable MARL_SHOTS; does nothing without it.
void Screenshot(const std::string& name, HWND window = nullptr);

}  // namespace marl::desktop
