#include "tests/desktop/Component.h"
#include "tests/desktop/Switchboard.h"

// The menu bar, by access keys and by shortcuts, and what its entries start.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

struct Entry {
  wchar_t top;    ///< access key of the menu
  wchar_t entry;  ///< access key in it
  std::vector<WORD> held;
  WORD key;  ///< shortcut; 0 for none
  const wchar_t* program;
  const wchar_t* arguments;
};

const Entry kEntries[] = {
    {L'P', L'I', {VK_CONTROL}, 'N', L"Q17Cadence.exe", L"/I"},
    {L'P', L'E', {VK_CONTROL}, 'S', L"Q17Cadence.exe", L"/E"},
    {L'P', L'A', {VK_CONTROL}, 'A', L"Q17Gauge.exe", L"/w"},
    {L'M', L'I', {VK_CONTROL}, 'I', L"Q17Vault.exe", L"/I"},
    {L'M', L'E', {VK_CONTROL}, 'E', L"Q17Vault.exe", L"/E"},
    {L'T', L'B', {VK_CONTROL}, 'B', L"Q17Batch.exe", L"/w"},
    {L'T', L'C', {VK_CONTROL}, 'C', L"Q17Bench.exe", L"/C"},
    {L'A', L'C', {}, VK_F6, L"Q17Pair.exe", L"/n"},
    {L'A', L'O', {}, VK_F7, L"Q17Pair.exe", L"/o"},
    {L'V', L'M', {VK_CONTROL}, 'T', L"Q17Lexis.exe", L""},
    {L'O', L'1', {VK_SHIFT}, VK_F1, L"FaceMap.exe", L""},
    {L'O', L'2', {VK_SHIFT}, VK_F2, L"Q17Morph.exe", L""},
    {L'O', L'3', {VK_SHIFT}, VK_F3, L"WordRich.exe", L""},
    {L'O', L'4', {VK_SHIFT}, VK_F4, L"PageTool.exe", L""},
    {L'O', L'5', {VK_SHIFT}, VK_F5, L"FrameTool.exe", L""},
    {L'H', L'T', {}, 0, L"MarlTour.exe", L""},
};

/// The effect of an entry that does not start one of the suite's programs.
enum class Leads { kToWindow, kToBox, kToCall, kToSite };

struct OtherEntry {
  wchar_t top;
  wchar_t entry;
  std::vector<WORD> held;
  WORD key;
  Leads leads;
  const wchar_t* text;  ///< the window's title, the box's text, the call or the address
};

constexpr wchar_t kSite[] = L"https://alpha:81/OruCadenceProjectTracking/logon.aspx";

const OtherEntry kOtherEntries[] = {
    {L'P', L'O', {VK_CONTROL}, 'O', Leads::kToWindow, L"Open Marl project file"},
    {L'P', L'R', {VK_CONTROL}, 'W', Leads::kToBox, L"No temporary files found"},
    {L'P', L'P', {VK_CONTROL}, 'M', Leads::kToCall, L"Marl.ProjectTmComponent.Run()"},
    {L'P', L'S', {VK_CONTROL}, 'G', Leads::kToWindow, L"Change server"},
    {L'P', L'T', {VK_CONTROL}, 'H', Leads::kToSite, kSite},
    {L'T', L'P', {VK_CONTROL}, 'P', Leads::kToBox, L"No target languages found"},
    {L'T', L'F', {VK_CONTROL}, 'F', Leads::kToCall, L"Marl.SingleFileComponent.Run(,0)"},
    {L'T', L'G', {VK_CONTROL}, 'R', Leads::kToCall, L"Marl.ReplaceComponent.Run()"},
    {L'V', L'Q', {VK_CONTROL}, 'Q', Leads::kToCall, L"Marl.QaComponent.Run(1)"},
    {L'O', L'Q', {VK_CONTROL}, 'K', Leads::kToCall, L"Marl.QaComponent.Run(0)"},
    {L'O', L'C', {VK_CONTROL}, 'J', Leads::kToCall, L"Marl.QaComponent.Report()"},
    {L'H', L'C', {}, VK_F1, Leads::kToBox, L"The help file was not found: "},
    {L'H', L'A', {VK_CONTROL}, VK_F1, Leads::kToWindow, L"About Marl"},
};

