#include <gtest/gtest.h>

#include "tests/unit/ErrorOf.h"
#include "tests/unit/SuiteWorld.h"

// Pressing buttons, the table of programs and the items of the menu bar.

namespace marl {
namespace {

struct ButtonCase {
  int index;
  TextView program;
};

constexpr ButtonCase kPrograms[] = {
    {0, u"Q17Gauge.exe"},   {1, u"Q17Pair.exe"},   {2, u"Q17Lexis.exe"},  {3, u"Q17Cadence.exe"},
    {4, u"Q17Batch.exe"},   {5, u"Q17Bench.exe"},  {8, u"Q17Warden.exe"}, {9, u"Q17Kit.exe"},
    {11, u"Q17Vault.exe"},  {12, u"Q17Renew.exe"}, {13, u"Q17Diff.exe"},  {14, u"Q17Bridge.exe"},
    {15, u"Q17Cleave.exe"}, {16, u"Q17Xlf.exe"},
};

class ProgramButton : public testing::TestWithParam<ButtonCase> {};

TEST_P(ProgramButton, StartsItsProgramFromTheOwnFolder) {
  const ButtonCase& c = GetParam();
  for (const Text folder : {u"C:\\Suite", u"D:\\Büro 2\\Über\\設定", u"E:\\"}) {
    SuiteWorld world;
    world.Install(folder);
    world.Start();
    const auto slot = static_cast<std::size_t>(c.index);
    world.Click(*world.main().imgRun[slot]);
    world.Click(*world.main().lblRun[slot]);
    world.Click(*world.main().mnuMarl[slot]);
    world.main().HoverButton = c.index;
    world.desktop.Event([&] { world.main().UserClick(); });
    const Text path = (folder.ends_with(u'\\') ? folder : folder + u'\\') + Text(c.program);
    const MemoryShell::Started expected{ShellOwner::kMainForm, u"", path, u"", folder, 1};
    // Two of the hidden menu's entries are hidden themselves and take no click.
    const std::size_t count = world.main().mnuMarl[slot]->Visible() ? 4 : 3;
    EXPECT_EQ(world.Tools(), std::vector(count, expected));
  }
}

INSTANTIATE_TEST_SUITE_P(All, ProgramButton, testing::ValuesIn(kPrograms), [](const auto& test) {
  return "Slot" + std::to_string(test.param.index);
});

struct MenuCase {
  const char* name;
  void (frmMain::*entry)();
  TextView program;
  TextView arguments;
};

class ProgramEntry : public testing::TestWithParam<MenuCase> {};

TEST_P(ProgramEntry, StartsItsProgramWithItsSwitch) {
  const MenuCase& c = GetParam();
  SuiteWorld world;
  world.Start();
  world.desktop.Event([&] { (world.main().*c.entry)(); });
  EXPECT_EQ(world.Tools(), (std::vector{MemoryShell::Started{ShellOwner::kMainForm, u"",
                                                             u"C:\\Suite\\" + Text(c.program),
                                                             Text(c.arguments), u"C:\\Suite", 1}}));
}

TEST_P(ProgramEntry, ComplainsWhenTheProgramIsMissing) {
  const MenuCase& c = GetParam();
  SuiteWorld world;
  world.Uninstall(c.program);
  world.Start();
  world.desktop.Event([&] { (world.main().*c.entry)(); });
  EXPECT_TRUE(world.Tools().empty());
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(
      world.desktop.messages[0],
      (MemoryDesktop::Message{u"File not found : C:\\Suite\\" + Text(c.program), 48, u"Marl"}));
}

INSTANTIATE_TEST_SUITE_P(
    All, ProgramEntry,
    testing::Values(
        MenuCase{"ProjectNew", &frmMain::mnuProjectNew, u"Q17Cadence.exe", u"/I"},
        MenuCase{"ProjectSave", &frmMain::mnuProjectSave, u"Q17Cadence.exe", u"/E"},
        MenuCase{"ProjectAnalyse", &frmMain::mnuProjectAnalyse, u"Q17Gauge.exe", u"/w"},
        MenuCase{"TMImport", &frmMain::mnuTMImport, u"Q17Vault.exe", u"/I"},
        MenuCase{"TMExport", &frmMain::mnuTMExport, u"Q17Vault.exe", u"/E"},
        MenuCase{"TranslateBatch", &frmMain::mnuTranslateBatch, u"Q17Batch.exe", u"/w"},
        MenuCase{"TranslateClipboard", &frmMain::mnuTranslateClipboard, u"Q17Bench.exe", u"/C"},
        MenuCase{"AlignNew", &frmMain::mnuAlignNew, u"Q17Pair.exe", u"/n"},
        MenuCase{"AlignOpen", &frmMain::mnuAlignOpen, u"Q17Pair.exe", u"/o"},
        MenuCase{"GlossaryMaintain", &frmMain::mnuGlossaryMaintain, u"Q17Lexis.exe", u""},
        MenuCase{"HelpTutorial", &frmMain::mnuHelpTutorial, u"MarlTour.exe", u""}),
    [](const auto& test) { return test.param.name; });

TEST(ToolsEntry, EachIndexHasItsProgramAndAnyOtherBeeps) {
  SuiteWorld world;
  world.Start();
  constexpr TextView kApps[] = {u"FaceMap.exe", u"Q17Morph.exe", u"WordRich.exe", u"PageTool.exe",
                                u"FrameTool.exe"};
  for (int i = 0; i < 5; ++i) world.main().mnuToolsApp(i);
  ASSERT_EQ(world.Tools().size(), 5u);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(world.Tools()[i].file, u"C:\\Suite\\" + Text(kApps[i]));
  }
  EXPECT_EQ(world.desktop.beeps, 0);
  world.main().mnuToolsApp(5);
  world.main().mnuToolsApp(-1);
  EXPECT_EQ(world.desktop.beeps, 2);
  EXPECT_EQ(world.Tools().size(), 5u);
}

TEST(Launch, TheShellsRefusalStillCountsAsStarted) {
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  world.shell.executeCode = 2;
  world.Start();
  EXPECT_TRUE(world.desktop.ended()) << "the wizard counts as started";
  EXPECT_TRUE(world.Messages().empty());
}

TEST(Launch, AFolderOrASystemFileOfThatNameIsMissing) {
  SuiteWorld world;
  world.Start();
  world.files.Erase(u"C:\\Suite\\Q17Lexis.exe");
  world.files.PutFolder(u"C:\\Suite\\Q17Lexis.exe");
  world.main().mnuGlossaryMaintain();
  world.files.Put(u"C:\\Suite\\MarlTour.exe", "x", kSystem);
  world.main().mnuHelpTutorial();
  EXPECT_TRUE(world.Tools().empty());
  EXPECT_EQ(world.desktop.messages.size(), 2u);
}

TEST(Launch, ShellOpenBelongsToTheDesktop) {
  SuiteWorld world;
  Platform platform = world.platform();
  Launcher launcher(platform);
  world.shell.executeCode = 5;
  launcher.ShellOpen(u"open", u"http://example.com/", u"", u"", 1);
  EXPECT_EQ(world.shell.started,
            (std::vector{MemoryShell::Started{ShellOwner::kDesktop, u"open", u"http://example.com/",
                                              u"", u"", 1}}));
}

// ---- The components

struct ComponentCase {
  const char* name;
  void (frmMain::*entry)();
  TextView component;
  TextView operation;
  std::vector<ComponentValue> arguments;
};

class ComponentEntry : public testing::TestWithParam<ComponentCase> {};

TEST_P(ComponentEntry, CallsItsOperationOnceAndReleases) {
  const ComponentCase& c = GetParam();
  SuiteWorld world;
  int live = 0;
  world.components.registered[Text(c.component)] = [&](auto&&...) {
    live = world.components.live;
    return true;
  };
  world.Start();
  world.desktop.Event([&] { (world.main().*c.entry)(); });
  EXPECT_EQ(world.components.calls, (std::vector{MemoryComponents::CallRecord{
                                        Text(c.component), Text(c.operation), c.arguments}}));
  EXPECT_EQ(live, 1);
  EXPECT_EQ(world.components.live, 0);
}

TEST_P(ComponentEntry, SaysSoWhenItIsNotInstalled) {
  SuiteWorld world;
  world.Start();
  world.desktop.Event([&] { (world.main().*GetParam().entry)(); });
  EXPECT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_FALSE(world.desktop.ended());
}

TEST_P(ComponentEntry, AFailureInsideIsNotCaught) {
  SuiteWorld world;
  world.components.registered[Text(GetParam().component)] = [](const Text&, auto&, ComponentValue&,
                                                               Text& failure) {
    failure = u"No licence";
    return false;
  };
  world.Start();
  world.desktop.Event([&] { (world.main().*GetParam().entry)(); });
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"No licence"}));
  EXPECT_TRUE(world.desktop.ended());
}

