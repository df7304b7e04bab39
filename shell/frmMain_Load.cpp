#include "shell/frmMain.h"

#include "platform/FoldCase.h"
#include "shell/modFindWindow.h"
#include "support/Numbers.h"
#include "support/clsCommon.h"

// Start-up and shutdown of the main form. The suite's other programs rely on the order of the
// steps: it decides what a second start may touch and what a first run leaves behind.

namespace marl {

namespace {

constexpr TextView kApplication = u"Marl";
constexpr TextView kSection = u"Settings";

constexpr TextView kTemporaryFiles = u"ORU*.TMP";
constexpr TextView kProbeExtension = u".html";
// What a start leaves that is killed while it probes the browser.
constexpr TextView kProbes = u"ORU*.TMP.HTML";

}  // namespace

void frmMain::OnLoad() {
  RunRegistrar();
  icons_.SetFormIcon(hWnd(), kMarlIcon, true);
  hook_.RegisterShellMessages();
  EndIfSecondInstance();
  AskFirstRunQuestions();
  RedirectToWizard();
  RemoveTemporaryFiles();
  ClientHeight = inner().height;
  SetCaptions();
  Refresh();
  ShowSplash();
  PrepareStrips();
  HelpFile = JoinPath(ProgramFolder(), u"Marl.HLP");
  EnterTray();
  PrepareButtons();
  RestorePosition();
  RestoreFlags();
  SetCaption(kApplicationTitle);
  ApplyToolsMenu();
  servers_.Start();
  settingsRead_ = true;
  ProbeBrowser();
  WaitForSplash();
  MarkMissingTools();
  IconsPerRow = 5;
  SetUI();
  HiddenKeys.Reset();
  HoverButton = -1;
  FillPopup();
  tmrOver.SetEnabled(true);
  started_ = true;
  // After an installer has replaced the program, the switchboard comes back, not the wizard.
  platform_.process.RegisterRestart(u"NW");
}

// First of all: even a second instance, which ends at once, has then registered the components.
void frmMain::RunRegistrar() {
  launcher_.RunProgram(ProgramFolder(), u"RegLib.EXE", u"/s", kShowNormal, false);
}

void frmMain::EndIfSecondInstance() {
  if (!platform_.process.PreviousInstance()) {
    desktop().OfferCommands(*this, ProgramName(), u"Marl");
    return;
  }
  Skip([&] {
    WindowHandle window = 0;
    Text title;
    if (FindWindowByTitle(desktop(), ServerTitleStart(), kTitleBegins, window, title)) {
      desktop().ShowWindow(window, kShowNormal);
      desktop().ActivateByTitle(title);
    } else {
      desktop().MsgBox(platform_.strings.Get(IDS_ALREADY_RUNNING), kInformation, kApplicationTitle);
    }
  });
  throw ProcessEnd{};
}

void frmMain::AskFirstRunQuestions() {
  if (Setting(u"FirstRun", u"Y") != u"Y") return;
  // After the demonstration the user is asked again at the next start: `FirstRun` stays "Y".
  if (Ask(IDS_ASK_DEMONSTRATION) &&
      launcher_.RunProgram(ProgramFolder(), u"MarlTour.exe", u"", kShowNormal, true)) {
    throw ProcessEnd{};
  }
  Save(u"FirstRun", u"N");
  launcher_.RunProgram(ProgramFolder(), u"Q17Shell.exe", u"/R", kShowHidden, false);
  Save(u"Wizard", Ask(IDS_ASK_WIZARD) ? u"Y" : u"N");
}

void frmMain::RedirectToWizard() {
  if (FoldCase(platform_.process.CommandLine()) == u"NW") return;
  if (Setting(u"Wizard", u"N") != u"Y") return;
  if (launcher_.RunProgram(ProgramFolder(), u"Q17Shell.exe", u"1", kShowNormal, true)) {
    throw ProcessEnd{};
  }
}

void frmMain::RemoveTemporaryFiles() {
  const Text folder = platform_.files.TempPath();
  // The pattern alone would mean the current folder.
  if (folder.empty()) return;
  for (const TextView pattern : {kTemporaryFiles, kProbes}) {
    const auto search = platform_.files.Find(folder + Text(pattern));
    if (!search) continue;
    std::vector<Text> names;
    FoundEntry entry;
    while (search->Next(entry) == kOk) {
      if (!(entry.attributes & kDirectory)) names.push_back(entry.name);
    }
    for (const Text& name : names) platform_.files.Remove(folder + name, false);
  }
}

void frmMain::SetCaptions() {
  desktop().Actions = {
      platform_.strings.Get(IDS_ACTION_PRESS), platform_.strings.Get(IDS_ACTION_OPEN),
      platform_.strings.Get(IDS_ACTION_TICK), platform_.strings.Get(IDS_ACTION_CLEAR),
      platform_.strings.Get(IDS_ACTION_SELECT)};
  ChangeMenuBar([this] { SetMenuCaptions(); });
  for (int i = 0; i < kButtonCount; ++i) {
    lblRun[static_cast<std::size_t>(i)]->SetCaption(platform_.strings.Get(kCaptionString + i));
  }
  for (int i = 0; i < kButtonCount; ++i) {
    TooltipTexts[static_cast<std::size_t>(i)] = platform_.strings.Get(kTooltipString + i);
  }
}

// The pictures of the panel and of the tray's menu are decoded while the splash is shown.
void frmMain::PrepareStrips() {
  // A stored value that is no number fails when the panel is laid out.
  Skip([this] {
    const SkinSettings skin = ReadSkin(platform_.registry, IconsPerRow);
    iconSets_.Prepare(skin.Icons, PictureSize());
  });
  platform_.pictures.Prepare(PopupPictures());
}

void frmMain::PrepareButtons() {
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    mnuMarl[i]->SetCaption(lblRun[i]->Caption());
    imgRun[i]->SetToolTipText(u"");
    lblRun[i]->SetToolTipText(u"");
    lblRun[i]->Move(shpRun[i]->Left() + (shpRun[i]->Width() - lblRun[i]->Width()) / 2,
                    lblRun[i]->Top());
  }
}

