#pragma once

#include <cstddef>

#include "platform/Text.h"

namespace marl {

/// INI files, which are 8-bit in the system's code page. Section and key names ignore the case of
/// the letters A to Z; of others the platform says. A file
/// name without folder is looked for in the platform's own folder. Texts end at their first NUL.
class Profile {
 public:
  virtual ~Profile() = default;

  /// Value of a key without the blanks around it and one pair of quotation marks
  /// (GetPrivateProfileStringA with a buffer of `bufferSize` bytes). What does not fit is cut off;
  /// the last byte is a terminator's. When section, key or file is missing, the default without
  /// the blanks at its end.
  virtual Text GetString(TextView section, TextView key, TextView defaultText,
                         std::size_t bufferSize, TextView file) const = 0;

  /// Writes a value (WritePrivateProfileStringA), making file, section and key when they are
  /// missing. False when the file cannot be written.
  virtual bool SetString(TextView section, TextView key, TextView value, TextView file) = 0;
};

}  // namespace marl
