#pragma once

#include <cstdint>

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "settings/SettingsDialogPorts.h"
#include "settings/cRegistry.h"

namespace marl {

/// Proxy settings of the suite, which override those of the system. They are one registry key, and
/// the existence of the key is the override. Nothing is written before `cmdOK`.
class frmLanSettings : public Form {
 public:
  using Ports = SettingsDialogPorts;
  explicit frmLanSettings(const Ports& ports);

  Frame fraProxyServer{*this, "fraProxyServer"};
  PictureBox picContainer{*this, "picContainer", -1, &fraProxyServer};
  OptionButton optDefault{*this, "optDefault", -1, &picContainer};
  OptionButton optOverride{*this, "optOverride", -1, &picContainer};
  CheckBox chkUseProxy{*this, "chkUseProxy", -1, &picContainer};
  Label lblProxyAddress{*this, "lblProxyAddress", -1, &picContainer};
  TextBox txtProxyAddress{*this, "txtProxyAddress", -1, &picContainer};
  Label lblProxyPort{*this, "lblProxyPort", -1, &picContainer};
  TextBox txtProxyPort{*this, "txtProxyPort", -1, &picContainer};
  CommandButton cmdOK{*this, "cmdOK"};
  CommandButton cmdCancel{*this, "cmdCancel"};

 protected:
  void OnLoad() override;

 private:
  void UpdateProxyControls();
  void OkClicked();
  bool ProxyIsIncomplete() const;
  std::int32_t ReadNumber(TextView name);
  RegistryValue Read(TextView name, std::int32_t kind, const RegistryValue& fallback);
  void Write(TextView name, std::int32_t kind, const RegistryValue& value);

  Ports ports_;
  cRegistry registry_{ports_.registry};
};

}  // namespace marl
