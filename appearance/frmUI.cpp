#include "appearance/frmUI.h"

#include <iterator>
#include <utility>
#include <vector>

#include "appearance/CaptionContrast.h"
#include "appearance/FontSpec.h"
#include "documents/modUTF8.h"
#include "platform/RuntimeError.h"
#include "support/Numbers.h"
#include "support/modI18N.h"
#include "support/modResources.h"

namespace marl {

namespace {

constexpr std::array<int, 4> kIconSetNames = {IDS_UI_ICONS_WHITE_GOLD, IDS_UI_ICONS_BEVELLED,
                                              IDS_UI_ICONS_GLOSSY, IDS_UI_ICONS_BONUS};

constexpr int kFewestColumns = 3;
constexpr int kMostColumns = 6;
constexpr int kLastAngle = 359;
/// Maximum number of rows; the panel uses the first eighteen.
constexpr std::size_t kMostRows = 1000;
/// A picture is 48 pixels wide at 96 dpi.
constexpr int kPictureTwips = 720;
/// The button whose pictures the sample shows.
constexpr int kSampleButton = 5;

// cmdMove(0) moves a row up, cmdMove(1) down; cmdDismiss(0) is OK, cmdDismiss(1) Cancel.
constexpr int kUp = 0;
constexpr int kAccept = 0;

/// Counts what is being done for as long as it lives.
class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

bool IsColumns(std::int32_t number) { return number >= kFewestColumns && number <= kMostColumns; }

}  // namespace

frmUI::frmUI(Ports ports, Switchboard switchboard)
    : Form(ports.desktop, "frmUI"), ports_(std::move(ports)), switchboard_(std::move(switchboard)) {
  Arrange();
  Wire();
}

// Two columns: the colours and the sample on the left, the contents of the panel on the right.
// Groups share one grid: two halves, 240 apart, each with a swatch and its button.
void frmUI::Arrange() {
  Tag = StringTag(IDS_UI_TITLE);
  Design = {10920, 6750};

  fraGradient.SetBounds({120, 90, 6360, 1215});
  fraGradient.Tag = StringTag(IDS_UI_GRADIENT);
  fraText.SetBounds({120, 1425, 6360, 3405});
  fraText.Tag = StringTag(IDS_UI_TEXT);
  fraBorder.SetBounds({120, 4950, 6360, 1215});
  fraBorder.Tag = StringTag(IDS_UI_BORDER);
  for (const int index : {0, 1, 4, 5}) {
    const int half = index % 2 == 0 ? 180 : 3300;
    Shape& swatch = shpColor(index);
    swatch.SetBounds({half, 300, 480, 345});
    swatch.SetTransparent(false);
    swatch.BorderShown = true;
    swatch.SetBorderColor(kGrayText);
    cmdSetColor(index).SetBounds({half + 555, 300, 2325, 345});
  }
  cmdSetColor(0).Tag = StringTag(IDS_UI_COLOUR_1);
  cmdSetColor(1).Tag = StringTag(IDS_UI_COLOUR_2);
  cmdSetColor(4).Tag = StringTag(IDS_UI_BORDER_COLOUR_1);
  cmdSetColor(5).Tag = StringTag(IDS_UI_BORDER_COLOUR_2);
  lblAngle.SetBounds({180, 810, 1050, 225});
  lblAngle.Tag = StringTag(IDS_UI_ANGLE);
  hsbAngle.SetBounds({1230, 795, 4440, 255});
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
    lblSample[i].Tag = StringTag(i == 0 ? IDS_UI_TEXT_NORMAL : IDS_UI_TEXT_HIGHLIGHTED);
    lblSample[i].HandCursor = true;
    cmdSample[i].SetBounds({180 + half, 2895, 2880, 345});
  }
  chkThickBorder.SetBounds({180, 795, 6000, 255});
  chkThickBorder.Tag = StringTag(IDS_UI_WIDE_BORDER);

