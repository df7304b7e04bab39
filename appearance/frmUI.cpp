#include "appearance/frmUI.h"

#include <utility>
#include <vector>

#include "appearance/FontSpec.h"
#include "documents/modUTF8.h"
#include "platform/RuntimeError.h"
#include "support/Numbers.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr int kOkString = 3063;  // strings
constexpr int kCancelString = 3064;
constexpr int kSkinFilter = 10043;
constexpr std::array<int, 4> kIconSetNames = {3066, 3067, 3068, 3072};

constexpr int kFewestColumns = 3;
constexpr int kMostColumns = 6;
constexpr int kLastAngle = 359;
/// Rows that the list takes; the panel looks at the first eighteen.
constexpr std::size_t kMostRows = 1000;
/// A picture is 48 pixels wide at 96 dots an inch.
constexpr int kPictureTwips = 720;
/// The button whose pictures stand for all in the sample.
constexpr int kSampleButton = 5;

// Of the two that move a row, cmdMove(0) goes up; of the two that end the dialog, cmdDismiss(0)
// is OK.
constexpr int kUp = 0;
constexpr int kAccept = 0;

bool IsColumns(std::int32_t number) { return number >= kFewestColumns && number <= kMostColumns; }

}  // namespace

frmUI::frmUI(Ports ports, Switchboard switchboard)
    : Form(ports.desktop, "frmUI"), ports_(std::move(ports)), switchboard_(std::move(switchboard)) {
  Arrange();
  Wire();
}

// Two columns: what colours the panel at the left, around the sample; what stands on it at the
// right. Within the groups everything hangs on one grid: two halves with a gap of 240 between them,
// each a swatch and its button.
void frmUI::Arrange() {
  Tag = u"3050";
  Design = {10920, 6750};

  fraGradient.SetBounds({120, 90, 6360, 1215});
  fraGradient.Tag = u"3051";
  fraText.SetBounds({120, 1425, 6360, 3405});
  fraText.Tag = u"3055";
  fraBorder.SetBounds({120, 4950, 6360, 1215});
  fraBorder.Tag = u"3058";
  for (const int index : {0, 1, 4, 5}) {
    const int half = index % 2 == 0 ? 180 : 3300;
    Shape& swatch = shpColor(index);
    swatch.SetBounds({half, 300, 480, 345});
    swatch.Transparent = false;
    swatch.BorderShown = true;
    swatch.SetBorderColor(kGrayText);
    cmdSetColor(index).SetBounds({half + 555, 300, 2325, 345});
  }
  cmdSetColor(0).Tag = u"3052";
  cmdSetColor(1).Tag = u"3053";
  cmdSetColor(4).Tag = u"3059";
  cmdSetColor(5).Tag = u"3060";
  lblAngle.SetBounds({180, 810, 555, 225});
  lblAngle.Tag = u"3054";
  hsbAngle.SetBounds({735, 795, 4935, 255});
  hsbAngle.Max = kLastAngle;
  hsbAngle.LargeChange = 30;
  lblAngleValue.SetBounds({5670, 810, 510, 225});
  lblAngleValue.Alignment = Alignment::kRight;

  picContainer.SetBounds({180, 300, 6000, 2475});
  for (std::size_t i = 0; i < lblSample.size(); ++i) {
    const int half = i == 0 ? 0 : 3120;
    imgSample[i].SetBounds({half + 1440 - kPictureTwips / 2, 645, kPictureTwips, kPictureTwips});
    lblSample[i].SetBounds({half + 60, 1410, 2760, 960});
    lblSample[i].Alignment = Alignment::kCenter;
    lblSample[i].Tag = i == 0 ? u"3056" : u"3057";
    lblSample[i].HandCursor = true;
    cmdSample[i].SetBounds({180 + half, 2895, 2880, 345});
  }
  chkThickBorder.SetBounds({180, 795, 6000, 255});
  chkThickBorder.Tag = u"3061";

  fraIcons.SetBounds({6600, 90, 4200, 6075});
  lstIcons.SetBounds({180, 300, 2610, 4380});
  lstIcons.CheckBoxes = true;
  cmdMove[0].SetBounds({2895, 300, 1125, 345});
  cmdMove[0].Tag = u"3073";
  cmdMove[1].SetBounds({2895, 735, 1125, 345});
  cmdMove[1].Tag = u"3074";
  cmbIcons.SetBounds({180, 4815, 3840, 315});
  chkUseTwoState.SetBounds({180, 5235, 3840, 255});
  chkUseTwoState.Tag = u"3069";
  lblIconsPerRow.SetBounds({180, 5655, 2610, 225});
  lblIconsPerRow.Tag = u"3075";
  cmbIconsPerRow.SetBounds({2895, 5595, 1125, 315});

  cmdLoad.SetBounds({120, 6285, 1125, 345});
  cmdLoad.Tag = u"3070";
  cmdSave.SetBounds({1335, 6285, 1125, 345});
  cmdSave.Tag = u"3071";
  cmdDefault.SetBounds({2685, 6285, 1125, 345});
  cmdDefault.Tag = u"3065";
  cmdDismiss[0].SetBounds({8460, 6285, 1125, 345});
  cmdDismiss[0].Default = true;
  cmdDismiss[1].SetBounds({9675, 6285, 1125, 345});
  cmdDismiss[1].Cancel = true;

  int place = 0;
  for (Control* const control : std::initializer_list<Control*>{
           &fraGradient,    &cmdSetColor(0), &cmdSetColor(1), &lblAngle,       &hsbAngle,
           &fraText,        &picContainer,   &cmdSample[0],   &cmdSample[1],   &fraBorder,
           &cmdSetColor(4), &cmdSetColor(5), &chkThickBorder, &fraIcons,       &lstIcons,
           &cmdMove[0],     &cmdMove[1],     &cmbIcons,       &chkUseTwoState, &lblIconsPerRow,
           &cmbIconsPerRow, &cmdLoad,        &cmdSave,        &cmdDefault,     &cmdDismiss[0],
           &cmdDismiss[1]}) {
    control->TabIndex = place++;
  }
}

