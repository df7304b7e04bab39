#pragma once

#include <cstddef>

#include "platform/Text.h"

namespace marl {

/// The longest path of an INI file, in characters, with the folder that the platform puts in front
/// of a name. The platform's functions for these files are not among those that take longer ones,
/// and under Wine they may write to a file of another name, or past the end of their own buffer.
constexpr std::size_t kLongestProfilePath = 259;

/// True for a name without a folder: the file is in the Windows folder.
constexpr bool IsBareProfile(TextView file) {
  return file.find_first_of(u"\\/:") == TextView::npos;
}

/// INI files, which are 8-bit in the system's code page. Section and key names ignore the case of
/// the letters A to Z; for other letters it depends on the platform. A file name without a folder
/// means the Windows folder. Texts end at their first NUL. A path that is too long names no file.
class Profile {
 public:
  virtual ~Profile() = default;

  /// Value of a key without the blanks around it and one pair of quotation marks
  /// (GetPrivateProfileStringA with a buffer of `bufferSize` bytes). A longer value is truncated;
  /// the last byte is for the terminator. If section, key or file is missing: the default, without
  /// trailing blanks.
  virtual Text GetString(TextView section, TextView key, TextView defaultText,
                         std::size_t bufferSize, TextView file) const = 0;

  /// Writes a value (WritePrivateProfileStringA), creating file, section and key if necessary.
  /// False if the file cannot be written.
  virtual bool SetString(TextView section, TextView key, TextView value, TextView file) = 0;
};

}  // namespace marl
