// Exiting from any state: the exit sequence runs once and completely, nothing half done is applied,
// and no code after a dialog, message or call runs.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "appearance/frmFont.h"
#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "network/frmChangeServer.h"
#include "network/frmLanSettings.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "support/frmSplash.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {

namespace {

constexpr TextView kProject = u"C:\\P\\job.qprx";
constexpr TextView kWorkingFile = u"C:\\P\\a.qtd";
constexpr int kExitItem = kExit + 1;
constexpr std::intptr_t kRightClick = 0x205;

void ExitFromTheTray(SuiteWorld& world) {
  world.tray.choice = kExitItem;
  world.desktop.Event([&] {
    world.hooks.Send(world.main().hWnd(), world.hooks.NumberOf("msgMarlMenu"), 0, kRightClick);
  });
  world.tray.choice = 0;
}
void CloseTheMainWindow(SuiteWorld& world) {
  world.desktop.Event([&] { world.main().UserClose(); });
}
void EndTheSession(SuiteWorld& world) {
  EXPECT_TRUE(world.desktop.MayEndSession());
  world.desktop.EndSession(false);
  EXPECT_FALSE(world.desktop.ended()) << "another program has prevented it";
  world.desktop.EndSession(true);
}

struct Way {
  const char* name;
  void (*leave)(SuiteWorld&);
  bool needsMenu = false;  ///< the tray menu, which exists only after start-up
};

/// Brings the program into a state, leaves something half done there and exits.
using Leave = std::function<void()>;
struct Place {
  const char* name;
  void (*go)(SuiteWorld& world, const Leave& leave);
  bool starting = false;  ///< this happens during start-up
};

template <typename FormType>
void InDialog(SuiteWorld& world, const char* name, const std::function<void(FormType&)>& act) {
  world.desktop.whenModal[name] = [act](Form& form) { act(static_cast<FormType&>(form)); };
}

void InOptions(SuiteWorld& world, const std::function<void(frmOptions&)>& act) {
  InDialog<frmOptions>(world, "frmOptions", act);
  world.desktop.Event([&] { world.main().mnuToolsOptions(); });
}

void InDisplaySettings(SuiteWorld& world, const std::function<void(frmUI&)>& act) {
  InDialog<frmUI>(world, "frmUI", [act](frmUI& form) {
    form.hsbAngle.UserScroll(77);
    act(form);
  });
  InOptions(world, [](frmOptions& form) { form.cmdDisplay.UserClick(); });
}

const Place kPlaces[] = {
    {"Idle", [](SuiteWorld&, const Leave& leave) { leave(); }},
    {"Options",
     [](SuiteWorld& world, const Leave& leave) {
       InOptions(world, [&](frmOptions& form) {
         for (CheckBox& box : form.chkOptions) box.UserClick();
         form.cmdAddRegEx.UserClick();
         leave();
       });
     }},
    {"DisplaySettings",
     [](SuiteWorld& world, const Leave& leave) {
       InDisplaySettings(world, [&](frmUI&) { leave(); });
     }},
    {"FontDialog",
     [](SuiteWorld& world, const Leave& leave) {
       InDialog<frmFont>(world, "frmFont", [&](frmFont&) { leave(); });
       InDisplaySettings(world, [](frmUI& form) { form.cmdSample[0].UserClick(); });
     }},
    {"LanSettings",
     [](SuiteWorld& world, const Leave& leave) {
       InDialog<frmLanSettings>(world, "frmLanSettings", [&](frmLanSettings&) { leave(); });
       InOptions(world, [](frmOptions& form) { form.cmdLanSettings.UserClick(); });
     }},
    {"SegmentationRules",
     [](SuiteWorld& world, const Leave& leave) {
       InDialog<frmSegmentation>(world, "frmSegmentation", [&](frmSegmentation&) { leave(); });
       InOptions(world, [](frmOptions& form) { form.cmdSegmentation.UserClick(); });
     }},
    {"ChangeServer",
     [](SuiteWorld& world, const Leave& leave) {
       InDialog<frmChangeServer>(world, "frmChangeServer", [&](frmChangeServer& form) {
         form.cmbServer.UserEdit(u"other.example");
         leave();
       });
       world.desktop.Event([&] { world.main().Press(kChangeServer); });
     }},
    {"About",
     [](SuiteWorld& world, const Leave& leave) {
       world.desktop.whenModal["frmAbout2006"] = [&](Form&) { leave(); };
       world.desktop.Event([&] { world.main().mnuHelpAbout(); });
     }},
    {"SelectFile",
     [](SuiteWorld& world, const Leave& leave) {
       world.main().dlgOpen.FileName = kProject;
       InDialog<frmSelectFile>(world, "frmSelectFile", [&](frmSelectFile&) { leave(); });
       world.desktop.Event([&] { world.main().mnuTranslateProject(); });
     }},
    {"Message",
     [](SuiteWorld& world, const Leave& leave) {
       world.Uninstall(u"Q17Bridge.exe");
       world.desktop.answer = [&](const MemoryDesktop::Message&) {
         leave();
         return int{kAnswerOk};
       };
       world.desktop.Event([&] { world.main().Press(14); });
     }},
    {"MessageOverADialog",
     [](SuiteWorld& world, const Leave& leave) {
       world.desktop.answer = [&](const MemoryDesktop::Message&) {
         leave();
         return int{kAnswerOk};
       };
       InDialog<frmLanSettings>(world, "frmLanSettings", [&](frmLanSettings& form) {
         form.optOverride.UserClick();
         if (form.chkUseProxy.Value() == 0) form.chkUseProxy.UserClick();
         form.cmdOK.UserClick();
       });
       InOptions(world, [](frmOptions& form) { form.cmdLanSettings.UserClick(); });
     }},
    {"FileDialog",
     [](SuiteWorld& world, const Leave& leave) {
       world.fileDialogs.whenShown = [&](Text& path) {
         leave();
         path = kProject;
         return FileDialogResult::kChosen;
       };
       world.desktop.Event([&] { world.main().mnuProjectClean(); });
     }},
    {"SkinToSave",
     [](SuiteWorld& world, const Leave& leave) {
       world.fileDialogs.whenShown = [&](Text& path) {
         leave();
         path = u"C:\\P\\new.qsk";
         return FileDialogResult::kChosen;
       };
       InDisplaySettings(world, [](frmUI& form) { form.cmdSave.UserClick(); });
     }},
    {"ColorDialog",
     [](SuiteWorld& world, const Leave& leave) {
       world.colorDialog.whenShown = [&](Color&) {
         leave();
         return true;
       };
       InDisplaySettings(world, [](frmUI& form) { form.cmdSetColor(0).UserClick(); });
     }},
    {"CleanSearch",
     [](SuiteWorld& world, const Leave& leave) {
       world.main().dlgOpen.FileName = kProject;
       world.desktop.posted.push_back(leave);
       world.desktop.Event([&] { world.main().mnuProjectClean(); });
     }},
    {"CleanQuestion",
     [](SuiteWorld& world, const Leave& leave) {
       world.main().dlgOpen.FileName = kProject;
       world.desktop.answer = [&](const MemoryDesktop::Message&) {
         leave();
         return int{kAnswerYes};
       };
       world.desktop.Event([&] { world.main().mnuProjectClean(); });
     }},
    {"Component",
     [](SuiteWorld& world, const Leave& leave) {
       world.components.registered[u"Marl.QaComponent"] =
           [&](const Text&, std::vector<ComponentValue>&, ComponentValue&, Text&) {
             leave();
             return true;
           };
       world.desktop.Event([&] { world.main().mnuToolsQACheck(); });
     }},
    {"Splash", [](SuiteWorld& world, const Leave& leave) { world.desktop.posted.push_back(leave); },
     true},
};

const Way kWays[] = {{"ExitFromTheTray", ExitFromTheTray, true},
                     {"CloseOfTheMainWindow", CloseTheMainWindow},
                     {"EndOfTheSession", EndTheSession}};

class Leaving : public testing::TestWithParam<std::tuple<Place, Way>> {};

std::vector<Text> KeysOf(const std::vector<MemorySettingsStore::Write>& writes) {
  std::vector<Text> keys;
  for (const auto& write : writes) keys.push_back(write.key);
  return keys;
}

bool KeyExists(MemoryRegistryStore& registry, const NarrowText& path) {
  OpenKeyHandle key;
  return registry.OpenKey(kCurrentUser, path, kKeyRead, key) == kOk;
}

const std::vector<Text> kSaved = {u"Left",  u"Top",         u"Tooltips",
                                  u"Tools", u"WindowState", u"XtraFeatures"};

TEST_P(Leaving, RunsTheExitSequenceOnceAndAppliesNothing) {
  const auto& [place, way] = GetParam();
  if (place.starting && way.needsMenu)
    return;  // there is no menu yet: covered by modMarl's and the tray's tests
  SuiteWorld world;
  world.files.Put(kProject, "<language lc=\"fr\"/><document path=\"a.doc\"/>");
  world.files.Put(kWorkingFile, "x");
  world.files.Put(u"C:\\P\\French\\a.qtd", "x");
  int lefts = 0;
  std::size_t messages = 0;
  std::size_t dialogs = 0;
  const Leave leave = [&] {
    ++lefts;
    messages = world.desktop.messages.size();
    dialogs = world.desktop.modal.size();
    way.leave(world);
  };
  if (place.starting) place.go(world, leave);
  world.Start();
  world.shell.started.clear();
  if (!place.starting) place.go(world, leave);

  ASSERT_EQ(lefts, 1) << "the state was reached";
  EXPECT_TRUE(world.desktop.ended());
  EXPECT_EQ(world.desktop.exitCode(), 0);
  EXPECT_FALSE(world.main().loaded());
  EXPECT_TRUE(world.desktop.forms().empty()) << "its dialogs are closed too";
  EXPECT_TRUE(world.tray.icons.empty());
  EXPECT_TRUE(world.hooks.listeners.empty());
  EXPECT_EQ(world.registry.OpenKeys(), 0u);
  // Saved once and completely, unchanged: no tick in the options has reached the flags. A session
  // that ends during start-up saves nothing.
  if (place.starting && way.leave == EndTheSession) {
    EXPECT_TRUE(world.settings.writes.empty());
    EXPECT_FALSE(KeyExists(world.registry, "Software\\Oru\\Marl\\Settings")) << "the server";
  } else {
    EXPECT_EQ(KeysOf(world.settings.writes), kSaved);
    EXPECT_EQ(world.Setting(u"Tooltips"), u"True");
    EXPECT_EQ(world.Setting(u"Tools"), u"False");
    EXPECT_TRUE(KeyExists(world.registry, "Software\\Oru\\Marl\\Settings")) << "the server";
  }
  // The session ends for every window of the process: the other ones' messages change nothing.
  const std::size_t written = world.settings.writes.size();
  world.desktop.EndSession(true);
  EXPECT_EQ(world.settings.writes.size(), written);
  for (const char* key : {"Software\\Oru\\Marl\\GUI", "Software\\Oru\\Oru Bench\\Settings",
                          "Software\\Oru\\Marl\\HiddenSegments", "Software\\Oru\\Marl\\Proxy"}) {
    EXPECT_FALSE(KeyExists(world.registry, key)) << key;
  }
  // No code after the dialog has run.
  EXPECT_EQ(world.desktop.messages.size(), messages);
  EXPECT_EQ(world.desktop.modal.size(), dialogs);
  EXPECT_TRUE(world.shell.started.empty());
  EXPECT_TRUE(world.shell.ran.empty());
  EXPECT_TRUE(world.files.Content(kWorkingFile));
  EXPECT_FALSE(world.files.Content(u"C:\\P\\new.qsk"));
  EXPECT_EQ(world.components.live, 0);
}

INSTANTIATE_TEST_SUITE_P(Everywhere, Leaving,
                         testing::Combine(testing::ValuesIn(kPlaces), testing::ValuesIn(kWays)),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) + "By" +
                                  std::get<1>(test.param).name;
                         });

