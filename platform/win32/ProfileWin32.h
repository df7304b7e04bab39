#pragma once

#include "platform/Profile.h"

namespace marl::win32 {

/// Real INI files, through the 8-bit entry points.
class ProfileWin32 : public Profile {
 public:
  Text GetString(TextView section, TextView key, TextView defaultText, std::size_t bufferSize,
                 TextView file) const override;
  bool SetString(TextView section, TextView key, TextView value, TextView file) override;
};

}  // namespace marl::win32
