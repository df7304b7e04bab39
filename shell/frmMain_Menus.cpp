#include "shell/frmMain.h"

// The menu bar: items with their texts, shortcuts and handlers.

namespace marl {

namespace {

constexpr int kSeparator = -1;
constexpr int kNoHelpFile = 30003;
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
       1000,
       {{"mnuProjectNew", 1001, Ctrl('N'), &F::mnuProjectNew},
        {"mnuProjectOpen", 1002, Ctrl('O'), &F::mnuProjectOpen},
        {"mnuProjectSave", 1003, Ctrl('S'), &F::mnuProjectSave},
        {"mnuProjectClean", 1004, Ctrl('W'), &F::mnuProjectClean},
        {"mnuProjectSeparator0", kSeparator},
        {"mnuProjectAnalyse", 1005, Ctrl('A'), &F::mnuProjectAnalyse},
        {"mnuProjectSeparator1", kSeparator},
        {"mnuProjectPTM", 1007, Ctrl('M'), &F::mnuProjectPTM},
        {"mnuProjectSeparator2", kSeparator},
        {"mnuProjectChangeServer", 1008, Ctrl('G'), &F::mnuProjectChangeServer},
        {"mnuProjectTrackProjects", 1009, Ctrl('H'), &F::mnuProjectTrackProjects},
        {"mnuProjectSeparator3", kSeparator},
        {"mnuProjectExit", 1006, {}, &F::mnuProjectExit}}},
      {"mnuTM",
       1100,
       {{"mnuTMImport", 1101, Ctrl('I'), &F::mnuTMImport},
        {"mnuTMExport", 1102, Ctrl('E'), &F::mnuTMExport}}},
      {"mnuTranslate",
       1200,
       {{"mnuTranslateBatch", 1201, Ctrl('B'), &F::mnuTranslateBatch},
        {"mnuTranslateProject", 1202, Ctrl('P'), &F::mnuTranslateProject},
        {"mnuTranslateSingle", 1203, Ctrl('F'), &F::mnuTranslateSingle},
        {"mnuTranslateClipboard", 1204, Ctrl('C'), &F::mnuTranslateClipboard},
        {"mnuTranslateReplace", 1205, Ctrl('R'), &F::mnuTranslateReplace}}},
      {"mnuAlign",
       1300,
       {{"mnuAlignNew", 1301, {kKeyF6}, &F::mnuAlignNew},
        {"mnuAlignOpen", 1302, {kKeyF7}, &F::mnuAlignOpen}}},
      {"mnuGlossary",
       1400,
       {{"mnuGlossaryMaintain", 1401, Ctrl('T'), &F::mnuGlossaryMaintain},
        {"mnuQACheck", 1402, Ctrl('Q'), &F::mnuQACheck}}},
      {"mnuTools",
       1500,
       {{"mnuToolsApp", 1501, ShiftF(1), nullptr, 0},
        {"mnuToolsApp", 1502, ShiftF(2), nullptr, 1},
        {"mnuToolsApp", 1503, ShiftF(3), nullptr, 2},
        {"mnuToolsApp", 1504, ShiftF(4), nullptr, 3},
        {"mnuToolsApp", 1505, ShiftF(5), nullptr, 4},
        {"mnuToolsQACheck", 1508, Ctrl('K'), &F::mnuToolsQACheck},
        {"mnuToolsCommentReport", 1509, Ctrl('J'), &F::mnuToolsCommentReport},
        {"mnuToolsSeparator", kSeparator},
        {"mnuToolsOptions", 1506, ShiftF(6), &F::mnuToolsOptions}}},
      {"mnuHelp",
       1600,
       {{"mnuHelpContents", 1601, {kKeyF1}, &F::mnuHelpContents},
        {"mnuHelpTutorial", 1603, {}, &F::mnuHelpTutorial},
        {"mnuHelpAbout", 1602, {kKeyF1, true, false}, &F::mnuHelpAbout}}},
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
  if (!platform_.files.FileExists(HelpFile)) {
    desktop().MsgBox(platform_.strings.Get(kNoHelpFile) + HelpFile, kExclamation,
                     kApplicationTitle);
    return;
  }
  platform_.shell.Help(HelpFile, kHelpContents, 0);
}

}  // namespace marl