// ---- Before there is anything to save

struct EarlyMessage {
  const char* name;
  TextView text;
  void (*arrange)(SuiteWorld&);
};

const EarlyMessage kEarlyMessages[] = {
    {"AlreadyRunning", u"Marl is already running",
     [](SuiteWorld& world) { world.process.previousInstance = true; }},
    {"Demonstration",
     u"Would you like to launch a demonstration which shows you how to translate in Marl?",
     [](SuiteWorld& world) { world.PutSetting(u"FirstRun", u"Y"); }},
    {"MissingDemonstration", u"File not found : C:\\Suite\\MarlTour.exe",
     [](SuiteWorld& world) {
       world.PutSetting(u"FirstRun", u"Y");
       world.Uninstall(u"MarlTour.exe");
     }},
    {"WizardQuestion", u"Would you like to start the translation wizard when you start Marl?",
     [](SuiteWorld& world) { world.PutSetting(u"FirstRun", u"Y"); }},
    {"MissingWizard", u"File not found : C:\\Suite\\Q17Shell.exe",
     [](SuiteWorld& world) {
       world.PutSetting(u"Wizard", u"Y");
       world.Uninstall(u"Q17Shell.exe");
     }},
};

class EarlyMessages : public testing::TestWithParam<EarlyMessage> {
 protected:
  /// Starts the program, and acts when the message shows.
  void Start(const std::function<void()>& act) {
    const EarlyMessage& message = GetParam();
    message.arrange(world);
    world.desktop.answer = [&, act](const MemoryDesktop::Message& shown) {
      if (shown.text == message.text) {
        ++shows;
        act();
      }
      const bool demonstration = shown.text == kEarlyMessages[1].text;
      const bool wanted = std::string_view(message.name) == "MissingDemonstration";
      return demonstration && wanted ? int{kAnswerYes} : int{kAnswerNo};
    };
    world.Start();
  }

