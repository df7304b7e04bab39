#pragma once

#include <array>
#include <functional>

#include "platform/forms/CommonControls.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "settings/RowEditor.h"
#include "settings/SettingsDialogPorts.h"

namespace marl {

/// The options of switchboard and suite. The caller loads the form, sets the nine boxes, shows it,
/// and applies the boxes if it was accepted. The form itself reads the expressions that hide
/// segments when it loads, and stores them at `cmdOK`.
class frmOptions : public Form {
 public:
  using Ports = SettingsDialogPorts;
  /// The dialogs behind the buttons. Each is shown modally above `owner` and takes effect at once,
  /// even if the options are cancelled.
  struct Dialogs {
    std::function<void(Form& owner)> displaySettings;
    std::function<void(Form& owner)> lanSettings;
    std::function<void(Form& owner)> segmentationRules;
  };
  /// The form is centred over `mainForm`.
  frmOptions(const Ports& ports, Dialogs dialogs, const Form& mainForm);

  /// True if the form was closed with OK.
  bool Accepted = false;

  TabStrip tabOptions{*this, "tabOptions"};
  /// One panel per tab.
  std::array<PictureBox, 4> picTab{{PictureBox{*this, "picTab", 0}, PictureBox{*this, "picTab", 1},
                                    PictureBox{*this, "picTab", 2},
                                    PictureBox{*this, "picTab", 3}}};
  std::array<CheckBox, 9> chkOptions{
      {CheckBox{*this, "chkOptions", 0, &picTab[0]}, CheckBox{*this, "chkOptions", 1, &picTab[0]},
       CheckBox{*this, "chkOptions", 2, &picTab[1]}, CheckBox{*this, "chkOptions", 3, &picTab[1]},
       CheckBox{*this, "chkOptions", 4, &picTab[0]}, CheckBox{*this, "chkOptions", 5, &picTab[1]},
       CheckBox{*this, "chkOptions", 6, &picTab[1]}, CheckBox{*this, "chkOptions", 7, &picTab[1]},
       CheckBox{*this, "chkOptions", 8, &picTab[1]}}};
  CommandButton cmdDisplay{*this, "cmdDisplay", -1, &picTab[0]};
  CommandButton cmdSegmentation{*this, "cmdSegmentation", -1, &picTab[1]};
  CommandButton cmdLanSettings{*this, "cmdLanSettings", -1, &picTab[2]};
  Label lblRegEx{*this, "lblRegEx", -1, &picTab[3]};
  ListBox lstRegEx{*this, "lstRegEx", -1, &picTab[3]};
  TextBox txtRegEx{*this, "txtRegEx", -1, &picTab[3]};
  CommandButton cmdAddRegEx{*this, "cmdAddRegEx", -1, &picTab[3]};
  CommandButton cmdRemoveRegEx{*this, "cmdRemoveRegEx", -1, &picTab[3]};
  CommandButton cmdClearRegEx{*this, "cmdClearRegEx", -1, &picTab[3]};
  CommandButton cmdOK{*this, "cmdOK"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;
  bool OnKeyDown(int key, int shift) override;

 private:
  void SetCaptions();
  void ShowTab();
  void LoadExpressions();
  void StoreExpressions();
  void Leave(bool accepted);

  Ports ports_;
  Dialogs dialogs_;
  const Form& mainForm_;
  // Not translated: a row that is not edited is stored like this, and other programs may read it.
  RowEditor expressions_{lstRegEx, txtRegEx, cmdAddRegEx, cmdRemoveRegEx, u"[New Expression]"};
};

}  // namespace marl
