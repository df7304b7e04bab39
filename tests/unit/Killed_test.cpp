// The program is killed at any moment, and started several times at once.

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "tests/unit/Soundness.h"

namespace marl {
namespace {

int Rounds(int few, int many) { return LongRun() ? many : few; }

TEST(Killed, AtAnyMomentOfADayItLeavesTheMachineSound) {
  std::vector<StoredState> states;
  int calls = 0;
  {
    Machine machine;
    states.push_back(machine.Stored());
    ProgramRun run(machine);
    TravelAll(run, [&](const StoredState& stored) { states.push_back(stored); });
    ASSERT_EQ(run.desktop.exitCode(), 0) << FailureOf(run);
    calls = run.faults.calls();
  }
  EXPECT_GT(calls, 1000);
  const SoundStores sound(std::move(states));
  std::mt19937 random(20);
  for (int round = 0; round < Rounds(3, 1000) && !HasFailure(); ++round) {
    const int moment = std::uniform_int_distribution<int>(1, calls)(random);
    SCOPED_TRACE("killed at call " + std::to_string(moment));
    Machine machine;
    {
      ProgramRun run(machine);
      run.faults.KillAt(moment);
      EXPECT_THROW(TravelAll(run), Killed);
      EXPECT_TRUE(run.faults.killed());
      ExpectNothingHeld(run);
    }
    EXPECT_EQ(sound.Wrong(machine.Stored()), "");
    ExpectNextStart(machine);
  }
}

TEST(Killed, WhileItProbesTheBrowserItLeavesOneFileThatTheNextStartRemoves) {
  Machine machine;
  const Text temp = machine.files.TempPath();
  machine.files.Erase(temp + u"ORU1.TMP");
  const auto left = [&] {
    int count = 0;
    for (const Text& file : machine.files.Files()) count += file.starts_with(temp) ? 1 : 0;
    return count;
  };
  for (const char* const call : {"Files.Write", "Shell.FindProgram", "Files.Create"}) {
    {
      ProgramRun run(machine);
      run.faults.KillIn(call);
      run.faults.Begin();
      EXPECT_THROW(run.Start(), Killed);
      EXPECT_EQ(left(), std::string_view(call) == "Files.Create" ? 0 : 1) << call;
    }
    machine.session->holders = 0;
  }
  EXPECT_EQ(left(), 0);
}

TEST(StartsAtTheSameMoment, ExactlyOneStaysAndNothingIsLost) {
  std::mt19937 random(10);
  const auto below = [&](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  for (int round = 0; round < Rounds(3, 200) && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    Machine machine;
    machine.files.Erase(machine.files.TempPath() + u"ORU1.TMP");
    const StoredState before = machine.Stored();
    std::vector<std::unique_ptr<ProgramRun>> runs;
    const int starts = 2 + below(9);
    for (int i = 0; i < starts; ++i) runs.push_back(std::make_unique<ProgramRun>(machine));
    // Each of the others starts in the middle of one of those before it.
    constexpr int kCallsOfAStart = 150;
    for (std::size_t i = 1; i < runs.size(); ++i) {
      ProgramRun& other = *runs[i];
      ProgramRun& during = *runs[static_cast<std::size_t>(below(static_cast<int>(i)))];
      other.faults.Begin();
      during.faults.MeanwhileAt(1 + below(kCallsOfAStart), [&other] { other.Start(); });
    }
    runs.front()->faults.Begin();
    runs.front()->Start();
    // Some moments are after the end of a second start: those programs start now.
    for (const auto& run : runs) {
      if (!run->started()) run->Start();
    }
    int up = 0;
    for (const auto& run : runs) {
      up += run->up() ? 1 : 0;
      if (!run->up()) {
        EXPECT_TRUE(run->desktop.ended());
        EXPECT_EQ(run->desktop.exitCode(), 0) << FailureOf(*run);
        EXPECT_EQ(run->shell.started.size(), 1u) << "only the registrar";
        EXPECT_TRUE(run->tray.icons.empty());
      }
    }
    EXPECT_EQ(up, 1) << starts << " starts";
    EXPECT_EQ(machine.Stored(), before);
    for (const auto& run : runs) {
      run->Leave();
      run->Discard();
    }
    EXPECT_EQ(runs.front()->Held(), "");
    StoredState after = machine.Stored();
    for (const auto& [place, value] : before) EXPECT_TRUE(after.contains(place)) << place;
    runs.clear();
    ExpectNextStart(machine);
  }
}

}  // namespace
}  // namespace marl
