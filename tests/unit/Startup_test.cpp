#include <gtest/gtest.h>

#include "tests/unit/SuiteWorld.h"

// Start-up and shutdown: the order of the load sequence, its questions, and what remains
// afterwards.

namespace marl {
namespace {

constexpr TextView kDemonstration =
    u"Would you like to launch a demonstration which shows you how to translate in Marl?";
constexpr TextView kWizard = u"Would you like to start the translation wizard when you start Marl?";

MemoryShell::Started Start(TextView file, TextView arguments, int show) {
  return {ShellOwner::kMainForm, u"",          u"C:\\Suite\\" + Text(file),
          Text(arguments),       u"C:\\Suite", show};
}

TEST(Startup, RegistersCommonControlsOnce) {
  SuiteWorld world;
  world.Start();
  EXPECT_EQ(world.desktop.commonControls, (std::vector<std::pair<int, int>>{{8, 0x200}}));
}

TEST(Startup, RunsTheRegistrarBeforeEverythingElse) {
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  world.Start();
  ASSERT_FALSE(world.shell.started.empty());
  EXPECT_EQ(world.shell.started[0], Start(u"RegLib.EXE", u"/s", 1));
}

TEST(Startup, MissingRegistrarIsSilent) {
  SuiteWorld world;
  world.Uninstall(u"RegLib.EXE");
  world.Start();
  EXPECT_TRUE(world.Messages().empty());
  EXPECT_TRUE(world.main().loaded());
}

TEST(Startup, RunsInItsOwnFolder) {
  SuiteWorld world;
  world.Install(u"D:\\Über setzen\\Suite");
  world.Start();
  EXPECT_EQ(world.main().ApplicationFolder, u"D:\\Über setzen\\Suite");
  EXPECT_TRUE(world.main().Visible());
}

TEST(Startup, AnnouncesThePicturesThatItShows) {
  SuiteWorld world;
  world.Start();
  EXPECT_EQ(world.pictures.prepared,
            (std::set<int>{MARL_PICTURE_SPLASH, MARL_PICTURE_SET0_48, MARL_PICTURE_MENU_16}));
  EXPECT_EQ(std::set<int>(world.pictures.loaded.begin(), world.pictures.loaded.end()),
            world.pictures.prepared);
  ASSERT_FALSE(world.pictures.loaded.empty());
  EXPECT_EQ(world.pictures.loaded[0], MARL_PICTURE_SPLASH);
}

TEST(Startup, AnnouncesTheStoredSetOfIcons) {
  SuiteWorld world;
  SkinSettings skin;
  skin.Icons = 2;
  WriteSkin(world.registry, skin);
  world.Start();
  EXPECT_TRUE(world.pictures.prepared.contains(MARL_PICTURE_SET2_48));
  EXPECT_FALSE(world.pictures.prepared.contains(MARL_PICTURE_SET0_48));
}

TEST(Startup, DriveRootKeepsItsSeparator) {
  SuiteWorld world;
  world.Install(u"E:\\");
  world.Start();
  EXPECT_EQ(world.main().ApplicationFolder, u"E:\\");
  EXPECT_EQ(world.shell.started[0].file, u"E:\\RegLib.EXE");
  EXPECT_EQ(world.shell.started[0].directory, u"E:\\");
}

// ---- The second start

TEST(StartAgain, FindsTheFirstByItsTitleRestoresItAndEnds) {
  SuiteWorld world;
  world.process.previousInstance = true;
  world.desktop.others = {{u"Calculator", true}, {u"Marl : host", true}};
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.desktop.shown, (decltype(world.desktop.shown){{u"Marl : host", 1}}));
  EXPECT_EQ(world.desktop.activated, (std::vector<Text>{u"Marl : host"}));
  EXPECT_TRUE(world.Messages().empty());
}

TEST(StartAgain, BringsTheDialogOfTheFirstToTheFront) {
  SuiteWorld world;
  world.process.previousInstance = true;
  world.desktop.others = {{u"Marl : host", true, u"Options"}};
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.desktop.shown, (decltype(world.desktop.shown){{u"Marl : host", 1}}));
  EXPECT_EQ(world.desktop.activated, (std::vector<Text>{u"Options"}));
}

TEST(StartAgain, ShowsAMessageIfNoWindowIsFound) {
  SuiteWorld world;
  world.process.previousInstance = true;
  world.Start();
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(world.desktop.messages[0],
            (MemoryDesktop::Message{u"Marl is already running", 0x40, u"Marl"}));
}

