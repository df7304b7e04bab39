#pragma once

#include "platform/forms/Desktop.h"

namespace marl {

/// How a window's title is compared, ignoring case. Any other value matches no title.
enum TitleMatchMode : int {
  kTitleBegins = 1,
  kTitleEnds = 2,
  kTitleContains = 3,
  kTitleEquals = 4,
};

/// Finds the first visible top-level window, of any program, whose title matches `text` by `mode`
/// (a `TitleMatchMode`). Only the first 1023 characters of a title count. Hidden windows, such as
/// those of a program in the notification area, are never found. Without a match the result is
/// false, `window` is 0 and `title` empty.
bool FindWindowByTitle(Desktop& desktop, TextView text, int mode, WindowHandle& window,
                       Text& title);

}  // namespace marl