void frmUI::Wire() {
  for (const int index : {0, 1, 4, 5}) {
    cmdSetColor(index).Click = [this, index] { PickColor(index); };
  }
  for (const int index : {0, 1}) {
    const auto i = static_cast<std::size_t>(index);
    lblSample[i].Click = [this, index] { EditSample(index); };
    cmdSample[i].Click = [this, index] { EditSample(index); };
    cmdMove[i].Click = [this, index] { MoveRow(index); };
    cmdDismiss[i].Click = [this, index] { Dismiss(index); };
  }
  hsbAngle.Change = [this] { AngleChanged(); };
  cmbIcons.Click = [this] { ShowPictures(); };
  chkUseTwoState.Click = [this] { ShowPictures(); };
  lstIcons.MouseDown = [this] {
    dragging_ = true;
    dragged_ = SelectedRow();
  };
  lstIcons.MouseMove = [this] { Drag(); };
  lstIcons.MouseUp = [this] { dragging_ = false; };
  cmdLoad.Click = [this] { LoadSkin(); };
  cmdSave.Click = [this] { SaveSkin(); };
  cmdDefault.Click = [this] { SetDefaults(); };
}

void frmUI::OnLoad() {
  Cancelled = false;
  dragging_ = false;
  numbers_ = UserNumberFormat(ports_.locale);
  ports_.setIcon(hWnd());
  Localise();
  cmbIcons.Clear();
  for (const int name : kIconSetNames) cmbIcons.AddItem(ports_.strings.Get(name));
  cmbIconsPerRow.Clear();
  for (int columns = kFewestColumns; columns <= kMostColumns; ++columns) {
    cmbIconsPerRow.AddItem(NumberText(columns));
  }
  // A control may refuse what the registry holds: it then keeps what is on the screen, and failing
  // that its default.
  const SkinSettings stored = ReadSkinValues(ports_.registry, switchboard_.skin, numbers_);
  ShowSkin({});
  ShowSkin(switchboard_.skin);
  ShowSkin(stored);
  RefreshSample();
}

void frmUI::Localise() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  cmdDismiss[0].SetCaption(ports_.strings.Get(kOkString));
  cmdDismiss[1].SetCaption(ports_.strings.Get(kCancelString));
  for (std::size_t i = 0; i < cmdSample.size(); ++i) {
    cmdSample[i].SetCaption(lblSample[i].Caption() + u"...");
  }
}

void frmUI::ShowSkin(const SkinSettings& skin) {
  const auto number = [this](SkinParameter parameter, std::int32_t value) {
    Skip([&] { SetNumber(parameter, value); });
  };
  const auto text = [this](SkinParameter parameter, TextView value) {
    Skip([&] { SetText(parameter, value); });
  };
  number(SkinParameter::angle, skin.Angle);
  number(SkinParameter::colour1, skin.Color1);
  number(SkinParameter::colour2, skin.Color2);
  number(SkinParameter::border1, skin.Border1);
  number(SkinParameter::border2, skin.Border2);
  number(SkinParameter::borderwidth, NormalBorderWidth(skin.BorderWidth));
  number(SkinParameter::text1, skin.Text1);
  number(SkinParameter::text2, skin.Text2);
  number(SkinParameter::icons, NormalIcons(skin.Icons));
  number(SkinParameter::twostate, NormalTwoState(skin.TwoStateOffset));
  number(SkinParameter::iconsperrow, skin.IconsPerRow);
  text(SkinParameter::font1, skin.Font1);
  text(SkinParameter::font2, skin.Font2);
  text(SkinParameter::displayicons, skin.DisplayIcons);
}

