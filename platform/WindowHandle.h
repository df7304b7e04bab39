#pragma once

#include <cstdint>

namespace marl {

/// A handle of any program's window; 0 is none.
using WindowHandle = std::int32_t;

}  // namespace marl