  fraIcons.SetBounds({6600, 90, 4200, 6075});
  lstIcons.SetBounds({180, 300, 2610, 4380});
  lstIcons.CheckBoxes = true;
  cmdMove[0].SetBounds({2895, 300, 1125, 345});
  cmdMove[0].Tag = StringTag(IDS_UI_UP);
  cmdMove[1].SetBounds({2895, 735, 1125, 345});
  cmdMove[1].Tag = StringTag(IDS_UI_DOWN);
  cmbIcons.SetBounds({180, 4815, 3840, 315});
  chkUseTwoState.SetBounds({180, 5235, 3840, 255});
  chkUseTwoState.Tag = StringTag(IDS_UI_TWO_STATE);
  lblIconsPerRow.SetBounds({180, 5655, 2610, 225});
  lblIconsPerRow.Tag = StringTag(IDS_UI_ICONS_PER_ROW);
  cmbIconsPerRow.SetBounds({2895, 5595, 1125, 315});

  cmdLoad.SetBounds({120, 6285, 1125, 345});
  cmdLoad.Tag = StringTag(IDS_UI_LOAD);
  cmdSave.SetBounds({1335, 6285, 1125, 345});
  cmdSave.Tag = StringTag(IDS_UI_SAVE);
  cmdDefault.SetBounds({2685, 6285, 1200, 345});
  cmdDefault.Tag = StringTag(IDS_UI_DEFAULT);
  // In line with the texts of the buttons; a second line has room.
  lblContrast.SetBounds({4005, 6330, 4335, 405});
  lblContrast.AccessibleRole = AccessibleRole::kAlert;
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
           &cmbIconsPerRow, &cmdLoad,        &cmdSave,        &cmdDefault,     &lblContrast,
           &cmdDismiss[0],  &cmdDismiss[1]}) {
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
  cmbIconsPerRow.Click = [this] { ShowContrast(); };
  lstIcons.ItemCheck = [this](int) { ShowContrast(); };
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
  // A control may refuse the stored value: it then shows the panel's present value, or else its
  // default.
  const SkinSettings stored = ReadSkinValues(ports_.registry, switchboard_.skin, numbers_);
  ShowSkin({});
  ShowSkin(switchboard_.skin);
  ShowSkin(stored);
  RefreshSample();
  ShowContrast();
}

void frmUI::Localise() {
  ApplyLocaleFont(*this, ports_.locale);
  LoadFormStrings(*this, ports_.strings);
  cmdDismiss[0].SetCaption(ports_.strings.Get(IDS_UI_OK));
  cmdDismiss[1].SetCaption(ports_.strings.Get(IDS_UI_CANCEL));
  for (std::size_t i = 0; i < cmdSample.size(); ++i) {
    cmdSample[i].SetCaption(lblSample[i].Caption() + u"...");
    // The button is what opens the font: the sample itself is a text.
    lblSample[i].AccessibleRole = AccessibleRole::kText;
    lblSample[i].AccessibleDescription = [this, i] { return SampleText(i); };
    cmdSample[i].AccessibleDescription = [this, i] { return SampleText(i); };
  }
  picContainer.AccessibleName = ports_.strings.Get(IDS_FONT_SAMPLE);
  lstIcons.AccessibleName = ports_.strings.Get(IDS_NAME_PANEL_BUTTONS);
  cmbIcons.AccessibleName = ports_.strings.Get(IDS_NAME_ICON_SET);
  fraIcons.AccessibleName = lstIcons.AccessibleName;
  hsbAngle.AccessibleValue = [this] { return NumberText(hsbAngle.Value()) + u'\u00B0'; };
  for (const int index : {0, 1, 4, 5}) {
    cmdSetColor(index).AccessibleDescription = [this, index] {
      return ColorText(shpColor(index).FillColor());
    };
  }
}

