#pragma once

#include "platform/Geometry.h"

namespace marl {

class Form;

/// Flags of the colour dialog, with the platform's numbers.
enum ColorDialogFlag : int {
  kColorInit = 1,      ///< starts from the given colour
  kColorFullOpen = 2,  ///< shows the whole dialog at once
};

/// The platform's dialog for the choice of a colour, above a form and modal to it.
class ColorDialog {
 public:
  virtual ~ColorDialog() = default;
  /// Asks for a colour (ChooseColor). `color` is what the dialog starts from, with `kColorInit`,
  /// and the choice afterwards, never a system colour reference then. False, and `color`
  /// untouched, when the user cancelled or the dialog could not do its work.
  virtual bool ShowColor(const Form* owner, int flags, Color& color) = 0;
};

}  // namespace marl
