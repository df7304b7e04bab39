#pragma once

#include <functional>

#include "platform/Text.h"

namespace marl {

class Form;

/// The fonts of the machine.
class FontList {
 public:
  virtual ~FontList() = default;
  /// Calls `visit` for the fonts of the form's device context that have the characters of the
  /// ANSI set, until it returns false (EnumFontFamiliesExA with an empty record). It is given the
  /// face name's whole field, converted from the system's code page: the name ends at the first
  /// NUL, if there is one. Names may come more than once, in any order.
  virtual void EnumFamilies(const Form& form,
                            const std::function<bool(TextView faceName)>& visit) = 0;
};

}  // namespace marl