TEST(StartAgain, RunsTheRegistrarAndTouchesNothingElse) {
  SuiteWorld world;
  world.process.previousInstance = true;
  world.PutSetting(u"FirstRun", u"Y");
  world.files.Put(u"C:\\Users\\Translator\\Temp\\ORU1.TMP", "x");
  world.files.ForgetTouched();
  world.Start();
  EXPECT_EQ(world.shell.started, (std::vector{Start(u"RegLib.EXE", u"/s", 1)}));
  EXPECT_TRUE(world.settings.writes.empty());
  EXPECT_TRUE(world.files.Content(u"C:\\Users\\Translator\\Temp\\ORU1.TMP"));
  for (const auto& touch : world.files.Touched()) EXPECT_EQ(touch.action, FileAction::kTest);
  EXPECT_TRUE(world.desktop.offers.empty()) << "the first instance alone answers commands";
}

// ---- The first run

struct FirstRun : testing::Test {
  SuiteWorld world;
  void SetUp() override {
    world.settings = {};
    world.desktop.answers[Text(kDemonstration)] = kAnswerNo;
    world.desktop.answers[Text(kWizard)] = kAnswerNo;
  }
};

TEST_F(FirstRun, NoAndYes) {
  world.desktop.answers[Text(kWizard)] = kAnswerYes;
  world.Start();
  ASSERT_EQ(world.desktop.messages.size(), 2u);
  EXPECT_EQ(world.desktop.messages[0],
            (MemoryDesktop::Message{Text(kDemonstration), 0x24, u"Marl"}));
  EXPECT_EQ(world.desktop.messages[1], (MemoryDesktop::Message{Text(kWizard), 0x24, u"Marl"}));
  EXPECT_EQ(world.Setting(u"FirstRun"), u"N");
  EXPECT_EQ(world.Setting(u"Wizard"), u"Y");
  // The user has just asked for the wizard: it starts instead of the switchboard.
  EXPECT_EQ(world.Tools(),
            (std::vector{Start(u"Q17Shell.exe", u"/R", 0), Start(u"Q17Shell.exe", u"1", 1)}));
  EXPECT_TRUE(world.desktop.ended());
}

TEST_F(FirstRun, NoAndNo) {
  world.Start();
  EXPECT_EQ(world.Setting(u"FirstRun"), u"N");
  EXPECT_EQ(world.Setting(u"Wizard"), u"N");
  EXPECT_EQ(world.Tools(), (std::vector{Start(u"Q17Shell.exe", u"/R", 0)}));
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(FirstRun, AcceptingTheDemonstrationLeavesTheFlagAndAsksNothingMore) {
  world.desktop.answers[Text(kDemonstration)] = kAnswerYes;
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.Messages(), (std::vector<Text>{Text(kDemonstration)}));
  EXPECT_EQ(world.Tools(), (std::vector{Start(u"MarlTour.exe", u"", 1)}));
  EXPECT_TRUE(world.settings.writes.empty());
  EXPECT_TRUE(world.desktop.ended());
}

TEST_F(FirstRun, MissingDemonstrationComplainsAndGoesOn) {
  world.desktop.answers[Text(kDemonstration)] = kAnswerYes;
  world.Uninstall(u"MarlTour.exe");
  world.Start();
  EXPECT_EQ(world.Messages(),
            (std::vector<Text>{Text(kDemonstration), u"File not found : C:\\Suite\\MarlTour.exe",
                               Text(kWizard)}));
  EXPECT_EQ(world.desktop.messages[1].flags, 48);
  EXPECT_EQ(world.Setting(u"FirstRun"), u"N");
}

