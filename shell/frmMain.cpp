#include "shell/frmMain.h"

#include "platform/FoldCase.h"
#include "support/clsCommon.h"

namespace marl {

namespace {

// The grid of the design: five columns, cells of 1740 by 1260 twips, and where the parts of a
// button stand in their cell.
constexpr int kColumns = 5;
constexpr Size kCell{1740, 1260};
constexpr Box kFrame{60, 60, 1695, 1215};
constexpr Box kLabel{60, 840, 1695, 435};
constexpr Box kPicture{540, 120, 720, 720};

constexpr Box InCell(int index, const Box& part) {
  return {index % kColumns * kCell.width + part.left, index / kColumns * kCell.height + part.top,
          part.width, part.height};
}

}  // namespace

frmMain::frmMain(Platform& platform) : Form(platform.desktop, "frmMain"), platform_(platform) {
  Design = {8790, 5430};
  Border = BorderStyle::kFixedSingle;
  MinButton = true;
  ShowInTaskbar = true;
  KeyPreview = true;
  SetBackColor(Rgb(0, 77, 57));
  SetFont({u"Arial", 100000, true});
  DesignMenuBar();
  for (int i = 0; i < kButtonCount; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    shpRun[slot] = std::make_unique<Shape>(*this, "shpRun", i);
    shpRun[slot]->SetBounds(InCell(i, kFrame));
    imgRun[slot] = std::make_unique<Image>(*this, "imgRun", i);
    imgRun[slot]->SetBounds(InCell(i, kPicture));
    imgRun[slot]->Click = [this, i] { Press(i); };
    lblRun[slot] = std::make_unique<Label>(*this, "lblRun", i);
    lblRun[slot]->SetBounds(InCell(i, kLabel));
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
  tmrOver.SetInterval(50);
  tmrOver.Tick = [this] { tmrOver_Tick(); };
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
  RefreshButtons();
  Resized();
}

void frmMain::OnResize() {
  if (State() == WindowState::kMinimised) Hide();  // the notification area keeps it
  // A menu bar that wraps takes its line from the inner height: the form grows by it.
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
  if (HiddenKeys.Take(key)) HiddenKeys.Reset();
}

bool frmMain::OnExecute(TextView command) {
  constexpr TextView kProject = u"PRJ ";
  if (!command.starts_with(kProject)) return false;
  dlgOpen.FileName = command.substr(kProject.size());
  return true;
}

}  // namespace marl
