#pragma once

#include <cstdint>
#include <string_view>

namespace marl {

/// The double nearest to `digits` times a power of ten, ties to the even one: 0 if it is too small,
/// infinity if it is too large. The digits are '0' to '9', the first of them not '0'.
///
/// The runtime library's conversion gives the same and takes 42 KB of the program's file.
double NearestDouble(std::string_view digits, std::int64_t exponent);

}  // namespace marl