/// Font and colour of a sample in words.
Text frmUI::SampleText(std::size_t index) const {
  const marl::Font& font = lblSample[index].Font();
  Text text = font.Name + u", " + CurrencyText(font.Size, numbers_);
  const std::pair<bool, int> styles[] = {{font.Bold, IDS_FONT_BOLD},
                                         {font.Italic, IDS_FONT_ITALIC},
                                         {font.Underline, IDS_FONT_UNDERLINE}};
  for (const auto& [set, name] : styles) {
    if (set) text += u", " + WithoutAccessKeys(ports_.strings.Get(name));
  }
  return text + u", " + ColorText(lblSample[index].ForeColor());
}

/// A colour in words.
Text frmUI::ColorText(Color color) const {
  if (color < 0) color = desktop().SystemColorValue(color & 0x7FFFFFFF);
  Text text = ports_.strings.Get(IDS_NAME_COLOUR);
  for (int channel = 0; channel < 3; ++channel) {
    const Text place = {u'%', static_cast<char16_t>(u'1' + channel)};
    const std::size_t at = text.find(place);
    if (at == Text::npos) continue;
    text.replace(at, place.size(), NumberText(color >> (8 * channel) & 0xFF));
  }
  return text;
}

const frmUI::NumberControl frmUI::kNumberControls[] = {
    {&SkinSettings::Angle, [](const frmUI& form) { return form.hsbAngle.Value(); },
     [](frmUI& form, std::int32_t number) {
       // The text shows the direction even if the bar refuses it.
       Skip([&] { form.hsbAngle.SetValue(number); });
       form.lblAngleValue.SetCaption(NumberText(number));
     }},
    {&SkinSettings::Color1, [](const frmUI& form) { return form.shpColor(0).FillColor(); },
     [](frmUI& form, std::int32_t number) { form.shpColor(0).SetFillColor(number); }},
    {&SkinSettings::Color2, [](const frmUI& form) { return form.shpColor(1).FillColor(); },
     [](frmUI& form, std::int32_t number) { form.shpColor(1).SetFillColor(number); }},
    {&SkinSettings::Border1, [](const frmUI& form) { return form.shpColor(4).FillColor(); },
     [](frmUI& form, std::int32_t number) { form.shpColor(4).SetFillColor(number); }},
    {&SkinSettings::Border2, [](const frmUI& form) { return form.shpColor(5).FillColor(); },
     [](frmUI& form, std::int32_t number) { form.shpColor(5).SetFillColor(number); }},
    {&SkinSettings::BorderWidth,
     [](const frmUI& form) { return form.chkThickBorder.Value() != 0 ? 2 : 1; },
     [](frmUI& form, std::int32_t number) { form.chkThickBorder.SetValue(number == 1 ? 0 : 1); }},
    {&SkinSettings::Text1, [](const frmUI& form) { return form.lblSample[0].ForeColor(); },
     [](frmUI& form, std::int32_t number) { form.lblSample[0].SetForeColor(number); }},
    {&SkinSettings::Text2, [](const frmUI& form) { return form.lblSample[1].ForeColor(); },
     [](frmUI& form, std::int32_t number) { form.lblSample[1].SetForeColor(number); }},
    {&SkinSettings::Icons, [](const frmUI& form) { return form.cmbIcons.ListIndex(); },
     [](frmUI& form, std::int32_t number) { form.cmbIcons.SetListIndex(number); }},
    {&SkinSettings::TwoStateOffset,
     [](const frmUI& form) { return form.chkUseTwoState.Value() != 0 ? 0 : kTwoStateOff; },
     [](frmUI& form, std::int32_t number) { form.chkUseTwoState.SetValue(number == 0 ? 1 : 0); }},
    {&SkinSettings::IconsPerRow,
     [](const frmUI& form) { return form.cmbIconsPerRow.ListIndex() + kFewestColumns; },
     [](frmUI& form, std::int32_t number) {
       // The list itself accepts the index -1 as "none".
       if (!IsColumns(number)) throw RuntimeError::InvalidPropertyValue();
       form.cmbIconsPerRow.SetListIndex(number - kFewestColumns);
     }},
};

