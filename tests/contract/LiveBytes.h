#pragma once

#include <cstdint>

namespace marl {

/// Bytes that this program holds by operator new now. The test program's own operators count them.
std::int64_t LiveBytes();

}  // namespace marl
