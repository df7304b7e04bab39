#pragma once

#include "platform/Geometry.h"

namespace marl {

class Form;

/// Flags of the colour dialog, with the platform's numbers.
enum ColorDialogFlag : int {
  kColorInit = 1,      ///< starts from the given colour
  kColorFullOpen = 2,  ///< shows the whole dialog at once
};

/// The platform's colour dialog, above a form and modal to it.
class ColorDialog {
 public:
  virtual ~ColorDialog() = default;
  /// Asks for a colour (ChooseColor). `color` is the initial colour (with `kColorInit`) and
  /// afterwards the choice, which is never a system colour reference. False, and `color` unchanged,
  /// if the user cancelled or the dialog failed.
  virtual bool ShowColor(const Form* owner, int flags, Color& color) = 0;
};

}  // namespace marl
