#pragma once

#include <array>
#include <memory>

#include "platform/Locale.h"
#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "support/StringTable.h"

namespace marl {

/// Asks whether the project wizard should import or export. The caller reads `Cancelled` and the
/// options, and unloads the form.
class frmPrjWiz : public Form {
 public:
  frmPrjWiz(Desktop& desktop, const Locale& locales, const StringTable& strings);

  bool Cancelled = true;

  /// 0 imports files in to a new project, 1 exports files from an existing one.
  std::array<std::unique_ptr<OptionButton>, 2> optWizardMode;
  std::unique_ptr<CommandButton> cmdOK;
  std::unique_ptr<CommandButton> cmdCancel;

 protected:
  void OnLoad() override;

 private:
  void Close(bool cancelled);

  const Locale& locales_;
  const StringTable& strings_;
};

}  // namespace marl
