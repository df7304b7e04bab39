#include "support/frmAbout2006.h"

#include <array>

#include "platform/ApplicationTitle.h"
#include "platform/Contrast.h"
#include "support/Drawing.h"
#include "support/Version.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr TextView kMakersSite = u"http://www.oru.example";
constexpr TextView kProductSite = u"http://www.marl.example";
constexpr TextView kSupportSite = u"http://support.marl.example";

constexpr std::array<Drawing, 3> kLogo = {
    {{MARL_PICTURE_ABOUT, 96}, {MARL_PICTURE_ABOUT_144, 144}, {MARL_PICTURE_ABOUT_192, 192}}};
constexpr int kWidth = 6000;  // the logo's, in twips
constexpr int kMargin = 240;
constexpr int kLineHeight = 240;
constexpr int kLinkWidth = 3600;
constexpr Color kLink = Rgb(0, 95, 71);

constexpr Box TextLine(int top, int width = kWidth - 2 * kMargin) {
  return {kMargin, top, width, kLineHeight};
}

}  // namespace

frmAbout2006::frmAbout2006(Ports ports)
    : Form(ports.desktop, "frmAbout2006"), ports_(std::move(ports)) {
  Design = {kWidth, 4875};
  Tag = StringTag(IDS_ABOUT_TITLE);
  imgLogo.SetBounds({0, 0, kWidth, 1440});
  imgLogo.HandCursor = true;
  imgLogo.Click = [this] { Open(u"Open", kMakersSite); };

  AddLabel(kSuite, TextLine(1620), StringTag(IDS_ABOUT_SUITE));
  lblLabel[kSuite]->SetFont({u"Tahoma", 82500, true});
  AddLabel(kVersionLabel, TextLine(1875), u"");
  AddLabel(kCopyright, TextLine(2130), StringTag(IDS_ABOUT_COPYRIGHT));
  AddLabel(kSite, TextLine(2520, kLinkWidth), StringTag(IDS_ABOUT_SITE));
  cmdShell[0] = std::make_unique<CommandButton>(*this, "cmdShell", 0);
  AddLabel(kSupport, TextLine(2775, kLinkWidth), StringTag(IDS_ABOUT_SUPPORT));
  cmdShell[1] = std::make_unique<CommandButton>(*this, "cmdShell", 1);
  for (std::size_t i = 0; i < cmdShell.size(); ++i) {
    const int link = kSite + static_cast<int>(i);
    Label& label = *lblLabel[static_cast<std::size_t>(link)];
    label.SetFont({u"Tahoma", 82500, false, false, true});
    label.HandCursor = true;
    cmdShell[i]->SetBounds({-1500, label.Top(), 1125, kLineHeight});
    cmdShell[i]->TabStop = false;
    cmdShell[i]->StandsFor = &label;
    cmdShell[i]->GotFocus = [this, link] { FollowLink(link); };
  }
  linBottom.Place({kMargin, 3165}, {kWidth - kMargin, 3165});
  linBottom.SetVisible(true);
  linBottom.SetBorderColor(SystemColor(16));  // COLOR_BTNSHADOW
  AddLabel(kWarning, {kMargin, 3285, kWidth - 2 * kMargin, 1020}, StringTag(IDS_ABOUT_WARNING));

  cmdOK = std::make_unique<CommandButton>(*this, "cmdOK");
  cmdOK->SetBounds({kWidth - kMargin - 1125, 4380, 1125, 345});
  cmdOK->Tag = StringTag(IDS_DIALOG_OK);
  cmdOK->Default = true;
  cmdOK->Cancel = true;
  cmdOK->Click = [this] { Unload(); };
}

void frmAbout2006::AddLabel(int index, const Box& bounds, TextView tag) {
  auto& label = lblLabel[static_cast<std::size_t>(index)];
  label = std::make_unique<Label>(*this, "lblLabel", index);
  label->SetBounds(bounds);
  label->Tag = tag;
  label->Click = [this, index] { FollowLink(index); };
}

void frmAbout2006::OnLoad() {
  ports_.setIcon(hWnd());
  ApplyLocaleFont(*this, ports_.locales);
  LoadFormStrings(*this, ports_.strings);
  imgLogo.AccessibleName = ports_.strings.Get(IDS_NAME_MAKERS_SITE);
  lblLabel[kVersionLabel]->SetCaption(Text(kApplicationTitle).append(u" ").append(kVersion));
  ShowLogo();
  ColorLinks();
}

void frmAbout2006::OnLookChanged() {
  ShowLogo();
  ColorLinks();
}

// The program's own colour for links, as long as it is readable on the system's background.
void frmAbout2006::ColorLinks() {
  const auto value = [this](Color color) { return desktop().SystemColorValue(color & 0x7FFFFFFF); };
  const std::array<Color, 3> colors = {desktop().HighContrast() ? value(kHotLight) : kLink,
                                       value(kHotLight), value(kButtonText)};
  const Color link = ReadableOn(value(kButtonFace), colors);
  for (const int label : {kSite, kSupport}) {
    lblLabel[static_cast<std::size_t>(label)]->SetForeColor(link);
  }
}

void frmAbout2006::ShowLogo() {
  imgLogo.SetPicture(LoadDrawing(ports_.pictures, kLogo, resolution().x));
}

void frmAbout2006::FollowLink(int label) {
  if (label == kSite) Open(u"Open", kProductSite);
  if (label == kSupport) Open(u"Open", kSupportSite);
}

// The shell ignores parameters and folder of an address.
void frmAbout2006::Open(TextView operation, TextView address) {
  ports_.shellOpen(operation, address, u"0", u"0", 1);
}

}  // namespace marl
