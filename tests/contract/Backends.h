#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace marl {

/// The implementation of a port: the memory desktop, or Windows.
enum class Backend { kMemory, kWin32 };

/// The backends of this program: natively only memory, on Windows both.
inline std::vector<Backend> AllBackends() {
#ifdef _WIN32
  return {Backend::kMemory, Backend::kWin32};
#else
  return {Backend::kMemory};
#endif
}

inline void PrintTo(Backend backend, std::ostream* out) {
  *out << (backend == Backend::kMemory ? "memory" : "win32");
}

/// A test that runs on each backend.
class BackendTest : public testing::TestWithParam<Backend> {
 protected:
  static bool real() { return GetParam() == Backend::kWin32; }
};

/// Runs the tests of a fixture, a BackendTest, on each backend.
#define MARL_OVER_ALL_BACKENDS(fixture)                                         \
  INSTANTIATE_TEST_SUITE_P(Backends, fixture, testing::ValuesIn(AllBackends()), \
                           testing::PrintToStringParamName())

}  // namespace marl
