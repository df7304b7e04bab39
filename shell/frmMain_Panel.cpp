#include "shell/frmMain.h"

#include <algorithm>

#include "appearance/FontSpec.h"
#include "appearance/PanelLayout.h"
#include "platform/Contrast.h"
#include "support/Numbers.h"
#include "support/modI18N.h"

// The panel: applying the skin, and highlighting the button under the mouse.

namespace marl {

namespace {

/// A picture is 48 pixels wide at 96 dpi.
constexpr int kPictureTwips = 720;

}  // namespace

void frmMain::SetUI() {
  numbers_ = UserNumberFormat(platform_.locales);
  Skin = ReadSkin(platform_.registry, IconsPerRow, numbers_);
  const DisplayOrder order = ParseDisplayIcons(Skin.DisplayIcons, numbers_);
  InvalidateAll();  // the whole panel changes
  OnMouseMove(0, 0, -1, -1);
  const std::vector<int> before = PanelOrder(Areas());

  std::array<LabelPlace, kButtonCount> labels;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    labels[i] = {lblRun[i]->Visible(), lblRun[i]->Top()};
  }
  const PanelLayout layout = ArrangePanel(order, Skin.IconsPerRow, labels);
  for (const PanelStep& step : layout.steps) {
    const auto b = static_cast<std::size_t>(step.button);
    lblRun[b]->SetVisible(step.shown);
    imgRun[b]->SetVisible(step.shown);
    if (!step.shown) continue;
    shpRun[b]->SetBorderColor(Skin.Border1);
    Dress(step.button, false);
    shpRun[b]->Move(step.cell.frame.x, step.cell.frame.y);
    lblRun[b]->Move(step.cell.label.x, step.cell.label.y);
    imgRun[b]->Move(step.cell.picture.x, step.cell.picture.y);
  }

  const Size growth = PanelGrowth(layout, IconsPerRow, Skin.IconsPerRow);
  ClientHeight += growth.height;
  IconsPerRow = Skin.IconsPerRow;
  Move(Grown(bounds(), growth));
  FocusButton = KeptFocus(before, Areas(), FocusButton);
  keyboardLeads_ = keyboardLeads_ && FocusButton >= 0;
  ShowStatus();
  PaintGradient();
  BindTooltips();
  Announce(Announcement::kOrder);
  if (FocusButton >= 0) AnnounceFocus();
}

PanelColors frmMain::Colors() const {
  return desktop().HighContrast() ? HighContrastColors() : SkinColors(Skin);
}

