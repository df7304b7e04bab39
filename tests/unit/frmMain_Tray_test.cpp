// The main form in the notification area, on the memory desktop.

#include <gtest/gtest.h>

#include "support/frmSplash.h"
#include "tests/unit/World.h"

namespace marl {

namespace {

constexpr std::intptr_t kDoubleClick = 0x203;
constexpr std::intptr_t kRightClick = 0x205;

class TrayForm : public testing::Test {
 protected:
  std::intptr_t TrayMessage(std::intptr_t what) {
    return world.hooks.Send(window, world.hooks.NumberOf("msgMarlMenu"), 0, what);
  }
  void Start() {
    world.Start();
    window = world.main().hWnd();
  }
  /// The user picks an item of the tray's menu, by number from 1.
  void Choose(int item) {
    world.tray.choice = item;
    TrayMessage(kRightClick);
    world.tray.choice = 0;
  }
  MemoryPeer& Peer() { return *static_cast<MemoryPeer*>(world.main().peer()); }
  void Minimise() { Peer().Minimise(); }

  World world;
  WindowHandle window = 0;
};

}  // namespace

TEST_F(TrayForm, IconIsThereFromStartToExit) {
  Start();
  ASSERT_EQ(world.tray.icons.size(), 1u);
  const NotifyIconData icon = world.tray.icons[0];
  EXPECT_EQ(icon.cbSize, 88);
  EXPECT_EQ(icon.hWnd, window);
  EXPECT_EQ(icon.uFlags, 7u);
  EXPECT_EQ(icon.uCallbackMessage, world.hooks.NumberOf("msgMarlMenu"));
  EXPECT_EQ(icon.hIcon, 1172) << "the small one";
  EXPECT_EQ(icon.szTip, u"Marl");
  EXPECT_TRUE(world.main().TrayReady);
  world.main().Unload();
  EXPECT_TRUE(world.tray.icons.empty());
  EXPECT_EQ(world.icons.destroyed, std::vector<IconHandle>{1172});
  EXPECT_TRUE(world.hooks.listeners.empty());
  ASSERT_EQ(world.hooks.putBack.size(), 1u);
  EXPECT_EQ(world.hooks.putBack[0].first, window);
}

TEST_F(TrayForm, MissingIconLibraryLeavesAnEntryWithoutPicture) {
  world.icons.images.clear();
  Start();
  ASSERT_EQ(world.tray.icons.size(), 1u);
  EXPECT_EQ(world.tray.icons[0].hIcon, 0);
}

TEST_F(TrayForm, SecondStartAsksForTheMessagesAndShowsNoIcon) {
  world.process.previousInstance = true;
  world.Start();
  EXPECT_EQ(world.hooks.registered, (std::vector<std::string>{"msgMarlMenu", "TaskbarCreated"}));
  EXPECT_TRUE(world.tray.calls.empty());
  EXPECT_TRUE(world.hooks.listeners.empty());
}

TEST_F(TrayForm, MinimisedByTheUserHidesAndDoubleClickBringsBack) {
  Start();
  Minimise();
  EXPECT_FALSE(world.main().Visible());
  EXPECT_EQ(world.tray.icons.size(), 1u);
  EXPECT_EQ(TrayMessage(kDoubleClick), world.hooks.ownResult);
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
  EXPECT_EQ(world.desktop.foreground, &world.main());
}

TEST_F(TrayForm, MinimisedByCodeHidesToo) {
  Start();
  world.main().SetState(WindowState::kMinimised);
  EXPECT_FALSE(world.main().Visible());
  TrayMessage(kDoubleClick);
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(TrayForm, DoubleClickWithTheWindowVisibleBringsItToTheFront) {
  Start();
  world.desktop.foreground = nullptr;
  TrayMessage(kDoubleClick);
  EXPECT_EQ(world.desktop.foreground, &world.main());
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
}

TEST_F(TrayForm, DoubleClickSetsAMaximisedWindowToNormal) {
  world.settings.Put(u"Marl", u"Settings", u"WindowState", u"2");
  Start();
  ASSERT_EQ(world.main().State(), WindowState::kMaximised);
  TrayMessage(kDoubleClick);
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
  EXPECT_TRUE(world.main().Visible());
}

// It came back as high as it had been maximised.
TEST_F(TrayForm, MaximisedThenMinimisedWindowComesBackInItsNormalSize) {
  Start();
  frmMain& main = world.main();
  const Box normal = main.bounds();
  const Size inner = main.inner();
  const int wanted = main.ClientHeight;
  world.desktop.Event([&] { Peer().Maximise({-45, -45, 15450, 11610}); });
  EXPECT_EQ(main.ClientHeight, wanted);
  world.desktop.Event([&] { Minimise(); });
  ASSERT_FALSE(main.Visible());
  TrayMessage(kDoubleClick);
  ASSERT_TRUE(main.Visible());
  EXPECT_EQ(main.State(), WindowState::kNormal);
  EXPECT_EQ(main.ClientHeight, wanted);
  EXPECT_EQ(main.bounds(), normal);
  EXPECT_EQ(main.inner(), inner);
}

TEST_F(TrayForm, SingleClickDoesNothing) {
  Start();
  Minimise();
  TrayMessage(0x201);
  TrayMessage(0x202);
  EXPECT_FALSE(world.main().Visible());
  EXPECT_TRUE(world.tray.shown.empty());
}

TEST_F(TrayForm, WindowStateOfOneStartsInTheTray) {
  world.settings.Put(u"Marl", u"Settings", u"WindowState", u"1");
  Start();
  EXPECT_TRUE(world.main().loaded());
  EXPECT_FALSE(world.main().Visible());
  EXPECT_EQ(world.tray.icons.size(), 1u);
}

TEST_F(TrayForm, PopupHoldsAllButtonsInTheOrderOfTheirIndexes) {
  Start();
  Minimise();
  world.tray.cursor = {900, 700};
  TrayMessage(kRightClick);
  ASSERT_EQ(world.tray.shown.size(), 1u);
  const MemoryTray::Shown& menu = world.tray.shown[0];
  EXPECT_EQ(menu.at, (Point{900, 700}));
  EXPECT_EQ(menu.owner, window);
  EXPECT_EQ(world.desktop.foreground, &world.main()) << "active, though hidden";
  EXPECT_FALSE(world.main().Visible());
  ASSERT_EQ(menu.items.size(), 18u);
  for (int i = 0; i < 18; ++i) {
    EXPECT_EQ(menu.items[static_cast<std::size_t>(i)],
              (MemoryTray::Item{world.strings.Get(IDS_BUTTON_ANALYSE + i), i, false, true}));
  }
  ASSERT_TRUE(menu.pictures);
  EXPECT_EQ(menu.pictures->height, 16);
}

TEST_F(TrayForm, PopupIsBuiltOnce) {
  Start();
  world.main().lblRun[0]->SetCaption(u"changed later");
  world.main().lblRun[1]->SetVisible(false);
  world.main().imgRun[1]->SetVisible(false);
  TrayMessage(kRightClick);
  TrayMessage(kRightClick);
  ASSERT_EQ(world.tray.shown.size(), 2u);
  EXPECT_EQ(world.tray.popups, 1);
  EXPECT_EQ(world.tray.shown[1].items.size(), 18u);
  EXPECT_EQ(world.tray.shown[1].items[0].caption, u"Analyse");
}

TEST_F(TrayForm, LargeScreensGetTheLargerPictures) {
  world.desktop.dpi = {144, 144};
  Start();
  TrayMessage(kRightClick);
  ASSERT_EQ(world.tray.shown.size(), 1u);
  EXPECT_EQ(world.tray.shown[0].pictures->height, 24);
}

TEST_F(TrayForm, ChosenItemPressesItsButtonWithTheWindowHidden) {
  world.files.Put(u"C:\\Suite\\Q17Gauge.exe", "MZ");
  Start();
  Minimise();
  world.shell.started.clear();
  Choose(1);
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].file, u"C:\\Suite\\Q17Gauge.exe");
  EXPECT_FALSE(world.main().Visible());
}

