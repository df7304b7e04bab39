// Under the sanitizers, their own allocator counts; it must not be replaced.

#include <cstddef>

#include "tests/contract/LiveBytes.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace marl {

std::int64_t LiveBytes() {
  return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
}

}  // namespace marl
