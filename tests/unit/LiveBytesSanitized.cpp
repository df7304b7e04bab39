// The sanitizers' allocator: it counts the memory in use, and must not be replaced.

#include <cstddef>

#include "tests/contract/LiveBytes.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

// Five frames say where a block comes from. The default of thirty takes a tenth of the tests' time;
// ASAN_OPTIONS=malloc_context_size=30 brings them back.
extern "C" const char* __asan_default_options() { return "malloc_context_size=5"; }

namespace marl {

std::int64_t LiveBytes() {
  return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
}

}  // namespace marl