TEST_F(TrayForm, HiddenButtonStillStartsItsTool) {
  world.files.Put(u"C:\\Suite\\Q17Xlf.exe", "MZ");
  Start();
  world.main().imgRun[16]->SetVisible(false);
  world.main().lblRun[16]->SetVisible(false);
  world.shell.started.clear();
  Choose(17);
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].file, u"C:\\Suite\\Q17Xlf.exe");
}

TEST_F(TrayForm, DeadButtonStaysDead) {
  Start();
  world.shell.started.clear();
  Choose(1);
  EXPECT_TRUE(world.shell.started.empty());
  EXPECT_TRUE(world.desktop.messages.empty());
}

TEST_F(TrayForm, ExitFromTheTrayUnloadsWithoutShowingTheWindow) {
  Start();
  Minimise();
  const Text left = Text(u"99");
  world.settings.Put(u"Marl", u"Settings", u"Left", left);
  Choose(18);
  EXPECT_FALSE(world.main().loaded());
  EXPECT_FALSE(world.main().Visible());
  EXPECT_TRUE(world.tray.icons.empty());
  EXPECT_TRUE(world.hooks.listeners.empty());
  EXPECT_NE(world.settings.GetSetting(u"Marl", u"Settings", u"Left", u""), left);
  EXPECT_EQ(world.settings.GetSetting(u"Marl", u"Settings", u"WindowState", u""), u"1");
}

