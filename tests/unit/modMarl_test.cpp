#include "shell/modMarl.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryIcons.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryTray.h"
#include "platform/memory/MemoryWindowHooks.h"

namespace marl {

namespace {

constexpr WindowHandle kMain = 0x1234;
constexpr WindowHandle kOther = 0x5678;
constexpr std::uint32_t kWmNull = 0;

using Message = MemoryWindowHooks::Message;
using Calls = std::vector<std::string>;

struct MainForm : HookedForm {
  Calls calls;
  int trayChanges = 0;
  bool fails = false;

  WindowHandle HookedWindow() const override { return kMain; }
  void RestoreWindow() override { Called("RestoreWindow"); }
  void SystrayMenu() override { Called("SystrayMenu"); }
  void RefreshButtons() override { Called("RefreshButtons"); }
  void Resized() override { Called("Resized"); }
  void TrayIconChanged() override { ++trayChanges; }

 private:
  void Called(const char* name) {
    calls.push_back(name);
    if (fails) throw RuntimeError::InvalidCall();
  }
};

class Hook : public testing::Test {
 protected:
  Hook() {
    module.RegisterShellMessages();
    module.HookWindow(kMain);
  }

  MemoryWindowHooks hooks;
  MemoryTray tray;
  MainForm form;
  modMarl module{hooks, tray, form};
};

struct Case {
  std::uint32_t message;
  std::uintptr_t wParam;
  std::intptr_t lParam;
  Calls calls;
};

}  // namespace

TEST(RegisterShellMessages, AsksForTheTrayMessageAndThenForTheTaskbar) {
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MainForm form;
  modMarl module(hooks, tray, form);
  module.RegisterShellMessages();
  EXPECT_EQ(hooks.registered, (std::vector<std::string>{"msgMarlMenu", "TaskbarCreated"}));
  const std::array<std::uint32_t, 5> slots = {0, 0, 0, hooks.NumberOf("msgMarlMenu"),
                                              hooks.NumberOf("TaskbarCreated")};
  EXPECT_EQ(module.RegisteredMessages, slots);
  EXPECT_TRUE(hooks.listeners.empty());
  EXPECT_TRUE(tray.calls.empty());
}

TEST_F(Hook, KeepsTheProcedureAndPassesMessagesOn) {
  EXPECT_EQ(module.PreviousWindowProc, MemoryWindowHooks::kOwnProcedure);
  EXPECT_TRUE(module.PassToPrevious);
  EXPECT_EQ(hooks.Send(kMain, 0x200, 1, 2), hooks.ownResult);
  EXPECT_EQ(hooks.reached, (std::vector<Message>{{kMain, 0x200, 1, 2}}));
}

TEST_F(Hook, OfAMissingWindowKeepsNothing) {
  module.UnhookWindow(kMain);
  hooks.replaces = false;
  module.HookWindow(kOther);
  EXPECT_EQ(module.PreviousWindowProc, 0);
}

TEST_F(Hook, TakenAwayPutsTheProcedureBackOnce) {
  module.UnhookWindow(kMain);
  EXPECT_EQ(module.PreviousWindowProc, 0);
  EXPECT_FALSE(module.PassToPrevious);
  module.UnhookWindow(kMain);
  EXPECT_EQ(hooks.putBack, (std::vector<std::pair<WindowHandle, ProcAddress>>{
                               {kMain, MemoryWindowHooks::kOwnProcedure}}));
  EXPECT_EQ(hooks.Send(kMain, 0x200), hooks.ownResult);
}

TEST(UnhookWindow, WithoutAHookOnlyStopsThePassing) {
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MainForm form;
  modMarl module(hooks, tray, form);
  module.PassToPrevious = true;
  module.UnhookWindow(kMain);
  EXPECT_FALSE(module.PassToPrevious);
  EXPECT_TRUE(hooks.putBack.empty());
}

TEST(UnhookWindow, HappensAtTheLatestWhenTheModuleIsDestroyed) {
  MemoryWindowHooks hooks;
  {
    MemoryTray tray;
    MainForm form;
    modMarl module(hooks, tray, form);
    module.HookWindow(kMain);
  }
  EXPECT_TRUE(hooks.listeners.empty());
}

TEST_F(Hook, MessagesOfOtherWindowsArePassedOnUnchanged) {
  const std::uint32_t menu = hooks.NumberOf("msgMarlMenu");
  const std::uint32_t taskbar = hooks.NumberOf("TaskbarCreated");
  const std::vector<Message> messages = {
      {kOther, kWmNull, 3, 4}, {kOther, menu, 0, 0x203}, {kOther, menu, 0, 0x205},
      {kOther, taskbar, 0, 0}, {kOther, 6, 0, 0},        {kOther, 5, 1, 0},
  };
  for (const Message& m : messages) {
    EXPECT_EQ(module.SwitchboardWindowProc(m.window, m.message, m.wParam, m.lParam),
              hooks.ownResult);
  }
  EXPECT_EQ(hooks.reached, messages);
  EXPECT_TRUE(form.calls.empty());
  EXPECT_TRUE(tray.calls.empty());
}

TEST_F(Hook, NullMessageIsDroppedAndTheNextOneIsNot) {
  EXPECT_EQ(hooks.Send(kMain, kWmNull), 0);
  EXPECT_TRUE(hooks.reached.empty());
  EXPECT_TRUE(module.PassToPrevious);
  EXPECT_EQ(hooks.Send(kMain, 1), hooks.ownResult);
  EXPECT_EQ(hooks.reached, (std::vector<Message>{{kMain, 1, 0, 0}}));
}

TEST_F(Hook, EachMessageIsHandledAndPassedOnToTheWindow) {
  const std::uint32_t menu = hooks.NumberOf("msgMarlMenu");
  const Case cases[] = {
      {menu, 9, 0x203, {"RestoreWindow"}},
      {menu, 9, 0x205, {"SystrayMenu"}},
      {menu, 9, 0x200, {}},  // the mouse moved
      {menu, 9, 0x201, {}},  // a single click: pressed ...
      {menu, 9, 0x202, {}},  // ... and released
      {menu, 9, 0x204, {}},  // the right button is pressed only
      {menu, 0x203, 0, {}},
      {6, 0, 0, {"RefreshButtons"}},
      {6, 1, 0, {}},
      {6, 2, 0, {}},
      {6, 0x10000, 0, {}},  // inactive and minimised: not 0
      {5, 1, 0, {"Resized"}},
      {5, 0, 0, {}},
      {5, 2, 0, {}},
      {0x12, 0, 0, {}},
  };
  for (const Case& c : cases) {
    form.calls.clear();
    hooks.reached.clear();
    EXPECT_EQ(hooks.Send(kMain, c.message, c.wParam, c.lParam), hooks.ownResult);
    EXPECT_EQ(form.calls, c.calls) << c.message << ", " << c.wParam << ", " << c.lParam;
    EXPECT_EQ(hooks.reached, (std::vector<Message>{{kMain, c.message, c.wParam, c.lParam}}));
  }
  EXPECT_TRUE(tray.calls.empty());
}

TEST_F(Hook, FailureIsIgnoredAndTheMessageIsPassedOn) {
  form.fails = true;
  const std::uint32_t menu = hooks.NumberOf("msgMarlMenu");
  for (const std::intptr_t what : {0x203, 0x205}) {
    EXPECT_EQ(hooks.Send(kMain, menu, 0, what), hooks.ownResult);
  }
  EXPECT_EQ(hooks.Send(kMain, 6, 0), hooks.ownResult);
  EXPECT_EQ(hooks.Send(kMain, 5, 1), hooks.ownResult);
  EXPECT_EQ(form.calls, (Calls{"RestoreWindow", "SystrayMenu", "RefreshButtons", "Resized"}));
  EXPECT_EQ(hooks.reached.size(), 4u);
}

TEST_F(Hook, TrayRecordIsFilledAndAdded) {
  tray.windowIcons[kMain] = 4711;
  module.AddTrayIcon(1172);
  const NotifyIconData record = {88, kMain, 4711, 7, hooks.NumberOf("msgMarlMenu"), 1172, u"Marl"};
  EXPECT_EQ(module.TrayIconRecord, record);
  EXPECT_EQ(tray.calls, (std::vector<MemoryTray::Call>{{0, record}}));
}

TEST_F(Hook, RestartedTaskbarGetsTheSameIconAgain) {
  tray.windowIcons[kMain] = 4711;
  module.AddTrayIcon(1172);
  const NotifyIconData record = module.TrayIconRecord;
  tray.Restart();
  tray.windowIcons[kMain] = 4712;
  tray.calls.clear();
  EXPECT_EQ(hooks.Send(kMain, hooks.NumberOf("TaskbarCreated")), hooks.ownResult);
  EXPECT_EQ(tray.calls, (std::vector<MemoryTray::Call>{{2, record}, {0, record}}));
  EXPECT_EQ(tray.icons, std::vector<NotifyIconData>{record});
}

TEST_F(Hook, TaskbarThatStillHasTheIconShowsItOnce) {
  module.AddTrayIcon(1172);
  hooks.Send(kMain, hooks.NumberOf("TaskbarCreated"));
  EXPECT_EQ(tray.icons, std::vector<NotifyIconData>{module.TrayIconRecord});
}

TEST_F(Hook, RefusedIconIsNoFailureAndTheFormHearsOfIt) {
  EXPECT_FALSE(module.TrayIconThere());
  tray.refuses = true;
  module.AddTrayIcon(1172);
  EXPECT_FALSE(module.TrayIconThere());
  EXPECT_EQ(form.trayChanges, 1);
  EXPECT_EQ(hooks.Send(kMain, hooks.NumberOf("TaskbarCreated")), hooks.ownResult);
  EXPECT_TRUE(tray.icons.empty());
  EXPECT_EQ(tray.calls.size(), 3u);
  EXPECT_EQ(form.trayChanges, 2);
  tray.refuses = false;
  module.AddTrayIconAgain();
  EXPECT_TRUE(module.TrayIconThere());
  EXPECT_EQ(form.trayChanges, 3);
  EXPECT_EQ(tray.icons, std::vector<NotifyIconData>{module.TrayIconRecord}) << "the same record";
}

// A program that runs as administrator would not get messages of the shell otherwise.
TEST_F(Hook, ShellMayReachAWindowWithMoreRights) {
  EXPECT_EQ(hooks.allowed, (std::vector<std::pair<WindowHandle, std::uint32_t>>{
                               {kMain, hooks.NumberOf("msgMarlMenu")},
                               {kMain, hooks.NumberOf("TaskbarCreated")}}));
}

TEST(HookWindow, WithoutRegisteredMessagesAllowsNothing) {
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MainForm form;
  modMarl module(hooks, tray, form);
  module.HookWindow(kMain);
  EXPECT_TRUE(hooks.allowed.empty());
}

TEST_F(Hook, RemovedIconIsFreedFirst) {
  struct OrderedTray : MemoryTray {
    MemoryIcons* icons = nullptr;
    std::size_t freedBefore = 0;
    bool NotifyIcon(int command, const NotifyIconData& data) override {
      freedBefore = icons->destroyed.size();
      return MemoryTray::NotifyIcon(command, data);
    }
  } ordered;
  MemoryIcons icons;
  MemoryProcess process;
  ordered.icons = &icons;
  modMarl other(hooks, ordered, form);
  other.AddTrayIcon(1172);
  EXPECT_EQ(ordered.freedBefore, 0u);
  other.RemoveTrayIcon(modSetIcon(icons, process));
  EXPECT_EQ(icons.destroyed, std::vector<IconHandle>{1172});
  EXPECT_EQ(ordered.freedBefore, 1u);
  EXPECT_TRUE(ordered.icons->destroyed.size() == 1 && ordered.MemoryTray::icons.empty());
  EXPECT_EQ(ordered.calls.back().command, 2);
}

TEST(SwitchboardWindowProc, WithoutRegisteredNumbersDropsNullOnly) {
  MemoryWindowHooks hooks;
  MemoryTray tray;
  MainForm form;
  modMarl module(hooks, tray, form);
  module.HookWindow(kMain);
  EXPECT_EQ(hooks.Send(kMain, kWmNull, 0, 0x203), 0);
  EXPECT_EQ(hooks.Send(kMain, 0xC001, 0, 0x203), hooks.ownResult);
  EXPECT_TRUE(form.calls.empty());
}

}  // namespace marl
