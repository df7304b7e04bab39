#include "tests/desktop/Switchboard.h"

// First run, wizard and second start: the questions, the programs that are started, and what
// remains.

namespace marl::desktop {

namespace {

using Texts = std::vector<std::wstring>;
using Starts = std::vector<Started>;

class StartUp : public SwitchboardTest {
 protected:
  /// Waits for a box with this text and the buttons Yes and No, and presses one.
  static testing::AssertionResult Answer(const RunningMarl& marl, const std::wstring& question,
                                         int button) {
    const MessageBoxWindow box = marl.WaitForBox();
    if (!box) return testing::AssertionFailure() << "no message box came";
    if (box.Title() != L"Marl" || box.Text() != question) {
      return testing::AssertionFailure() << "another box: " << ToUtf8(box.Text());
    }
    const std::vector<int> buttons = box.Buttons();
    const bool asks = buttons == std::vector<int>{IDYES, IDNO};
    if (asks != (button != IDOK)) return testing::AssertionFailure() << "other buttons";
    if (!box.Press(button)) return testing::AssertionFailure() << "the button does not answer";
    return testing::AssertionSuccess();
  }
};

class FirstRun : public StartUp {
 protected:
  FirstRun() { settings.Set(L"FirstRun", L"Y"); }
};

}  // namespace

TEST_F(FirstRun, NoAndNoOpenTheSwitchboard) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, kDemonstrationQuestion, IDNO));
  ASSERT_TRUE(Answer(marl, kWizardQuestion, IDNO));
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Shell.exe", L"/R", SW_HIDE)}));
  EXPECT_EQ(settings.Get(L"FirstRun"), L"N");
  EXPECT_EQ(settings.Get(L"Wizard"), L"N");
  EXPECT_TRUE(Close(marl));
}

TEST_F(FirstRun, NoAndYesStartTheWizardAtOnce) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, kDemonstrationQuestion, IDNO));
  // Started before the question is asked; which of the two programs logs first is random.
  ASSERT_EQ(suite.WaitForTools(1).size(), 1u);
  ASSERT_TRUE(Answer(marl, kWizardQuestion, IDYES));
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(suite.WaitForTools(2), (Starts{Start(suite, L"Q17Shell.exe", L"/R", SW_HIDE),
                                           Start(suite, L"Q17Shell.exe", L"1")}));
  EXPECT_EQ(settings.Get(L"FirstRun"), L"N");
  EXPECT_EQ(settings.Get(L"Wizard"), L"Y");
}

TEST_F(FirstRun, YesStartsTheDemonstrationAndAsksAgainNextTime) {
  const SuiteFolder suite;
  {
    const RunningMarl marl(suite);
    ASSERT_TRUE(Answer(marl, kDemonstrationQuestion, IDYES));
    EXPECT_EQ(marl.WaitForExit(), 0u);
    EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"MarlTour.exe")}));
    EXPECT_EQ(settings.Get(L"FirstRun"), L"Y");
    EXPECT_EQ(settings.Get(L"Wizard"), std::nullopt);
    EXPECT_EQ(settings.Get(L"Left"), std::nullopt);
  }
  const RunningMarl again(suite);
  EXPECT_TRUE(Answer(again, kDemonstrationQuestion, IDNO));
  EXPECT_TRUE(Answer(again, kWizardQuestion, IDNO));
}

TEST_F(FirstRun, MissingDemonstrationShowsAMessageAndTheWizardQuestionFollows) {
  const SuiteFolder suite(L"Suite", {L"MarlTour.exe"});
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, kDemonstrationQuestion, IDYES));
  const MessageBoxWindow complaint = marl.WaitForBox();
  ASSERT_TRUE(complaint);
  EXPECT_EQ(complaint.Text(), L"File not found : " + suite.path() + L"\\MarlTour.exe");
  EXPECT_EQ(settings.Get(L"FirstRun"), L"Y");
  EXPECT_EQ(complaint.Buttons(), std::vector<int>{IDOK});
  ASSERT_TRUE(complaint.Press(IDOK));
  ASSERT_TRUE(Answer(marl, kWizardQuestion, IDNO));
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Shell.exe", L"/R", SW_HIDE)}));
  EXPECT_EQ(settings.Get(L"FirstRun"), L"N");
  EXPECT_EQ(settings.Get(L"Wizard"), L"N");
}

