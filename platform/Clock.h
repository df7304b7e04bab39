#pragma once

#include <cstdint>

namespace marl {

/// Measures how long something takes.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Microseconds since a fixed moment in the past (QueryPerformanceCounter). Never less than
  /// before, whatever happens to the date and time of the system.
  virtual std::int64_t Microseconds() const = 0;
};

}  // namespace marl
