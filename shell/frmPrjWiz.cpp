#include "shell/frmPrjWiz.h"

#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

frmPrjWiz::frmPrjWiz(Desktop& desktop, const Locale& locales, const StringTable& strings)
    : Form(desktop, "frmPrjWiz"), locales_(locales), strings_(strings) {
  Tag = u"5000";
  Design = {5160, 1470};
  constexpr TextView kTags[] = {u"5001", u"5002"};
  for (int i = 0; i < 2; ++i) {
    auto& option = optWizardMode[static_cast<std::size_t>(i)];
    option = std::make_unique<OptionButton>(*this, "optWizardMode", i);
    option->SetBounds({180, 165 + i * 345, 4800, 285});
    option->Tag = kTags[i];
  }
  optWizardMode[0]->SetValue(true);
  cmdOK = std::make_unique<CommandButton>(*this, "cmdOK");
  cmdOK->SetBounds({2700, 1005, 1125, 345});
  cmdOK->Tag = u"20000";
  cmdOK->Default = true;
  cmdOK->Click = [this] { Close(false); };
  cmdCancel = std::make_unique<CommandButton>(*this, "cmdCancel");
  cmdCancel->SetBounds({3915, 1005, 1125, 345});
  cmdCancel->Tag = u"20001";
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
