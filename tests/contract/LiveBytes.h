#pragma once

#include <cstdint>

namespace marl {

/// Number of bytes that are allocated by operator new, which the test program replaces to count
/// them.
std::int64_t LiveBytes();

}  // namespace marl
