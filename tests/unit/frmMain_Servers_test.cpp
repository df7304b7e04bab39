// The tracking server in the main form: at start-up, at each press, at exit.

#include <gtest/gtest.h>

#include <optional>

#include "network/ServerTag.h"
#include "network/frmChangeServer.h"
#include "tests/unit/World.h"

namespace marl {

namespace {

constexpr char kSettingsKey[] = "Software\\Oru\\Marl\\Settings";
constexpr char kServerList[] = "Software\\Oru\\Marl\\ServerMRU";
constexpr TextView kClient = u"Marl.TrackingServerClient";

class MainServers : public testing::Test {
 protected:
  void Store(const NarrowText& server) {
    world.registry.Plant(kCurrentUser, kSettingsKey, "TrackingServer", kRegSz, server + '\0');
  }
  /// A text in the registry; nothing if there is none.
  std::optional<NarrowText> Stored(const char* key, const char* name) {
    OpenKeyHandle opened;
    if (world.registry.OpenKey(kCurrentUser, key, kKeyQueryValue, opened) != kOk) return {};
    NarrowText bytes(4000, '\0');
    std::uint32_t kind = 0;
    auto size = static_cast<std::uint32_t>(bytes.size());
    if (world.registry.QueryValue(opened.get(), name, kind, bytes, size) != kOk) return {};
    bytes.resize(size);
    if (!bytes.empty()) bytes.pop_back();
    return bytes;
  }
  std::optional<NarrowText> StoredServer() { return Stored(kSettingsKey, "TrackingServer"); }

  void Start() {
    for (const TextView tool : {u"q17gauge.exe", u"q17bench.exe", u"q17warden.exe"}) {
      world.files.Put(Text(u"C:\\Suite\\") + Text(tool), std::string_view("MZ"));
    }
    world.Start();
    world.shell.started.clear();
  }
  frmMain& main() { return world.main(); }
  const Label& Slot(int index) { return *main().lblRun[static_cast<std::size_t>(index)]; }

  /// Changes the server with `user` at the dialog.
  template <typename User>
  void Change(User user) {
    world.desktop.whenModal["frmChangeServer"] = [&](Form& form) {
      user(static_cast<frmChangeServer&>(form));
    };
    main().Press(kChangeServer);
    world.desktop.whenModal.erase("frmChangeServer");
  }
  void ChangeTo(TextView name) {
    Change([&](frmChangeServer& form) {
      form.cmbServer.UserEdit(name);
      form.cmdOK.UserClick();
    });
  }

