#include "tests/desktop/Component.h"
#include "tests/desktop/KeyboardDay.h"

// The menu bar, by access keys and by shortcuts in every language, and what its entries start.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

struct Entry {
  int menu;   ///< the menu's text
  int entry;  ///< the entry's
  std::vector<WORD> held;
  WORD key;  ///< shortcut; 0 for none
  const wchar_t* program;
  const wchar_t* arguments;
};

const Entry kEntries[] = {
    {IDS_MENU_PROJECT, IDS_MENU_PROJECT_NEW, {VK_CONTROL}, 'N', L"Q17Cadence.exe", L"/I"},
    {IDS_MENU_PROJECT, IDS_MENU_PROJECT_SAVE, {VK_CONTROL}, 'S', L"Q17Cadence.exe", L"/E"},
    {IDS_MENU_PROJECT, IDS_MENU_PROJECT_ANALYSE, {VK_CONTROL}, 'A', L"Q17Gauge.exe", L"/w"},
    {IDS_MENU_TM, IDS_MENU_TM_IMPORT, {VK_CONTROL}, 'I', L"Q17Vault.exe", L"/I"},
    {IDS_MENU_TM, IDS_MENU_TM_EXPORT, {VK_CONTROL}, 'E', L"Q17Vault.exe", L"/E"},
    {IDS_MENU_TRANSLATE, IDS_MENU_TRANSLATE_BATCH, {VK_CONTROL}, 'B', L"Q17Batch.exe", L"/w"},
    {IDS_MENU_TRANSLATE, IDS_MENU_TRANSLATE_CLIPBOARD, {VK_CONTROL}, 'C', L"Q17Bench.exe", L"/C"},
    {IDS_MENU_ALIGN, IDS_MENU_ALIGN_NEW, {}, VK_F6, L"Q17Pair.exe", L"/n"},
    {IDS_MENU_ALIGN, IDS_MENU_ALIGN_OPEN, {}, VK_F7, L"Q17Pair.exe", L"/o"},
    {IDS_MENU_GLOSSARY, IDS_MENU_GLOSSARY_MAINTAIN, {VK_CONTROL}, 'T', L"Q17Lexis.exe", L""},
    {IDS_MENU_TOOLS, IDS_MENU_TOOLS_APP_1, {VK_SHIFT}, VK_F1, L"FaceMap.exe", L""},
    {IDS_MENU_TOOLS, IDS_MENU_TOOLS_APP_2, {VK_SHIFT}, VK_F2, L"Q17Morph.exe", L""},
    {IDS_MENU_TOOLS, IDS_MENU_TOOLS_APP_3, {VK_SHIFT}, VK_F3, L"WordRich.exe", L""},
    {IDS_MENU_TOOLS, IDS_MENU_TOOLS_APP_4, {VK_SHIFT}, VK_F4, L"PageTool.exe", L""},
    {IDS_MENU_TOOLS, IDS_MENU_TOOLS_APP_5, {VK_SHIFT}, VK_F5, L"FrameTool.exe", L""},
    {IDS_MENU_HELP, IDS_MENU_HELP_TUTORIAL, {}, 0, L"MarlTour.exe", L""},
};

/// The effect of an entry that does not start one of the suite's programs.
enum class Leads { kToWindow, kToBox, kToCall, kToSite };

struct OtherEntry {
  int menu;
  int entry;
  std::vector<WORD> held;
  WORD key;
  Leads leads;
  int text;                         ///< the window's title or the box's text
  const wchar_t* effect = nullptr;  ///< the call or the address
};

constexpr wchar_t kSite[] = L"https://alpha:81/OruCadenceProjectTracking/logon.aspx";

