#include "shell/frmRunningApps.h"

#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

frmRunningApps::frmRunningApps(Desktop& desktop, const Locale& locales, const StringTable& strings)
    : Form(desktop, "frmRunningApps"), locales_(locales), strings_(strings) {
  Tag = StringTag(IDS_RUNNING_TITLE);
  Design = {5160, 3390};
  lblWarning.SetBounds({120, 120, 4920, 630});
  lblWarning.Tag = StringTag(IDS_RUNNING_WARNING);
  lstRunningApplications.SetBounds({120, 810, 4920, 1995});
  cmdSwitchTo.SetBounds({1230, 2925, 1380, 345});
  cmdSwitchTo.Tag = StringTag(IDS_RUNNING_SWITCH_TO);
  cmdSwitchTo.Default = true;
  cmdSwitchTo.SetEnabled(false);
  cmdExit.SetBounds({2700, 2925, 1125, 345});
  cmdExit.Tag = StringTag(IDS_RUNNING_EXIT);
  cmdCancel.SetBounds({3915, 2925, 1125, 345});
  cmdCancel.Tag = StringTag(IDS_DIALOG_CANCEL);
  cmdCancel.Cancel = true;

  lstRunningApplications.Click = [this] {
    cmdSwitchTo.SetEnabled(lstRunningApplications.SelCount() > 0);
  };
  cmdSwitchTo.Click = [this] {
    const int row = lstRunningApplications.ListIndex();
    if (row >= 0) Close(lstRunningApplications.ItemData(row));
  };
  cmdExit.Click = [this] { Close(kExitAllTheSame); };
  cmdCancel.Click = [this] { Close(kStay); };
}

void frmRunningApps::OnLoad() {
  ApplyLocaleFont(*this, locales_);
  LoadFormStrings(*this, strings_);
}

void frmRunningApps::Close(std::int32_t result) {
  Result = result;
  Hide();
}

}  // namespace marl