const frmUI::TextControl frmUI::kTextControls[] = {
    {&SkinSettings::Font1,
     [](const frmUI& form) { return GetFontSpec(form.lblSample[0], form.numbers_); },
     [](frmUI& form, TextView text) { ApplyFontSpec(form.lblSample[0], text, form.numbers_); }},
    {&SkinSettings::Font2,
     [](const frmUI& form) { return GetFontSpec(form.lblSample[1], form.numbers_); },
     [](frmUI& form, TextView text) { ApplyFontSpec(form.lblSample[1], text, form.numbers_); }},
    {&SkinSettings::DisplayIcons, [](const frmUI& form) { return form.GetDisplayIcons(); },
     [](frmUI& form, TextView text) { form.SetDisplayIcons(text); }},
};

void frmUI::ShowSkin(const SkinSettings& skin) {
  const Counted arranging(arranging_);
  for (const SkinParameter& parameter : kSkinParameters) {
    Skip([&] {
      if (parameter.number) {
        SetNumber(parameter.number, parameter.normal(skin.*parameter.number));
      } else {
        SetText(parameter.text, skin.*parameter.text);
      }
    });
  }
}

SkinSettings frmUI::Skin() const {
  static_assert(std::size(kNumberControls) + std::size(kTextControls) == kSkinParameterCount);
  SkinSettings skin;
  for (const NumberControl& control : kNumberControls) skin.*control.field = control.get(*this);
  for (const TextControl& control : kTextControls) skin.*control.field = control.get(*this);
  return skin;
}

void frmUI::SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) {
  for (const NumberControl& control : kNumberControls) {
    if (control.field == field) control.set(*this, number);
  }
}

void frmUI::SetText(Text SkinSettings::*field, TextView text) {
  for (const TextControl& control : kTextControls) {
    if (control.field == field) control.set(*this, text);
  }
}

void frmUI::SetDisplayIcons(TextView text) {
  // The panel would end the program if it could not use the order, so such an order is refused
  // here.
  std::vector<DisplayPosition> order = SplitDisplayIcons(text, kMostRows + 1, numbers_);
  if (order.size() > kMostRows) throw RuntimeError::Overflow();
  CompleteOrder(order);
  for (const DisplayPosition& position : order) {
    if (position.button < 0 || position.button >= kButtonCount) {
      throw RuntimeError::SubscriptOutOfRange();
    }
  }
  const Counted arranging(arranging_);
  lstIcons.Clear();
  for (const DisplayPosition& position : order) {
    const Text& caption = switchboard_.captions[static_cast<std::size_t>(position.button)];
    InsertRow({caption, -1, position.button, position.shown != 0}, lstIcons.ListCount());
  }
}