TEST_F(FirstRun, MissingShellProgramIsSilent) {
  world.Uninstall(u"Q17Shell.exe");
  world.Start();
  EXPECT_EQ(world.Messages(), (std::vector<Text>{Text(kDemonstration), Text(kWizard)}));
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(FirstRun, NeedsExactlyY) {
  for (const TextView value : {u"y", u"Yes", u"", u" Y"}) {
    SuiteWorld other;
    other.PutSetting(u"FirstRun", value);
    other.Start();
    EXPECT_TRUE(other.Messages().empty()) << testing::PrintToString(value);
  }
}

// ---- The wizard

struct WizardCase {
  TextView commandLine;
  TextView setting;
  bool starts;
};

class Wizard : public testing::TestWithParam<WizardCase> {};

TEST_P(Wizard, StartsInPlaceOfTheSwitchboard) {
  const WizardCase& c = GetParam();
  SuiteWorld world;
  world.PutSetting(u"Wizard", c.setting);
  world.process.commandLine = c.commandLine;
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.desktop.ended(), c.starts);
  if (c.starts) {
    EXPECT_EQ(world.Tools(), (std::vector{Start(u"Q17Shell.exe", u"1", 1)}));
    EXPECT_TRUE(world.settings.writes.empty()) << "no unload sequence runs";
  } else {
    EXPECT_TRUE(world.Tools().empty());
    EXPECT_TRUE(world.main().Visible());
  }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, Wizard,
    testing::Values(WizardCase{u"", u"Y", true}, WizardCase{u"nw", u"Y", false},
                    WizardCase{u"NW", u"Y", false}, WizardCase{u"nW", u"Y", false},
                    WizardCase{u" NW ", u"Y", true}, WizardCase{u"NW ", u"Y", true},
                    WizardCase{u"\"NW\"", u"Y", true}, WizardCase{u"NW C:\\x.qprx", u"Y", true},
                    WizardCase{u"C:\\x.qprx", u"N", false}, WizardCase{u"", u"y", false},
                    WizardCase{u"", u"N", false}));

TEST(WizardMissing, ShowsAMessageAndOpensTheSwitchboard) {
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  world.Uninstall(u"Q17Shell.exe");
  world.Start();
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"File not found : C:\\Suite\\Q17Shell.exe"}));
  EXPECT_TRUE(world.main().Visible());
}

TEST(WizardStart, LeavesNoSplashNoHookAndNoTrayIcon) {
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  world.Start();
  EXPECT_TRUE(world.desktop.ended());
  EXPECT_TRUE(world.pictures.loaded.empty()) << "the splash would show its picture";
  EXPECT_EQ(world.desktop.now, 0) << "and would be waited for";
  EXPECT_TRUE(world.hooks.listeners.empty());
  EXPECT_TRUE(world.tray.calls.empty());
}

// ---- Temporary files

TEST(TemporaryFiles, AllMatchesAreDeletedAndNothingElse) {
  SuiteWorld world;
  const Text temp = u"C:\\Users\\Translator\\Temp\\";
  for (const TextView name : {u"ORU.TMP", u"ORU1.TMP", u"oru-x.tmp", u"ORU 2.TMP"}) {
    world.files.Put(temp + Text(name), "x");
  }
  for (const TextView name : {u"XORU.TMP", u"ORU.TMP.txt", u"ORU1.TMPX", u"OR.TMP"}) {
    world.files.Put(temp + Text(name), "x");
  }
  world.files.PutFolder(temp + u"ORUFOLDER.TMP");
  world.files.Put(temp + u"ORULOCK.TMP", "x", kReadOnly);
  world.Start();
  for (const TextView name : {u"ORU.TMP", u"ORU1.TMP", u"oru-x.tmp", u"ORU 2.TMP"}) {
    EXPECT_FALSE(world.files.Content(temp + Text(name))) << testing::PrintToString(name);
  }
  for (const TextView name : {u"XORU.TMP", u"ORU.TMP.txt", u"ORU1.TMPX", u"OR.TMP"}) {
    EXPECT_TRUE(world.files.Content(temp + Text(name))) << testing::PrintToString(name);
  }
  EXPECT_TRUE(world.files.FolderExists(temp + u"ORUFOLDER.TMP"));
  EXPECT_TRUE(world.files.Content(temp + u"ORULOCK.TMP"))
      << "what cannot be deleted stays, silently";
  EXPECT_TRUE(world.Messages().empty());
}

// ---- Position

struct PlaceCase {
  const char* name;
  TextView left;
  TextView top;
  int expectedLeft;  // -1: centred
  int expectedTop;
};

class Position : public testing::TestWithParam<PlaceCase> {};

TEST_P(Position, IsTakenOrCentred) {
  SuiteWorld world;
  world.desktop.screen = {20000, 12000};
  const PlaceCase& c = GetParam();
  world.PutSetting(u"Left", c.left);
  world.PutSetting(u"Top", c.top);
  world.Start();
  const frmMain& form = world.main();
  if (c.expectedLeft < 0) {
    EXPECT_EQ(form.Left(), (20000 - form.Width()) / 2);
    EXPECT_EQ(form.Top(), (12000 - form.Height()) / 2);
  } else {
    EXPECT_EQ(form.Left(), c.expectedLeft);
    EXPECT_EQ(form.Top(), c.expectedTop);
  }
}