TEST_F(FirstRun, MissingShellToolIsSilentWhenTheMenuEntriesAreInstalled) {
  const SuiteFolder suite(L"Suite", {L"Q17Shell.exe"});
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, kDemonstrationQuestion, IDNO));
  ASSERT_TRUE(Answer(marl, kWizardQuestion, IDNO));
  EXPECT_TRUE(marl.WaitForWindow());
  EXPECT_EQ(settings.Get(L"FirstRun"), L"N");
}

TEST_F(FirstRun, UnsetMeansYes) {
  Settings none;
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  EXPECT_TRUE(Answer(marl, kDemonstrationQuestion, IDYES));
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(none.Get(L"FirstRun"), std::nullopt);
}

TEST_F(FirstRun, LowerCaseYIsNoFirstRun) {
  settings.Set(L"FirstRun", L"y");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  EXPECT_TRUE(marl.WaitForWindow());
  EXPECT_EQ(settings.Get(L"FirstRun"), L"y");
}

TEST_F(StartUp, RegistrarRunsFirst) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  ASSERT_TRUE(WaitUntil([&] { return !suite.Starts().empty(); }));
  EXPECT_EQ(suite.Starts(), (Starts{Start(suite, L"RegLib.EXE", L"/s")}));
}

TEST_F(StartUp, MissingRegistrarIsSilent) {
  const SuiteFolder suite(L"Suite", {L"RegLib.EXE"});
  const RunningMarl marl(suite);
  EXPECT_TRUE(marl.WaitForWindow());
  EXPECT_FALSE(marl.Box());
}

TEST_F(StartUp, WizardTakesThePlaceOfTheSwitchboard) {
  for (const wchar_t* commandLine : {L"", L" NW ", L"nw x", L"\"nw\"", L"/nw"}) {
    settings.Set(L"Wizard", L"Y");
    const SuiteFolder suite;
    const RunningMarl marl(suite, commandLine);
    EXPECT_EQ(marl.WaitForExit(), 0u) << ToUtf8(commandLine);
    EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Shell.exe", L"1")}))
        << ToUtf8(commandLine);
    EXPECT_EQ(settings.Get(L"Left"), std::nullopt) << "it ends without its exit sequence";
  }
}

TEST_F(StartUp, NwOnTheCommandLineOpensTheSwitchboard) {
  for (const wchar_t* commandLine : {L"nw", L"NW", L"nW"}) {
    settings.Set(L"Wizard", L"Y");
    const SuiteFolder suite;
    const RunningMarl marl(suite, commandLine);
    ASSERT_TRUE(marl.WaitForWindow()) << ToUtf8(commandLine);
    EXPECT_TRUE(Close(marl));
    EXPECT_EQ(suite.WaitForTools(0), Starts{});
    EXPECT_EQ(settings.Get(L"Wizard"), L"Y");
  }
}

TEST_F(StartUp, OtherWizardTextsOpenTheSwitchboard) {
  for (const wchar_t* wizard : {L"y", L"Yes", L"", L"N"}) {
    settings.Set(L"Wizard", wizard);
    const SuiteFolder suite;
    const RunningMarl marl(suite);
    EXPECT_TRUE(marl.WaitForWindow()) << ToUtf8(wizard);
  }
}

TEST_F(StartUp, MissingWizardShowsAMessageAndTheSwitchboardOpens) {
  settings.Set(L"Wizard", L"Y");
  const SuiteFolder suite(L"Suite", {L"Q17Shell.exe"});
  const RunningMarl marl(suite);
  ASSERT_TRUE(Answer(marl, L"File not found : " + suite.path() + L"\\Q17Shell.exe", IDOK));
  EXPECT_TRUE(marl.WaitForWindow());
}

TEST_F(StartUp, SecondStartRunsTheRegistrarShowsAMessageAndTouchesNothing) {
  const SuiteFolder suite;
  const RunningMarl first(suite);
  const HWND window = first.WaitForWindow();
  ASSERT_TRUE(window);
  ASSERT_TRUE(first.WaitForIdle());
  ASSERT_TRUE(WaitUntil([&] { return suite.Starts().size() == 1; }));
  // As in the tray: a second start finds no window to restore.
  ShowWindow(window, SW_HIDE);
  settings.Set(L"FirstRun", L"Y");
  settings.Set(L"Wizard", L"Y");
  CloseHandle(CreateFileW((suite.temp() + L"\\ORU1.TMP").c_str(), GENERIC_WRITE, 0, nullptr,
                          CREATE_NEW, 0, nullptr));
  const auto image = settings.Image();
  const auto files = suite.Files();

  const RunningMarl second(suite);
  ASSERT_TRUE(Answer(second, L"Marl is already running", IDOK));
  EXPECT_EQ(second.WaitForExit(), 0u);

  const Started registrar = Start(suite, L"RegLib.EXE", L"/s");
  EXPECT_TRUE(WaitUntil([&] { return suite.Starts().size() == 2; }));
  EXPECT_EQ(suite.Starts(), (Starts{registrar, registrar}));
  EXPECT_EQ(settings.Image(), image);
  EXPECT_EQ(suite.Files(), files);
  EXPECT_TRUE(first.Running());
  EXPECT_FALSE(IsWindowVisible(window)) << "it stays in the tray";
}