  SuiteWorld world;
  int shows = 0;
};

TEST_P(EarlyMessages, ExitDuringThemSavesNothing) {
  world.PutSetting(u"Left", u"123");
  world.registry.Plant(kCurrentUser, "Software\\Oru\\Marl\\Settings", "TrackingServer", kRegSz,
                       NarrowText("alpha\0", 6));
  std::vector<Text> before;
  Start([&] {
    before = KeysOf(world.settings.writes);
    CloseTheMainWindow(world);
  });
  EXPECT_EQ(shows, 1);
  EXPECT_TRUE(world.desktop.ended());
  EXPECT_EQ(world.desktop.exitCode(), 0);
  EXPECT_EQ(KeysOf(world.settings.writes), before);
  EXPECT_EQ(world.Setting(u"Left"), u"123");
  EXPECT_FALSE(KeyExists(world.registry, "Software\\Oru\\Marl\\ServerMRU"));
  EXPECT_TRUE(world.tray.calls.empty()) << "there is no icon to remove";
  EXPECT_TRUE(world.hooks.putBack.empty());
}

TEST_P(EarlyMessages, NoTipHookOrTimerRunsDuringThem) {
  Start([&] {
    world.desktop.Advance(1000);
    EXPECT_FALSE(world.main().tmrOver.Enabled());
    EXPECT_TRUE(world.tips.tips.empty());
    EXPECT_TRUE(world.hooks.listeners.empty());
    EXPECT_TRUE(world.tray.calls.empty());
    EXPECT_FALSE(world.main().TrayReady);
    EXPECT_FALSE(world.main().Visible());
    EXPECT_FALSE(world.main().splash);
  });
  EXPECT_EQ(shows, 1);
}

