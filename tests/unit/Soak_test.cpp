// A long day: timers tick, the user acts now and then, and nothing grows.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <random>

#include "tests/contract/LiveBytes.h"
#include "tests/unit/Soundness.h"

namespace marl {
namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kHour = 3600 * kSecond;

/// Forgets what the memory desktop has recorded for tests.
void Forget(ProgramRun& run) {
  run.desktop.messages = {};
  run.desktop.messagesAtEnd = {};
  run.desktop.messageOwners = {};
  run.desktop.activated = {};
  run.desktop.shown = {};
  run.desktop.modal = {};
  run.desktop.owners = {};
  run.desktop.commonControls = {};
  run.shell.started = {};
  run.shell.asked = {};
  run.shell.ran = {};
  run.shell.programs = {};
  run.shell.help = {};
  run.components.calls = {};
  run.icons.opened = {};
  run.icons.given = {};
  run.icons.destroyed = {};
  run.pictures.loaded = {};
  run.hooks.registered = {};
  run.hooks.reached = {};
  run.tray.calls = {};
  run.tray.shown = {};
  run.fileDialogs.shown = {};
  run.fileDialogs.whenShown = nullptr;
  run.colorDialog.shown = {};
  run.inDialog = {};
  run.machine().settings.writes = {};
  run.machine().files.ForgetTouched();
  static_cast<MemoryPeer*>(run.main().peer())->invalidated = {};
}

TEST(Soak, ADayOfUseKeepsNothing) {
  const char* const hours = std::getenv("MARL_SOAK");
  const std::int64_t length = hours ? std::atoll(hours) * kHour : 4 * 60 * kSecond;
  Machine machine;
  ProgramRun run(machine);
  run.Start();
  std::mt19937 random(8);
  // The bytes depend on what is stored and shown: each act is done before counting, and all of them
  // in the same order at the end.
  const auto& acts = ActsOfADay();
  const auto all = [&] {
    for (const auto act : acts) act(run);
    Forget(run);
  };
  run.desktop.Advance(static_cast<int>(60 * kSecond));
  all();
  all();
  const std::int64_t begun = run.desktop.now;
  const std::int64_t bytes = LiveBytes();
  int acted = 0;
  while (run.desktop.now < begun + length && run.up()) {
    const int pause = std::uniform_int_distribution<int>(1, 40)(random);
    run.desktop.Advance(static_cast<int>(pause * kSecond));
    const auto act = acts[std::uniform_int_distribution<std::size_t>(0, acts.size() - 1)(random)];
    // Twice: what the first one ticks, the second one unticks.
    for (int times = 0; times < 2; ++times) act(run);
    ++acted;
    Forget(run);
  }
  all();
  ASSERT_TRUE(run.up()) << FailureOf(run);
  const std::int64_t grown = LiveBytes() - bytes;
  if (hours) {
    std::printf("%lld hours, %d acts: %lld bytes more at the end\n",
                static_cast<long long>(length / kHour), acted, static_cast<long long>(grown));
  }
  EXPECT_LT(grown, 4096) << "after " << acted << " acts";
  EXPECT_EQ(run.tray.icons.size(), 1u);
  EXPECT_EQ(run.tray.popups, 1);
  EXPECT_EQ(run.desktop.forms().size(), 1u);
  EXPECT_EQ(machine.registry.OpenKeys(), 0u);
  EXPECT_EQ(machine.files.OpenFiles(), 0);
  EXPECT_TRUE(run.icons.open.empty());
  EXPECT_EQ(run.components.live, 0);
  run.Leave();
  EXPECT_EQ(run.desktop.exitCode(), 0);
  ExpectNothingHeld(run);
}

}  // namespace
}  // namespace marl
