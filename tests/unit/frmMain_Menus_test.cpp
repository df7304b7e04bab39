// The menu bar: its items, captions and shortcuts, and its changes at run time.

#include <gtest/gtest.h>

#include "tests/unit/World.h"

namespace marl {

namespace {

struct Row {
  std::string name;
  int string = 0;  ///< 0 for a separator
  Text caption;
  Text shortcut;
  int index = -1;
  bool operator==(const Row&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
  return out << row.name << ' ' << row.string << ' '
             << std::string(row.caption.begin(), row.caption.end()) << ' '
             << std::string(row.shortcut.begin(), row.shortcut.end()) << ' ' << row.index;
}

struct Top {
  Row self;
  std::vector<Row> items;
};

const std::vector<Top>& Table() {
  static const std::vector<Top> table = {
      {{"mnuProject", 1000, u"&Project", u""},
       {{"mnuProjectNew", 1001, u"&Import files in to a new project...", u"Ctrl+N"},
        {"mnuProjectOpen", 1002, u"&Open an existing project...", u"Ctrl+O"},
        {"mnuProjectSave", 1003, u"&Export files from a project...", u"Ctrl+S"},
        {"mnuProjectClean", 1004, u"&Remove temporary files...", u"Ctrl+W"},
        {"mnuProjectSeparator0", 0, u"-", u""},
        {"mnuProjectAnalyse", 1005, u"&Analyse leverage statistics...", u"Ctrl+A"},
        {"mnuProjectSeparator1", 0, u"-", u""},
        {"mnuProjectPTM", 1007, u"&Project TM...", u"Ctrl+M"},
        {"mnuProjectSeparator2", 0, u"-", u""},
        {"mnuProjectChangeServer", 1008, u"Change &server...", u"Ctrl+G"},
        {"mnuProjectTrackProjects", 1009, u"&Track projects", u"Ctrl+H"},
        {"mnuProjectSeparator3", 0, u"-", u""},
        {"mnuProjectExit", 1006, u"E&xit", u""}}},
      {{"mnuTM", 1100, u"T&M", u""},
       {{"mnuTMImport", 1101, u"&Import a Translation Memory...", u"Ctrl+I"},
        {"mnuTMExport", 1102, u"&Export a Translation Memory...", u"Ctrl+E"}}},
      {{"mnuTranslate", 1200, u"&Translate", u""},
       {{"mnuTranslateBatch", 1201, u"Apply TMs in &batch mode...", u"Ctrl+B"},
        {"mnuTranslateProject", 1202, u"Translate a specific &project file...", u"Ctrl+P"},
        {"mnuTranslateSingle", 1203, u"Translate a single &file...", u"Ctrl+F"},
        {"mnuTranslateClipboard", 1204, u"Translate &clipboard contents...", u"Ctrl+C"},
        {"mnuTranslateReplace", 1205, u"&Global search and replace...", u"Ctrl+R"}}},
      {{"mnuAlign", 1300, u"&Align", u""},
       {{"mnuAlignNew", 1301, u"&Create a new alignment from existing files...", u"F6"},
        {"mnuAlignOpen", 1302, u"&Open an existing alignment...", u"F7"}}},
      {{"mnuGlossary", 1400, u"Term&Vault", u""},
       {{"mnuGlossaryMaintain", 1401, u"&Maintain a terminology database...", u"Ctrl+T"},
        {"mnuQACheck", 1402, u"Terminology &QA Check...", u"Ctrl+Q"}}},
      {{"mnuTools", 1500, u"T&ools", u""},
       {{"mnuToolsApp", 1501, u"&1 Font Mapper", u"Shift+F1", 0},
        {"mnuToolsApp", 1502, u"&2 Convert Files", u"Shift+F2", 1},
        {"mnuToolsApp", 1503, u"&3 DOC to RTF", u"Shift+F3", 2},
        {"mnuToolsApp", 1504, u"&4 HTML Utilities", u"Shift+F4", 3},
        {"mnuToolsApp", 1505, u"&5 MIF Utilities", u"Shift+F5", 4},
        {"mnuToolsQACheck", 1508, u"&QA Check...", u"Ctrl+K"},
        {"mnuToolsCommentReport", 1509, u"&Comment Report...", u"Ctrl+J"},
        {"mnuToolsSeparator", 0, u"-", u""},
        {"mnuToolsOptions", 1506, u"&Options...", u"Shift+F6"}}},
      {{"mnuHelp", 1600, u"&Help", u""},
       {{"mnuHelpContents", 1601, u"&Contents", u"F1"},
        {"mnuHelpTutorial", 1603, u"&Translating in Marl...", u""},
        {"mnuHelpAbout", 1602, u"&About...", u"Ctrl+F1"}}},
  };
  return table;
}

class MenuBar : public testing::Test {
 protected:
  void Put(TextView key, TextView value) { world.settings.Put(u"Marl", u"Settings", key, value); }

