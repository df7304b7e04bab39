#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "platform/memory/MemoryClock.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include <windows.h>

#include "platform/win32/ClockWin32.h"
#endif

namespace marl {
namespace {

class ClockContract : public BackendTest {
 protected:
  ClockContract() {
#ifdef _WIN32
    if (real()) clock = std::make_unique<win32::ClockWin32>();
#endif
    if (!clock) clock = std::make_unique<MemoryClock>();
  }

  void Wait(int milliseconds) {
#ifdef _WIN32
    if (real()) return Sleep(static_cast<DWORD>(milliseconds));
#endif
    static_cast<MemoryClock&>(*clock).now += milliseconds * 1000;
  }

  std::unique_ptr<Clock> clock;
};

TEST_P(ClockContract, NeverGoesBack) {
  std::int64_t before = clock->Microseconds();
  for (int i = 0; i < 100000; ++i) {
    const std::int64_t now = clock->Microseconds();
    ASSERT_GE(now, before);
    before = now;
  }
}

TEST_P(ClockContract, CountsMicroseconds) {
  const std::int64_t before = clock->Microseconds();
  Wait(50);
  const std::int64_t passed = clock->Microseconds() - before;
  EXPECT_GE(passed, 45000) << "the system may wake a thread a little early";
  EXPECT_LT(passed, 50'000'000) << "however busy the machine is";
}

MARL_OVER_ALL_BACKENDS(ClockContract);

#ifdef _WIN32
TEST(ClockWin32, StepsAreShorterThanAMillisecond) {
  const win32::ClockWin32 clock;
  std::int64_t shortest = 1'000'000;
  for (int i = 0; i < 100; ++i) {
    const std::int64_t before = clock.Microseconds();
    std::int64_t now = before;
    while (now == before) now = clock.Microseconds();
    shortest = std::min(shortest, now - before);
  }
  EXPECT_LT(shortest, 1000);
}
#endif

}  // namespace
}  // namespace marl