INSTANTIATE_TEST_SUITE_P(StartUp, EarlyMessages, testing::ValuesIn(kEarlyMessages),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(RunningTimer, StartsWhenStartUpHasEnded) {
  SuiteWorld world;
  bool waited = false;
  world.desktop.posted.push_back([&] {
    EXPECT_FALSE(world.main().tmrOver.Enabled());
    waited = true;
  });
  world.Start();
  EXPECT_TRUE(waited);
  EXPECT_TRUE(world.main().tmrOver.Enabled());
}

// ---- The order of the exit sequence

using Journal = std::vector<std::string>;

std::string Narrow(TextView text) { return {text.begin(), text.end()}; }

struct WatchedTray : MemoryTray {
  Journal* journal = nullptr;
  bool NotifyIcon(int command, const NotifyIconData& data) override {
    journal->push_back(command == kNotifyAdd ? "icon added" : "icon removed");
    return MemoryTray::NotifyIcon(command, data);
  }
};
struct WatchedIcons : MemoryIcons {
  Journal* journal = nullptr;
  void Destroy(IconHandle icon) override {
    journal->push_back("icon destroyed");
    MemoryIcons::Destroy(icon);
  }
};
struct WatchedSettings : MemorySettingsStore {
  Journal* journal = nullptr;
  Status SaveSetting(TextView application, TextView section, TextView key,
                     TextView value) override {
    journal->push_back(Narrow(key));
    return MemorySettingsStore::SaveSetting(application, section, key, value);
  }
};
struct WatchedHooks : MemoryWindowHooks {
  Journal* journal = nullptr;
  void PutBack(WindowHandle window, ProcAddress previous) override {
    journal->push_back("hook");
    MemoryWindowHooks::PutBack(window, previous);
  }
};
struct WatchedServers : MemoryRegistryStore {
  Journal* journal = nullptr;
  Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                  const NarrowText& data) override {
    if (name == "TrackingServer") journal->push_back("server");
    return MemoryRegistryStore::SetValue(key, name, kind, data);
  }
};

/// A machine that records what the program does to the outside, in order.
struct WatchedWorld : SuiteWorld {
  Journal journal;
  WatchedTray watchedTray;
  WatchedIcons watchedIcons;
  WatchedSettings watchedSettings;
  WatchedHooks watchedHooks;
  WatchedServers watchedServers;

