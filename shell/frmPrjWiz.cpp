#include "shell/frmPrjWiz.h"

#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

frmPrjWiz::frmPrjWiz(Desktop& desktop, const Locale& locales, const StringTable& strings)
    : Form(desktop, "frmPrjWiz"), locales_(locales), strings_(strings) {
  Tag = StringTag(IDS_WIZARD_TITLE);
  Design = {5160, 1470};
  constexpr int kStrings[] = {IDS_WIZARD_IMPORT, IDS_WIZARD_EXPORT};
  for (int i = 0; i < 2; ++i) {
    auto& option = optWizardMode[static_cast<std::size_t>(i)];
    option = std::make_unique<OptionButton>(*this, "optWizardMode", i);
    option->SetBounds({180, 165 + i * 345, 4800, 285});
    option->Tag = StringTag(kStrings[i]);
  }
  optWizardMode[0]->SetValue(true);
  cmdOK = std::make_unique<CommandButton>(*this, "cmdOK");
  cmdOK->SetBounds({2700, 1005, 1125, 345});
  cmdOK->Tag = StringTag(IDS_DIALOG_OK);
  cmdOK->Default = true;
  cmdOK->Click = [this] { Close(false); };
  cmdCancel = std::make_unique<CommandButton>(*this, "cmdCancel");
  cmdCancel->SetBounds({3915, 1005, 1125, 345});
  cmdCancel->Tag = StringTag(IDS_DIALOG_CANCEL);
  cmdCancel->Cancel = true;
  cmdCancel->Click = [this] { Close(true); };
}

void frmPrjWiz::OnLoad() {
  ApplyLocaleFont(*this, locales_);
  LoadFormStrings(*this, strings_);
  Cancelled = true;
  BringToFront();
}

void frmPrjWiz::Close(bool cancelled) {
  Cancelled = cancelled;
  Hide();
}

}  // namespace marl
