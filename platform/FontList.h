#pragma once

#include <functional>

#include "platform/Text.h"

namespace marl {

class Form;

/// The installed fonts.
class FontList {
 public:
  virtual ~FontList() = default;
  /// Calls `visit` for the fonts of the form's device context that have the characters of the ANSI
  /// set, until it returns false (EnumFontFamiliesExA with an empty record). It gets the whole
  /// field of the face name, converted from the system's code page: the name ends at the first NUL,
  /// if there is one. Names come in any order and may repeat.
  virtual void EnumFamilies(const Form& form,
                            const std::function<bool(TextView faceName)>& visit) = 0;
};

}  // namespace marl
