#include "platform/Process.h"

#include <initializer_list>
#include <memory>
#include <utility>

#include "platform/memory/MemoryShell.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/ProcessWin32.h"
#endif

namespace marl {
namespace {

class ProcessContract : public BackendTest {
 protected:
  /// A process of this program. All of them run for one user.
  std::unique_ptr<Process> Start() {
#ifdef _WIN32
    if (real()) return std::make_unique<win32::ProcessWin32>();
#endif
    auto process = std::make_unique<MemoryProcess>();
    process->session = session_;
    process->commandLine = u"/c two  blanks";
    return process;
  }

 private:
  std::shared_ptr<MemorySession> session_ = std::make_shared<MemorySession>();
};
MARL_OVER_ALL_BACKENDS(ProcessContract);

TEST_P(ProcessContract, FirstClaimsTheProgramToItsEnd) {
  auto first = Start();
  auto second = Start();
  ASSERT_FALSE(first->PreviousInstance()) << "or a switchboard runs";
  EXPECT_TRUE(second->PreviousInstance());
  EXPECT_TRUE(Start()->PreviousInstance());
  second.reset();
  EXPECT_TRUE(Start()->PreviousInstance()) << "the first still runs";
  first.reset();
  EXPECT_FALSE(Start()->PreviousInstance());
}

// A second instance that outlives the first keeps the claim.
TEST_P(ProcessContract, WhoMetAnotherHoldsTheClaimToo) {
  auto first = Start();
  auto second = Start();
  ASSERT_FALSE(first->PreviousInstance()) << "or a switchboard runs";
  EXPECT_TRUE(second->PreviousInstance());
  first.reset();
  EXPECT_TRUE(Start()->PreviousInstance());
}

TEST_P(ProcessContract, ProgramPathIsFullAndNamesAProgram) {
  const Text path = Start()->ProgramPath();
  ASSERT_GT(path.size(), 4u);
  EXPECT_TRUE(path.substr(1, 2) == u":\\" || path.starts_with(u"\\\\"));
  EXPECT_TRUE(path.ends_with(u".exe"));
  EXPECT_EQ(path.find(u'\0'), Text::npos);
  EXPECT_EQ(path.find(u'/'), Text::npos);
}

TEST(BehindProgram, LeavesTheNameAndOneBlankOut) {
  for (const auto& [line, expected] : std::initializer_list<std::pair<TextView, TextView>>{
           {u"", u""},
           {u"Marl.exe", u""},
           {u"Marl.exe NW", u"NW"},
           {u"Marl.exe\tNW", u"NW"},
           {u"Marl.exe  NW ", u" NW "},
           {u"Marl.exe \"NW\"", u"\"NW\""},
           {u"C:\\A\"b\" c\\Marl.exe", u"c\\Marl.exe"},
           {u"\"C:\\Program Files\\Marl.exe\" NW", u"NW"},
           {u"\"C:\\Program Files\\Marl.exe\"NW", u"NW"},
           {u"\"C:\\Program Files\\Marl.exe\"   ", u"  "},
           {u"\"C:\\Program Files\\Marl.exe\"", u""},
           {u"\"C:\\Program Files\\Marl.exe NW", u""},
           {u"\"\"", u""},
           {u"\"", u""},
           {u" NW", u"NW"},
           {u"  NW", u" NW"}}) {
    EXPECT_EQ(BehindProgram(line), expected) << testing::PrintToString(line);
  }
}

TEST_P(ProcessContract, CommandLineIsWhatStandsBehindTheProgram) {
  const Text line = Start()->CommandLine();
  EXPECT_EQ(line.find(u".exe\""), Text::npos) << "the name of the program is no part of it";
#ifdef _WIN32
  if (real()) {
    const wchar_t* const whole = GetCommandLineW();
    const Text all = win32::FromWide(whole, wcslen(whole));
    EXPECT_LT(line.size(), all.size());
    EXPECT_TRUE(all.ends_with(line));
    // After the name, its quotation mark and one blank.
    const Text before = all.substr(0, all.size() - line.size());
    EXPECT_NE(before.find(u"contract_tests"), Text::npos);
    if (!line.empty()) {
      EXPECT_EQ(before.back(), u' ');
    }
  }
#endif
}

}  // namespace
}  // namespace marl
