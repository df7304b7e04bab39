#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace marl::fuzz {

using Body = void (*)(const std::uint8_t* data, std::size_t size);

/// A target of the replay, which runs the corpus in the unit tests.
struct Target {
  Target(const char* name, Body body);
  const char* name;
  Body body;
  Target* next;  ///< the one made before
};

/// The target made last.
Target*& Targets();

/// Stops at a broken promise: the fuzzer reports it as a crash, the replay as a failure.
inline void Expect(bool promise, const char* what) {
  if (!promise) throw std::logic_error(what);
}

}  // namespace marl::fuzz

/// Heads the body of a target, which gets `data` and `size`. Its name is that of its source and
/// of its folder below fuzz/corpus.
#if defined(MARL_FUZZ)
#define MARL_FUZZ_TARGET(name)                                                        \
  static void name(const std::uint8_t* data, std::size_t size);                       \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);  \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    name(data, size);                                                                 \
    return 0;                                                                         \
  }                                                                                   \
  static void name(const std::uint8_t* data, std::size_t size)
#else
#define MARL_FUZZ_TARGET(name)                                  \
  static void name(const std::uint8_t* data, std::size_t size); \
  static const marl::fuzz::Target name##Target(#name, &name);   \
  static void name(const std::uint8_t* data, std::size_t size)
#endif
