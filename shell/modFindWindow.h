#pragma once

#include "platform/Desktop.h"

namespace marl {

/// When a window's title is the wanted one; without regard to letter case. Any other value matches
/// no title.
enum TitleMatchMode : int {
  kTitleBegins = 1,
  kTitleEnds = 2,
  kTitleContains = 3,
  kTitleEquals = 4,
};

/// Finds the first visible top-level window, of any program, whose title matches `text` by `mode`
/// (a `TitleMatchMode`). Of a title the first 1023 characters count. Hidden windows, such as those
/// of a program that sits in the tray, are never found. Without a match `window` is 0 and `title`
/// empty, and the result false.
bool FindWindowByTitle(Desktop& desktop, TextView text, int mode, WindowHandle& window,
                       Text& title);

}  // namespace marl
