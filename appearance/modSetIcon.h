#pragma once

#include "platform/Icons.h"
#include "platform/Process.h"
#include "resources/ids.h"

namespace marl {

/// Number of the program's icon in the icon library, for every form and for the tray.
constexpr int kMarlIcon = MARL_ICON;

/// Icons for title bars and the notification area, from the icon library `q17icl.oru` in the
/// program's folder. Each use opens and closes the library; if it is missing, forms keep their
/// icon.
class modSetIcon {
 public:
  modSetIcon(Icons& icons, const Process& process) : icons_(icons), process_(process) {}

  /// Sets the window's icon in both sizes, independently: one may be missing. With `SetOwner` the
  /// topmost owner gets them first; for a window without an owner that is the window itself, which
  /// then gets them twice.
  void SetFormIcon(WindowHandle window, int id, bool SetOwner) const;
  /// The icon of this number in the platform's large or small size; 0 on failure. The caller
  /// releases it with `ReleaseIcon`.
  IconHandle LoadIconHandle(int id, bool Large) const;
  void ReleaseIcon(IconHandle icon) const;

 private:
  LibraryHandle Open() const;

  Icons& icons_;
  const Process& process_;
};

}  // namespace marl
