#pragma once

#include "platform/SettingsStore.h"

namespace marl::win32 {

/// The store of form-based programs: texts below
/// `HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>`.
class SettingsStoreWin32 : public SettingsStore {
 public:
  Text GetSetting(TextView application, TextView section, TextView key,
                  TextView default_) const override;
  Status SaveSetting(TextView application, TextView section, TextView key, TextView value) override;
};

}  // namespace marl::win32
