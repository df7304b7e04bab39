#pragma once

#include <cstdint>

namespace marl {

/// A window of any program, as the platform numbers it; 0 is none.
using WindowHandle = std::int32_t;

}  // namespace marl
