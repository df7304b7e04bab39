#include "platform/win32/ClockWin32.h"

#include <windows.h>

namespace marl::win32 {

ClockWin32::ClockWin32() {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  frequency_ = frequency.QuadPart;
}

std::int64_t ClockWin32::Microseconds() const {
  constexpr std::int64_t kSecond = 1000000;
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  // In two parts, since the product of a large count would not fit.
  return count.QuadPart / frequency_ * kSecond + count.QuadPart % frequency_ * kSecond / frequency_;
}

}  // namespace marl::win32
