#include "shell/frmMain.h"

// The menu bar: items with their texts, shortcuts and handlers.

namespace marl {

namespace {

constexpr int kSeparator = -1;
constexpr int kHelpContents = 3;  // HELP_CONTENTS

constexpr Shortcut Ctrl(char letter) { return {letter, true, false}; }
constexpr Shortcut ShiftF(int number) { return {kKeyF1 + number - 1, false, true}; }

struct Entry {
  const char* name;
  int string;  ///< string id of the caption, or kSeparator
  Shortcut shortcut = {};
  void (frmMain::*handler)() = nullptr;
  int index = -1;
};

struct TopEntry {
  const char* name;
  int string;
  std::vector<Entry> entries;
};

using F = frmMain;

const std::vector<TopEntry>& MenuBar() {
  static const std::vector<TopEntry> bar = {
      {"mnuProject",
       IDS_MENU_PROJECT,
       {{"mnuProjectNew", IDS_MENU_PROJECT_NEW, Ctrl('N'), &F::mnuProjectNew},
        {"mnuProjectOpen", IDS_MENU_PROJECT_OPEN, Ctrl('O'), &F::mnuProjectOpen},
        {"mnuProjectSave", IDS_MENU_PROJECT_SAVE, Ctrl('S'), &F::mnuProjectSave},
        {"mnuProjectClean", IDS_MENU_PROJECT_CLEAN, Ctrl('W'), &F::mnuProjectClean},
        {"mnuProjectSeparator0", kSeparator},
        {"mnuProjectAnalyse", IDS_MENU_PROJECT_ANALYSE, Ctrl('A'), &F::mnuProjectAnalyse},
        {"mnuProjectSeparator1", kSeparator},
        {"mnuProjectPTM", IDS_MENU_PROJECT_TM, Ctrl('M'), &F::mnuProjectPTM},
        {"mnuProjectSeparator2", kSeparator},
        {"mnuProjectChangeServer", IDS_MENU_PROJECT_CHANGE_SERVER, Ctrl('G'),
         &F::mnuProjectChangeServer},
        {"mnuProjectTrackProjects", IDS_MENU_PROJECT_TRACK_PROJECTS, Ctrl('H'),
         &F::mnuProjectTrackProjects},
        {"mnuProjectSeparator3", kSeparator},
        {"mnuProjectExit", IDS_MENU_PROJECT_EXIT, {}, &F::mnuProjectExit}}},
      {"mnuTM",
       IDS_MENU_TM,
       {{"mnuTMImport", IDS_MENU_TM_IMPORT, Ctrl('I'), &F::mnuTMImport},
        {"mnuTMExport", IDS_MENU_TM_EXPORT, Ctrl('E'), &F::mnuTMExport}}},
      {"mnuTranslate",
       IDS_MENU_TRANSLATE,
       {{"mnuTranslateBatch", IDS_MENU_TRANSLATE_BATCH, Ctrl('B'), &F::mnuTranslateBatch},
        {"mnuTranslateProject", IDS_MENU_TRANSLATE_PROJECT, Ctrl('P'), &F::mnuTranslateProject},
        {"mnuTranslateSingle", IDS_MENU_TRANSLATE_SINGLE, Ctrl('F'), &F::mnuTranslateSingle},
        {"mnuTranslateClipboard", IDS_MENU_TRANSLATE_CLIPBOARD, Ctrl('C'),
         &F::mnuTranslateClipboard},
        {"mnuTranslateReplace", IDS_MENU_TRANSLATE_REPLACE, Ctrl('R'), &F::mnuTranslateReplace}}},
      {"mnuAlign",
       IDS_MENU_ALIGN,
       {{"mnuAlignNew", IDS_MENU_ALIGN_NEW, {kKeyF6}, &F::mnuAlignNew},
        {"mnuAlignOpen", IDS_MENU_ALIGN_OPEN, {kKeyF7}, &F::mnuAlignOpen}}},
      {"mnuGlossary",
       IDS_MENU_GLOSSARY,
       {{"mnuGlossaryMaintain", IDS_MENU_GLOSSARY_MAINTAIN, Ctrl('T'), &F::mnuGlossaryMaintain},
        {"mnuQACheck", IDS_MENU_GLOSSARY_QA_CHECK, Ctrl('Q'), &F::mnuQACheck}}},
      {"mnuTools",
       IDS_MENU_TOOLS,
       {{"mnuToolsApp", IDS_MENU_TOOLS_APP_1, ShiftF(1), nullptr, 0},
        {"mnuToolsApp", IDS_MENU_TOOLS_APP_2, ShiftF(2), nullptr, 1},
        {"mnuToolsApp", IDS_MENU_TOOLS_APP_3, ShiftF(3), nullptr, 2},
        {"mnuToolsApp", IDS_MENU_TOOLS_APP_4, ShiftF(4), nullptr, 3},
        {"mnuToolsApp", IDS_MENU_TOOLS_APP_5, ShiftF(5), nullptr, 4},
        {"mnuToolsQACheck", IDS_MENU_TOOLS_QA_CHECK, Ctrl('K'), &F::mnuToolsQACheck},
        {"mnuToolsCommentReport", IDS_MENU_TOOLS_COMMENT_REPORT, Ctrl('J'),
         &F::mnuToolsCommentReport},
        {"mnuToolsSeparator", kSeparator},
        {"mnuToolsOptions", IDS_MENU_TOOLS_OPTIONS, ShiftF(6), &F::mnuToolsOptions}}},
      {"mnuHelp",
       IDS_MENU_HELP,
       {{"mnuHelpContents", IDS_MENU_HELP_CONTENTS, {kKeyF1}, &F::mnuHelpContents},
        {"mnuHelpTutorial", IDS_MENU_HELP_TUTORIAL, {}, &F::mnuHelpTutorial},
        {"mnuHelpAbout", IDS_MENU_HELP_ABOUT, {kKeyF1, true, false}, &F::mnuHelpAbout}}},
  };
  return bar;
}

bool IsToolsApp(const Control& menu) { return menu.name() == "mnuToolsApp"; }

}  // namespace

void frmMain::DesignMenuBar() {
  for (const TopEntry& top : MenuBar()) {
    menuBar_.push_back(std::make_unique<Menu>(*this, top.name));
    Menu& parent = *menuBar_.back();
    for (const Entry& entry : top.entries) {
      menuBar_.push_back(std::make_unique<Menu>(*this, entry.name, entry.index, &parent));
      Menu& menu = *menuBar_.back();
      menu.Shortcut = entry.shortcut;
      if (entry.string == kSeparator) menu.SetCaption(u"-");
      if (IsToolsApp(menu)) {
        menu.Click = [this, index = entry.index] { mnuToolsApp(index); };
      } else if (entry.handler) {
        menu.Click = [this, handler = entry.handler] { (this->*handler)(); };
      }
    }
  }
}

void frmMain::SetMenuCaptions() {
  auto menu = menuBar_.begin();
  for (const TopEntry& top : MenuBar()) {
    (*menu++)->SetCaption(platform_.strings.Get(top.string));
    for (const Entry& entry : top.entries) {
      Menu& item = **menu++;
      if (entry.string == kSeparator) continue;
      Text caption = platform_.strings.Get(entry.string);
      // The numbers are not translated: they are the access keys in every language.
      if (IsToolsApp(item)) {
        caption = Text{u'&', static_cast<char16_t>(u'1' + entry.index), u' '} + caption;
      }
      item.SetCaption(caption);
    }
  }
}

void frmMain::ApplyToolsMenu() {
  for (const auto& menu : menuBar_) {
    if (IsToolsApp(*menu)) menu->SetVisible(ToolsMenuVisible);
  }
  BindTooltips();
}

void frmMain::mnuHelpContents() {
  if (platform_.files.FileExists(HelpFile)) {
    platform_.shell.Help(HelpFile, kHelpContents, 0);
    return;
  }
  const Text page = JoinPath(ProgramFolder(), u"Help\\") + platform_.strings.Get(IDS_HELP_FOLDER) +
                    u"\\index.html";
  if (platform_.files.NormalFileExists(page)) {
    // A browser would take a path with blanks for several.
    Browse(page, u'"' + page + u'"');
    return;
  }
  desktop().MsgBox(platform_.strings.Get(IDS_NO_HELP_FILE) + HelpFile, kExclamation,
                   kApplicationTitle);
}

}  // namespace marl
