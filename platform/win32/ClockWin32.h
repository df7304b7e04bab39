#pragma once

#include "platform/Clock.h"

namespace marl::win32 {

class ClockWin32 : public Clock {
 public:
  ClockWin32();
  std::int64_t Microseconds() const override;

 private:
  std::int64_t frequency_;  ///< counts in a second
};

}  // namespace marl::win32
