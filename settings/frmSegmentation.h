#pragma once

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "settings/RowEditor.h"
#include "settings/SettingsDialogPorts.h"

namespace marl {

/// Edits where text is split into segments: strings after which no segment ends although it looks
/// like it, and strings after which one always ends. Used if the suite's component for these rules
/// is not installed. SegmentationRules.h says how the lists are stored; nothing is written before
/// `cmdOK`.
class frmSegmentation : public Form {
 public:
  using Ports = SettingsDialogPorts;
  explicit frmSegmentation(const Ports& ports);

  Label lblDontSplit{*this, "lblDontSplit"};
  ListBox lstDontSplit{*this, "lstDontSplit"};
  TextBox txtDontSplit{*this, "txtDontSplit"};
  CommandButton cmdAddDontSplit{*this, "cmdAddDontSplit"};
  CommandButton cmdRemoveDontSplit{*this, "cmdRemoveDontSplit"};
  Label lblForceSplit{*this, "lblForceSplit"};
  ListBox lstForceSplit{*this, "lstForceSplit"};
  TextBox txtForceSplit{*this, "txtForceSplit"};
  CommandButton cmdAddForceSplit{*this, "cmdAddForceSplit"};
  CommandButton cmdRemoveForceSplit{*this, "cmdRemoveForceSplit"};
  CommandButton cmdOK{*this, "cmdOK"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;

 private:
  void Store();

  Ports ports_;
  RowEditor dontSplit_{lstDontSplit, txtDontSplit, cmdAddDontSplit, cmdRemoveDontSplit};
  RowEditor forceSplit_{lstForceSplit, txtForceSplit, cmdAddForceSplit, cmdRemoveForceSplit};
};

}  // namespace marl