const OtherEntry kOtherEntries[] = {
    {IDS_MENU_PROJECT,
     IDS_MENU_PROJECT_OPEN,
     {VK_CONTROL},
     'O',
     Leads::kToWindow,
     IDS_OPEN_PROJECT_TITLE},
    {IDS_MENU_PROJECT,
     IDS_MENU_PROJECT_CLEAN,
     {VK_CONTROL},
     'W',
     Leads::kToBox,
     IDS_NOTHING_TO_CLEAN},
    {IDS_MENU_PROJECT,
     IDS_MENU_PROJECT_TM,
     {VK_CONTROL},
     'M',
     Leads::kToCall,
     0,
     L"Marl.ProjectTmComponent.Run()"},
    {IDS_MENU_PROJECT,
     IDS_MENU_PROJECT_CHANGE_SERVER,
     {VK_CONTROL},
     'G',
     Leads::kToWindow,
     IDS_SERVER_TITLE},
    {IDS_MENU_PROJECT,
     IDS_MENU_PROJECT_TRACK_PROJECTS,
     {VK_CONTROL},
     'H',
     Leads::kToSite,
     0,
     kSite},
    {IDS_MENU_TRANSLATE,
     IDS_MENU_TRANSLATE_PROJECT,
     {VK_CONTROL},
     'P',
     Leads::kToBox,
     IDS_NO_LANGUAGES},
    {IDS_MENU_TRANSLATE,
     IDS_MENU_TRANSLATE_SINGLE,
     {VK_CONTROL},
     'F',
     Leads::kToCall,
     0,
     L"Marl.SingleFileComponent.Run(,0)"},
    {IDS_MENU_TRANSLATE,
     IDS_MENU_TRANSLATE_REPLACE,
     {VK_CONTROL},
     'R',
     Leads::kToCall,
     0,
     L"Marl.ReplaceComponent.Run()"},
    {IDS_MENU_GLOSSARY,
     IDS_MENU_GLOSSARY_QA_CHECK,
     {VK_CONTROL},
     'Q',
     Leads::kToCall,
     0,
     L"Marl.QaComponent.Run(1)"},
    {IDS_MENU_TOOLS,
     IDS_MENU_TOOLS_QA_CHECK,
     {VK_CONTROL},
     'K',
     Leads::kToCall,
     0,
     L"Marl.QaComponent.Run(0)"},
    {IDS_MENU_TOOLS,
     IDS_MENU_TOOLS_COMMENT_REPORT,
     {VK_CONTROL},
     'J',
     Leads::kToCall,
     0,
     L"Marl.QaComponent.Report()"},
    {IDS_MENU_TOOLS,
     IDS_MENU_TOOLS_OPTIONS,
     {VK_SHIFT},
     VK_F6,
     Leads::kToWindow,
     IDS_OPTIONS_TITLE},
    {IDS_MENU_HELP, IDS_MENU_HELP_CONTENTS, {}, VK_F1, Leads::kToBox, IDS_NO_HELP_FILE},
    {IDS_MENU_HELP, IDS_MENU_HELP_ABOUT, {VK_CONTROL}, VK_F1, Leads::kToWindow, IDS_ABOUT_TITLE},
};

class MenuBar : public SwitchboardTest {
 protected:
  MenuBar() { settings.Set(L"Tools", L"True"); }
};

/// The access key of a text; the suite's programs are numbered.
wchar_t KeyOf(const Words& words, int text) {
  if (text >= IDS_MENU_TOOLS_APP_1 && text <= IDS_MENU_TOOLS_APP_5) {
    return static_cast<wchar_t>(L'1' + text - IDS_MENU_TOOLS_APP_1);
  }
  return words.AccessKey(text);
}

/// Opens a menu by its access key, and chooses an entry by its own.
bool PressEntry(const RunningMarl& marl, const Words& words, int menu, int entry) {
  return marl.PressMenu(KeyOf(words, menu), KeyOf(words, entry));
}