class MenuBar : public SwitchboardTest {
 protected:
  MenuBar() { settings.Set(L"Tools", L"True"); }

  /// Waits for the entry's effect, and closes what it opened.
  static testing::AssertionResult Follow(const OtherEntry& entry, const SuiteFolder& suite,
                                         const RunningMarl& marl, const ComponentCalls& calls) {
    switch (entry.leads) {
      case Leads::kToWindow: {
        HWND window = nullptr;
        WaitUntil([&] {
          window = marl.Window(L"MarlForm", entry.text);
          if (!window) window = marl.Window(L"#32770", entry.text);
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
        if (!box.Text().starts_with(entry.text)) {
          return testing::AssertionFailure() << ToUtf8(box.Text());
        }
        if (!box.Press(IDOK)) return testing::AssertionFailure() << "the message stays";
        break;
      }
      case Leads::kToCall: {
        const auto last = [&] {
          const std::vector<std::wstring> all = calls.All();
          return all.empty() ? std::wstring() : all.back();
        };
        if (!WaitUntil([&] { return last() == entry.text; })) {
          return testing::AssertionFailure() << "the last call is " << ToUtf8(last());
        }
        break;
      }
      case Leads::kToSite: {
        const auto last = [&] {
          return suite.Starts().empty() ? Started{} : suite.Starts().back();
        };
        if (!WaitUntil([&] { return last().arguments == entry.text; })) {
          return testing::AssertionFailure() << last();
        }
        break;
      }
    }
    return testing::AssertionSuccess();
  }
};

std::string Name(const OtherEntry& entry) {
  return ToUtf8(std::wstring(1, entry.top) + L", " + entry.entry);
}

std::string Name(const Entry& entry) {
  return ToUtf8(std::wstring(1, entry.top) + L", " + entry.entry);
}

}  // namespace

TEST_F(MenuBar, EntriesStartTheirToolsFromAFolderWithBlanksAndForeignLetters) {
  const SuiteFolder suite(L"My  suite, \u00dcbung \u03a9 & co (1)");
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  std::size_t count = 0;
  for (const Entry& entry : kEntries) {
    ASSERT_TRUE(marl.PressMenu(entry.top, entry.entry)) << Name(entry);
    const Starts starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count) << Name(entry);
    EXPECT_EQ(starts.back(), Start(suite, entry.program, entry.arguments));
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
    ASSERT_EQ(starts.size(), count) << Name(entry);
    EXPECT_EQ(starts.back(),
              (Started{entry.program, root + entry.program, entry.arguments, root, SW_SHOWNORMAL}));
  }
}

TEST_F(MenuBar, OtherEntriesAndTheirShortcutsLeadToTheirWindowsMessagesAndComponents) {
  settings.SetRegistry(L"Settings", L"TrackingServer",
                       L"<project-tracking server=\"alpha\" ssl=\"yes\" port=\"81\"/>");
  const SuiteFolder suite;
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
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  for (const bool byShortcut : {false, true}) {
    for (const OtherEntry& entry : kOtherEntries) {
      SCOPED_TRACE(Name(entry) + (byShortcut ? ", by its shortcut" : ", by its command"));
      ASSERT_TRUE(Tell(folder + L"\\none.qprx"));
      if (byShortcut) {
        ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
        ASSERT_TRUE(BringForward(main));
        Chord(entry.held, entry.key);
      } else {
        ASSERT_TRUE(marl.PressMenu(entry.top, entry.entry));
      }
      ASSERT_TRUE(Follow(entry, suite, marl, calls));
    }
  }
  EXPECT_FALSE(marl.Box());
  std::vector<std::wstring> expected;
  for (int time = 0; time < 2; ++time) {
    for (const OtherEntry& entry : kOtherEntries) {
      // A project without languages does not load those of the suite.
      if (entry.leads == Leads::kToCall) expected.push_back(entry.text);
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
