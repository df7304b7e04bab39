#pragma once

#include "documents/clsXMLTag.h"
#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "settings/clsMRU.h"
#include "support/StringTable.h"

namespace marl {

/// Asks for the project tracking server. The caller loads the form, sets `Server`, shows it, and
/// reads `Server` unless it was cancelled.
class frmChangeServer : public Form {
 public:
  struct Ports {
    Desktop& desktop;
    const Locale& locale;
    Pictures& pictures;
    const StringTable& strings;
  };
  /// Bare names in `list` become tags when the form loads, even if the user cancels.
  frmChangeServer(const Ports& ports, clsMRU& list);

  /// False if the form was closed with OK.
  bool Cancelled = true;

  /// Fills the fields from a tag.
  void Server(TextView tag);
  /// The tag from the fields, with the name as typed: nothing is escaped.
  Text Server() const;

  Image Image1{*this, "Image1"};
  Label lblServer{*this, "lblServer"};
  ComboBox cmbServer{*this, "cmbServer"};
  CheckBox chkSSL{*this, "chkSSL"};
  CheckBox chkUseDefault{*this, "chkUseDefault"};
  Label lblPortNumber{*this, "lblPortNumber"};
  TextBox txtPortNumber{*this, "txtPortNumber"};
  CommandButton cmdOK{*this, "cmdOK"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;
  void OnLookChanged() override { ShowPicture(); }

 private:
  void FillList();
  void ShowPicture();
  void ServerChosen();
  void SelectAllText();
  void Leave(bool cancelled);

  Ports ports_;
  clsMRU& list_;
  clsXMLTag tag_;
};

}  // namespace marl