TEST_P(ComponentEntry, OneThatIsRegisteredAndCannotBeMadeIsAFailureToo) {
  SuiteWorld world;
  world.components.broken[Text(GetParam().component)] = u"Module not found";
  world.Start();
  world.desktop.Event([&] { (world.main().*GetParam().entry)(); });
  EXPECT_EQ(world.desktop.messages,
            (std::vector{MemoryDesktop::Message{u"Module not found", kCritical, u"Marl"}}));
  EXPECT_TRUE(world.desktop.ended());
}

TEST_P(ComponentEntry, FailuresHaveTheNumbersOfAutomation) {
  SuiteWorld world;
  world.components.registered[Text(GetParam().component)] = [](auto&&...) { return false; };
  world.Start();
  const auto number = [&] {
    return ErrorOf([&] {
      (world.main().*GetParam().entry)();
      return 0;
    });
  };
  EXPECT_EQ(number(), 440) << "Automation error";
  world.components.broken[Text(GetParam().component)] = u"Module not found";
  EXPECT_EQ(number(), 429) << "the component cannot be made";
}

TEST_P(ComponentEntry, AFailureWithoutATextShowsTheSystems) {
  SuiteWorld world;
  world.components.registered[Text(GetParam().component)] = [](auto&&...) { return false; };
  world.Start();
  world.desktop.Event([&] { (world.main().*GetParam().entry)(); });
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"Automation error"}));
  EXPECT_TRUE(world.desktop.ended());
}