SkinSettings frmUI::Skin() const {
  SkinSettings skin;
  skin.Angle = hsbAngle.Value();
  skin.Color1 = shpColor(0).FillColor();
  skin.Color2 = shpColor(1).FillColor();
  skin.Border1 = shpColor(4).FillColor();
  skin.Border2 = shpColor(5).FillColor();
  skin.BorderWidth = chkThickBorder.Value() != 0 ? 2 : 1;
  skin.Text1 = lblSample[0].ForeColor();
  skin.Text2 = lblSample[1].ForeColor();
  skin.Icons = cmbIcons.ListIndex();
  skin.TwoStateOffset = chkUseTwoState.Value() != 0 ? 0 : 18;
  skin.IconsPerRow = cmbIconsPerRow.ListIndex() + kFewestColumns;
  skin.Font1 = GetFontSpec(lblSample[0], numbers_);
  skin.Font2 = GetFontSpec(lblSample[1], numbers_);
  skin.DisplayIcons = GetDisplayIcons();
  return skin;
}

void frmUI::SetNumber(SkinParameter parameter, std::int32_t number) {
  switch (parameter) {
    case SkinParameter::colour1: shpColor(0).SetFillColor(number); break;
    case SkinParameter::colour2: shpColor(1).SetFillColor(number); break;
    case SkinParameter::angle:
      // A direction that the bar refuses is told all the same.
      Skip([&] { hsbAngle.SetValue(number); });
      lblAngleValue.SetCaption(NumberText(number));
      break;
    case SkinParameter::text1: lblSample[0].SetForeColor(number); break;
    case SkinParameter::text2: lblSample[1].SetForeColor(number); break;
    case SkinParameter::border1: shpColor(4).SetFillColor(number); break;
    case SkinParameter::border2: shpColor(5).SetFillColor(number); break;
    case SkinParameter::borderwidth: chkThickBorder.SetValue(number == 1 ? 0 : 1); break;
    case SkinParameter::icons: cmbIcons.SetListIndex(number); break;
    case SkinParameter::twostate: chkUseTwoState.SetValue(number == 0 ? 1 : 0); break;
    case SkinParameter::iconsperrow:
      // The list itself would take the index -1 for "none".
      if (!IsColumns(number)) throw RuntimeError::InvalidPropertyValue();
      cmbIconsPerRow.SetListIndex(number - kFewestColumns);
      break;
    default: break;
  }
}

void frmUI::SetText(SkinParameter parameter, TextView text) {
  switch (parameter) {
    case SkinParameter::font1: ApplyFontSpec(lblSample[0], text, numbers_); break;
    case SkinParameter::font2: ApplyFontSpec(lblSample[1], text, numbers_); break;
    case SkinParameter::displayicons: SetDisplayIcons(text); break;
    default: break;
  }
}

void frmUI::SetDisplayIcons(TextView text) {
  // The panel ends the program over an order that it cannot use, so none gets into the list.
  std::vector<DisplayPosition> order;
  for (bool more = !text.empty(); more;) {
    const std::size_t bar = text.find(u'|');
    const TextView entry = text.substr(0, bar);
    more = bar != TextView::npos;
    if (more) text.remove_prefix(bar + 1);
    DisplayPosition position;
    position.button = CLng(entry.substr(0, 2), numbers_);
    position.shown = CLng(entry.size() > 2 ? entry.substr(2) : TextView(), numbers_);
    if (position.button < 0 || position.button >= kPanelButtons) {
      throw RuntimeError::SubscriptOutOfRange();
    }
    if (order.size() == kMostRows) throw RuntimeError::Overflow();
    order.push_back(position);
  }
  if (order.size() < kPanelButtons) throw RuntimeError::SubscriptOutOfRange();
  lstIcons.Clear();
  for (const DisplayPosition& position : order) {
    const Text& caption = switchboard_.captions[static_cast<std::size_t>(position.button)];
    InsertRow({caption, -1, position.button, position.shown != 0}, lstIcons.ListCount());
  }
}

Text frmUI::GetDisplayIcons() const {
  Text text;
  for (int row = 0; row < lstIcons.ListCount(); ++row) {
    if (row > 0) text += u'|';
    if (lstIcons.ItemData(row) < 10) text += u'0';
    text += NumberText(lstIcons.ItemData(row));
    text += lstIcons.Selected(row) ? u'1' : u'0';
  }
  return text;
}