void frmMain::GreyLabels() {
  const PicturePtr& behind = Background();
  for (const auto& label : lblRun) {
    if (!label->Visible()) continue;
    if (!behind || behind->width == 0 || behind->height == 0) {
      label->SetDisabledColor(kGrayText);
      continue;
    }
    // The gradient is straight, so its extremes in a rectangle are at the corners.
    const Size size = label->PixelSize();
    const int left = resolution().PixelsX(label->Left());
    const int top = resolution().PixelsY(label->Top());
    std::array<Color, 9> backgrounds;
    for (std::size_t i = 0; i < backgrounds.size(); ++i) {
      const int x = left + size.width * static_cast<int>(i % 3) / 2;
      const int y = top + size.height * static_cast<int>(i / 3) / 2;
      const std::uint32_t pixel =
          behind->At(std::clamp(x, 0, behind->width - 1), std::clamp(y, 0, behind->height - 1));
      backgrounds[i] = Rgb(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
    }
    label->SetDisabledColor(GreyOn(Skin.Text1, backgrounds));
  }
}

void frmMain::PaintGradient() {
  if (const PanelColors colors = Colors(); colors.plain) {
    SetBackground(nullptr);
    SetBackColor(colors.background);
    GreyLabels();
    ShowRing();
    return Refresh();
  }
  SetBackColor(kPanelBackground);
  if (!gradient_) gradient_ = std::make_unique<clsGradient>(desktop());
  gradient_->SetAngle(static_cast<float>(Skin.Angle));
  gradient_->SetColor1(Skin.Color1);
  gradient_->SetColor2(Skin.Color2);
  // Released first, so that the memory of the current picture is reused.
  SetBackground(nullptr);
  panel_.Begin({resolution().PixelsX(inner().width), resolution().PixelsY(inner().height)},
               BackColor());
  gradient_->Draw(panel_);
  SetBackground(panel_.Take());
  GreyLabels();
  ShowRing();
  Refresh();
}

void frmMain::OnLookChanged() {
  if (!gradient_) return;  // the panel has not been laid out yet
  for (int i = 0; i < kButtonCount; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    if (imgRun[slot]->Visible()) Dress(i, i == HoverButton && IsAlive(i));
  }
  if (IsAlive(HoverButton)) HighlightButton(HoverButton, true);
  PaintGradient();
  BindTooltips();
}

int frmMain::PictureSize() const { return resolution().PixelsX(kPictureTwips); }

bool frmMain::IsAlive(int index) const {
  return index >= 0 && lblRun[static_cast<std::size_t>(index)]->Tag != kDead;
}

void frmMain::Dress(int index, bool highlighted) {
  const auto slot = static_cast<std::size_t>(index);
  const PanelColors colors = Colors();
  lblRun[slot]->SetForeColor(highlighted ? colors.highlightedText : colors.text);
  shpRun[slot]->SetFillColor(colors.highlight);
  shpRun[slot]->SetTransparent(!(highlighted && colors.highlightFilled));
  ApplyFontSpec(*lblRun[slot], highlighted ? Skin.Font2 : Skin.Font1, numbers_);
  const int number = highlighted ? BrightImage(index) : DullImage(index, Skin.TwoStateOffset == 0);
  imgRun[slot]->SetPicture(iconSets_.Image(Skin.Icons, number, PictureSize()));
}

void frmMain::OnMouseMove(int, int, float x, float y) {
  int hit = -1;
  if (OverForm(x, y, {Width(), Height()}, InForeground())) {
    hit = ButtonAt(Areas(), x, y);
  }
  const bool takesOver = MouseTakesOver(hit);
  if (takesOver) keyboardLeads_ = false;
  if (hit != HoverButton) {
    if (IsAlive(HoverButton)) {
      HighlightButton(HoverButton, false);
      Dress(HoverButton, false);
    }
    AnnounceButton(Announcement::kState, HoverButton);
    HoverButton = hit;
    AnnounceButton(Announcement::kState, hit);
    if (IsAlive(hit)) {
      HighlightButton(hit, true);
      Dress(hit, true);
    }
  } else if (!takesOver) {
    return;
  }
  ShowStatus();
}

void frmMain::HighlightButton(int index, bool show) {
  const PanelColors colors = Colors();
  const auto lines =
      BevelLines(shpRun[static_cast<std::size_t>(index)]->bounds(), resolution().TwipsPerPixel());
  for (std::size_t i = 0; i < lines.size(); ++i) linRun[i]->SetVisible(false);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    linRun[i]->Place(lines[i].from, lines[i].to);
    linRun[i]->SetBorderColor(lines[i].lit ? colors.border1 : colors.border2);
  }
  const auto drawn = static_cast<std::size_t>(Skin.BorderWidth * 4);
  for (std::size_t i = 0; i < drawn; ++i) linRun[i]->SetVisible(show);
}

// No mouse event reports that the mouse has left the form, or that another window came to the
// front.
void frmMain::tmrOver_Tick() {
  const Point cursor = platform_.tray.CursorPosition();
  const Point origin = ClientOrigin();
  const PixelTwips pixel = resolution().TwipsPerPixel();
  const auto x = static_cast<float>(CLng(pixel.x * (cursor.x - origin.x)));
  const auto y = static_cast<float>(CLng(pixel.y * (cursor.y - origin.y)));
  OnMouseMove(0, 0, x, y);
}

}  // namespace marl
