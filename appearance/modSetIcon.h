#pragma once

#include "platform/Icons.h"
#include "platform/Process.h"
#include "resources/ids.h"

namespace marl {

/// Number of the program's icon in the icon library, for every form and for the tray.
constexpr int kMarlIcon = MARL_ICON;

/// Icons for title bars and the notification area, out of the icon library `q17icl.oru` in the
/// program's folder. Each use opens the library and closes it straight away; where it is missing,
/// forms keep the icon that they have.
class modSetIcon {
 public:
  modSetIcon(Icons& icons, const Process& process) : icons_(icons), process_(process) {}

  /// Gives the window the icon of this number in both sizes, each by itself: one may be missing.
  /// With `SetOwner` the window at the top of the chain of owners gets them first; for a window
  /// without an owner that is the window itself, which is then told twice.
  void SetFormIcon(WindowHandle window, int id, bool SetOwner) const;
  /// The icon of this number in the platform's large or small size; 0 on failure. The caller gives
  /// it back with `ReleaseIcon`.
  IconHandle LoadIconHandle(int id, bool Large) const;
  void ReleaseIcon(IconHandle icon) const;

 private:
  LibraryHandle Open() const;

  Icons& icons_;
  const Process& process_;
};

}  // namespace marl
