#include "documents/frmSelectFile.h"

#include <utility>

#include "support/clsCommon.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

frmSelectFile::frmSelectFile(Ports ports)
    : Form(ports.desktop, "frmSelectFile"), ports_(std::move(ports)) {
  Tag = u"6000";
  Design = {6240, 2055};
  lblLanguage.SetBounds({120, 120, 6000, 225});
  lblLanguage.Tag = u"6001";
  cmbLanguage.SetBounds({120, 345, 6000, 315});
  lblFile.SetBounds({120, 780, 6000, 225});
  lblFile.Tag = u"6002";
  cmbFile.SetBounds({120, 1005, 6000, 315});
  cmdOK.SetBounds({3780, 1590, 1125, 345});
  cmdOK.Tag = u"501";
  cmdOK.Default = true;
  cmdCancel.SetBounds({4995, 1590, 1125, 345});
  cmdCancel.Tag = u"502";
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
