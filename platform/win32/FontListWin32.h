#pragma once

#include "platform/FontList.h"

namespace marl::win32 {

/// The installed fonts.
class FontListWin32 : public FontList {
 public:
  void EnumFamilies(const Form& form, const std::function<bool(TextView faceName)>& visit) override;
};

}  // namespace marl::win32