TEST_F(TrayForm, RestartedTaskbarShowsTheIconAgain) {
  Start();
  const std::vector<NotifyIconData> before = world.tray.icons;
  world.tray.Restart();
  world.hooks.Send(window, world.hooks.NumberOf("TaskbarCreated"));
  EXPECT_EQ(world.tray.icons, before);
}

// ---- An icon that the shell refuses, because it is not up yet

TEST_F(TrayForm, WithoutItsIconTheMinimisedWindowStaysOnTheTaskbar) {
  world.tray.refuses = true;
  Start();
  Minimise();
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().State(), WindowState::kMinimised);
  world.tray.refuses = false;
  world.desktop.Advance(60000);
  EXPECT_EQ(world.tray.icons.size(), 1u);
  EXPECT_FALSE(world.main().Visible()) << "it is in the notification area now";
  TrayMessage(kDoubleClick);
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
}

TEST_F(TrayForm, WithoutItsIconWindowStateOfOneStartsOnTheTaskbar) {
  world.settings.Put(u"Marl", u"Settings", u"WindowState", u"1");
  world.tray.refuses = true;
  Start();
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().State(), WindowState::kMinimised);
}

TEST_F(TrayForm, RefusedIconIsTriedAgainMoreAndMoreSeldom) {
  Start();
  world.tray.refuses = true;
  world.tray.Restart();
  world.tray.calls.clear();
  world.hooks.Send(window, world.hooks.NumberOf("TaskbarCreated"));
  const std::int64_t begun = world.desktop.now;
  std::vector<std::int64_t> seconds;
  for (std::size_t calls = 2; seconds.size() < 8; world.desktop.Advance(1000)) {
    if (world.tray.calls.size() == calls) continue;
    // Removed, in case the shell has it after all, and added.
    EXPECT_EQ(world.tray.calls.size(), calls + 2);
    calls = world.tray.calls.size();
    seconds.push_back((world.desktop.now - begun) / 1000);
  }
  for (std::size_t i = seconds.size() - 1; i > 0; --i) seconds[i] -= seconds[i - 1];
  EXPECT_EQ(seconds, (std::vector<std::int64_t>{1, 2, 4, 8, 16, 32, 60, 60}));
  world.tray.refuses = false;
  world.desktop.Advance(60000);
  const std::size_t calls = world.tray.calls.size();
  EXPECT_EQ(world.tray.icons.size(), 1u);
  world.desktop.Advance(600000);
  EXPECT_EQ(world.tray.calls.size(), calls) << "it is there";
}

