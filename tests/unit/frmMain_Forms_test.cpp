// Start-up as far as it concerns other windows: the first instance, the splash, the icons.

#include <gtest/gtest.h>

#include "support/frmAbout2006.h"
#include "tests/unit/World.h"

namespace marl {

namespace {

class SplashInStartUp : public testing::Test {
 protected:
  /// The splash during start-up.
  frmSplash& splash() { return *world.main().splash; }

  World world;
};

class SecondStart : public testing::Test {
 protected:
  SecondStart() { world.process.previousInstance = true; }

  World world;
};

}  // namespace

TEST_F(SplashInStartUp, HoldsStartUpForFiveSeconds) {
  world.Start();
  EXPECT_EQ(world.desktop.now, 5000);
  EXPECT_FALSE(splash().loaded());
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(SplashInStartUp, ClickOnItEndsTheWait) {
  world.desktop.posted.push_back([this] {
    EXPECT_TRUE(splash().Visible());
    EXPECT_FALSE(world.main().Visible()) << "the main window is seen when all is done";
    EXPECT_TRUE(splash().CanDismiss());
    splash().UserClick();
  });
  world.Start();
  EXPECT_EQ(world.desktop.now, 0);
  EXPECT_FALSE(splash().loaded());
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(SplashInStartUp, KeyEndsTheWait) {
  world.desktop.posted.push_back([this] { splash().UserKey(u'\r'); });
  world.Start();
  EXPECT_EQ(world.desktop.now, 0);
  EXPECT_TRUE(world.main().Visible());
}

TEST_F(SplashInStartUp, ComesAfterTheQuestionsAndBeforeTheMissingTools) {
  world.settings.SaveSetting(u"Marl", u"Settings", u"FirstRun", u"Y");
  world.desktop.posted.push_back([this] {
    EXPECT_EQ(world.desktop.messages.size(), 2u) << "the questions have been asked";
    EXPECT_EQ(world.main().lblRun[kAnalyse]->Tag, u"q17gauge.exe") << "tools are tested later";
    EXPECT_FALSE(world.files.Touched().empty());
    splash().UserClick();
  });
  world.Start();
  EXPECT_EQ(world.main().lblRun[kAnalyse]->Tag, kDead);
}

TEST_F(SplashInStartUp, CommandsOfOtherProgramsAreTakenMeanwhile) {
  world.desktop.posted.push_back([this] {
    ASSERT_EQ(world.desktop.offers.size(), 1u);
    EXPECT_TRUE(world.desktop.offers[0].form->UserExecute(u"PRJ C:\\x.qprx"));
    splash().UserClick();
  });
  world.Start();
  EXPECT_EQ(world.main().dlgOpen.FileName, u"C:\\x.qprx");
}

TEST_F(SplashInStartUp, EndOfTheSessionDoesNotWaitForIt) {
  world.desktop.posted.push_back([this] { world.main().UserClose(); });
  EXPECT_EQ(world.Start(), 0);
  EXPECT_FALSE(world.main().loaded());
  EXPECT_FALSE(splash().loaded());
  EXPECT_LT(world.desktop.now, 100);
  EXPECT_EQ(world.main().lblRun[kAnalyse]->Tag, u"q17gauge.exe") << "nothing more is done";
}

TEST_F(SplashInStartUp, FailureWhileItIsShownEndsTheProcess) {
  world.settings.SaveSetting(u"Marl", u"Settings", u"Left", u"garbage");
  EXPECT_EQ(world.Start(), 1);
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(world.desktop.messages[0].text, u"Type mismatch");
  EXPECT_EQ(world.desktop.now, 0);
}

TEST_F(SplashInStartUp, FailureOfAnEventDuringTheWaitEndsTheProcess) {
  world.desktop.posted.push_back([] { throw RuntimeError::Overflow(); });
  EXPECT_EQ(world.Start(), 1);
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(world.desktop.messages[0].text, u"Overflow");
}

TEST_F(SplashInStartUp, MainFormHasItsIconsBeforeAnythingIsAsked) {
  world.process.previousInstance = true;
  world.Start();
  ASSERT_EQ(world.icons.given.size(), 4u) << "itself, as the top of its owners, and once more";
  EXPECT_EQ(world.icons.given[0].icon, 1171);
  EXPECT_EQ(world.icons.given[2].icon, 1172);
}

TEST_F(SecondStart, ShowsAndActivatesTheFirstWindow) {
  world.desktop.others = {{u"Something else"}, {u"mArL : server.example"}};
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.desktop.shown,
            (std::vector<std::pair<Text, int>>{{u"mArL : server.example", kShowNormal}}));
  EXPECT_EQ(world.desktop.activated, std::vector<Text>{u"mArL : server.example"});
  EXPECT_TRUE(world.desktop.messages.empty());
  EXPECT_FALSE(world.main().Visible());
}

TEST_F(SecondStart, ShowsAMessageIfTheFirstIsInTheTray) {
  world.desktop.others = {{u"Marl : server.example", false}};
  EXPECT_EQ(world.Start(), 0);
  EXPECT_EQ(world.desktop.messages,
            (std::vector<MemoryDesktop::Message>{{u"Marl is already running", 0x40, u"Marl"}}));
  EXPECT_TRUE(world.desktop.shown.empty());
  EXPECT_TRUE(world.desktop.activated.empty());
}

TEST_F(SecondStart, ShowsAMessageWhileTheFirstShowsItsSplash) {
  world.desktop.others = {{u""}, {u"Marl", false}};
  EXPECT_EQ(world.Start(), 0);
  ASSERT_EQ(world.desktop.messages.size(), 1u);
  EXPECT_EQ(world.desktop.messages[0].text, u"Marl is already running");
}

TEST_F(SecondStart, RunsTheRegistrarAndTouchesNothingElse) {
  world.files.Put(u"C:\\Suite\\RegLib.EXE", "");
  world.files.Put(world.files.TempPath() + u"ORU1.TMP", "");
  world.settings.writes.clear();
  world.desktop.others = {{u"Marl : "}};
  world.Start();
  ASSERT_EQ(world.shell.started.size(), 1u);
  EXPECT_EQ(world.shell.started[0].file, u"C:\\Suite\\RegLib.EXE");
  EXPECT_TRUE(world.settings.writes.empty());
  EXPECT_TRUE(world.files.Content(world.files.TempPath() + u"ORU1.TMP").has_value());
  EXPECT_TRUE(world.desktop.offers.empty());
}

TEST(AboutFromTheMenu, IsAboveTheMainFormAndItsLinksReachTheShell) {
  World world;
  world.Start();
  world.shell.started.clear();
  world.icons.given.clear();
  world.desktop.whenModal["frmAbout2006"] = [](Form& form) {
    auto& about = static_cast<frmAbout2006&>(form);
    about.lblLabel[5]->UserClick();
    about.cmdOK->UserClick();
  };
  world.main().mnuHelpAbout();
  EXPECT_EQ(world.desktop.modal, std::vector<std::string>{"frmAbout2006"});
  EXPECT_EQ(world.shell.started,
            (std::vector<MemoryShell::Started>{
                {ShellOwner::kDesktop, u"Open", u"http://www.marl.example", u"0", u"0", 1}}));
  ASSERT_EQ(world.icons.given.size(), 2u) << "no owner gets the icon";
  EXPECT_EQ(world.icons.given[0].icon, 1171);
  EXPECT_EQ(world.desktop.forms().size(), 1u);
}

}  // namespace marl
