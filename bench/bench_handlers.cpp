// What the panel's handlers cost when nothing changes: the mouse over one button or over none, the
// tick of the timer, a resize that needs no correction. Runs on the memory desktop, so this is the
// cost of the program alone; the platform's calls come on top.

#include <cstdio>
#include <cstdlib>

#include "bench/Race.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {
namespace {

constexpr int kRounds = 200;
constexpr int kCalls = 2000;

int Main() {
  SuiteWorld world;
  world.Start();
  frmMain& form = world.main();
  const Box& first = form.shpRun[0]->bounds();
  const Box& last = form.shpRun[17]->bounds();
  const auto move = [&](const Box& frame) {
    form.UserMouseMove(0, 0, static_cast<float>(frame.left + 300),
                       static_cast<float>(frame.top + 300));
  };
  const auto expect = [&](int button) {
    if (form.HoverButton == button) return;
    std::printf("button %d is highlighted and not %d\n", form.HoverButton, button);
    std::exit(2);
  };
  bench::Goals goals;
  const auto time = [&](const char* name, auto&& work) {
    bench::Race race(std::string("handlers/") + name);
    race.Add("marl", work);
    race.Run(kRounds, kCalls, 0);
    goals.AtMost(std::string("handlers-us-") + name, race.Seconds("marl") * 1e6, 1);
  };

  time("mouse-nowhere", [&] { form.UserMouseMove(0, 0, -1, -1); });
  expect(-1);
  move(first);
  time("mouse-first", [&] { move(first); });
  expect(0);
  move(last);
  time("mouse-last", [&] { move(last); });
  expect(17);
  const Point origin = form.ClientOrigin();
  world.tray.cursor = {origin.x + world.desktop.resolution().PixelsX(last.left + 300),
                       origin.y + world.desktop.resolution().PixelsY(last.top + 300)};
  time("timer", [&] { form.tmrOver.Tick(); });
  expect(17);
  time("resize", [&] { static_cast<HookedForm&>(form).Resized(); });
  expect(17);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
