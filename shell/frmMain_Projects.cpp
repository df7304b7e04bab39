#include "shell/frmMain.h"

#include "documents/CleanFolder.h"
#include "documents/TranslateProject.h"
#include "support/BuiltInComponents.h"

// The current project: choosing it, its documents, its working files.

namespace marl {

namespace {}  // namespace

void frmMain::mnuProjectOpen() {
  const Text before = dlgOpen.FileName;
  dlgOpen.DialogTitle = platform_.strings.Get(IDS_OPEN_PROJECT_TITLE);
  dlgOpen.Filter = platform_.strings.Get(IDS_OPEN_PROJECT_FILTER);
  dlgOpen.FileName.clear();
  Text chosen;
  const FileDialogResult result = platform_.fileDialogs.ShowOpen(
      this,
      {dlgOpen.DialogTitle, dlgOpen.Filter, dlgOpen.InitDir, dlgOpen.FileName, u"", dlgOpen.Flags},
      chosen);
  switch (result) {
    case FileDialogResult::kChosen: dlgOpen.FileName = chosen; break;
    case FileDialogResult::kCancelled: dlgOpen.FileName = before; break;
    case FileDialogResult::kFailed: dlgOpen.FileName.clear(); break;
  }
}

/// The current project file; asks the user if there is none. Empty if the user cancels.
Text frmMain::ProjectFile() {
  if (dlgOpen.FileName.empty()) mnuProjectOpen();
  return dlgOpen.FileName;
}

void frmMain::mnuProjectClean() {
  const Text project = ProjectFile();
  if (project.empty()) return;
  CleanFolder({desktop(), platform_.strings, common_}, search_).Run(project);
}

/// The table of languages, read at first use.
const clsLanguages& frmMain::Languages() {
  if (!languages_) {
    BuiltInComponents components(platform_.components);
    languages_ = std::make_unique<clsLanguages>(components);
  }
  return *languages_;
}

void frmMain::mnuTranslateProject() {
  const Text project = ProjectFile();
  if (project.empty()) return;
  TranslateProject({desktop(), platform_.files, platform_.locales, platform_.strings, common_,
                    [this]() -> const clsLanguages& { return Languages(); }, setIcon_,
                    [this](TextView arguments) { RunTool(u"Q17Bench.exe", arguments); }})
      .Run(project, this);
}

}  // namespace marl
