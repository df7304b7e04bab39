#pragma once

#include "platform/Status.h"
#include "platform/Text.h"

namespace marl {

/// The per-user store of texts that the form-based programs of the suite share, addressed by
/// application, section and key. Names ignore case; a name that is empty or contains a NUL is
/// invalid. Texts end at their first NUL.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  /// The text of a key; `default_` if there is none, or a value of another kind. Reading creates no
  /// keys.
  virtual Text GetSetting(TextView application, TextView section, TextView key,
                          TextView default_) const = 0;
  /// Stores a text, persistent at once. Invalid names are refused with kInvalidParameter.
  virtual Status SaveSetting(TextView application, TextView section, TextView key,
                             TextView value) = 0;

 protected:
  /// True if none of the names is empty or contains a NUL.
  static bool AreNames(TextView application, TextView section, TextView key) {
    for (const TextView name : {application, section, key}) {
      if (name.empty() || name.find(u'\0') != TextView::npos) return false;
    }
    return true;
  }
};

}  // namespace marl
