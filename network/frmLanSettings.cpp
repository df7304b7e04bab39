#include "network/frmLanSettings.h"

#include "network/ValidateNumericText.h"
#include "platform/ApplicationTitle.h"
#include "support/Numbers.h"
#include "support/Trim.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

// One more than the highest valid port: earlier versions stored it, so it must stay accepted.
constexpr std::int32_t kHighestPort = 65536;

}  // namespace

frmLanSettings::frmLanSettings(const Ports& ports)
    : Form(ports.desktop, "frmLanSettings"), ports_(ports) {
  Tag = StringTag(IDS_LAN_TITLE);
  Design = {7020, 2835};
  fraProxyServer.SetBounds({120, 90, 6780, 2130});
  fraProxyServer.Tag = StringTag(IDS_LAN_PROXY_SERVER);
  picContainer.SetBounds({120, 240, 6540, 1770});
  optDefault.SetBounds({60, 60, 6420, 255});
  optDefault.Tag = StringTag(IDS_LAN_DEFAULT);
  optOverride.SetBounds({60, 375, 6420, 255});
  optOverride.Tag = StringTag(IDS_LAN_OVERRIDE);
  chkUseProxy.SetBounds({330, 795, 6150, 255});
  chkUseProxy.Tag = StringTag(IDS_LAN_USE_PROXY);
  lblProxyAddress.SetBounds({600, 1275, 1275, 255});
  lblProxyAddress.Tag = StringTag(IDS_LAN_ADDRESS);
  txtProxyAddress.SetBounds({1875, 1215, 2595, 315});
  lblProxyPort.SetBounds({4590, 1275, 975, 255});
  lblProxyPort.Tag = StringTag(IDS_LAN_PORT);
  txtProxyPort.SetBounds({5565, 1215, 780, 315});
  cmdOK.SetBounds({4560, 2370, 1125, 345});
  cmdOK.Tag = StringTag(IDS_LAN_OK);
  cmdOK.Default = true;
  cmdCancel.SetBounds({5775, 2370, 1125, 345});
  cmdCancel.Tag = StringTag(IDS_LAN_CANCEL);
  cmdCancel.Cancel = true;

  optDefault.Click = [this] { UpdateProxyControls(); };
  optOverride.Click = [this] { UpdateProxyControls(); };
  chkUseProxy.Click = [this] { UpdateProxyControls(); };
  txtProxyPort.Change = [this] { ValidateNumericText(txtProxyPort, 0, kHighestPort, true); };
  cmdOK.Click = [this] { OkClicked(); };
  cmdCancel.Click = [this] { Unload(); };
}

void frmLanSettings::OnLoad() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  registry_.ClassKey = kCurrentUser;
  registry_.SectionKey = u"Software\\Oru\\Marl\\Proxy";
  (registry_.KeyExists() ? optOverride : optDefault).SetValue(true);
  chkUseProxy.SetValue(ReadNumber(u"UseProxy") != 0 ? 1 : 0);
  const std::int32_t port = ReadNumber(u"Port");
  txtProxyPort.SetText(port != 0 ? NumberText(port) : Text());
  txtProxyAddress.SetText(RegistryText(Read(u"Server", kRegSz, Text())));
  UpdateProxyControls();
}

void frmLanSettings::UpdateProxyControls() {
  chkUseProxy.SetEnabled(optOverride.Value());
  const bool proxy = chkUseProxy.Value() != 0 && optOverride.Value();
  lblProxyAddress.SetEnabled(proxy);
  lblProxyPort.SetEnabled(proxy);
  txtProxyAddress.SetEnabled(proxy);
  txtProxyPort.SetEnabled(proxy);
}

bool frmLanSettings::ProxyIsIncomplete() const {
  return optOverride.Value() && chkUseProxy.Value() != 0 &&
         (Trim(txtProxyAddress.Text()).empty() || Trim(txtProxyPort.Text()).empty());
}

void frmLanSettings::OkClicked() {
  if (ProxyIsIncomplete()) {
    desktop().MsgBox(ports_.strings.Get(IDS_LAN_INCOMPLETE), kExclamation, kApplicationTitle);
    return;
  }
  if (optDefault.Value()) {
    registry_.DeleteKey();
  } else {
    // With the proxy off, the fields are stored too, for the next time.
    Write(u"UseProxy", kRegDword, std::int32_t{chkUseProxy.Value() != 0 ? 1 : 0});
    Write(u"Port", kRegDword, std::int32_t{0});
    if (IsNumeric(txtProxyPort.Text())) {
      Write(u"Port", kRegDword, CLng(txtProxyPort.Text()));
    }
    Write(u"Server", kRegSz, Text(Trim(txtProxyAddress.Text())));
  }
  Unload();
}

// Other programs write here too, so values are converted by the runtime's rules, as in the options.
std::int32_t frmLanSettings::ReadNumber(TextView name) {
  return RegistryNumber(Read(name, kRegDword, std::int32_t{0}), UserNumberFormat(ports_.locale));
}

RegistryValue frmLanSettings::Read(TextView name, std::int32_t kind,
                                   const RegistryValue& fallback) {
  registry_.ValueKey = name;
  registry_.valueType = kind;
  registry_.Default = fallback;
  return registry_.Value();
}

void frmLanSettings::Write(TextView name, std::int32_t kind, const RegistryValue& value) {
  registry_.ValueKey = name;
  registry_.valueType = kind;
  registry_.Value(value);
}

}  // namespace marl