TEST_F(StartUp, SecondStartBringsTheFirstOnesWindowBack) {
  const SuiteFolder suite;
  const RunningMarl first(suite);
  const HWND window = first.WaitForWindow();
  ASSERT_TRUE(window);
  ASSERT_TRUE(TextOf(window).starts_with(L"Marl : "));
  // Maximised and behind another window: it comes to the front in its normal size.
  ShowWindow(window, SW_SHOWMAXIMIZED);
  ASSERT_TRUE(IsZoomed(window));
  const HWND other = CreateWindowExW(0, L"STATIC", L"In front", WS_POPUP | WS_CAPTION | WS_VISIBLE,
                                     50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(BringForward(other));
  const auto image = settings.Image();
  const RunningMarl second(suite);
  EXPECT_EQ(second.WaitForExit(), 0u);
  EXPECT_FALSE(second.Box());
  EXPECT_FALSE(IsZoomed(window));
  EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == window; }));
  EXPECT_EQ(settings.Image(), image);
  EXPECT_TRUE(WaitUntil([&] { return suite.Starts().size() == 2; })) << "both run the registrar";
  DestroyWindow(other);
}

TEST_F(StartUp, SecondStartBringsTheDialogOfTheFirstToTheFront) {
  const SuiteFolder suite;
  const RunningMarl first(suite);
  ASSERT_TRUE(first.WaitForWindow());
  ASSERT_TRUE(first.PressMenu(L'O', L'O'));
  const HWND options = first.WaitForWindow(L"MarlForm", L"Options");
  ASSERT_TRUE(options);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == options; }));
  const HWND other = CreateWindowExW(0, L"STATIC", L"In front", WS_POPUP | WS_CAPTION | WS_VISIBLE,
                                     50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(BringForward(other));
  const RunningMarl second(suite);
  EXPECT_EQ(second.WaitForExit(), 0u);
  EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == options; }));
  DestroyWindow(other);
}

TEST_F(StartUp, SecondStartDoesNotHangWithAFirstThatHangs) {
  const SuiteFolder suite;
  const RunningMarl first(suite);
  const HWND window = first.WaitForWindow();
  ASSERT_TRUE(window);
  ASSERT_TRUE(first.WaitForIdle());
  ASSERT_TRUE(WaitUntil([&] { return suite.Starts().size() == 1; }));
  {
    const FrozenProcess frozen(first.id());
    ASSERT_TRUE(frozen.made());
    DWORD_PTR answer = 0;
    ASSERT_FALSE(SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 200, &answer));
    const RunningMarl second(suite);
    EXPECT_EQ(second.WaitForExit(), 0u);
    EXPECT_FALSE(second.Box());
  }
  EXPECT_TRUE(first.Running());
  EXPECT_TRUE(Close(first)) << "it goes on once it responds again";
}

TEST_F(StartUp, TemporaryFilesOfTheSuiteAreRemovedAndTheProbeLeavesNothing) {
  const SuiteFolder suite;
  for (const wchar_t* name :
       {L"ORU1.TMP", L"oru2.tmp", L"ORU.TMP", L"ORU3.TXT", L"XORU4.TMP", L"KEEP.HTML"}) {
    CloseHandle(CreateFileW((suite.temp() + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr,
                            CREATE_NEW, 0, nullptr));
  }
  CreateDirectoryW((suite.temp() + L"\\ORU5.TMP").c_str(), nullptr);
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  Texts left;
  for (const auto& [path, size] : suite.Files()) {
    if (path.starts_with(suite.temp() + L"\\"))
      left.push_back(path.substr(suite.temp().size() + 1));
  }
  EXPECT_EQ(left, (Texts{L"KEEP.HTML", L"ORU3.TXT", L"ORU5.TMP", L"XORU4.TMP"}));
  RemoveDirectoryW((suite.temp() + L"\\ORU5.TMP").c_str());
}

}  // namespace marl::desktop
