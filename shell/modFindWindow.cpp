#include "shell/modFindWindow.h"

#include "platform/FoldCase.h"

namespace marl {

namespace {

constexpr int kTitleBuffer = 1024;

// Both texts are already case-folded.
bool Matches(const Text& title, const Text& wanted, int mode) {
  switch (mode) {
    case kTitleBegins: return title.starts_with(wanted);
    case kTitleEnds: return title.ends_with(wanted);
    case kTitleContains: return title.find(wanted) != Text::npos;
    case kTitleEquals: return title == wanted;
    default: return false;
  }
}

}  // namespace

bool FindWindowByTitle(Desktop& desktop, TextView text, int mode, WindowHandle& window,
                       Text& title) {
  const Text wanted = FoldCase(text);
  window = 0;
  title.clear();
  desktop.EnumerateWindows([&](WindowHandle candidate) {
    const Text own = desktop.TitleOf(candidate, kTitleBuffer);
    if (!desktop.IsVisible(candidate)) return true;
    if (!Matches(FoldCase(own), wanted, mode)) return true;
    window = candidate;
    title = own;
    return false;
  });
  return window != 0;
}

}  // namespace marl