  World world;
};

const NarrowText kAlpha("<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
const NarrowText kBeta("<project-tracking server=\"beta\" ssl=\"no\" port=\"80\"/>");

}  // namespace

TEST_F(MainServers, TitleSaysThatThereIsNoServerAndOnlyTrackProjectsIsGrey) {
  Start();
  EXPECT_EQ(main().Caption(), u"Marl : [no server]");
  EXPECT_EQ(main().CurrentServerTag(), u"");
  EXPECT_FALSE(Slot(kTrackProjects).Enabled());
  EXPECT_EQ(Slot(kTrackProjects).Tag, kDead);
  for (const int other : {static_cast<int>(kChangeServer), static_cast<int>(kAdministrator),
                          static_cast<int>(kEdit)}) {
    EXPECT_TRUE(Slot(other).Enabled()) << other;
    EXPECT_EQ(Slot(other).Tag, u"") << other;
  }
}

TEST_F(MainServers, TitleShowsTheStoredServerAndTrackProjectsIsEnabled) {
  Store("alpha");
  Start();
  EXPECT_EQ(main().Caption(), u"Marl : alpha");
  EXPECT_TRUE(Slot(kTrackProjects).Enabled());
  EXPECT_EQ(Slot(kTrackProjects).Tag, u"") << "the missing-tools pass leaves it alone";
}

TEST_F(MainServers, ComponentIsAskedOnceAtStartUp) {
  world.components.registered[Text(kClient)] = {};
  Store("alpha");
  Start();
  ASSERT_EQ(world.components.calls.size(), 1u);
  EXPECT_EQ(std::get<Text>(world.components.calls[0].arguments[0]),
            ServerDocument(BareNameTag(u"alpha")));
  EXPECT_EQ(world.components.live, 1) << "and kept";
}

TEST_F(MainServers, RefusedStoredServerEndsQuietlyInNone) {
  world.components.registered[Text(kClient)] = [](const Text&, auto&, auto&, Text& failure) {
    failure = u"refused";
    return false;
  };
  Store("alpha");
  Start();
  EXPECT_EQ(main().Caption(), u"Marl : [no server]");
  EXPECT_FALSE(Slot(kTrackProjects).Enabled());
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(MainServers, PressOnTrackProjectsWithoutServerDoesNothing) {
  Start();
  main().Press(kTrackProjects);
  main().mnuProjectTrackProjects();
  EXPECT_TRUE(world.shell.started.empty());
  EXPECT_EQ(StoredServer(), std::nullopt) << "a disabled button does not even save";
}

TEST_F(MainServers, TrackProjectsOpensTheSiteInTheBrowserFoundAtStartUp) {
  world.shell.browser = u"C:\\Browser\\browse.exe";
  Store("<project-tracking server=\"alpha\" ssl=\"YES\" port=\"443\"/>");
  Start();
  main().Press(kTrackProjects);
  main().mnuProjectTrackProjects();
  const MemoryShell::Started expected{ShellOwner::kDesktop,
                                      u"open",
                                      u"C:\\Browser\\browse.exe",
                                      u"https://alpha/OruCadenceProjectTracking/logon.aspx",
                                      u"",
                                      kShowNormal};
  EXPECT_EQ(world.shell.started, (std::vector<MemoryShell::Started>{expected, expected}));
}

TEST_F(MainServers, TrackProjectsLeavesTheChoiceToTheShellWithoutABrowser) {
  world.shell.findCode = 31;
  Store("<project-tracking server=\"alpha\" ssl=\"no\" port=\"443\"/>");
  Start();
  main().Press(kTrackProjects);
  EXPECT_EQ(
      world.shell.started,
      (std::vector<MemoryShell::Started>{{ShellOwner::kDesktop, u"open",
                                          u"http://alpha:443/OruCadenceProjectTracking/logon.aspx",
                                          u"", u"", kShowNormal}}));
}

TEST_F(MainServers, AdministratorGetsTheServersArguments) {
  Store("<project-tracking server=\"alpha\" ssl=\"yes\" port=\"8080\"/>");
  Start();
  main().Press(kAdministrator);
  EXPECT_EQ(
      world.shell.started,
      (std::vector<MemoryShell::Started>{{ShellOwner::kMainForm, u"", u"C:\\Suite\\Q17Warden.exe",
                                          u"alpha /ssl /port=8080", u"C:\\Suite", kShowNormal}}));
}

TEST_F(MainServers, AdministratorStartsWithoutArgumentsWhereThereIsNoServer) {
  Start();
  main().Press(kAdministrator);
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].parameters, u"");
}

TEST_F(MainServers, EachPressSavesBeforeItStartsAnything) {
  Store("alpha");
  Start();
  ASSERT_EQ(StoredServer(), "alpha") << "start-up writes nothing";
  main().Press(kEdit);
  EXPECT_EQ(StoredServer(), kAlpha);
  EXPECT_EQ(Stored(kServerList, "MRU1"), kAlpha);
  EXPECT_EQ(Stored(kServerList, "MRU8"), "");
}

TEST_F(MainServers, PressOnChangeServerSavesTheOldServerFirst) {
  Store("alpha");
  Start();
  Change([&](frmChangeServer& form) {
    EXPECT_EQ(StoredServer(), kAlpha);
    form.cmbServer.UserEdit(u"beta");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(main().Caption(), u"Marl : beta");
  EXPECT_EQ(StoredServer(), kAlpha) << "the new one is saved at the next press";
  main().Press(kEdit);
  EXPECT_EQ(StoredServer(), kBeta);
  EXPECT_EQ(Stored(kServerList, "MRU1"), kBeta);
  EXPECT_EQ(Stored(kServerList, "MRU2"), kAlpha);
}

TEST_F(MainServers, ExitSavesToo) {
  Start();
  ChangeTo(u"alpha");
  main().Press(kExit);
  EXPECT_FALSE(main().loaded());
  // The dialog opened without a server: default port, so that the tag has one.
  EXPECT_EQ(StoredServer(), kAlpha);
  EXPECT_EQ(Stored(kServerList, "MRU1"), kAlpha);
}

TEST_F(MainServers, DialogShowsTheCurrentServer) {
  Store("<project-tracking server=\"alpha\" ssl=\"yes\" port=\"8443\"/>");
  Start();
  Change([&](frmChangeServer& form) {
    EXPECT_EQ(form.cmbServer.Text(), u"alpha");
    EXPECT_EQ(form.chkSSL.Value(), 1);
    EXPECT_EQ(form.txtPortNumber.Text(), u"8443");
    EXPECT_EQ(form.cmbServer.ListCount(), 1);
    form.cmdCancel.UserClick();
  });
  EXPECT_EQ(world.desktop.forms().size(), 1u) << "it has been unloaded";
}

TEST_F(MainServers, CancelAndCloseChangeNothing) {
  Store("alpha");
  Start();
  Change([&](frmChangeServer& form) {
    form.cmbServer.UserEdit(u"beta");
    form.cmdCancel.UserClick();
  });
  EXPECT_EQ(main().Caption(), u"Marl : alpha");
  Change([&](frmChangeServer& form) {
    form.cmbServer.UserEdit(u"beta");
    form.UserClose();
  });
  EXPECT_EQ(main().Caption(), u"Marl : alpha");
  EXPECT_EQ(world.desktop.forms().size(), 1u);
}

TEST_F(MainServers, EmptyNameRemovesTheServer) {
  Store("alpha");
  Start();
  ChangeTo(u"");
  EXPECT_EQ(main().Caption(), u"Marl : [no server]");
  EXPECT_FALSE(Slot(kTrackProjects).Enabled());
  EXPECT_EQ(Slot(kTrackProjects).Tag, kDead);
  EXPECT_TRUE(world.desktop.messages.empty());
  main().Press(kEdit);
  EXPECT_EQ(StoredServer(), "");
  EXPECT_EQ(Stored(kServerList, "MRU1"), kAlpha) << "the list remembers it";
  ChangeTo(u"alpha");
  EXPECT_TRUE(Slot(kTrackProjects).Enabled());
}

TEST_F(MainServers, ServerAddedAgainInOtherCaseTakesTheNewSpelling) {
  Store("alpha");
  Start();
  ChangeTo(u"beta");
  ChangeTo(u"ALPHA");
  main().Press(kEdit);
  EXPECT_EQ(Stored(kServerList, "MRU1"),
            "<project-tracking server=\"ALPHA\" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(Stored(kServerList, "MRU2"), kBeta);
  EXPECT_EQ(Stored(kServerList, "MRU3"), "");
}

TEST_F(MainServers, RefusedServerShowsTheComponentsTextAndChangesNothing) {
  world.components.registered[Text(kClient)] = [](const Text&, auto& arguments, auto&,
                                                  Text& failure) {
    if (std::get<Text>(arguments[0]).find(u"beta") == Text::npos) return true;
    failure = u"The server beta does not answer.";
    return false;
  };
  Store("alpha");
  Start();
  ChangeTo(u"beta");
  EXPECT_EQ(world.desktop.messages,
            (std::vector<MemoryDesktop::Message>{
                {u"The server beta does not answer.", kExclamation, u"Marl"}}));
  EXPECT_EQ(main().Caption(), u"Marl : alpha");
  main().Press(kEdit);
  EXPECT_EQ(StoredServer(), kAlpha);
  EXPECT_EQ(Stored(kServerList, "MRU2"), "");
}

TEST_F(MainServers, BareNameInTheListIsStoredBackAsATagOnceTheDialogHasOpened) {
  world.registry.Plant(kCurrentUser, kServerList, "MRU3", kRegSz, NarrowText("R&D\0", 4));
  Start();
  Change([&](frmChangeServer& form) { form.cmdCancel.UserClick(); });
  main().Press(kEdit);
  EXPECT_EQ(Stored(kServerList, "MRU1"),
            "<project-tracking server=\"R&amp;D\" ssl=\"no\" port=\"80\"/>");
  EXPECT_EQ(Stored(kServerList, "MRU3"), "");
}

struct Typed {
  Text name;
  Text tag;        ///< the current tag afterwards
  TextView title;  ///< after "Marl : "
  TextView arguments;
};

class MainServersTyped : public MainServers, public testing::WithParamInterface<Typed> {};

// Without a component of the suite: the user's text is used unescaped if that makes an element.
TEST_P(MainServersTyped, NameIsUsedUnescaped) {
  Start();
  ChangeTo(GetParam().name);
  EXPECT_EQ(main().CurrentServerTag(), GetParam().tag);
  EXPECT_EQ(main().Caption(), Text(u"Marl : ") + Text(GetParam().title));
  main().Press(kAdministrator);
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].parameters, GetParam().arguments);
  Change([](frmChangeServer& form) { EXPECT_EQ(form.cmbServer.ListCount(), 1); });
  main().Press(kExit);
  EXPECT_FALSE(main().loaded());
}

Text Raw(TextView name) { return ComposeServerTag(name, false, u"80"); }

INSTANTIATE_TEST_SUITE_P(
    Names, MainServersTyped,
    testing::Values(Typed{u"a\"b", Raw(u"a\"b"), u"a", u"a /port=80"},
                    Typed{u"a&b", Raw(u"a&b"), u"a&b", u"a&b /port=80"},
                    Typed{u"a&amp;b", Raw(u"a&amp;b"), u"a&b", u"a&b /port=80"},
                    Typed{u"a<b", Raw(u"a<b"), u"a<b", u"a<b /port=80"},
                    Typed{u"a%20b", Raw(u"a%20b"), u"a%20b", u"a%20b /port=80"},
                    Typed{u" a b ", Raw(u" a b "), u" a b ", u" a b  /port=80"},
                    Typed{u"/ssl /port=1", Raw(u"/ssl /port=1"), u"/ssl /port=1",
                          u"/ssl /port=1 /port=80"}));

TEST_F(MainServers, NameThatEndsTheElementIsRefusedByTheBuiltInClient) {
  Start();
  ChangeTo(u"a>b");
  EXPECT_EQ(main().CurrentServerTag(), u"");
  ChangeTo(u"x\" server=\"y");
  EXPECT_EQ(main().CurrentServerTag(), u"");
  ASSERT_EQ(world.desktop.messages.size(), 2u);
  EXPECT_EQ(world.desktop.messages[0].text, world.strings.Get(IDS_SERVER_REFUSED));
}

TEST_F(MainServers, DuplicateAttributeDoesNotStopAPress) {
  world.components.registered[Text(kClient)] = {};
  Start();
  ChangeTo(u"x\" server=\"y");
  EXPECT_EQ(main().Caption(), u"Marl : x");
  main().Press(kAdministrator);
  main().Press(kTrackProjects);
  Change([](frmChangeServer& form) { EXPECT_EQ(form.cmbServer.Text(), u"x"); });
  EXPECT_FALSE(world.desktop.ended());
  ASSERT_EQ(world.shell.started.size(), 2u);
  EXPECT_EQ(world.shell.started[0].parameters, u"x");
}

TEST_F(MainServers, VeryLongNameIsKeptWhole) {
  Start();
  const Text name(10000, u'n');
  ChangeTo(name);
  EXPECT_EQ(main().CurrentServerTag(), Raw(name));
  main().Press(kAdministrator);
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].parameters, name + u" /port=80");
}

}  // namespace marl
