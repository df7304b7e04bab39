#include "support/StartCommand.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryShell.h"

namespace marl {
namespace {

class StartCommandTest : public testing::Test {
 protected:
  StartCommandTest() {
    files.Put(u"C:\\Program Files\\Suite\\tool.exe", "");
    files.Put(u"C:\\Program Files\\Suite\\tool.exe of old", "");
    files.Put(u"C:\\Program", "");
    files.PutFolder(u"C:\\Program Files\\Suite\\tool.exe folder");
    files.Put(u"\\\\server\\share\\tool.exe", "");
  }
  bool Start(TextView command) { return StartCommand(shell, files, command, kShowMinimised); }

  MemoryFileSystem files;
  MemoryShell shell;
};

TEST_F(StartCommandTest, TheProgramIsTheLongestPartThatIsAFile) {
  const TextView tool = u"C:\\Program Files\\Suite\\tool.exe";
  const struct {
    TextView command;
    TextView program;
  } rows[] = {
      {u"C:\\Program Files\\Suite\\tool.exe", tool},
      {u"C:\\Program Files\\Suite\\tool.exe /R", tool},
      {u"C:\\Program Files\\Suite\\tool.exe  a  b", tool},
      {u"C:\\Program Files\\Suite\\tool.exe ", tool},
      {u"C:\\Program Files\\Suite\\tool.exe folder", tool},
      {u"C:\\Program Files\\Suite\\tool.exe of old /x",
       u"C:\\Program Files\\Suite\\tool.exe of old"},
      {u"c:/program files/suite/TOOL.EXE /R", u"c:/program files/suite/TOOL.EXE"},
      {u"\"C:\\Program Files\\Suite\\tool.exe\" /R", tool},
      {u"\"C:\\Program Files\\Suite\\tool.exe\"", tool},
      {u"\"C:\\Program Files\\Suite\\tool.exe", tool},
      {u"\\\\server\\share\\tool.exe /x", u"\\\\server\\share\\tool.exe"},
      // The platform searches for a name without a folder.
      {u"tool.exe /R", u""},
      {u"\"tool.exe\" /R", u""},
      {u"C:tool.exe", u""},
  };
  for (const auto& row : rows) {
    shell.programs.clear();
    shell.ran.clear();
    EXPECT_TRUE(Start(row.command)) << testing::PrintToString(row.command);
    EXPECT_EQ(shell.programs, std::vector<Text>{Text(row.program)});
    ASSERT_EQ(shell.ran.size(), 1u);
    EXPECT_EQ(shell.ran[0].second, kShowMinimised);
  }
}

TEST_F(StartCommandTest, OnlyAProgramThatHoldsABlankGetsQuotes) {
  files.Put(u"C:\\Suite\\tool.exe", "");
  const struct {
    TextView command;
    TextView line;
  } rows[] = {
      {u"C:\\Program Files\\Suite\\tool.exe /R", u"\"C:\\Program Files\\Suite\\tool.exe\" /R"},
      {u"C:\\Program Files\\Suite\\tool.exe  a  b",
       u"\"C:\\Program Files\\Suite\\tool.exe\"  a  b"},
      {u"C:\\Program Files\\Suite\\tool.exe", u"\"C:\\Program Files\\Suite\\tool.exe\""},
      {u"\"C:\\Program Files\\Suite\\tool.exe\" /R", u"\"C:\\Program Files\\Suite\\tool.exe\" /R"},
      {u"C:\\Suite\\tool.exe /R", u"C:\\Suite\\tool.exe /R"},
      {u"tool.exe /R", u"tool.exe /R"},
  };
  for (const auto& row : rows) {
    shell.ran.clear();
    EXPECT_TRUE(Start(row.command)) << testing::PrintToString(row.command);
    EXPECT_EQ(shell.ran, (std::vector<std::pair<Text, int>>{{Text(row.line), kShowMinimised}}));
  }
}

TEST_F(StartCommandTest, NothingElseIsStartedIfTheProgramIsMissing) {
  files.Erase(u"C:\\Program");
  for (const TextView command :
       {u"C:\\Program Files\\None\\tool.exe /R", u"C:\\", u"C:\\ ", u"\"\"", u"\"", u""}) {
    const bool bare = command.empty() || command.starts_with(u'"');
    shell.runStatus = kFileNotFound;
    EXPECT_FALSE(Start(command)) << testing::PrintToString(command);
    EXPECT_EQ(shell.programs.empty(), !bare || command.empty());
    shell.programs.clear();
  }
}

TEST_F(StartCommandTest, AFailureIsReported) {
  for (const Status status : {kFileNotFound, kAccessDenied, kGeneralFailure}) {
    shell.runStatus = status;
    EXPECT_FALSE(Start(u"C:\\Program Files\\Suite\\tool.exe /R"));
    EXPECT_FALSE(Start(u"tool.exe /R"));
  }
  EXPECT_TRUE(shell.started.empty());
}

TEST_F(StartCommandTest, WhatNeedsElevationGoesToTheShell) {
  shell.runStatus = kElevationRequired;
  const struct {
    TextView command;
    TextView arguments;
  } rows[] = {
      {u"C:\\Program Files\\Suite\\tool.exe", u""},
      {u"C:\\Program Files\\Suite\\tool.exe  /R x ", u"/R x "},
      {u"\"C:\\Program Files\\Suite\\tool.exe\" \"a b\"", u"\"a b\""},
      {u"\"C:\\Program Files\\Suite\\tool.exe", u""},
  };
  for (const auto& row : rows) {
    shell.started.clear();
    EXPECT_TRUE(Start(row.command)) << testing::PrintToString(row.command);
    EXPECT_EQ(shell.started, (std::vector<MemoryShell::Started>{
                                 {ShellOwner::kMainForm, u"", u"C:\\Program Files\\Suite\\tool.exe",
                                  Text(row.arguments), u"", kShowMinimised}}));
  }
}

TEST_F(StartCommandTest, OnlyTheUsersRefusalCountsAsStarted) {
  shell.runStatus = kElevationRequired;
  for (const auto& [code, started] : std::vector<std::pair<int, bool>>{
           {33, true}, {42, true}, {5, true}, {32, false}, {31, false}, {2, false}, {0, false}}) {
    shell.executeCode = code;
    EXPECT_EQ(Start(u"C:\\Program Files\\Suite\\tool.exe /R"), started) << code;
  }
}

}  // namespace
}  // namespace marl