  /// The items of a menu, or of the bar itself, in order.
  std::vector<Menu*> Entries(const Menu* parent) {
    std::vector<Menu*> entries;
    for (Control* control : world.main().controls()) {
      if (control->kind() != ControlKind::kMenu) continue;
      auto* const menu = static_cast<Menu*>(control);
      if (menu->parent() == parent) entries.push_back(menu);
    }
    return entries;
  }
  /// The bar's menus, without the hidden one.
  std::vector<Menu*> Tops() {
    std::vector<Menu*> tops = Entries(nullptr);
    std::erase_if(tops, [](const Menu* menu) { return menu->name() == "mnuPopup"; });
    return tops;
  }
  Menu& Entry(const std::string& name, int index = -1) {
    for (Control* control : world.main().controls()) {
      if (control->name() == name && control->index() == index) return static_cast<Menu&>(*control);
    }
    throw std::logic_error("no " + name);
  }
  static Row RowOf(const Menu& menu, int string) {
    return {menu.name(), string, menu.Caption(), ShortcutText(menu.Shortcut), menu.index()};
  }
  /// Puts the program of each table row into the folder, so that nothing is missing.
  void PutTools() {
    for (const TextView name :
         {u"Q17Cadence.exe", u"Q17Gauge.exe", u"Q17Vault.exe", u"Q17Batch.exe", u"Q17Bench.exe",
          u"Q17Pair.exe", u"Q17Lexis.exe", u"MarlTour.exe", u"FaceMap.exe", u"Q17Morph.exe",
          u"WordRich.exe", u"PageTool.exe", u"FrameTool.exe"}) {
      world.files.Put(u"C:\\Suite\\" + Text(name), "MZ");
    }
  }
  /// What was started since the last call: program and arguments.
  std::vector<std::pair<Text, Text>> Started() {
    std::vector<std::pair<Text, Text>> all;
    for (const MemoryShell::Started& start : world.shell.started) {
      EXPECT_EQ(start.directory, u"C:\\Suite");
      EXPECT_EQ(start.show, kShowNormal);
      all.emplace_back(start.file.substr(start.file.rfind(u'\\') + 1), start.parameters);
    }
    world.shell.started.clear();
    return all;
  }

