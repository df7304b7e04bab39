#include "appearance/frmFont.h"

#include <algorithm>
#include <utility>

#include "appearance/FontSpec.h"
#include "appearance/modGetFonts.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr std::array<TextView, 8> kSizes = {u"6", u"7", u"8", u"9", u"10", u"11", u"12", u"14"};
// In a `Tag` while the program itself sets the styles.
constexpr TextView kGuard = u"*";

}  // namespace

frmFont::frmFont(const Ports& ports, SampleForm& samples)
    : Form(ports.desktop, "frmFont"), ports_(ports), samples_(samples) {
  for (int i = 0; i < 3; ++i) {
    chkStyle[static_cast<std::size_t>(i)] = std::make_unique<CheckBox>(*this, "chkStyle", i);
  }
  for (int i = 0; i < 2; ++i) {
    cmdDismiss[static_cast<std::size_t>(i)] =
        std::make_unique<CommandButton>(*this, "cmdDismiss", i);
  }
  // The button follows the styles in the tab order.
  cmdSetColor.TabIndex = chkStyle[2]->TabIndex;
  for (std::size_t i = 0; i < 3; ++i) --chkStyle[i]->TabIndex;

  Tag = StringTag(IDS_FONT_TITLE);
  Design = {5655, 3000};
  picGrad.SetBounds({120, 120, 5415, 1290});
  lblSample.SetBounds({0, 0, 5415, 1290});
  lblSample.Tag = StringTag(IDS_FONT_SAMPLE);
  lblSample.Alignment = Alignment::kCenter;
  lblSample.WordWrap = false;
  cmbFont.SetBounds({120, 1545, 3195, 315});
  cmbFont.Sorted = true;
  lblSize.SetBounds({3435, 1590, 1110, 255});
  lblSize.Alignment = Alignment::kRight;
  lblSize.Tag = StringTag(IDS_FONT_SIZE);
  txtSize.SetBounds({4635, 1545, 600, 315});
  // Only its arrow shows, so that list and field look like one combo box. The keyboard uses the
  // field.
  cmbSize.SetBounds({5235, 1545, 300, 315});
  cmbSize.Editable = true;
  cmbSize.TabStop = false;
  chkStyle[0]->SetBounds({120, 2025, 1140, 255});
  chkStyle[0]->Tag = StringTag(IDS_FONT_BOLD);
  chkStyle[1]->SetBounds({1320, 2025, 1140, 255});
  chkStyle[1]->Tag = StringTag(IDS_FONT_ITALIC);
  chkStyle[2]->SetBounds({2520, 2025, 1800, 255});
  chkStyle[2]->Tag = StringTag(IDS_FONT_UNDERLINE);
  cmdSetColor.SetBounds({4410, 1980, 1125, 345});
  cmdSetColor.Tag = StringTag(IDS_FONT_COLOUR);
  cmdDismiss[0]->SetBounds({3195, 2535, 1125, 345});
  cmdDismiss[0]->Tag = StringTag(IDS_FONT_OK);
  cmdDismiss[0]->Default = true;
  cmdDismiss[1]->SetBounds({4410, 2535, 1125, 345});
  cmdDismiss[1]->Tag = StringTag(IDS_FONT_CANCEL);
  cmdDismiss[1]->Cancel = true;

  for (const auto& style : chkStyle) style->Click = [this] { StyleClicked(); };
  cmbFont.Click = [this] { FontChosen(); };
  cmbSize.Change = [this] { SizeChosen(); };
  cmbSize.Click = [this] { SizeChosen(); };
  txtSize.Change = [this] { SizeChanged(); };
  cmdSetColor.Click = [this] { SetColorClicked(); };
  for (int i = 0; i < 2; ++i) {
    cmdDismiss[static_cast<std::size_t>(i)]->Click = [this, i] { Dismissed(i); };
  }
}