TEST_F(TrayForm, RestartedTaskbarThatRefusesTheIconBringsTheHiddenWindowToTheTaskbar) {
  Start();
  Minimise();
  ASSERT_FALSE(world.main().Visible());
  world.tray.Restart();
  world.tray.refuses = true;
  world.hooks.Send(window, world.hooks.NumberOf("TaskbarCreated"));
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().State(), WindowState::kMinimised);
  world.tray.refuses = false;
  world.hooks.Send(window, world.hooks.NumberOf("TaskbarCreated"));
  EXPECT_FALSE(world.main().Visible());
  EXPECT_EQ(world.tray.icons.size(), 1u);
}

TEST_F(TrayForm, WindowThatIsNotMinimisedIsLeftAloneByItsIcon) {
  world.tray.refuses = true;
  Start();
  const Box bounds = world.main().bounds();
  world.tray.refuses = false;
  world.desktop.Advance(60000);
  EXPECT_EQ(world.tray.icons.size(), 1u);
  EXPECT_TRUE(world.main().Visible());
  EXPECT_EQ(world.main().bounds(), bounds);
  EXPECT_EQ(world.main().State(), WindowState::kNormal);
}

TEST_F(TrayForm, LosingActivationRepaintsTheButtons) {
  Start();
  auto& peer = static_cast<MemoryPeer&>(*world.main().peer());
  peer.invalidated.clear();
  world.hooks.Send(window, 6, 0);
  EXPECT_EQ(peer.invalidated.size(), 36u);
  world.hooks.Send(window, 6, 1);
  EXPECT_EQ(peer.invalidated.size(), 36u);
}

TEST_F(TrayForm, RightClickDuringTheSplashIsIgnored) {
  bool asked = false;
  world.desktop.posted.push_back([&] {
    window = world.main().hWnd();
    EXPECT_TRUE(world.main().TrayReady);
    EXPECT_EQ(TrayMessage(kRightClick), world.hooks.ownResult);
    EXPECT_EQ(TrayMessage(kDoubleClick), world.hooks.ownResult);
    EXPECT_TRUE(world.main().Visible()) << "the double click has restored it";
    asked = true;
  });
  world.Start();
  EXPECT_TRUE(asked);
  EXPECT_TRUE(world.tray.shown.empty());
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_TRUE(world.main().loaded());
  EXPECT_EQ(world.tray.popups, 1) << "start-up is complete";
}

TEST_F(TrayForm, BeforeTheHookIsInstalledTheMenuDoesNothing) {
  Start();
  world.main().TrayReady = false;
  world.desktop.foreground = nullptr;
  world.main().SystrayMenu();
  EXPECT_TRUE(world.tray.shown.empty());
  EXPECT_EQ(world.desktop.foreground, nullptr);
}

TEST_F(TrayForm, FiftyCyclesLeaveEverythingAsItWas) {
  Start();
  const Box bounds = world.main().bounds();
  const std::size_t calls = world.tray.calls.size();
  for (int i = 0; i < 50; ++i) {
    Minimise();
    ASSERT_FALSE(world.main().Visible());
    TrayMessage(kDoubleClick);
    ASSERT_TRUE(world.main().Visible());
  }
  EXPECT_EQ(world.main().bounds(), bounds);
  EXPECT_EQ(world.tray.calls.size(), calls);
  EXPECT_EQ(world.tips.tips.size(), 18u);
}

}  // namespace marl
