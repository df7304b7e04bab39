#include "shell/frmMain.h"

#include "network/ServerTag.h"

// What buttons and menu items do. Programs are started only from the program's own folder.

namespace marl {

namespace {

constexpr std::array<TextView, 5> kToolsApps = {u"FaceMap.exe", u"Q17Morph.exe", u"WordRich.exe",
                                                u"PageTool.exe", u"FrameTool.exe"};

/// Sets a flag while it lives. A failure may be dropped further up (the tray menu does that), and
/// the entry must then work again.
class Busy {
 public:
  explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
  ~Busy() { flag_ = false; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& flag_;
};

}  // namespace

void frmMain::Press(int index) {
  const auto slot = static_cast<std::size_t>(index);
  // A reader says that it is unavailable.
  if (lblRun[slot]->Tag == kDead) return AnnounceButton(Announcement::kState, index);
  clsXMLTag server;
  ReadServerTag(servers_.CurrentServerTag, server);
  // The tool reads the current server from the registry.
  servers_.SaveServerSettings();
  switch (index) {
    case kChangeServer: mnuProjectChangeServer(); break;
    case kTrackProjects: mnuProjectTrackProjects(); break;
    case kAdministrator: RunTool(kSwitchboard[slot].program, WardenArguments(server)); break;
    case kQaCheck: mnuToolsQACheck(); break;
    case kExit: Unload(); break;
    default:
      if (!kSwitchboard[slot].program.empty()) RunTool(kSwitchboard[slot].program);
      break;
  }
}

void frmMain::RunTool(TextView program, TextView arguments) {
  launcher_.RunProgram(ApplicationFolder, program, arguments, kShowNormal, true);
}

void frmMain::mnuProjectNew() { RunTool(u"Q17Cadence.exe", u"/I"); }
void frmMain::mnuProjectSave() { RunTool(u"Q17Cadence.exe", u"/E"); }
void frmMain::mnuProjectAnalyse() { RunTool(u"Q17Gauge.exe", u"/w"); }
void frmMain::mnuProjectPTM() { components_.RunProjectTm(); }
void frmMain::mnuProjectExit() { Unload(); }

void frmMain::mnuTMImport() { RunTool(u"Q17Vault.exe", u"/I"); }
void frmMain::mnuTMExport() { RunTool(u"Q17Vault.exe", u"/E"); }

void frmMain::mnuTranslateBatch() { RunTool(u"Q17Batch.exe", u"/w"); }
void frmMain::mnuTranslateSingle() { components_.RunSingleFile(); }
void frmMain::mnuTranslateClipboard() { RunTool(u"Q17Bench.exe", u"/C"); }
void frmMain::mnuTranslateReplace() { components_.RunReplace(); }

void frmMain::mnuAlignNew() { RunTool(u"Q17Pair.exe", u"/n"); }
void frmMain::mnuAlignOpen() { RunTool(u"Q17Pair.exe", u"/o"); }

void frmMain::mnuGlossaryMaintain() { RunTool(u"Q17Lexis.exe"); }
void frmMain::mnuQACheck() { RunQaCheck(1); }

void frmMain::mnuToolsApp(int index) {
  if (index < 0 || index >= static_cast<int>(kToolsApps.size())) return desktop().Beep();
  RunTool(kToolsApps[static_cast<std::size_t>(index)]);
}

void frmMain::mnuToolsQACheck() { RunQaCheck(0); }

// The component pumps messages, so a second click can arrive during a run. It is ignored.
void frmMain::RunQaCheck(int kind) {
  if (QaBusy) return;
  const Busy busy(QaBusy);
  components_.RunQaCheck(kind);
}

void frmMain::mnuToolsCommentReport() {
  if (CommentReportBusy) return;
  const Busy busy(CommentReportBusy);
  components_.RunCommentReport();
}

void frmMain::Browse(TextView document, TextView argument) const {
  if (BrowserPath.empty()) {
    launcher_.ShellOpen(u"open", document, u"", u"", kShowNormal);
  } else {
    launcher_.ShellOpen(u"open", BrowserPath, argument, u"", kShowNormal);
  }
}

void frmMain::mnuHelpTutorial() { RunTool(u"MarlTour.exe"); }

}  // namespace marl