void frmFont::OnLoad() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  cmbFont.AccessibleName = ports_.strings.Get(IDS_NAME_FONT);
  numbers_ = UserNumberFormat(ports_.locale);
  chkStyle[0]->Tag = u"B";
  chkStyle[1]->Tag = u"I";
  chkStyle[2]->Tag = u"U";
  cmbFont.Clear();
  FillFontList(cmbFont, ports_.fontList);
  cmbSize.Clear();
  for (const TextView size : kSizes) cmbSize.AddItem(size);
  // Back to the design, if the form is loaded again.
  cmbSize.SetText(u"");
  txtSize.SetText(u"");
}

void frmFont::SetInitialFont() {
  Load();
  Skip([&] {
    CopyFontAndColour(samples_.Sample(SampleIndex), lblSample);
    CentreSample();
  });
  beginAtSize_ = !Skip([&] { cmbFont.SetText(lblSample.Font().Name); });
  if (beginAtSize_) cmbFont.SetListIndex(-1);
  Skip([&] { SyncStyleControls(); });
  Skip([&] { DrawGradient(); });
}

// With the focus, a list without a selection would be an empty coloured bar.
void frmFont::OnActivate() {
  if (std::exchange(beginAtSize_, false)) txtSize.SetFocus();
}

void frmFont::SyncStyleControls() {
  chkStyle[0]->Tag = kGuard;
  chkStyle[0]->SetValue(lblSample.Font().Bold ? 1 : 0);
  chkStyle[1]->SetValue(lblSample.Font().Italic ? 1 : 0);
  chkStyle[2]->SetValue(lblSample.Font().Underline ? 1 : 0);
  chkStyle[0]->Tag.clear();
  // Rounded half up. The field's `Change` then sets the sample's size.
  txtSize.SetText(NumberText((lblSample.Font().Size + 5000) / 10000));
  cmbSize.SetText(txtSize.Text());
}

void frmFont::StyleClicked() {
  if (chkStyle[0]->Tag == kGuard) return;
  marl::Font font = lblSample.Font();
  font.Bold = chkStyle[0]->Value() != 0;
  font.Italic = chkStyle[1]->Value() != 0;
  font.Underline = chkStyle[2]->Value() != 0;
  SetSampleFont(font);
}

void frmFont::FontChosen() {
  marl::Font font = lblSample.Font();
  font.Name = cmbFont.Text();
  SetSampleFont(font);
  SyncStyleControls();
}

void frmFont::SizeChosen() { txtSize.SetText(cmbSize.Text()); }

void frmFont::SizeChanged() {
  Skip([&] {
    marl::Font font = lblSample.Font();
    SetFontSize(font, CCur(txtSize.Text(), numbers_));
    SetSampleFont(font);
  });
}

void frmFont::SetColorClicked() {
  Color color = lblSample.ForeColor();
  if (ports_.colorDialog.ShowColor(this, kColorInit | kColorFullOpen, color)) {
    lblSample.SetForeColor(color);
  }
}

void frmFont::Dismissed(int index) {
  if (index == 0) CopyFontAndColour(lblSample, samples_.Sample(SampleIndex));
  Unload();
}

void frmFont::SetSampleFont(const marl::Font& font) {
  lblSample.SetFont(font);
  CentreSample();
}

// Labels draw from the top. In most fonts a line is a fifth higher than the font's size.
void frmFont::CentreSample() {
  const int line = static_cast<int>(
      std::min<std::int64_t>(lblSample.Font().Size * 20 * 6 / 5 / 10000, picGrad.Height()));
  const int top = (picGrad.Height() - line) / 2;
  lblSample.SetBounds({0, top, picGrad.Width(), picGrad.Height() - top});
}

void frmFont::DrawGradient() {
  if (!gradient_) gradient_.emplace(desktop());
  gradient_->SetColor1(samples_.GradientColor(0));
  gradient_->SetColor2(samples_.GradientColor(1));
  gradient_->SetAngle(static_cast<float>(samples_.GradientAngle()));
  picture_.Begin(picGrad.PixelSize());
  gradient_->Draw(picture_);
  picGrad.SetPicture(picture_.Take());
}

}  // namespace marl
