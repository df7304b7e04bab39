#pragma once

#include <functional>

#include "platform/Locale.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// Asks for a target language and a document of a project. The caller loads the form, fills both
/// lists (they are independent), shows it, and reads them if it was accepted.
class frmSelectFile : public Form {
 public:
  struct Ports {
    Desktop& desktop;
    const Locale& locale;
    const StringTable& strings;
    /// Gives a window the program's icon.
    std::function<void(WindowHandle window)> setIcon;
  };
  explicit frmSelectFile(Ports ports);

  /// True if the form was closed with OK.
  bool Accepted = false;

  Label lblLanguage{*this, "lblLanguage"};
  ComboBox cmbLanguage{*this, "cmbLanguage"};
  Label lblFile{*this, "lblFile"};
  ComboBox cmbFile{*this, "cmbFile"};
  CommandButton cmdOK{*this, "cmdOK"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;

 private:
  void Leave(bool accepted);

  Ports ports_;
};

}  // namespace marl
