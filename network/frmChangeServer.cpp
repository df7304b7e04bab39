#include "network/frmChangeServer.h"

#include <array>

#include "network/ServerTag.h"
#include "network/ValidateNumericText.h"
#include "support/Drawing.h"
#include "support/Trim.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

// The range for tracking servers, deliberately smaller than that of the proxy's port.
constexpr std::int32_t kLowestPort = 1;
constexpr std::int32_t kHighestPort = 20000;

constexpr int kPictureTile = 6;  // index of the button's picture in the icon strip
constexpr int kPictureTwips = 720;
constexpr std::array<Drawing, 3> kStrip = {
    {{MARL_PICTURE_SET1_48, 96}, {MARL_PICTURE_SET1_72, 144}, {MARL_PICTURE_SET1_96, 192}}};

}  // namespace

frmChangeServer::frmChangeServer(const Ports& ports, clsMRU& list)
    : Form(ports.desktop, "frmChangeServer"), ports_(ports), list_(list) {
  Tag = StringTag(IDS_SERVER_TITLE);
  Design = {6810, 2310};
  Image1.SetBounds({150, 150, kPictureTwips, kPictureTwips});
  lblServer.SetBounds({1065, 210, 1575, 255});
  lblServer.Tag = StringTag(IDS_SERVER_NAME);
  cmbServer.SetBounds({2640, 150, 4050, 315});
  cmbServer.Editable = true;
  chkSSL.SetBounds({1065, 615, 5625, 255});
  chkSSL.Tag = StringTag(IDS_SERVER_SSL);
  chkUseDefault.SetBounds({1065, 960, 5625, 255});
  chkUseDefault.Tag = StringTag(IDS_SERVER_DEFAULT_PORT);
  lblPortNumber.SetBounds({1065, 1380, 1575, 255});
  lblPortNumber.Tag = StringTag(IDS_SERVER_PORT);
  txtPortNumber.SetBounds({2640, 1320, 780, 315});
  cmdOK.SetBounds({4350, 1845, 1125, 345});
  cmdOK.Tag = StringTag(IDS_OK);
  cmdOK.Default = true;
  cmdCancel.SetBounds({5565, 1845, 1125, 345});
  cmdCancel.Tag = StringTag(IDS_CANCEL);
  cmdCancel.Cancel = true;

  chkUseDefault.Click = [this] {
    lblPortNumber.SetEnabled(chkUseDefault.Value() == 0);
    txtPortNumber.SetEnabled(chkUseDefault.Value() == 0);
  };
  cmbServer.Click = [this] { ServerChosen(); };
  cmbServer.GotFocus = [this] { SelectAllText(); };
  txtPortNumber.Change = [this] {
    ValidateNumericText(txtPortNumber, kLowestPort, kHighestPort, false);
  };
  cmdOK.Click = [this] { Leave(false); };
  cmdCancel.Click = [this] { Leave(true); };
}

void frmChangeServer::OnLoad() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  ShowPicture();
  FillList();
}

void frmChangeServer::ShowPicture() {
  const PicturePtr strip = ports_.pictures.Load(DrawingFor(kStrip, resolution().x).id);
  if (!strip) return;
  const int drawn = strip->width / MARL_STRIP_PICTURES;
  const int size = resolution().PixelsX(kPictureTwips);
  // The bright row is the lower one.
  Image1.SetPicture(TileOf(*strip, kPictureTile, 1, drawn, size));
}

void frmChangeServer::FillList() {
  for (std::int32_t i = 1; i <= list_.Count(); ++i) {
    if (!IsServerTag(list_.Item(i))) list_.Item(i, BareNameTag(list_.Item(i)));
    ReadServerTag(list_.Item(i), tag_);
    cmbServer.SetItemData(cmbServer.AddItem(tag_.AttributeValue(u"server")), i);
  }
}

void frmChangeServer::Server(TextView tag) {
  ReadServerTag(tag, tag_);
  cmbServer.SetText(Trim(tag_.AttributeValue(u"server")));
  const bool ssl = UsesSsl(tag_);
  chkSSL.SetValue(ssl ? 1 : 0);
  TextView port = tag_.AttributeValue(u"port");
  if (port.empty()) port = DefaultPort(ssl);
  if (port == DefaultPort(ssl)) {
    chkUseDefault.SetValue(1);
    txtPortNumber.SetText(u"");
  } else {
    chkUseDefault.SetValue(0);
    txtPortNumber.SetText(port);
  }
}

Text frmChangeServer::Server() const {
  const bool ssl = chkSSL.Value() != 0;
  return ComposeServerTag(
      cmbServer.Text(), ssl,
      chkUseDefault.Value() != 0 ? DefaultPort(ssl) : TextView(txtPortNumber.Text()));
}

void frmChangeServer::ServerChosen() {
  const int row = cmbServer.ListIndex();
  if (row < 0 || cmbServer.ItemData(row) <= 0) return;
  Server(list_.Item(cmbServer.ItemData(row)));
}

void frmChangeServer::SelectAllText() {
  cmbServer.Select(0, static_cast<int>(cmbServer.Text().size()));
}

void frmChangeServer::Leave(bool cancelled) {
  Cancelled = cancelled;
  Hide();
}

}  // namespace marl
