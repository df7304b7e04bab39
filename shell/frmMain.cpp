#include "shell/frmMain.h"

#include "appearance/PanelLayout.h"
#include "platform/FoldCase.h"
#include "support/clsCommon.h"

namespace marl {

namespace {

constexpr int kColumns = 5;
constexpr int kRows = (kButtonCount + kColumns - 1) / kColumns;
// Below the frames of the last row: the ring around a button with the focus.
constexpr std::int32_t kRing = 30;

constexpr Box At(const Point& place, const Size& size) {
  return {place.x, place.y, size.width, size.height};
}

}  // namespace

frmMain::frmMain(Platform& platform, bool debugLog)
    : Form(platform.desktop, "frmMain"),
      platform_(platform),
      log_(platform.files, ProgramFolder(), debugLog) {
  platform_.pictures.Prepare(frmSplash::PictureId(desktop()));
  Design = PanelSize(kColumns, kRows);
  Border = BorderStyle::kFixedSingle;
  MinButton = true;
  ShowInTaskbar = true;
  EndsProgram = true;
  KeyPreview = true;
  SetBackColor(kPanelBackground);
  SetFont({u"Arial", 100000, true});
  DesignMenuBar();
  for (int i = 0; i < kButtonCount; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    const PanelCell cell = CellAt(i, kColumns);
    shpRun[slot] = std::make_unique<Shape>(*this, "shpRun", i);
    shpRun[slot]->SetBounds(At(cell.frame, kFrameSize));
    imgRun[slot] = std::make_unique<Image>(*this, "imgRun", i);
    imgRun[slot]->SetBounds(At(cell.picture, kPictureSize));
    imgRun[slot]->Click = [this, i] { Press(i); };
    lblRun[slot] = std::make_unique<Label>(*this, "lblRun", i);
    lblRun[slot]->SetBounds(At(cell.label, kLabelSize));
    lblRun[slot]->Alignment = Alignment::kCenter;
    lblRun[slot]->SetForeColor(Rgb(255, 255, 255));
    lblRun[slot]->Tag = kSwitchboard[slot].tag;
    lblRun[slot]->Click = [this, i] { Press(i); };
    mnuMarl[slot] = std::make_unique<Menu>(*this, "mnuMarl", i, &mnuPopup);
    mnuMarl[slot]->Click = [this, i] { Press(i); };
  }
  for (std::size_t i = 0; i < linRun.size(); ++i) {
    linRun[i] = std::make_unique<Line>(*this, "linRun", static_cast<int>(i));
    linRun[i]->SetVisible(false);
  }
  // Some platforms make it so high at high resolutions that it would cover the last row.
  stbMain.MaxHeight =
      Design.height - CellAt(kButtonCount - 1, kColumns).frame.y - kFrameSize.height - kRing;
  imgFocus = std::make_unique<Image>(*this, "imgFocus");
  imgFocus->SetVisible(false);
  imgFocus->SetEnabled(false);  // it lets clicks through
  tmrOver.SetInterval(50);
  tmrOver.SetEnabled(false);  // until start-up is complete
  tmrOver.Tick = [this] { tmrOver_Tick(); };
  tmrTray.SetEnabled(false);
  tmrTray.Tick = [this] { tmrTray_Tick(); };
  mnuPopup.SetVisible(false);
  mnuMarl[8]->SetVisible(false);
  mnuMarl[16]->SetVisible(false);
}

void frmMain::RefreshButtons() {
  for (int i = 0; i < kButtonCount; ++i) {
    imgRun[static_cast<std::size_t>(i)]->Refresh();
    lblRun[static_cast<std::size_t>(i)]->Refresh();
  }
}

void frmMain::Resized() { OnResize(); }

void frmMain::OnActivate() {
  active_ = true;
  RefreshButtons();
  Resized();
  ShowRing();
  if (FocusButton >= 0) AnnounceFocus();
}

void frmMain::OnDeactivate() {
  active_ = false;
  ShowRing();
}

void frmMain::OnResize() {
  // Its icon stays in the notification area; without one the window could not be reached any more.
  if (State() == WindowState::kMinimised && hook_.TrayIconThere()) Hide();
  // When the menu bar wraps, its second line reduces the inner height: the form grows by as much.
  if (ClientHeight == 0 || State() != WindowState::kNormal) return;
  Move({Left(), Top(), Width(), ClientHeight - inner().height + Height()});
  ClientHeight = inner().height;
}

void frmMain::OnClick() {
  if (HoverButton >= 0) Press(HoverButton);
}

void frmMain::OnKeyPress(char16_t character) {
  const char16_t key = FoldCase(character);
  if (key == u'C') clsCommon::CentreForm(*this);
  if (!HiddenKeys.Take(key)) return;
  ShowDisplaySettings(*this);
  HiddenKeys.Reset();
}

bool frmMain::OnExecute(TextView command) {
  constexpr TextView kProject = u"PRJ ";
  if (!command.starts_with(kProject)) return false;
  dlgOpen.FileName = command.substr(kProject.size());
  return true;
}

}  // namespace marl
