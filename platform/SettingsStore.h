#pragma once

#include "platform/Status.h"
#include "platform/Text.h"

namespace marl {

/// The per-user store of texts that the form-based programs of the suite share, addressed by
/// application, section and key. Names are found without regard to case.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  /// The text of a key; `default_` when there is none, or something other than a text.
  /// Reading writes nothing.
  virtual Text GetSetting(TextView application, TextView section, TextView key,
                          TextView default_) const = 0;
  /// Stores a text, persistent at once. Empty names are refused with kInvalidParameter.
  virtual Status SaveSetting(TextView application, TextView section, TextView key,
                             TextView value) = 0;
};

}  // namespace marl