INSTANTIATE_TEST_SUITE_P(Settings, Position,
                         testing::Values(PlaceCase{"Defaults", u"-1", u"-1", -1, -1},
                                         PlaceCase{"Corner", u"0", u"0", 0, 0},
                                         PlaceCase{"OneBadCentresBoth", u"-1", u"100", -1, -1},
                                         PlaceCase{"OtherBadCentresBoth", u"100", u"-15", -1, -1},
                                         PlaceCase{"TooFarRight", u"19000", u"100", -1, -1},
                                         PlaceCase{"TooLow", u"100", u"11900", -1, -1},
                                         PlaceCase{"Blanks", u" 150 ", u"300", 150, 300},
                                         PlaceCase{"TiesToEven", u"100.5", u"101.5", 100, 102},
                                         PlaceCase{"Huge", u"2147483647", u"0", -1, -1}),
                         [](const auto& test) { return test.param.name; });

TEST(PositionEdge, ExactlyAsWideAsTheSpaceLeftStays) {
  SuiteWorld probe;
  probe.Start();
  const int width = probe.main().Width();
  const int height = probe.main().Height();
  for (const int beyond : {0, 1}) {
    SuiteWorld world;
    world.desktop.screen = {1500 + width, 600 + height};
    world.PutSetting(u"Left", beyond ? u"1501" : u"1500");
    world.PutSetting(u"Top", u"600");
    world.Start();
    EXPECT_EQ(world.main().Left(), beyond ? 750 : 1500);
    EXPECT_EQ(world.main().Top(), beyond ? 300 : 600);
    EXPECT_EQ(world.main().Width(), width) << "the size does not change";
  }
}

TEST(PositionEdge, HalvesAreRoundedToEven) {
  SuiteWorld probe;
  probe.Start();
  for (const int odd : {1, 3}) {
    SuiteWorld world;
    world.desktop.screen = {probe.main().Width() + odd, probe.main().Height() + odd};
    world.Start();
    EXPECT_EQ(world.main().Left(), odd == 1 ? 0 : 2);
  }
}

// ---- Settings of the wrong kind end the process with the runtime's text

struct WrongSetting {
  TextView key;
  TextView value;
  TextView text;
};

class WrongSettings : public testing::TestWithParam<WrongSetting> {};