  WatchedWorld() {
    watchedTray.journal = watchedIcons.journal = watchedSettings.journal = &journal;
    watchedHooks.journal = watchedServers.journal = &journal;
    watchedSettings.Put(u"Marl", u"Settings", u"FirstRun", u"N");
    watchedIcons.Put(u"C:\\Suite\\q17icl.oru", 117, 1171, 1172);
  }
  ~WatchedWorld() { application.reset(); }  // before the ports that it uses

  void Start(bool debugLog = false) {
    application = std::make_unique<Application>(
        Platform{desktop, files, watchedSettings, shell, process, components, strings, locales,
                 watchedIcons, pictures, watchedServers, watchedHooks, watchedTray, tips, profile,
                 fileDialogs, colorDialog, fontList, clock},
        debugLog);
    application->Run();
    journal.clear();
  }
};

const Journal kExitSequence = {"icon destroyed", "icon removed", "Left",        "Top",
                               "Tooltips",       "Tools",        "WindowState", "XtraFeatures",
                               "server",         "hook"};

TEST(ExitSequence, IconThenSavesThenHook) {
  WatchedWorld world;
  world.Start();
  world.desktop.Event([&] { world.main().UserClose(); });
  EXPECT_EQ(world.journal, kExitSequence);
}

TEST(ExitSequence, PressOnExitSavesTheServerFirst) {
  WatchedWorld world;
  world.Start();
  world.Click(*world.main().imgRun[kExit]);
  Journal expected = kExitSequence;
  expected.insert(expected.begin(), "server");
  EXPECT_EQ(world.journal, expected);
}

TEST(ExitSequence, ClosesTheDebugLog) {
  WatchedWorld world;
  bool open = false;
  world.desktop.posted.push_back([&] {
    open = world.files.Content(u"C:\\Suite\\debug.log").has_value();
    EXPECT_EQ(world.files.OpenFiles(), 1) << "opened before the wait for the splash";
  });
  world.Start(true);
  EXPECT_TRUE(open);
  world.desktop.Event([&] { world.main().UserClose(); });
  EXPECT_EQ(world.files.OpenFiles(), 0);
}

// ---- The order of start-up

TEST(StartUpOrder, FirstRunIsSavedBeforeTheShellProgramStartsAndBeforeTheSecondQuestion) {
  WatchedWorld world;
  world.watchedSettings.Put(u"Marl", u"Settings", u"FirstRun", u"Y");
  std::vector<std::string> seen;
  world.desktop.answer = [&](const MemoryDesktop::Message& message) {
    seen.push_back(
        Narrow(message.text.substr(0, 27)) + " FirstRun=" +
        Narrow(world.watchedSettings.GetSetting(u"Marl", u"Settings", u"FirstRun", u"")) +
        " tools=" + std::to_string(world.Tools().size()));
    return int{kAnswerNo};
  };
  world.shell.whenStarted = [&](const MemoryShell::Started& started) {
    if (!started.file.ends_with(u"Q17Shell.exe")) return;
    seen.push_back("/R FirstRun=" + Narrow(world.watchedSettings.GetSetting(u"Marl", u"Settings",
                                                                            u"FirstRun", u"")));
  };
  world.Start();
  EXPECT_EQ(seen, (std::vector<std::string>{"Would you like to launch a  FirstRun=Y tools=0",
                                            "/R FirstRun=N",
                                            "Would you like to start the FirstRun=N tools=1"}));
}

TEST(StartUpOrder, WizardComesBeforeTheTemporaryFiles) {
  const Text file = u"C:\\Users\\Translator\\Temp\\ORU1.TMP";
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  world.files.Put(file, "x");
  world.Start();
  ASSERT_TRUE(world.desktop.ended());
  EXPECT_TRUE(world.files.Content(file)) << "nothing is cleaned up before the wizard";
}

TEST(StartUpOrder, BrowserIsProbedBeforeTheWaitForTheSplash) {
  SuiteWorld world;
  std::size_t asked = 0;
  world.desktop.posted.push_back([&] { asked = world.shell.asked.size(); });
  world.Start();
  EXPECT_EQ(asked, 1u);
}

// ---- The last message