INSTANTIATE_TEST_SUITE_P(
    All, ComponentEntry,
    testing::Values(
        ComponentCase{"ProjectTm", &frmMain::mnuProjectPTM, u"Marl.ProjectTmComponent", u"Run", {}},
        ComponentCase{
            "Replace", &frmMain::mnuTranslateReplace, u"Marl.ReplaceComponent", u"Run", {}},
        ComponentCase{"SingleFile",
                      &frmMain::mnuTranslateSingle,
                      u"Marl.SingleFileComponent",
                      u"Run",
                      {Text(), std::int32_t{0}}},
        ComponentCase{
            "QaCheck", &frmMain::mnuToolsQACheck, u"Marl.QaComponent", u"Run", {std::int32_t{0}}},
        ComponentCase{
            "TerminologyQa", &frmMain::mnuQACheck, u"Marl.QaComponent", u"Run", {std::int32_t{1}}},
        ComponentCase{
            "CommentReport", &frmMain::mnuToolsCommentReport, u"Marl.QaComponent", u"Report", {}}),
    [](const auto& test) { return test.param.name; });

TEST(QaButton, RunsTheQaCheck) {
  SuiteWorld world;
  world.components.registered[u"Marl.QaComponent"] = {};
  world.Start();
  world.Click(*world.main().imgRun[kQaCheck]);
  ASSERT_EQ(world.components.calls.size(), 1u);
  EXPECT_EQ(world.components.calls[0].arguments, (std::vector<ComponentValue>{std::int32_t{0}}));
}

// A component pumps messages while it runs: the user can click again.
TEST(Reentry, AQaRunBlocksBothQaEntriesButNotTheReport) {
  SuiteWorld world;
  bool inside = false;
  world.components.registered[u"Marl.QaComponent"] = [&](const Text& operation, auto&&...) {
    if (operation != u"Run" || inside) return true;
    inside = true;
    world.main().mnuToolsQACheck();
    world.main().mnuQACheck();
    world.main().mnuToolsCommentReport();
    return true;
  };
  world.Start();
  world.main().mnuToolsQACheck();
  std::vector<Text> operations;
  for (const auto& call : world.components.calls) operations.push_back(call.operation);
  EXPECT_EQ(operations, (std::vector<Text>{u"Run", u"Report"}));
  world.main().mnuQACheck();
  EXPECT_EQ(world.components.calls.size(), 3u) << "the flag is cleared when the run has ended";
}

TEST(Reentry, AReportInProgressIgnoresASecondOne) {
  SuiteWorld world;
  world.components.registered[u"Marl.QaComponent"] = [&](auto&&...) {
    world.main().mnuToolsCommentReport();
    return true;
  };
  world.Start();
  world.main().mnuToolsCommentReport();
  EXPECT_EQ(world.components.calls.size(), 1u);
}

TEST(Hidden, AHiddenButtonsEntryWorksAsAPressOnThePanel) {
  SuiteWorld world;
  world.Start();
  world.main().imgRun[kAnalyse]->SetVisible(false);
  world.main().lblRun[kAnalyse]->SetVisible(false);
  world.Click(*world.main().mnuMarl[kAnalyse]);
  ASSERT_EQ(world.Tools().size(), 1u);
  EXPECT_EQ(world.Tools()[0].file, u"C:\\Suite\\Q17Gauge.exe");
}

}  // namespace
}  // namespace marl