void frmMain::RestorePosition() {
  const Size screen = ScreenSize();
  int left = CLng(Setting(u"Left", u"-1"));
  int top = CLng(Setting(u"Top", u"-1"));
  // A window that just fits stays where it is. If any part of it would be off the screen, it is
  // centred in both directions.
  const bool outside = left < 0 || top < 0 || std::int64_t{left} + Width() > screen.width ||
                       std::int64_t{top} + Height() > screen.height;
  if (outside) {
    clsCommon::CentreForm(*this);
  } else {
    Move(left, top);
  }
}

void frmMain::RestoreFlags() {
  dlgOpen.InitDir =
      platform_.settings.GetSetting(u"Marl Project Wizard", u"Target Files", u"Folder", u"");
  TooltipsEnabled = CBool(Setting(u"Tooltips", u"TRUE"));
  ToolsMenuVisible = CBool(Setting(u"Tools", u"FALSE"));
  CreateTooltips();
  BindTooltips();
  const int state = CInt(Setting(u"WindowState", u"0"));
  if (state < 0 || state > 2) throw RuntimeError::InvalidPropertyValue();
  SetState(static_cast<WindowState>(state));
  ApplicationFolder = ProgramFolder();
  log_.OpenDebugLog();
}

void frmMain::ProbeBrowser() {
  const Text folder = platform_.files.TempPath();
  const Text probe = JoinPath(folder, platform_.files.TempName().append(kProbeExtension));
  {
    constexpr std::string_view kPage = "<html><head></head><body><p></p></body></html>\r\n";
    Status status = kOk;
    const auto file = folder.empty() ? nullptr : platform_.files.Create(probe, status);
    if (!file || file->Write(kPage.data(), kPage.size()) != kOk) {
      throw RuntimeError(70, u"Permission denied");
    }
  }
  BrowserPath.clear();
  Text program;
  if (platform_.shell.FindProgram(probe, u"", program) > 32) BrowserPath = program;
  platform_.files.Remove(probe, true);
}

void frmMain::MarkMissingTools() {
  for (auto& label : lblRun) {
    if (label->Tag.empty() || label->Tag == kDead) continue;
    const bool there = platform_.files.FileExists(JoinPath(ApplicationFolder, label->Tag));
    label->Tag = there ? TextView() : kDead;
    if (!there) label->SetEnabled(false);
  }
}

void frmMain::OnUnload() {
  hook_.RemoveTrayIcon(icons_);
  // If the program ends during the first questions, the stored settings must not change. The end of
  // the session must not wait for what the user has not seen yet.
  if (settingsRead_ && (started_ || !desktop().SessionEnds())) SaveSettings();
  hook_.UnhookWindow(hWnd());
  log_.CloseDebugLog();
}

void frmMain::OnEnded() { hook_.RemoveTrayIcon(icons_); }

void frmMain::SaveSettings() {
  Save(u"Left", NumberText(Left()));
  Save(u"Top", NumberText(Top()));
  Save(u"Tooltips", BooleanText(TooltipsEnabled));
  Save(u"Tools", BooleanText(ToolsMenuVisible));
  Save(u"WindowState", NumberText(static_cast<int>(State())));
  Save(u"XtraFeatures", imgRun[kUtilities]->Visible() ? u"1" : u"0");
  servers_.SaveServerSettings();
}

bool frmMain::Ask(int question) const {
  return desktop().MsgBox(platform_.strings.Get(question), kQuestion | kYesNo, kApplicationTitle) ==
         kAnswerYes;
}

Text frmMain::Setting(TextView key, TextView default_) const {
  return platform_.settings.GetSetting(kApplication, kSection, key, default_);
}

void frmMain::Save(TextView key, TextView value) {
  platform_.settings.SaveSetting(kApplication, kSection, key, value);
}

Text frmMain::ProgramFolder() const {
  const Text path = platform_.process.ProgramPath();
  const std::size_t slash = path.rfind(u'\\');
  if (slash == Text::npos) return {};
  // A drive's root keeps its backslash: "C:" alone means the drive's current folder.
  return path.substr(0, slash == 2 && path[1] == u':' ? 3 : slash);
}

Text frmMain::ProgramName() const {
  const Text path = platform_.process.ProgramPath();
  const std::size_t slash = path.rfind(u'\\');
  const Text name = slash == Text::npos ? path : path.substr(slash + 1);
  return name.substr(0, name.rfind(u'.'));
}

}  // namespace marl
