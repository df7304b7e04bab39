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

class MenuBar : public SwitchboardTest {
 protected:
  MenuBar() { settings.Set(L"Tools", L"True"); }
};

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
  ASSERT_TRUE(WaitUntil([&] {
    return GetFileAttributesW((root + L"Marl.exe").c_str()) != INVALID_FILE_ATTRIBUTES;
  }));
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
    EXPECT_EQ(starts.back(), (Started{entry.program, root + entry.program, entry.arguments, root,
                                      SW_SHOWNORMAL}));
  }
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
