// Every call of every port fails once, alone and with all that follow it: the program goes on, says
// what it has to say, or ends with the runtime's text. It never crashes or hangs, leaves no form
// and no handle, stores only old or new values, and starts again.

#include "tests/unit/Faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "tests/unit/Soundness.h"

namespace marl {
namespace {

using Span = Faults::Span;

/// A failed call that may end the program, and the beginning of the text with which it does.
struct Ending {
  const char* call;
  const char* text;
};

// Failures that nobody catches. All other calls fail without ending the program.
constexpr Ending kEndings[] = {
    {"Desktop.CreatePeer", "Out of memory"},
    {"Strings.Load", "Resource with identifier '"},
    // The browser cannot be probed.
    {"Files.TempPath", "Permission denied"},
    {"Files.Create", "Permission denied"},
    {"Files.Write", "Permission denied"},
    // The context menu cannot be changed.
    {"Files.FileExists", "File not found"},
    {"Shell.Run", "File not found"},
    {"Components.Create", "The component cannot be created"},
    {"Components.Call", "The component failed"},
};

bool MayEnd(const std::string& call, const std::string& text) {
  return std::any_of(std::begin(kEndings), std::end(kEndings), [&](const Ending& ending) {
    return call == ending.call && text.starts_with(ending.text);
  });
}

/// What became of the failures, by port.
struct Tally {
  int failures = 0;
  int wentOn = 0;
  std::map<std::string, int> ended;  ///< by text
};
std::map<std::string, Tally> theTallies;

void Count(const ProgramRun& run) {
  const std::string port = run.faults.first().substr(0, run.faults.first().find('.'));
  for (const auto& [call, times] : run.faults.failed()) {
    theTallies[call.substr(0, call.find('.'))].failures += times;
  }
  if (run.desktop.exitCode() == 0) {
    ++theTallies[port].wentOn;
  } else {
    const std::string text = FailureOf(run);
    ++theTallies[port].ended[text.substr(0, text.find('\''))];
  }
}

void Print() {
  int all = 0;
  for (const auto& [port, tally] : theTallies) {
    std::printf("%-12s %8d failures; first failure there: %d runs went on", port.c_str(),
                tally.failures, tally.wentOn);
    for (const auto& [text, times] : tally.ended) {
      std::printf(", %d ended with \"%s\"", times, text.c_str());
    }
    std::printf("\n");
    all += tally.failures;
  }
  std::printf("%-12s %8d failures\n", "all", all);
}

class EveryCall : public testing::TestWithParam<std::tuple<Journey, Span>> {
 protected:
  static void TearDownTestSuite() {
    if (LongRun()) Print();
  }

  /// Goes the way with call `number` failing. False if no call had to fail.
  bool Fail(int number) {
    const auto& [journey, span] = GetParam();
    Machine machine(journey.firstUse);
    {
      ProgramRun run(machine);
      run.faults.FailAt(number, span);
      Travel(journey, run);
      run.faults.End();
      if (run.faults.first().empty()) return false;
      SCOPED_TRACE("call " + std::to_string(number) + ", " + run.faults.first());
      Count(run);
      ExpectRule(run);
      ExpectNothingHeld(run);
      EXPECT_EQ(WrongAfter(journey, machine.Stored()), "");
    }
    SCOPED_TRACE("the start after call " + std::to_string(number));
    ExpectNextStart(machine);
    return true;
  }

  void ExpectRule(const ProgramRun& run) {
    EXPECT_FALSE(run.faults.endless());
    EXPECT_TRUE(run.desktop.ended()) << "the program does not end";
    const std::string text = FailureOf(run);
    if (text.empty()) {
      EXPECT_EQ(run.desktop.exitCode(), 0) << "it ends without saying why";
      return;
    }
    EXPECT_EQ(run.desktop.exitCode(), 1);
    const auto& failed = run.faults.failed();
    EXPECT_TRUE(std::any_of(failed.begin(), failed.end(),
                            [&](const auto& call) { return MayEnd(call.first, text); }))
        << "it ends with \"" << text << '"';
  }
};

TEST_P(EveryCall, MayFailWithoutHarm) {
  if (LongRun()) {
    for (int number = 1; Fail(number) && !HasFailure(); ++number) {
    }
    return;
  }
  // One call of each journey, another one in each span.
  const Journey& journey = std::get<0>(GetParam());
  static std::map<std::string, int> calls;
  if (!calls.contains(journey.name)) {
    Machine machine(journey.firstUse);
    ProgramRun run(machine);
    Travel(journey, run);
    calls[journey.name] = run.faults.calls();
  }
  const auto span = static_cast<int>(std::get<1>(GetParam()));
  Fail(1 + calls[journey.name] * (4 * span + static_cast<int>(journey.name[0]) % 4) / 12);
}

const char* NameOf(Span span) {
  switch (span) {
    case Span::kThisCall: return "Once";
    case Span::kThisPortFromNowOn: return "ThenItsPort";
    default: return "ThenAll";
  }
}

INSTANTIATE_TEST_SUITE_P(OfEveryPort, EveryCall,
                         testing::Combine(testing::ValuesIn(Journeys()),
                                          testing::Values(Span::kThisCall, Span::kThisPortFromNowOn,
                                                          Span::kAllFromNowOn)),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) +
                                  NameOf(std::get<1>(test.param));
                         });

TEST(WithoutATemporaryFolder, NothingIsDeletedOrWrittenElsewhere) {
  Machine machine;
  // Where a name without a folder would be looked for.
  machine.files.Put(u"C:\\ORU9.TMP", "of somebody else");
  machine.files.Put(u"C:\\ORU9.TMP.HTML", "of somebody else");
  const StoredState before = machine.Stored();
  ProgramRun run(machine);
  run.faults.FailCalls("Files.TempPath");
  run.faults.Begin();
  run.Start();
  EXPECT_EQ(FailureOf(run), "Permission denied");
  EXPECT_EQ(machine.Stored(), before);
}

// The journeys themselves, so that no failure is looked for on a way that nobody goes.
class Undisturbed : public testing::TestWithParam<Journey> {};

TEST_P(Undisturbed, JourneyReachesItsEnd) {
  Machine machine(GetParam().firstUse);
  {
    ProgramRun run(machine);
    Travel(GetParam(), run);
    EXPECT_TRUE(run.desktop.ended());
    EXPECT_EQ(run.desktop.exitCode(), 0) << FailureOf(run);
    EXPECT_GE(run.faults.calls(), 10);
    for (const auto& [dialog, script] : run.inDialog) {
      EXPECT_EQ(std::count(run.desktop.modal.begin(), run.desktop.modal.end(), dialog), 1)
          << dialog;
    }
    ExpectNothingHeld(run);
  }
  ExpectNextStart(machine);
}

INSTANTIATE_TEST_SUITE_P(Faults, Undisturbed, testing::ValuesIn(Journeys()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace marl
