// Every allocation of the program fails once, alone and with all that follow it: the program ends
// with "Out of memory", or goes on.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "settings/RegistryValue.h"
#include "tests/contract/FailingAllocations.h"
#include "tests/unit/Soundness.h"

namespace marl {
namespace {

/// In a long run, so many allocations of a journey fail, evenly spread.
constexpr std::int64_t kMostSamples = 150;

class EveryAllocation : public testing::TestWithParam<std::tuple<Journey, bool>> {
 protected:
  /// Goes the way with this allocation failing; 0 for none. Returns the number of allocations.
  std::int64_t Fail(std::int64_t number) {
    const auto& [journey, later] = GetParam();
    SCOPED_TRACE("allocation " + std::to_string(number));
    Machine machine(journey.firstUse);
    std::int64_t counted = 0;
    {
      ProgramRun run(machine);
      run.whenCounting = [&, later = later] { theFailingAllocations.Begin(number, later); };
      EXPECT_NO_THROW(Travel(journey, run));
      counted = theFailingAllocations.counted;
      theFailingAllocations.Begin(0, false);
      EXPECT_TRUE(run.desktop.ended());
      const std::string text = FailureOf(run);
      if (number == 0 || text.empty()) {
        EXPECT_EQ(text, "");
        EXPECT_EQ(run.desktop.exitCode(), 0);
      } else {
        EXPECT_EQ(text, "Out of memory");
        EXPECT_EQ(run.desktop.exitCode(), 1);
      }
      ExpectNothingHeld(run);
      EXPECT_EQ(WrongAfter(journey, machine.Stored()), "");
    }
    ExpectNextStart(machine);
    return counted;
  }
};

TEST_P(EveryAllocation, MayFailWithoutHarm) {
  static std::map<std::string, std::int64_t> counts;
  const std::string name = std::get<0>(GetParam()).name;
  if (!counts.contains(name)) counts[name] = Fail(0);
  const std::int64_t all = counts[name];
  ASSERT_GT(all, 0);
  if (!LongRun()) {
    Fail(1 + all * (name[0] % 8) / 8);
    return;
  }
  const std::int64_t samples = std::min(all, kMostSamples);
  for (std::int64_t sample = 0; sample < samples && !HasFailure(); ++sample) {
    Fail(1 + all * sample / samples);
  }
  std::printf("%lld of %lld allocations failed\n", static_cast<long long>(samples),
              static_cast<long long>(all));
}

INSTANTIATE_TEST_SUITE_P(OfTheProgram, EveryAllocation,
                         testing::Combine(testing::ValuesIn(Journeys()), testing::Bool()),
                         [](const auto& test) {
                           return std::string(std::get<0>(test.param).name) +
                                  (std::get<1>(test.param) ? "ThenAll" : "Once");
                         });

TEST(VariantWithoutMemory, FailedCopyLeavesNothing) {
  const RegistryValue text = Text(100, u'x');
  const RegistryValue bytes = Bytes(100, 1);
  for (const RegistryValue* const value : {&text, &bytes}) {
    bool failed = false;
    theFailingAllocations.Begin(1, true);
    try {
      const AllocationsWatched watched(true);
      const RegistryValue copy = *value;
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    theFailingAllocations.Begin(0, false);
    EXPECT_TRUE(failed);
    const RegistryValue copy = *value;
    EXPECT_EQ(copy, *value);
  }
}

TEST(EveryAllocationOfAnEvent, IsWithinIt) {
  MemoryDesktop desktop;
  const std::int64_t a = 1, b = 2, c = 3, d = 4;
  std::int64_t sum = 0;
  bool ran = false;
  const auto event = [&, a, b, c, d] {
    ran = true;
    sum = a + b + c + d;
  };
  theFailingAllocations.Begin(1, true);
  {
    const AllocationsWatched watched(true);
    desktop.Event(event);
  }
  theFailingAllocations.Begin(0, false);
  EXPECT_TRUE(ran);
  EXPECT_EQ(sum, 10);
}

TEST(LastMessageWithoutMemory, LetsTheProcessEnd) {
  struct WithoutMessages : MemoryDesktop {
    int MsgBox(TextView, int, TextView) override { throw std::bad_alloc(); }
  } desktop;
  EXPECT_NO_THROW(desktop.Event([] { throw std::bad_alloc(); }));
  EXPECT_TRUE(desktop.ended());
  EXPECT_EQ(desktop.exitCode(), 1);
  EXPECT_EQ(desktop.messagesAtEnd.size(), 1u);
}

}  // namespace
}  // namespace marl