/// Waits for the entry's effect, and closes what it opened by a key.
testing::AssertionResult Follow(const OtherEntry& entry, const Words& words,
                                const SuiteFolder& suite, const RunningMarl& marl,
                                const ComponentCalls& calls) {
  const std::wstring text = entry.text ? words(entry.text) : std::wstring();
  switch (entry.leads) {
    case Leads::kToWindow: {
      HWND window = nullptr;
      WaitUntil([&] {
        window = marl.Window(L"MarlForm", text.c_str());
        if (!window) window = marl.Window(L"#32770", text.c_str());
        return window != nullptr;
      });
      if (!window) return testing::AssertionFailure() << "no window";
      if (!BringForward(window)) return testing::AssertionFailure() << "it takes no keys";
      Chord({}, VK_ESCAPE);
      if (!WaitUntil([&] { return !IsWindow(window); })) {
        return testing::AssertionFailure() << "the window stays";
      }
      break;
    }
    case Leads::kToBox: {
      const MessageBoxWindow box = marl.WaitForBox();
      if (!box) return testing::AssertionFailure() << "no message";
      if (!box.Text().starts_with(text)) {
        return testing::AssertionFailure() << ToUtf8(box.Text());
      }
      if (!BringForward(box.window())) return testing::AssertionFailure() << "it takes no keys";
      Chord({}, VK_RETURN);
      if (!WaitUntil([&] { return !IsWindow(box.window()); })) {
        return testing::AssertionFailure() << "the message stays";
      }
      break;
    }
    case Leads::kToCall: {
      const auto last = [&] {
        const std::vector<std::wstring> all = calls.All();
        return all.empty() ? std::wstring() : all.back();
      };
      if (!WaitUntil([&] { return last() == entry.effect; })) {
        return testing::AssertionFailure() << "the last call is " << ToUtf8(last());
      }
      break;
    }
    case Leads::kToSite: {
      const auto last = [&] { return suite.Starts().empty() ? Started{} : suite.Starts().back(); };
      if (!WaitUntil([&] { return last().arguments == entry.effect; })) {
        return testing::AssertionFailure() << last();
      }
      break;
    }
  }
  return testing::AssertionSuccess();
}

template <typename AnyEntry>
std::string Name(const Words& words, const AnyEntry& entry) {
  return ToUtf8(words(entry.menu) + L", " + words(entry.entry));
}

}  // namespace

TEST_P(KeyboardDay, EntriesStartTheirToolsFromAFolderWithBlanksAndForeignLetters) {
  settings.Set(L"Tools", L"True");
  const SuiteFolder foreign(L"My  suite, \u00dcbung \u03a9 & co (1)");
  ASSERT_TRUE(CopyFileW(suite.marl().c_str(), foreign.marl().c_str(), FALSE));
  const RunningMarl marl(foreign);
  ASSERT_TRUE(PastSplash(marl));
  std::size_t count = 0;
  for (const Entry& entry : kEntries) {
    ASSERT_TRUE(PressEntry(marl, words, entry.menu, entry.entry)) << Name(words, entry);
    const Starts starts = foreign.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count) << Name(words, entry);
    EXPECT_EQ(starts.back(), Start(foreign, entry.program, entry.arguments));
  }
  EXPECT_FALSE(marl.Box());
}

TEST_F(MenuBar, ShortcutsStartTheirToolsAtADriveRoot) {
  const SuiteFolder suite;
  const DriveLetter drive(suite.path());
  ASSERT_TRUE(drive.made());
  const std::wstring root = drive.name() + L"\\";
  ASSERT_TRUE(WaitUntil(
      [&] { return GetFileAttributesW((root + L"Marl.exe").c_str()) != INVALID_FILE_ATTRIBUTES; }));
  const RunningMarl marl(suite, L"", root + L"Marl.exe");
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  std::size_t count = 0;
  for (const Entry& entry : kEntries) {
    if (!entry.key) continue;
    Chord(entry.held, entry.key);
    const Starts starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count) << entry.program << entry.arguments;
    EXPECT_EQ(starts.back(),
              (Started{entry.program, root + entry.program, entry.arguments, root, SW_SHOWNORMAL}));
  }
}