void frmUI::InsertRow(const Row& row, int position) {
  lstIcons.AddItem(row.text, position);
  lstIcons.SetSelected(position, row.ticked);
  lstIcons.SetItemData(position, row.data);
}

void frmUI::RefreshSample() {
  if (!gradient_) gradient_ = std::make_unique<clsGradient>(desktop());
  gradient_->SetColor1(shpColor(0).FillColor());
  gradient_->SetColor2(shpColor(1).FillColor());
  gradient_->SetAngle(static_cast<float>(hsbAngle.Value()));
  sample_.Begin(picContainer.PixelSize());
  gradient_->Draw(sample_);
  picContainer.SetPicture(sample_.Take());
  picContainer.Refresh();
}

void frmUI::ShowPictures() {
  const int set = cmbIcons.ListIndex();
  const int size = desktop().PixelsX(kPictureTwips);
  const int offset = chkUseTwoState.Value() != 0 ? 0 : kPanelButtons;
  imgSample[0].SetPicture(icons_.Image(set, DullImage(kSampleButton, offset), size));
  imgSample[1].SetPicture(icons_.Image(set, BrightImage(kSampleButton), size));
}

void frmUI::AngleChanged() {
  lblAngleValue.SetCaption(NumberText(hsbAngle.Value()));
  RefreshSample();
}

void frmUI::PickColor(int index) {
  Color color = shpColor(index).FillColor();
  if (!ports_.colorDialog.ShowColor(this, kColorInit | kColorFullOpen, color)) return;
  shpColor(index).SetFillColor(color);
  if (index < 2) RefreshSample();
}

void frmUI::EditSample(int index) {
  frmFont font({desktop(), ports_.locale, ports_.strings, ports_.colorDialog, ports_.fontList},
               *this);
  font.SampleIndex = static_cast<std::int16_t>(index);
  font.SetInitialFont();
  font.ShowModal(this);
}

void frmUI::SetDefaults() {
  ShowSkin({});
  RefreshSample();
}

// Always the row at `i` goes in front of the one at `i - 1`. The row to be selected is chosen
// before the old one is removed: after a step down the highlight does not follow.
void frmUI::MoveRow(int direction) {
  int i = lstIcons.ListIndex();
  if (i < 0) return;
  int j = direction == kUp ? i - 1 : i + 1;
  if (j < 0 || j >= lstIcons.ListCount()) return;
  if (i < j) {
    i = j;
    j = j - 1;
  }
  lstIcons.AddItem(lstIcons.List(i), j);
  ++i;
  lstIcons.SetSelected(j, lstIcons.Selected(i));
  lstIcons.SetItemData(j, lstIcons.ItemData(i));
  lstIcons.SetListIndex(direction == kUp ? j : i);
  lstIcons.RemoveItem(i);
}

frmUI::Row frmUI::SelectedRow() const {
  const int row = lstIcons.ListIndex();
  return {lstIcons.List(row), row, lstIcons.ItemData(row), lstIcons.Selected(row)};
}

// The list's own selection follows the mouse; the row that was taken hold of follows it.
void frmUI::Drag() {
  const int target = lstIcons.ListIndex();
  if (dragging_ && target != dragged_.position && target >= 0 && dragged_.position >= 0) {
    lstIcons.RemoveItem(dragged_.position);
    InsertRow(dragged_, target);
    lstIcons.SetListIndex(target);
  }
  dragged_ = SelectedRow();
}

FileDialogSettings frmUI::SkinDialog(int flags) {
  FileDialogSettings settings;
  const Text folder = PrepareSkinFolder(ports_.files, switchboard_.applicationFolder);
  settings.Filter = ports_.strings.Get(kSkinFilter);
  settings.Flags = flags;
  if (ports_.files.FolderExists(folder)) settings.Folder = folder;
  return settings;
}

void frmUI::LoadSkin() {
  Text path;
  const FileDialogSettings settings = SkinDialog(kFileMustExist | kHideReadOnly);
  if (ports_.fileDialogs.ShowOpen(this, settings, path) != FileDialogResult::kChosen) return;
  LoadSkinFile(ports_.files, path, *this, numbers_);
  RefreshSample();
}

void frmUI::SaveSkin() {
  Text path;
  const FileDialogSettings settings = SkinDialog(kOverwritePrompt);
  if (ports_.fileDialogs.ShowSave(this, settings, path) != FileDialogResult::kChosen) return;
  modUTF8 writer(ports_.files);
  SaveSkinFile(writer, path, Skin());
}

void frmUI::Dismiss(int index) {
  if (index == kAccept) WriteSkin(ports_.registry, Skin());
  Cancelled = index != kAccept;
  Hide();
}

}  // namespace marl
