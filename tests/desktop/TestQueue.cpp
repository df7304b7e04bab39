#include "tests/desktop/TestQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <sstream>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/desktop/Harness.h"

// After <windows.h>.
#include <shlwapi.h>

namespace marl::desktop {

namespace {

using Clock = std::chrono::steady_clock;

// The longest tests, started first so that none is left to run alone at the end.
constexpr std::string_view kFirst[] = {
    "RandomUser.LeavesAProgramThatWorksAndEnds",
    "Press.TwoHundredPressesLeakNothing",
    "Project.FortyThousandWorkingFilesAreMoreThanItCounts",
};

// No test takes this long, however loaded the machine is.
constexpr std::chrono::minutes kHung{10};
// Except for the long runs.
constexpr std::chrono::minutes kLongHung{120};
constexpr int kHungCode = 3;

/// True if `text` matches one of the patterns, which are separated by ":" and may contain "*" and
/// "?".
bool MatchesOne(const std::string& text, const std::string& patterns) {
  std::istringstream list(patterns);
  for (std::string pattern; std::getline(list, pattern, ':');) {
    if (PathMatchSpecA(text.c_str(), pattern.c_str())) return true;
  }
  return false;
}

bool MatchesFilter(const std::string& test, const std::string& filter) {
  const std::size_t minus = filter.find('-');
  const std::string wanted = filter.substr(0, minus);
  if (!wanted.empty() && !MatchesOne(test, wanted)) return false;
  return minus == std::string::npos || !MatchesOne(test, filter.substr(minus + 1));
}

bool Take(const std::wstring& queue, const std::string& test) {
  std::wstring file = FromUtf8(test);
  std::replace(file.begin(), file.end(), L'/', L'-');
  const HANDLE taken = CreateFileW((queue + L"\\" + file).c_str(), GENERIC_WRITE, 0, nullptr,
                                   CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (taken == INVALID_HANDLE_VALUE) return false;
  CloseHandle(taken);
  return true;
}

/// Prints GoogleTest's lines of one test, without the headings around each run.
class Lines : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& test) override { Print("[ RUN      ]", test, ""); }

  void OnTestPartResult(const testing::TestPartResult& part) override {
    if (part.passed()) return;
    std::printf("%s:%d: %s\n%s\n", part.file_name() ? part.file_name() : "unknown file",
                part.line_number(), part.skipped() ? "Skipped" : "Failure", part.message());
    std::fflush(stdout);
  }

  void OnTestEnd(const testing::TestInfo& test) override {
    const testing::TestResult& result = *test.result();
    ++run;
    if (result.Failed()) failed.push_back(NameOf(test));
    Print(result.Failed()    ? "[  FAILED  ]"
          : result.Skipped() ? "[  SKIPPED ]"
                             : "[       OK ]",
          test, " (" + std::to_string(result.elapsed_time()) + " ms)");
  }

  static std::string NameOf(const testing::TestInfo& test) {
    return std::string(test.test_suite_name()) + "." + test.name();
  }

  int run = 0;
  std::vector<std::string> failed;

 private:
  static void Print(const char* kind, const testing::TestInfo& test, const std::string& end) {
    std::printf("%s %s%s\n", kind, NameOf(test).c_str(), end.c_str());
    std::fflush(stdout);
  }
};

/// Ends the process if a test does not end.
class Watch {
 public:
  Watch()
      : thread_([this] {
          while (!done_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            if (Clock::now() - started_.load() < hung_) continue;
            std::printf("It has not ended after %d minutes.\n", static_cast<int>(hung_.count()));
            std::fflush(stdout);
            Screenshot("hung");
            TerminateProcess(GetCurrentProcess(), kHungCode);
          }
        }) {}
  ~Watch() {
    done_ = true;
    thread_.join();
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  void Begin() { started_ = Clock::now(); }

 private:
  const std::chrono::minutes hung_ =
      Environment(L"MARL_FAULTS").empty() && Environment(L"MARL_SOAK").empty() ? kHung : kLongHung;
  std::atomic<bool> done_ = false;
  std::atomic<Clock::time_point> started_ = Clock::now();
  std::thread thread_;
};

}  // namespace

std::vector<std::string> SelectedTests(const std::string& suite) {
  std::vector<std::string> tests;
  const testing::UnitTest& all = *testing::UnitTest::GetInstance();
  const std::string filter = testing::GTEST_FLAG(filter);
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const testing::TestSuite& each = *all.GetTestSuite(i);
    if (!suite.empty() && each.name() != suite) continue;
    for (int j = 0; j < each.total_test_count(); ++j) {
      std::string name = std::string(each.name()) + "." + each.GetTestInfo(j)->name();
      if (MatchesFilter(name, filter)) tests.push_back(std::move(name));
    }
  }
  return tests;
}

int RunShared(const std::wstring& queue) {
  const auto began = Clock::now();
  std::vector<std::string> tests = SelectedTests();
  std::stable_partition(tests.begin(), tests.end(), [](const std::string& name) {
    return std::find(std::begin(kFirst), std::end(kFirst), name) != std::end(kFirst);
  });
  std::printf("[==========] Sharing %d tests.\n", static_cast<int>(tests.size()));
  std::fflush(stdout);
  // It takes ownership.
  auto* const lines = new Lines;
  testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
  delete listeners.Release(listeners.default_result_printer());
  listeners.Append(lines);
  Watch watch;
  bool passed = true;
  for (const std::string& test : tests) {
    if (!Take(queue, test)) continue;
    testing::GTEST_FLAG(filter) = test;
    watch.Begin();
    if (RUN_ALL_TESTS() != 0) passed = false;
  }
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - began);
  std::printf("[----------] %d tests ran here. (%d ms total)\n", lines->run,
              static_cast<int>(took.count()));
  std::fflush(stdout);
  return passed ? 0 : 1;
}

}  // namespace marl::desktop
