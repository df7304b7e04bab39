#include "support/modLogging.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryFileSystem.h"

namespace marl {
namespace {

constexpr TextView kLog = u"C:\\Suite\\debug.log";

class Logging : public testing::Test {
 protected:
  MemoryFileSystem files;
  Logging() { files.PutFolder(u"C:\\Suite"); }
};

TEST_F(Logging, TheProgramShipsWithoutALog) {
  if (kDebugLog) GTEST_SKIP() << "built with MARL_DEBUG_LOG";
  modLogging log(files, u"C:\\Suite");
  log.OpenDebugLog();
  EXPECT_EQ(log.FileNumber(), 0);
  EXPECT_FALSE(files.Content(kLog));
  EXPECT_TRUE(files.Touched().empty());
  log.CloseDebugLog();
}

TEST_F(Logging, SwitchedOnItStartsANewFile) {
  files.Put(kLog, "yesterday");
  modLogging log(files, u"C:\\Suite", true);
  log.OpenDebugLog();
  EXPECT_EQ(log.FileNumber(), 1);
  EXPECT_EQ(files.Content(kLog), Bytes{});
  EXPECT_EQ(files.OpenFiles(), 1);
  log.CloseDebugLog();
  EXPECT_EQ(log.FileNumber(), 0);
  EXPECT_EQ(files.OpenFiles(), 0);
}

TEST_F(Logging, OpeningAgainClosesFirst) {
  modLogging log(files, u"C:\\Suite", true);
  log.OpenDebugLog();
  log.OpenDebugLog();
  EXPECT_EQ(log.FileNumber(), 1);
  EXPECT_EQ(files.OpenFiles(), 1);
}

TEST_F(Logging, AFailureLeavesNoLog) {
  files.Put(kLog, "locked", kReadOnly);
  modLogging log(files, u"C:\\Suite", true);
  log.OpenDebugLog();
  EXPECT_EQ(log.FileNumber(), 0);
  log.CloseDebugLog();
  EXPECT_EQ(log.FileNumber(), 0);
}

TEST_F(Logging, ClosingWhatIsNotOpenDoesNothing) {
  modLogging log(files, u"C:\\Suite", true);
  log.CloseDebugLog();
  EXPECT_EQ(log.FileNumber(), 0);
  EXPECT_TRUE(files.Touched().empty());
}

TEST_F(Logging, ADrivesRootHasItsBackslash) {
  modLogging log(files, u"C:\\", true);
  log.OpenDebugLog();
  EXPECT_TRUE(files.Content(u"C:\\debug.log"));
}

}  // namespace
}  // namespace marl