TEST_P(WrongSettings, EndTheProcess) {
  const WrongSetting& c = GetParam();
  SuiteWorld world;
  world.PutSetting(c.key, c.value);
  EXPECT_NE(world.Start(), 0);
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(world.desktop.messages[0].text, c.text);
  EXPECT_EQ(world.desktop.messages[0].flags, kCritical);
  EXPECT_TRUE(world.settings.writes.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Values, WrongSettings,
    testing::Values(WrongSetting{u"Left", u"abc", u"Type mismatch"},
                    WrongSetting{u"Top", u"", u"Type mismatch"},
                    WrongSetting{u"Left", u"99999999999", u"Overflow"},
                    WrongSetting{u"Tooltips", u"maybe", u"Type mismatch"},
                    WrongSetting{u"Tools", u"", u"Type mismatch"},
                    WrongSetting{u"WindowState", u"big", u"Type mismatch"},
                    WrongSetting{u"WindowState", u"3", u"Invalid property value"},
                    WrongSetting{u"WindowState", u"-1", u"Invalid property value"},
                    WrongSetting{u"WindowState", u"40000", u"Overflow"}));

TEST(Flags, AreReadAsBooleanTexts) {
  for (const auto& [text, value] :
       std::initializer_list<std::pair<TextView, bool>>{{u"True", true},
                                                        {u"FALSE", false},
                                                        {u"true", true},
                                                        {u"0", false},
                                                        {u"-1", true},
                                                        {u"7", true}}) {
    SuiteWorld world;
    world.PutSetting(u"Tooltips", text);
    world.PutSetting(u"Tools", text);
    world.Start();
    EXPECT_EQ(world.main().TooltipsEnabled, value);
    EXPECT_EQ(world.main().ToolsMenuVisible, value);
  }
}

TEST(Flags, HaveTheirDefaults) {
  SuiteWorld world;
  world.Start();
  EXPECT_TRUE(world.main().TooltipsEnabled);
  EXPECT_FALSE(world.main().ToolsMenuVisible);
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
  EXPECT_TRUE(world.main().dlgOpen.InitDir.empty());
}

TEST(Flags, TheFileDialogStartsInTheWizardsFolder) {
  SuiteWorld world;
  world.settings.Put(u"Marl Project Wizard", u"Target Files", u"Folder", u"D:\\Projects");
  world.Start();
  EXPECT_EQ(world.main().dlgOpen.InitDir, u"D:\\Projects");
}

TEST(Flags, WindowStateIsTaken) {
  SuiteWorld world;
  world.PutSetting(u"WindowState", u"1");
  world.Start();
  EXPECT_EQ(world.main().State(), WindowState::kMinimised);
}

// ---- The browser

TEST(BrowserProbe, AsksForTheProgramOfAPageAndLeavesNothing) {
  SuiteWorld world;
  world.shell.browser = u"C:\\Web\\browser.exe";
  world.Start();
  EXPECT_EQ(world.main().BrowserPath, u"C:\\Web\\browser.exe");
  ASSERT_EQ(world.shell.asked.size(), 1u);
  const Text& probe = world.shell.asked[0];
  EXPECT_TRUE(probe.starts_with(u"C:\\Users\\Translator\\Temp\\"));
  EXPECT_TRUE(probe.ends_with(u".html"));
  EXPECT_FALSE(world.files.Content(probe));
  EXPECT_EQ(world.files.OpenFiles(), 0);
}

TEST(BrowserProbe, CodesUpTo32MeanNoBrowser) {
  for (const int code : {0, 2, 31, 32}) {
    SuiteWorld world;
    world.shell.browser = u"C:\\Web\\browser.exe";
    world.shell.findCode = code;
    world.Start();
    EXPECT_EQ(world.main().BrowserPath, u"") << code;
  }
}

TEST(BrowserProbe, GoesEvenWhenItHasBecomeReadOnly) {
  struct Meddling : MemoryShell {
    explicit Meddling(MemoryFileSystem& on) : files(on) {}
    int FindProgram(TextView file, TextView directory, Text& program) override {
      EXPECT_EQ(files.SetAttributes(file, kReadOnly), kOk);
      return MemoryShell::FindProgram(file, directory, program);
    }
    MemoryFileSystem& files;
  };
  SuiteWorld world;
  Meddling shell(world.files);
  const auto before = world.files.Files();
  Application application({world.desktop, world.files, world.settings, shell, world.process,
                           world.components, world.strings, world.locales, world.icons,
                           world.pictures, world.registry, world.hooks, world.tray, world.tips,
                           world.profile, world.fileDialogs, world.colorDialog, world.fontList,
                           world.clock});
  application.Run();
  EXPECT_EQ(shell.asked.size(), 1u);
  EXPECT_EQ(world.files.Files(), before);
}

TEST(BrowserProbe, AFullTemporaryFolderEndsTheProcess) {
  SuiteWorld world;
  world.files.FailNext(FileAction::kCreate, kAccessDenied);
  EXPECT_NE(world.Start(), 0);
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"Permission denied"}));
}

// ---- Missing tools

TEST(MissingTools, WithEveryToolOnlyTheUntrackedSlotIsGrey) {
  SuiteWorld world;
  world.Start();
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    if (i == kTrackProjects)
      continue;  // disabled because there is no tracking server, not because of a missing file
    EXPECT_EQ(world.main().lblRun[i]->Tag, u"") << i;
    EXPECT_TRUE(world.main().lblRun[i]->Enabled()) << i;
  }
}

TEST(MissingTools, WithEveryToolAndAServerNothingIsGrey) {
  SuiteWorld world;
  world.registry.Plant(kCurrentUser, "Software\\Oru\\Marl\\Settings", "TrackingServer", kRegSz,
                       NarrowText("alpha\0", 6));
  world.Start();
  for (std::size_t i = 0; i < kButtonCount; ++i) {
    EXPECT_EQ(world.main().lblRun[i]->Tag, u"") << i;
    EXPECT_TRUE(world.main().lblRun[i]->Enabled()) << i;
  }
}

