#include "support/frmSplash.h"

#include <array>

#include "platform/ApplicationTitle.h"
#include "support/Drawing.h"
#include "support/Numbers.h"
#include "support/Version.h"
#include "support/modI18N.h"

namespace marl {

namespace {

constexpr int kSplashTime = 5000;      // milliseconds
constexpr int kVersionMargin = 60;     // twips
constexpr double kVersionPlace = 0.6;  // of the picture's height
constexpr std::array<Drawing, 3> kPicture = {
    {{MARL_PICTURE_SPLASH, 96}, {MARL_PICTURE_SPLASH_144, 144}, {MARL_PICTURE_SPLASH_192, 192}}};

}  // namespace

frmSplash::frmSplash(Desktop& desktop, Pictures& pictures, const Locale& locales)
    : Form(desktop, "frmSplash"), pictures_(pictures), locales_(locales) {
  Design = {7200, 4500};
  Border = BorderStyle::kNone;
  KeyPreview = true;
  SetBackColor(Rgb(0, 77, 57));
  AccessibleName = kApplicationTitle;  // it has no title bar
  img2006.SetBounds({0, 0, 7200, 4500});
  img2006.AccessibleName = kApplicationTitle;
  img2006.Click = [this] { Dismiss(); };
  lblVersion.SetBounds({60, 2700, 7080, 300});
  lblVersion.Alignment = Alignment::kCenter;
  lblVersion.WordWrap = false;
  lblVersion.SetForeColor(Rgb(255, 255, 255));
  lblVersion.SetFont({u"Tahoma", 112500});
  tmrSplash.SetInterval(kSplashTime);
  tmrSplash.Tick = [this] { TimeIsUp(); };
}

int frmSplash::PictureId(const Desktop& desktop) {
  return DrawingFor(kPicture, desktop.Dpi().width).id;
}

void frmSplash::OnLoad() {
  ApplyLocaleFont(*this, locales_);
  canDismiss_ = false;
  timerExpired_ = false;
  FitToPicture();
  lblVersion.SetCaption(
      ResourceVersion(MARL_VERSION_MAJOR, MARL_VERSION_MINOR, MARL_VERSION_REVISION));
  lblVersion.SetCaption(ShownVersion(kVersion));
  lblVersion.SetBounds({kVersionMargin, CLng(img2006.Height() * kVersionPlace),
                        img2006.Width() - 2 * kVersionMargin, lblVersion.Height()});
  const Size screen = ScreenSize();
  Move(CLng((screen.width - Width()) / 2.0), CLng((screen.height - Height()) / 2.0));
}

void frmSplash::FitToPicture() {
  img2006.SetPicture(LoadDrawing(pictures_, kPicture, resolution().x));
  if (const PicturePtr& picture = img2006.Picture()) {
    img2006.SetBounds(
        {0, 0, resolution().TwipsX(picture->width), resolution().TwipsY(picture->height)});
  }
  Move({Left(), Top(), img2006.Width() + Width() - inner().width,
        img2006.Height() + Height() - inner().height});
}

void frmSplash::SetCanDismiss(bool canDismiss) {
  canDismiss_ = canDismiss;
  if (canDismiss_ && timerExpired_) Unload();
}

void frmSplash::TimeIsUp() {
  if (!canDismiss_) {
    timerExpired_ = true;
    return;
  }
  tmrSplash.SetEnabled(false);
  Unload();
}

void frmSplash::Dismiss() {
  if (canDismiss_) Unload();
}

void frmSplash::OnClick() { Dismiss(); }

void frmSplash::OnKeyPress(char16_t) { Dismiss(); }

Text frmSplash::ResourceVersion(int major, int minor, int revision) {
  Text text = u"Version " + NumberText(major);
  if (minor > 0) text += u" SP" + NumberText(minor);
  return text + u" Build " + NumberText(revision);
}

Text frmSplash::ShownVersion(TextView version) {
  const std::size_t from = version.find_first_of(u"S(");
  return Text(from == TextView::npos ? version : version.substr(from));
}

}  // namespace marl
