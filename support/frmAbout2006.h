#pragma once

#include <array>
#include <functional>
#include <memory>

#include "platform/Locale.h"
#include "platform/Pictures.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// Name, version and copyright of the program, with links to three web sites. A link that cannot be
/// opened does nothing visible.
class frmAbout2006 : public Form {
 public:
  struct Ports {
    Desktop& desktop;
    Pictures& pictures;
    const Locale& locales;
    const StringTable& strings;
    /// Gives a window the program's icon.
    std::function<void(WindowHandle window)> setIcon;
    /// Opens a document or an address: verb, file, parameters, directory, show command.
    std::function<void(TextView, TextView, TextView, TextView, int)> shellOpen;
  };
  explicit frmAbout2006(Ports ports);

  /// Indexes of `lblLabel`.
  enum LabelIndex {
    kSuite = 0,
    kVersionLabel = 1,
    kCopyright = 2,
    kWarning = 3,
    kSite = 5,
    kSupport = 6,
  };

  Image imgLogo{*this, "imgLogo"};
  Line linBottom{*this, "linBottom"};
  /// The labels; there is no element 4.
  std::array<std::unique_ptr<Label>, 7> lblLabel;
  /// Off the form: they take the focus for the access keys of the two link labels.
  std::array<std::unique_ptr<CommandButton>, 2> cmdShell;
  std::unique_ptr<CommandButton> cmdOK;

 protected:
  void OnLoad() override;
  void OnLookChanged() override;

 private:
  void AddLabel(int index, const Box& bounds, TextView tag);
  void ShowLogo();
  void ColorLinks();
  void FollowLink(int label);
  void Open(TextView operation, TextView address);

  Ports ports_;
};

}  // namespace marl