TEST(MissingTools, OneMissingIsGreyAndInertWithItsPictureInPlace) {
  SuiteWorld world;
  world.Uninstall(u"Q17Kit.exe");
  world.Start();
  frmMain& form = world.main();
  EXPECT_EQ(form.lblRun[kUtilities]->Tag, u"*");
  EXPECT_FALSE(form.lblRun[kUtilities]->Enabled());
  EXPECT_TRUE(form.imgRun[kUtilities]->Visible());
  world.Click(*form.imgRun[kUtilities]);
  EXPECT_TRUE(world.Tools().empty());
  EXPECT_TRUE(world.Messages().empty());
  EXPECT_EQ(world.desktop.beeps, 0);
  form.Unload();
  EXPECT_EQ(world.Setting(u"XtraFeatures"), u"1");
}

TEST(MissingTools, AToolInstalledLaterStaysDead) {
  SuiteWorld world;
  world.Uninstall(u"Q17Bench.exe");
  world.Start();
  world.files.Put(u"C:\\Suite\\Q17Bench.exe", "tool");
  world.Click(*world.main().imgRun[kEdit]);
  EXPECT_TRUE(world.Tools().empty());
}

TEST(MissingTools, AHiddenFileCountsAsThereWhenGreyingAndAsMissingWhenStarted) {
  SuiteWorld world;
  world.files.Put(u"C:\\Suite\\Q17Bench.exe", "tool", kHidden);
  world.Start();
  EXPECT_EQ(world.main().lblRun[kEdit]->Tag, u"");
  world.Click(*world.main().imgRun[kEdit]);
  EXPECT_TRUE(world.Tools().empty());
  EXPECT_EQ(world.Messages(), (std::vector<Text>{u"File not found : C:\\Suite\\Q17Bench.exe"}));
}

// ---- Exit

TEST(Exit, SavesWhereTheFormIsAndItsFlags) {
  SuiteWorld world;
  world.Start();
  world.main().Move(315, 450);
  world.main().TooltipsEnabled = false;
  world.main().ToolsMenuVisible = true;
  world.desktop.Event([&] { world.main().UserClose(); });
  EXPECT_EQ(world.Setting(u"Left"), u"315");
  EXPECT_EQ(world.Setting(u"Top"), u"450");
  EXPECT_EQ(world.Setting(u"Tooltips"), u"False");
  EXPECT_EQ(world.Setting(u"Tools"), u"True");
  EXPECT_EQ(world.Setting(u"WindowState"), u"0");
  EXPECT_EQ(world.Setting(u"XtraFeatures"), u"1");
  EXPECT_FALSE(world.main().loaded());
}

TEST(Exit, SavesInTheOrderThatSisterProgramsCountOn) {
  SuiteWorld world;
  world.Start();
  world.main().Unload();
  std::vector<Text> keys;
  for (const auto& write : world.settings.writes) keys.push_back(write.key);
  EXPECT_EQ(keys, (std::vector<Text>{u"Left", u"Top", u"Tooltips", u"Tools", u"WindowState",
                                     u"XtraFeatures"}));
}

TEST(Exit, LeavesNoFileBehind) {
  SuiteWorld world;
  const auto before = world.files.Files();
  world.Start();
  world.main().Unload();
  EXPECT_EQ(world.files.Files(), before) << "no debug log, no probe";
}

TEST(Exit, AHiddenUtilitiesButtonTellsTheSuiteSo) {
  SuiteWorld world;
  world.Start();
  world.main().imgRun[kUtilities]->SetVisible(false);
  world.main().Unload();
  EXPECT_EQ(world.Setting(u"XtraFeatures"), u"0");
}

TEST(Exit, PositionIsSavedWithoutATest) {
  SuiteWorld world;
  world.Start();
  world.main().Move(-4000, 99999);
  world.main().Unload();
  EXPECT_EQ(world.Setting(u"Left"), u"-4000");
  EXPECT_EQ(world.Setting(u"Top"), u"99999");
}

TEST(Exit, ByButtonByMenuAndByCloseBoxAreTheSame) {
  const std::function<void(SuiteWorld&)> ways[] = {
      [](SuiteWorld& world) { world.Click(*world.main().imgRun[kExit]); },
      [](SuiteWorld& world) { world.main().mnuProjectExit(); },
      [](SuiteWorld& world) { world.main().UserClose(); },
  };
  for (const auto& leave : ways) {
    SuiteWorld world;
    world.Start();
    world.desktop.Event([&] { leave(world); });
    EXPECT_FALSE(world.main().loaded());
    EXPECT_EQ(world.Setting(u"WindowState"), u"0");
    EXPECT_TRUE(world.desktop.forms().empty());
  }
}

}  // namespace
}  // namespace marl
