#include "tests/unit/Journeys.h"

#include "appearance/frmFont.h"
#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "network/frmChangeServer.h"
#include "network/frmLanSettings.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "support/frmAbout2006.h"

namespace marl {

namespace {

constexpr std::intptr_t kDoubleClick = 0x203;
constexpr std::intptr_t kRightClick = 0x205;
constexpr std::uint32_t kWmActivate = 6;

/// The user of a dialog of this type.
template <typename FormType>
void InDialog(ProgramRun& run, const char* name, void (*act)(ProgramRun&, FormType&)) {
  run.inDialog[name] = [&run, act](Form& form) { act(run, static_cast<FormType&>(form)); };
}

void Click(ProgramRun& run, Control& control) {
  run.Act([&] { control.UserClick(); });
}

void Edit(ProgramRun& run, TextBox& field, TextView text) {
  run.Act([&] { field.UserEdit(text, static_cast<int>(text.size()), 0); });
}

void Choose(ProgramRun& run, ItemList& list, int row) {
  if (row >= list.ListCount()) return;
  run.Act([&] { list.UserSelectRow(row); });
}

void TrayMessage(ProgramRun& run, const char* message, std::intptr_t mouse) {
  const std::uint32_t number = run.hooks.NumberOf(message);
  run.Act([&] { run.hooks.Send(run.main().hWnd(), number, 0, mouse); });
}

void Command(ProgramRun& run, TextView command) {
  run.Act([&] { run.main().UserExecute(command); });
}

void CurrentProject(ProgramRun& run, TextView path) { Command(run, u"PRJ " + Text(path)); }

/// Opens the options, which the user closes after pressing this button there.
void PressInOptions(ProgramRun& run, CommandButton frmOptions::*button) {
  run.inDialog["frmOptions"] = [&run, button](Form& form) {
    auto& options = static_cast<frmOptions&>(form);
    Click(run, options.*button);
    Click(run, options.cmdCancel);
  };
  run.Act([&] { run.main().mnuToolsOptions(); });
}

// ---- Dialogs

void UseOptions(ProgramRun& run, frmOptions& form) {
  for (CheckBox& box : form.chkOptions) Click(run, box);
  run.Act([&] { form.tabOptions.UserSelectTab(4); });
  Click(run, form.cmdClearRegEx);
  Click(run, form.cmdAddRegEx);
  Edit(run, form.txtRegEx, u"[a-z]+");
  Click(run, form.cmdOK);
}

void UseFont(ProgramRun& run, frmFont& form) {
  Choose(run, form.cmbFont, 0);
  Edit(run, form.txtSize, u"14");
  Click(run, *form.chkStyle[0]);
  Click(run, form.cmdSetColor);
  Click(run, *form.cmdDismiss[0]);
}

void UseDisplaySettings(ProgramRun& run, frmUI& form) {
  run.Act([&] { form.hsbAngle.UserScroll(77); });
  Choose(run, form.cmbIcons, 2);
  Choose(run, form.cmbIconsPerRow, 1);
  Click(run, form.chkUseTwoState);
  Click(run, form.chkThickBorder);
  Choose(run, form.lstIcons, 0);
  Click(run, form.cmdMove[1]);
  if (form.lstIcons.ListCount() > 2) run.Act([&] { form.lstIcons.UserCheck(2); });
  Click(run, form.cmdSetColor(0));
  Click(run, form.cmdSample[0]);
  Click(run, form.cmdDismiss[0]);
}

void UseLanSettings(ProgramRun& run, frmLanSettings& form) {
  Click(run, form.optOverride);
  if (form.chkUseProxy.Value() == 0) Click(run, form.chkUseProxy);
  Edit(run, form.txtProxyAddress, u"other.example");
  Edit(run, form.txtProxyPort, u"3128");
  Click(run, form.cmdOK);
  if (form.loaded()) Click(run, form.cmdCancel);
}

void UseSegmentation(ProgramRun& run, frmSegmentation& form) {
  Click(run, form.cmdAddDontSplit);
  Edit(run, form.txtDontSplit, u"e.g.");
  Click(run, form.cmdAddForceSplit);
  Edit(run, form.txtForceSplit, u"\u0416");
  Click(run, form.cmdOK);
}

void UseServer(ProgramRun& run, frmChangeServer& form) {
  run.Act([&] { form.cmbServer.UserEdit(u"gamma.example"); });
  Click(run, form.chkSSL);
  if (form.chkUseDefault.Value() != 0) Click(run, form.chkUseDefault);
  Edit(run, form.txtPortNumber, u"8443");
  Click(run, form.cmdOK);
}

void SkinFile(ProgramRun& run, TextView path, CommandButton frmUI::*button, int dismiss) {
  run.fileDialogs.Choose(path);
  run.inDialog["frmUI"] = [&run, button, dismiss](Form& form) {
    auto& settings = static_cast<frmUI&>(form);
    Click(run, settings.*button);
    Click(run, settings.cmdDismiss[static_cast<std::size_t>(dismiss)]);
  };
  PressInOptions(run, &frmOptions::cmdDisplay);
}

// ---- Journeys

void ActOptions(ProgramRun& run) {
  InDialog<frmOptions>(run, "frmOptions", UseOptions);
  run.Act([&] { run.main().mnuToolsOptions(); });
}

void ActDisplaySettings(ProgramRun& run) {
  run.colorDialog.Choose(Rgb(1, 2, 3));
  InDialog<frmUI>(run, "frmUI", UseDisplaySettings);
  InDialog<frmFont>(run, "frmFont", UseFont);
  PressInOptions(run, &frmOptions::cmdDisplay);
}

void ActHiddenWord(ProgramRun& run) {
  run.inDialog["frmUI"] = [&run](Form& form) {
    auto& settings = static_cast<frmUI&>(form);
    Click(run, settings.cmdDefault);
    Click(run, settings.cmdDismiss[0]);
  };
  for (const char16_t key : TextView(u"SETGUI")) run.Act([&] { run.main().UserKey(key); });
}

void ActSaveSkin(ProgramRun& run) { SkinFile(run, Machine::kNewSkin, &frmUI::cmdSave, 1); }
void ActReplaceSkin(ProgramRun& run) { SkinFile(run, Machine::kSkin, &frmUI::cmdSave, 1); }
void ActLoadSkin(ProgramRun& run) { SkinFile(run, Machine::kSkin, &frmUI::cmdLoad, 0); }

void ActLanSettings(ProgramRun& run) {
  InDialog<frmLanSettings>(run, "frmLanSettings", UseLanSettings);
  PressInOptions(run, &frmOptions::cmdLanSettings);
}

void ActLanDefault(ProgramRun& run) {
  run.inDialog["frmLanSettings"] = [&run](Form& form) {
    auto& settings = static_cast<frmLanSettings&>(form);
    Click(run, settings.optDefault);
    Click(run, settings.cmdOK);
  };
  PressInOptions(run, &frmOptions::cmdLanSettings);
}

void ActSegmentation(ProgramRun& run) {
  InDialog<frmSegmentation>(run, "frmSegmentation", UseSegmentation);
  PressInOptions(run, &frmOptions::cmdSegmentation);
}

void ActServer(ProgramRun& run) {
  InDialog<frmChangeServer>(run, "frmChangeServer", UseServer);
  run.Act([&] { run.main().Press(kChangeServer); });
  run.Act([&] { run.main().Press(kTrackProjects); });
}

void ArrangeComponents(ProgramRun& run) {
  const auto accepts = [](const Text&, std::vector<ComponentValue>&, ComponentValue&, Text&) {
    return true;
  };
  for (const char16_t* name :
       {u"Marl.TrackingServerClient", u"Marl.QaComponent", u"Marl.ProjectTmComponent",
        u"Marl.SingleFileComponent", u"Marl.ReplaceComponent", u"Marl.SegmentationComponent"}) {
    run.components.registered[name] = accepts;
  }
}

void ActComponents(ProgramRun& run) {
  ActServer(run);
  run.Act([&] { run.main().mnuProjectPTM(); });
  run.Act([&] { run.main().mnuTranslateSingle(); });
  run.Act([&] { run.main().mnuTranslateReplace(); });
  run.Act([&] { run.main().mnuQACheck(); });
  run.Act([&] { run.main().mnuToolsQACheck(); });
  run.Act([&] { run.main().mnuToolsCommentReport(); });
  PressInOptions(run, &frmOptions::cmdSegmentation);
}

void ActAbout(ProgramRun& run) {
  run.inDialog["frmAbout2006"] = [&run](Form& form) {
    auto& about = static_cast<frmAbout2006&>(form);
    Click(run, *about.lblLabel[frmAbout2006::kSite]);
    Click(run, *about.cmdOK);
  };
  run.Act([&] { run.main().mnuHelpAbout(); });
}

void ChooseFile(ProgramRun& run) {
  run.inDialog["frmSelectFile"] = [&run](Form& form) {
    auto& select = static_cast<frmSelectFile&>(form);
    Choose(run, select.cmbLanguage, 0);
    Click(run, select.cmdOK);
  };
}

void ActTranslate(ProgramRun& run) {
  ChooseFile(run);
  CurrentProject(run, Machine::kProject);
  run.Act([&] { run.main().mnuTranslateProject(); });
}

void ActTranslateOlder(ProgramRun& run) {
  ChooseFile(run);
  run.fileDialogs.Choose(Machine::kOlderProject);
  run.Act([&] { run.main().mnuProjectOpen(); });
  run.Act([&] { run.main().mnuTranslateProject(); });
}

void ActClean(ProgramRun& run) {
  run.answersYes = true;
  CurrentProject(run, Machine::kProject);
  run.Act([&] { run.main().mnuProjectClean(); });
  run.answersYes = false;
}

void ActTray(ProgramRun& run) {
  run.Act([&] { run.main().SetState(WindowState::kMinimised); });
  TrayMessage(run, "msgMarlMenu", kDoubleClick);
  run.tray.choice = kQaCheck + 1;
  TrayMessage(run, "msgMarlMenu", kRightClick);
  run.tray.choice = 0;
  run.Act([&] { run.hooks.Send(run.main().hWnd(), kWmActivate, 0, 0); });
}

void ActTaskbarCreated(ProgramRun& run) {
  run.tray.Restart();
  TrayMessage(run, "TaskbarCreated", 0);
}

void ActCommands(ProgramRun& run) {
  for (const TextView command : {TextView(u"PRJ C:\\P\\job.qprx"), TextView(u"prj x"),
                                 TextView(u"PRJ "), TextView(u"[open]"), TextView(u"")}) {
    Command(run, command);
  }
}

void ActPanel(ProgramRun& run) {
  for (int x = 0; x < 9000; x += 1500) {
    run.Act([&] { run.main().UserMouseMove(0, 0, static_cast<float>(x), 1000.0F); });
  }
  run.tray.cursor = {200, 200};
  run.Act([&] { run.main().tmrOver.Tick(); });
  run.Act([&] { run.main().SetUI(); });
}

void ActButtons(ProgramRun& run) {
  for (int button = 0; button < kButtonCount; ++button) {
    if (button == kExit) continue;
    run.Act([&] { run.main().Press(button); });
  }
}

void ActMenus(ProgramRun& run) {
  using Handler = void (frmMain::*)();
  for (const Handler handler :
       {&frmMain::mnuProjectNew, &frmMain::mnuProjectSave, &frmMain::mnuProjectAnalyse,
        &frmMain::mnuTMImport, &frmMain::mnuTMExport, &frmMain::mnuTranslateBatch,
        &frmMain::mnuTranslateClipboard, &frmMain::mnuAlignNew, &frmMain::mnuAlignOpen,
        &frmMain::mnuGlossaryMaintain, &frmMain::mnuHelpContents, &frmMain::mnuHelpTutorial}) {
    run.Act([&] { (run.main().*handler)(); });
  }
  for (int tool = 0; tool < 5; ++tool) run.Act([&] { run.main().mnuToolsApp(tool); });
}

void ActMonitors(ProgramRun& run) {
  for (const int dpi : {144, 96}) run.Act([&] { run.desktop.Rescale(run.main(), dpi); });
  for (const bool on : {true, false}) run.Act([&] { run.desktop.SetHighContrast(on); });
}

void ArrangeSecondStart(ProgramRun& run) {
  run.machine().session->holders = 1;
  run.desktop.others.push_back({u"Marl : alpha", true});
}

void ActEndOfSession(ProgramRun& run) {
  if (run.desktop.ended()) return;
  const AllocationsWatched watched(true);
  run.desktop.EndSession(true);
}

void ActExitFromTray(ProgramRun& run) {
  run.tray.choice = kExit + 1;
  TrayMessage(run, "msgMarlMenu", kRightClick);
}

void ActExitButton(ProgramRun& run) {
  run.Act([&] { run.main().Press(kExit); });
}

}  // namespace

const std::vector<Journey>& Journeys() {
  static const std::vector<Journey> all = {
      {"FirstStart", nullptr, nullptr, true, true},
      {"UsualStart", nullptr, nullptr, true},
      {"SecondStart", ArrangeSecondStart, nullptr, true},
      {"StartWithComponents", ArrangeComponents, nullptr, true},
      {"EndOfSession", nullptr, ActEndOfSession},
      {"ExitFromTray", nullptr, ActExitFromTray},
      {"ExitButton", nullptr, ActExitButton},
      {"Options", nullptr, ActOptions},
      {"DisplaySettings", nullptr, ActDisplaySettings},
      {"HiddenWord", nullptr, ActHiddenWord},
      {"SaveSkin", nullptr, ActSaveSkin},
      {"ReplaceSkin", nullptr, ActReplaceSkin},
      {"LoadSkin", nullptr, ActLoadSkin},
      {"LanSettings", nullptr, ActLanSettings},
      {"LanDefault", nullptr, ActLanDefault},
      {"Segmentation", nullptr, ActSegmentation},
      {"Server", nullptr, ActServer},
      {"Components", ArrangeComponents, ActComponents},
      {"About", nullptr, ActAbout},
      {"Translate", nullptr, ActTranslate},
      {"TranslateOlder", nullptr, ActTranslateOlder},
      {"Clean", nullptr, ActClean},
      {"Tray", nullptr, ActTray},
      {"TaskbarCreated", nullptr, ActTaskbarCreated},
      {"Commands", nullptr, ActCommands},
      {"Panel", nullptr, ActPanel},
      {"Buttons", nullptr, ActButtons},
      {"Menus", nullptr, ActMenus},
      {"Monitors", nullptr, ActMonitors},
  };
  return all;
}

void Travel(const Journey& journey, ProgramRun& run) {
  if (journey.arrange) journey.arrange(run);
  const auto begin = [&] {
    run.faults.Begin();
    if (run.whenCounting) run.whenCounting();
  };
  if (journey.starting) begin();
  run.Start();
  if (!journey.starting) begin();
  if (journey.act) journey.act(run);
  run.Leave();
}

const std::vector<void (*)(ProgramRun&)>& ActsOfADay() {
  static const std::vector<void (*)(ProgramRun&)> acts = {
      ActPanel,    ActCommands,        ActTranslate,    ActTranslateOlder,
      ActOptions,  ActDisplaySettings, ActSaveSkin,     ActReplaceSkin,
      ActLoadSkin, ActLanSettings,     ActSegmentation, ActServer,
      ActTray,     ActTaskbarCreated,  ActButtons,      ActMenus,
      ActAbout,    ActHiddenWord,      ActLanDefault,   ActMonitors,
      ActClean};
  return acts;
}

void TravelAll(ProgramRun& run, const std::function<void(const StoredState&)>& after) {
  const auto acted = [&] {
    if (after) after(run.machine().Stored());
  };
  run.faults.Begin();
  run.Start();
  acted();
  for (const auto act : ActsOfADay()) {
    act(run);
    // The next dialog has another user.
    run.inDialog.clear();
    acted();
  }
  run.Leave();
  acted();
}

}  // namespace marl
