#pragma once

#include "platform/Clock.h"

namespace marl {

/// A clock that stands still unless a test moves it.
class MemoryClock : public Clock {
 public:
  std::int64_t now = 0;   ///< in microseconds
  std::int64_t step = 0;  ///< by how much each reading moves the clock on

  std::int64_t Microseconds() const override {
    passed_ += step;
    return now + passed_;
  }

 private:
  mutable std::int64_t passed_ = 0;
};

}  // namespace marl
