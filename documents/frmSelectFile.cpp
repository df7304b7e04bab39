#include "documents/frmSelectFile.h"

#include <utility>

#include "support/clsCommon.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

frmSelectFile::frmSelectFile(Ports ports)
    : Form(ports.desktop, "frmSelectFile"), ports_(std::move(ports)) {
  Tag = StringTag(IDS_SELECT_TITLE);
  Design = {6240, 2055};
  KeepsPlace = true;
  lblLanguage.SetBounds({120, 120, 6000, 225});
  lblLanguage.Tag = StringTag(IDS_SELECT_LANGUAGE);
  cmbLanguage.SetBounds({120, 345, 6000, 315});
  lblFile.SetBounds({120, 780, 6000, 225});
  lblFile.Tag = StringTag(IDS_SELECT_FILE);
  cmbFile.SetBounds({120, 1005, 6000, 315});
  cmdOK.SetBounds({3780, 1590, 1125, 345});
  cmdOK.Tag = StringTag(IDS_OK);
  cmdOK.Default = true;
  cmdCancel.SetBounds({4995, 1590, 1125, 345});
  cmdCancel.Tag = StringTag(IDS_CANCEL);
  cmdCancel.Cancel = true;

  cmdOK.Click = [this] { Leave(true); };
  cmdCancel.Click = [this] { Leave(false); };
}

void frmSelectFile::OnLoad() {
  Accepted = false;
  ports_.setIcon(hWnd());
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  clsCommon::CentreForm(*this);
}

void frmSelectFile::Leave(bool accepted) {
  Accepted = accepted;
  Hide();
}

}  // namespace marl
