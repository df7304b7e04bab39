#pragma once

#include "platform/Locale.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// Lists programs that are still running and offers to switch to one of them or to exit anyway. The
/// caller fills the list, gives each entry a value, shows the form, reads `Result` and unloads the
/// form.
class frmRunningApps : public Form {
 public:
  frmRunningApps(Desktop& desktop, const Locale& locales, const StringTable& strings);

  enum Choice : int { kExitAllTheSame = 0, kStay = 1 };
  /// A `Choice`, or the value of the entry to switch to. The close box means kStay.
  std::int32_t Result = kStay;

  Label lblWarning{*this, "lblWarning"};
  ListBox lstRunningApplications{*this, "lstRunningApplications"};
  CommandButton cmdSwitchTo{*this, "cmdSwitchTo"};
  CommandButton cmdExit{*this, "cmdExit"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;

 private:
  void Close(std::int32_t result);

  const Locale& locales_;
  const StringTable& strings_;
};

}  // namespace marl