Text frmUI::GetDisplayIcons() const {
  std::vector<DisplayPosition> order;
  for (int row = 0; row < lstIcons.ListCount(); ++row) {
    order.push_back({lstIcons.ItemData(row), lstIcons.Selected(row) ? 1 : 0});
  }
  return FormatDisplayIcons(order);
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

void frmUI::ShowContrast() {
  if (arranging_ > 0) return;
  SkinSettings skin;
  skin.Angle = hsbAngle.Value();
  skin.Color1 = shpColor(0).FillColor();
  skin.Color2 = shpColor(1).FillColor();
  skin.Text1 = lblSample[0].ForeColor();
  skin.Text2 = lblSample[1].ForeColor();
  skin.IconsPerRow = cmbIconsPerRow.ListIndex() + kFewestColumns;
  int shown = 0;
  for (int row = 0; row < kButtonCount; ++row) shown += lstIcons.Selected(row) ? 1 : 0;

  const CaptionContrast contrast = ContrastOfCaptions(desktop(), skin, shown);
  Text names;
  for (std::size_t i = 0; i < lblSample.size(); ++i) {
    const double own = i == 0 ? contrast.normal : contrast.highlighted;
    if (own >= NeededContrast(lblSample[i].Font())) continue;
    names += (names.empty() ? u" " : u", ") + lblSample[i].Caption();
  }
  const Text hint = names.empty() ? Text() : ports_.strings.Get(IDS_UI_HARD_TO_READ) + names;
  if (hint == lblContrast.Caption()) return;
  lblContrast.SetCaption(hint);
  Announce(Announcement::kAlert, &lblContrast);
}

void frmUI::ShowPictures() {
  const int set = cmbIcons.ListIndex();
  const int size = resolution().PixelsX(kPictureTwips);
  const bool twoState = chkUseTwoState.Value() != 0;
  imgSample[0].SetPicture(icons_.Image(set, DullImage(kSampleButton, twoState), size));
  imgSample[1].SetPicture(icons_.Image(set, BrightImage(kSampleButton), size));
}

void frmUI::OnLookChanged() {
  if (cmbIcons.ListIndex() < 0) return;  // not filled yet
  ShowPictures();
  RefreshSample();
}

void frmUI::AngleChanged() {
  lblAngleValue.SetCaption(NumberText(hsbAngle.Value()));
  RefreshSample();
  ShowContrast();
}

void frmUI::PickColor(int index) {
  Color color = shpColor(index).FillColor();
  if (!ports_.colorDialog.ShowColor(this, kColorInit | kColorFullOpen, color)) return;
  shpColor(index).SetFillColor(color);
  if (index >= 2) return;
  RefreshSample();
  ShowContrast();
}

void frmUI::EditSample(int index) {
  frmFont font({desktop(), ports_.locale, ports_.strings, ports_.colorDialog, ports_.fontList},
               *this);
  font.SampleIndex = static_cast<std::int16_t>(index);
  font.SetInitialFont();
  font.ShowModal(this);
  ShowContrast();
}

void frmUI::SetDefaults() {
  ShowSkin({});
  RefreshSample();
  ShowContrast();
}

// The row at `i` is inserted before the one at `i - 1`, and the new selection is set before the old
// row is removed: after a step down no row is selected.
void frmUI::MoveRow(int direction) {
  int i = lstIcons.ListIndex();
  if (i < 0) return;
  int j = direction == kUp ? i - 1 : i + 1;
  if (j < 0 || j >= lstIcons.ListCount()) return;
  if (i < j) {
    i = j;
    j = j - 1;
  }
  const Counted arranging(arranging_);  // the number of ticks is the same afterwards
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

// The list's selection follows the mouse, and the dragged row follows the selection.
void frmUI::Drag() {
  const int target = lstIcons.ListIndex();
  if (dragging_ && target != dragged_.position && target >= 0 && dragged_.position >= 0) {
    const Counted arranging(arranging_);
    lstIcons.RemoveItem(dragged_.position);
    InsertRow(dragged_, target);
    lstIcons.SetListIndex(target);
  }
  dragged_ = SelectedRow();
}

FileDialogSettings frmUI::SkinDialog(int flags) {
  FileDialogSettings settings;
  const Text folder = PrepareSkinFolder(ports_.files, switchboard_.applicationFolder);
  settings.Filter = ports_.strings.Get(IDS_SKIN_FILTER);
  settings.Flags = flags;
  if (ports_.files.FolderExists(folder)) settings.Folder = folder;
  return settings;
}

void frmUI::LoadSkin() {
  Text path;
  const FileDialogSettings settings = SkinDialog(kFileMustExist | kHideReadOnly);
  if (ports_.fileDialogs.ShowOpen(this, settings, path) != FileDialogResult::kChosen) return;
  {
    const Counted arranging(arranging_);
    LoadSkinFile(ports_.files, path, *this, numbers_);
  }
  RefreshSample();
  ShowContrast();
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