  World world;
};

using Programs = std::vector<std::pair<Text, Text>>;

constexpr Shortcut ShiftF(int number) { return {kKeyF1 + number - 1, false, true}; }

}  // namespace

TEST_F(MenuBar, IsAsInTheTable) {
  world.Start();
  const std::vector<Menu*> tops = Tops();
  ASSERT_EQ(tops.size(), Table().size());
  EXPECT_EQ(Entries(nullptr).size(), Table().size() + 1);
  EXPECT_FALSE(Entry("mnuPopup").Visible());
  for (std::size_t t = 0; t < Table().size(); ++t) {
    EXPECT_EQ(RowOf(*tops[t], Table()[t].self.string), Table()[t].self);
    const std::vector<Menu*> items = Entries(tops[t]);
    ASSERT_EQ(items.size(), Table()[t].items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
      const Row& row = Table()[t].items[i];
      EXPECT_EQ(RowOf(*items[i], row.string), row);
      EXPECT_EQ(items[i]->separator(), row.string == 0);
    }
  }
}

TEST_F(MenuBar, TextsOfAnotherLanguageKeepPrefixesAndShortcuts) {
  const MemoryStrings german("de");
  world.resource.texts = german.texts;
  world.Start();
  const std::vector<Menu*> tops = Tops();
  ASSERT_EQ(tops.size(), Table().size());
  for (std::size_t t = 0; t < Table().size(); ++t) {
    const std::vector<Menu*> items = Entries(tops[t]);
    EXPECT_EQ(tops[t]->Caption(), german.texts.at(Table()[t].self.string));
    for (std::size_t i = 0; i < items.size(); ++i) {
      const Row& row = Table()[t].items[i];
      if (row.string == 0) continue;
      Text caption = german.texts.at(row.string);
      if (row.name == "mnuToolsApp") caption = row.caption.substr(0, 3) + caption;
      EXPECT_EQ(items[i]->Caption(), caption) << row;
      EXPECT_EQ(ShortcutText(items[i]->Shortcut), row.shortcut) << row;
    }
  }
}

TEST_F(MenuBar, NothingIsDisabledEvenWithoutTools) {
  world.Start();
  for (Menu* top : Entries(nullptr)) {
    EXPECT_TRUE(top->Enabled());
    for (Menu* item : Entries(top)) EXPECT_TRUE(item->Enabled()) << item->name();
  }
}

TEST_F(MenuBar, ItemOfAMissingToolComplains) {
  world.Start();
  Entry("mnuProjectNew").UserClick();
  EXPECT_EQ(world.desktop.messages,
            (std::vector<MemoryDesktop::Message>{
                {u"File not found : C:\\Suite\\Q17Cadence.exe", 48, u"Marl"}}));
}

TEST_F(MenuBar, EachEntryAndItsShortcutStartTheSame) {
  const struct {
    const char* name;
    Shortcut keys;
    TextView program;
    TextView arguments;
    int index = -1;
  } cases[] = {
      {"mnuProjectNew", {'N', true, false}, u"Q17Cadence.exe", u"/I"},
      {"mnuProjectSave", {'S', true, false}, u"Q17Cadence.exe", u"/E"},
      {"mnuProjectAnalyse", {'A', true, false}, u"Q17Gauge.exe", u"/w"},
      {"mnuTMImport", {'I', true, false}, u"Q17Vault.exe", u"/I"},
      {"mnuTMExport", {'E', true, false}, u"Q17Vault.exe", u"/E"},
      {"mnuTranslateBatch", {'B', true, false}, u"Q17Batch.exe", u"/w"},
      {"mnuTranslateClipboard", {'C', true, false}, u"Q17Bench.exe", u"/C"},
      {"mnuAlignNew", {0x75, false, false}, u"Q17Pair.exe", u"/n"},
      {"mnuAlignOpen", {0x76, false, false}, u"Q17Pair.exe", u"/o"},
      {"mnuGlossaryMaintain", {'T', true, false}, u"Q17Lexis.exe", u""},
      {"mnuHelpTutorial", {}, u"MarlTour.exe", u""},
      {"mnuToolsApp", {0x70, false, true}, u"FaceMap.exe", u"", 0},
      {"mnuToolsApp", {0x71, false, true}, u"Q17Morph.exe", u"", 1},
      {"mnuToolsApp", {0x72, false, true}, u"WordRich.exe", u"", 2},
      {"mnuToolsApp", {0x73, false, true}, u"PageTool.exe", u"", 3},
      {"mnuToolsApp", {0x74, false, true}, u"FrameTool.exe", u"", 4},
  };
  PutTools();
  Put(u"Tools", u"True");
  world.Start();
  Started();
  for (const auto& c : cases) {
    const Programs expected = {{Text(c.program), Text(c.arguments)}};
    Entry(c.name, c.index).UserClick();
    EXPECT_EQ(Started(), expected) << c.name;
    if (c.keys.key == 0) continue;
    EXPECT_TRUE(world.main().UserShortcut(c.keys)) << c.name;
    EXPECT_EQ(Started(), expected) << c.name;
  }
}

TEST_F(MenuBar, ShortcutNeedsExactlyItsKeys) {
  PutTools();
  world.Start();
  Started();
  for (const Shortcut keys :
       {Shortcut{'N', false, false}, Shortcut{'N', true, true}, Shortcut{'N', false, true},
        Shortcut{0x75, true, false}, Shortcut{'Z', true, false}, Shortcut{}}) {
    EXPECT_FALSE(world.main().UserShortcut(keys));
  }
  EXPECT_TRUE(Started().empty());
}

TEST_F(MenuBar, ToolsMenuBeginsWithQaCheckWhenToolsAreOff) {
  world.Start();
  const auto items = Entries(&Entry("mnuTools"));
  const auto first = std::find_if(items.begin(), items.end(), [](Menu* m) { return m->Visible(); });
  ASSERT_NE(first, items.end());
  EXPECT_EQ((*first)->Caption(), u"&QA Check...");
}

TEST_F(MenuBar, HiddenToolsDontFire) {
  PutTools();
  world.Start();
  Started();
  for (int i = 0; i < 5; ++i) {
    EXPECT_FALSE(world.main().UserShortcut(ShiftF(i + 1))) << i;
    Entry("mnuToolsApp", i).UserClick();
  }
  EXPECT_TRUE(Started().empty());
}

TEST_F(MenuBar, ApplyToolsMenuShowsAndHidesTheToolsAndBindsTheTips) {
  PutTools();
  world.Start();
  Started();
  const int before = world.tips.created;
  world.main().ToolsMenuVisible = true;
  world.main().ApplyToolsMenu();
  EXPECT_TRUE(world.main().UserShortcut(ShiftF(1)));
  EXPECT_EQ(Started(), (Programs{{u"FaceMap.exe", u""}}));
  EXPECT_EQ(world.tips.created, before + 18);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(Entry("mnuToolsApp", i).Visible());
  world.main().ToolsMenuVisible = false;
  world.main().ApplyToolsMenu();
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(Entry("mnuToolsApp", i).Visible());
  EXPECT_TRUE(Entry("mnuToolsOptions").Visible());
}

TEST_F(MenuBar, HelpContentsOpensTheHelpFile) {
  world.files.Put(u"C:\\Suite\\Marl.HLP", "help");
  world.Start();
  EXPECT_TRUE(world.main().UserShortcut({kKeyF1, false, false}));
  EXPECT_EQ(world.shell.help, (std::vector<MemoryShell::HelpCall>{{u"C:\\Suite\\Marl.HLP", 3, 0}}));
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(MenuBar, HelpContentsOpensTheHtmlHelpInTheBrowserFoundAtStartUp) {
  world.shell.browser = u"C:\\Browser\\browse.exe";
  world.files.Put(u"C:\\Suite\\Help\\en\\index.html", "help");
  world.Start();
  world.shell.started.clear();
  EXPECT_TRUE(world.main().UserShortcut({kKeyF1, false, false}));
  EXPECT_EQ(world.shell.started, (std::vector<MemoryShell::Started>{
                                     {ShellOwner::kDesktop, u"open", u"C:\\Browser\\browse.exe",
                                      u"\"C:\\Suite\\Help\\en\\index.html\"", u"", kShowNormal}}));
  EXPECT_TRUE(world.shell.help.empty());
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(MenuBar, HelpContentsLeavesTheHtmlHelpToTheShellWithoutABrowser) {
  world.shell.findCode = 31;
  world.files.Put(u"C:\\Suite\\Help\\en\\index.html", "help");
  world.Start();
  world.shell.started.clear();
  Entry("mnuHelpContents").UserClick();
  EXPECT_EQ(world.shell.started, (std::vector<MemoryShell::Started>{
                                     {ShellOwner::kDesktop, u"open",
                                      u"C:\\Suite\\Help\\en\\index.html", u"", u"", kShowNormal}}));
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(MenuBar, HelpContentsPrefersTheSuitesHelpFileToTheHtmlHelp) {
  world.files.Put(u"C:\\Suite\\Help\\en\\index.html", "help");
  world.files.Put(u"C:\\Suite\\Marl.HLP", "help");
  world.Start();
  world.shell.started.clear();
  Entry("mnuHelpContents").UserClick();
  EXPECT_EQ(world.shell.help, (std::vector<MemoryShell::HelpCall>{{u"C:\\Suite\\Marl.HLP", 3, 0}}));
  EXPECT_TRUE(world.shell.started.empty());
}

TEST_F(MenuBar, HelpContentsOpensTheHelpOfTheProgramsLanguageAlone) {
  world.resource.texts = MemoryStrings("de").texts;
  world.files.Put(u"C:\\Suite\\Help\\en\\index.html", "help");
  world.Start();
  Entry("mnuHelpContents").UserClick();
  EXPECT_EQ(world.desktop.messages,
            (std::vector<MemoryDesktop::Message>{
                {u"Die Hilfedatei wurde nicht gefunden: C:\\Suite\\Marl.HLP", 48, u"Marl"}}));
  world.desktop.messages.clear();
  world.files.Put(u"C:\\Suite\\Help\\de\\index.html", "help");
  world.shell.started.clear();
  Entry("mnuHelpContents").UserClick();
  EXPECT_EQ(world.shell.started.size(), 1u);
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(MenuBar, HelpContentsTakesNoFolderForThePage) {
  world.files.Put(u"C:\\Suite\\Help\\en\\index.html\\page.html", "help");
  world.Start();
  Entry("mnuHelpContents").UserClick();
  EXPECT_EQ(world.desktop.messages.size(), 1u);
}

TEST_F(MenuBar, HelpContentsSaysWhenTheHelpFileIsMissing) {
  world.Start();
  Entry("mnuHelpContents").UserClick();
  EXPECT_TRUE(world.shell.help.empty());
  EXPECT_EQ(world.desktop.messages,
            (std::vector<MemoryDesktop::Message>{
                {u"The help file was not found: C:\\Suite\\Marl.HLP", 48, u"Marl"}}));
}

TEST_F(MenuBar, ExitUnloadsTheMainForm) {
  world.Start();
  Entry("mnuProjectExit").UserClick();
  EXPECT_FALSE(world.main().loaded());
  EXPECT_TRUE(world.settings.Has(u"Marl", u"Settings", u"WindowState"));
}

TEST_F(MenuBar, PlainCounterpartOfTheTrayMenuPressesItsButtons) {
  world.Start();
  const std::vector<Menu*> items = Entries(&Entry("mnuPopup"));
  ASSERT_EQ(items.size(), 18u);
  for (int i = 0; i < 18; ++i) {
    EXPECT_EQ(items[static_cast<std::size_t>(i)]->index(), i);
    EXPECT_EQ(items[static_cast<std::size_t>(i)]->Caption(),
              world.strings.Get(IDS_BUTTON_ANALYSE + i));
    EXPECT_EQ(items[static_cast<std::size_t>(i)]->Visible(), i != 8 && i != 16) << i;
    EXPECT_FALSE(items[static_cast<std::size_t>(i)]->Reachable());
  }
  items[17]->UserClick();
  EXPECT_FALSE(world.main().loaded());
}

TEST(ShortcutText, NamesTheKeys) {
  EXPECT_EQ(ShortcutText({}), u"");
  EXPECT_EQ(ShortcutText({'N', true, false}), u"Ctrl+N");
  EXPECT_EQ(ShortcutText({kKeyF1, false, false}), u"F1");
  EXPECT_EQ(ShortcutText({kKeyF1 + 4, false, true}), u"Shift+F5");
  EXPECT_EQ(ShortcutText({kKeyF1 + 11, true, true}), u"Shift+Ctrl+F12");
}

}  // namespace marl