class LastMessage : public testing::Test {
 protected:
  /// Makes an event fail, and acts while the message is shown.
  void Fail(const std::function<void()>& act) {
    world.desktop.answer = [&, act](const MemoryDesktop::Message& message) {
      EXPECT_EQ(message.text, u"Type mismatch");
      ++shows;
      act();
      return int{kAnswerOk};
    };
    world.desktop.Event([] { throw RuntimeError::TypeMismatch(); });
  }

  SuiteWorld world;
  int shows = 0;
};

TEST_F(LastMessage, ComesWhenNoEventReachesAHandlerAnyMore) {
  world.Start();
  Fail([&] {
    EXPECT_TRUE(world.desktop.ended());
    bool reached = false;
    world.desktop.Event([&] { reached = true; });
    const Timer& timer = world.main().tmrOver;
    EXPECT_TRUE(timer.Enabled());
    world.main().tmrOver.Tick = [&] { reached = true; };
    world.desktop.Advance(1000);
    world.desktop.Event([&] { world.main().UserExecute(u"PRJ C:\\x"); });
    CloseTheMainWindow(world);
    ExitFromTheTray(world);
    EXPECT_FALSE(reached);
    EXPECT_TRUE(world.main().dlgOpen.FileName.empty());
    EXPECT_TRUE(world.main().loaded());
  });
  EXPECT_EQ(shows, 1);
  EXPECT_EQ(world.desktop.exitCode(), 1);
  EXPECT_EQ(world.settings.writes, std::vector<MemorySettingsStore::Write>()) << "no exit sequence";
}

TEST_F(LastMessage, IsNoReasonToPreventTheEndOfTheSession) {
  world.Start();
  Fail([&] {
    EXPECT_TRUE(world.desktop.MayEndSession());
    EXPECT_TRUE(world.desktop.messagesAtEnd.empty());
    world.desktop.EndSession(true);
    EXPECT_EQ(world.desktop.messagesAtEnd.size(), 1u) << "the process ends behind it";
  });
  EXPECT_EQ(shows, 1);
  EXPECT_EQ(world.desktop.exitCode(), 1);
  EXPECT_TRUE(world.settings.writes.empty());
}

// ---- Closed by an installer

TEST(RestartManager, BringsTheSwitchboardBackAndNotTheWizard) {
  SuiteWorld world;
  world.desktop.posted.push_back(
      [&] { EXPECT_TRUE(world.process.restarts.empty()) << "start-up is not complete"; });
  world.Start();
  EXPECT_EQ(world.process.restarts, std::vector<Text>{u"NW"});
}

TEST(RestartManager, DoesNotKnowASecondInstance) {
  SuiteWorld world;
  world.process.previousInstance = true;
  world.Start();
  EXPECT_TRUE(world.process.restarts.empty());
}

TEST_F(LastMessage, LeavesNoIconInTheNotificationArea) {
  world.Start();
  ASSERT_EQ(world.tray.icons.size(), 1u);
  Fail([] {});
  EXPECT_TRUE(world.tray.icons.empty());
  EXPECT_EQ(world.icons.destroyed, std::vector<IconHandle>{1172});
}

TEST_F(LastMessage, IsShownAboveTheFormThatWasInFront) {
  world.Start();
  Fail([] {});
  EXPECT_EQ(world.desktop.messageOwners, std::vector<const Form*>{&world.main()});
}

TEST_F(LastMessage, IsShownAboveTheTopmostDialog) {
  world.Start();
  const Form* options = nullptr;
  InOptions(world, [&](frmOptions& form) {
    options = &form;
    Fail([] {});
  });
  ASSERT_TRUE(options);
  EXPECT_EQ(world.desktop.messageOwners, std::vector<const Form*>{options});
  EXPECT_EQ(world.desktop.exitCode(), 1);
}

// ---- What fails in an item of the tray's menu

TEST(TrayMenuFailure, IsDroppedAndTheEntryWorksAgain) {
  SuiteWorld world;
  int calls = 0;
  world.components.registered[u"Marl.QaComponent"] = [&](const Text&, std::vector<ComponentValue>&,
                                                         ComponentValue&, Text& failure) {
    failure = u"No such database";
    return ++calls > 1;
  };
  world.Start();
  for (int choice = 0; choice < 2; ++choice) {
    world.tray.choice = kQaCheck + 1;
    world.desktop.Event([&] {
      world.hooks.Send(world.main().hWnd(), world.hooks.NumberOf("msgMarlMenu"), 0, kRightClick);
    });
  }
  EXPECT_EQ(calls, 2);
  EXPECT_FALSE(world.desktop.ended());
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_EQ(world.desktop.exitCode(), 0);
}

}  // namespace
}  // namespace marl