TEST_P(KeyboardDay, OtherEntriesAndTheirShortcutsLeadToTheirWindowsMessagesAndComponents) {
  settings.SetRegistry(L"Settings", L"TrackingServer",
                       L"<project-tracking server=\"alpha\" ssl=\"yes\" port=\"81\"/>");
  const std::wstring browser = suite.path() + L"\\Browser.exe";
  ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), browser.c_str(), TRUE));
  const HtmlBrowser html(browser);
  ASSERT_TRUE(html.made());
  const ComponentCalls calls(suite);
  const RegisteredComponent projectTm(L"Marl.ProjectTmComponent");
  const RegisteredComponent replace(L"Marl.ReplaceComponent");
  const RegisteredComponent singleFile(L"Marl.SingleFileComponent");
  const RegisteredComponent qa(L"Marl.QaComponent");
  ASSERT_TRUE(projectTm.made() && replace.made() && singleFile.made() && qa.made());
  // An empty folder, without a project.
  const std::wstring folder = suite.temp() + L"\\empty";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  for (const bool byShortcut : {false, true}) {
    for (const OtherEntry& entry : kOtherEntries) {
      SCOPED_TRACE(Name(words, entry) + (byShortcut ? ", by its shortcut" : ", by its command"));
      ASSERT_TRUE(Tell(folder + L"\\none.qprx"));
      if (byShortcut) {
        ASSERT_TRUE(Press(main, entry.held, entry.key));
      } else {
        ASSERT_TRUE(PressEntry(marl, words, entry.menu, entry.entry));
      }
      ASSERT_TRUE(Follow(entry, words, suite, marl, calls));
    }
  }
  EXPECT_FALSE(marl.Box());
  std::vector<std::wstring> expected;
  for (int time = 0; time < 2; ++time) {
    for (const OtherEntry& entry : kOtherEntries) {
      // A project without languages does not load those of the suite.
      if (entry.leads == Leads::kToCall) expected.push_back(entry.effect);
    }
  }
  EXPECT_EQ(calls.All(), expected);
  EXPECT_EQ(suite.WaitForTools(2).size(), 2u) << "the browser, twice";
  EXPECT_TRUE(Close(marl));
}

TEST_F(MenuBar, ContentsOpensTheHtmlHelpInTheBrowserAndSaysWhenThereIsNone) {
  const SuiteFolder suite(L"My  suite, \u00dcbung \u03a9 & co (1)");
  const std::wstring browser = suite.path() + L"\\Browser.exe";
  ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), browser.c_str(), TRUE));
  const HtmlBrowser html(browser);
  ASSERT_TRUE(html.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(marl.PressMenu(L'H', L'C'));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"The help file was not found: " + suite.path() + L"\\Marl.HLP");
  ASSERT_TRUE(box.Press(IDOK));
  // The same program, once the pages are there.
  const std::wstring folder = suite.path() + L"\\Help";
  const std::wstring page = folder + L"\\en\\index.html";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW((folder + L"\\en").c_str(), nullptr));
  ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), page.c_str(), TRUE));
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  ASSERT_TRUE(BringForward(main));
  Chord({}, VK_F1);
  const Starts starts = suite.WaitForTools(1);
  ASSERT_EQ(starts.size(), 1u);
  EXPECT_EQ(starts.back().program, L"Browser.exe");
  EXPECT_EQ(starts.back().arguments, L'"' + page + L'"');
  EXPECT_TRUE(Close(marl));
}

TEST_F(MenuBar, EntryOfAMissingToolComplains) {
  const std::wstring tool = L"Q17Cadence.exe";
  const SuiteFolder suite(L"My  suite, \u00dcbung \u03a9 & co (1)", {tool});
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  ASSERT_TRUE(marl.PressMenu(L'P', L'I'));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Title(), L"Marl");
  EXPECT_EQ(box.Text(), L"File not found : " + suite.path() + L"\\" + tool);
  EXPECT_EQ(box.Buttons(), std::vector<int>{IDOK});
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_TRUE(Close(marl));
}

TEST_F(MenuBar, HiddenToolsDontAnswerTheirShortcuts) {
  settings.Set(L"Tools", L"False");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  for (WORD key = VK_F1; key <= VK_F5; ++key) Chord({VK_SHIFT}, key);
  Chord({VK_CONTROL}, 'N');
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Cadence.exe", L"/I")}));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u);
}

TEST_F(MenuBar, ExitEndsWithTheExitSequence) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  ASSERT_TRUE(marl.PressMenu(L'P', L'X'));
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_NE(settings.Get(L"Left"), std::nullopt);
  EXPECT_EQ(settings.Get(L"Tools"), L"True");
}

}  // namespace marl::desktop
