#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace marl::fuzz {

using Body = void (*)(const std::uint8_t* data, std::size_t size);

/// A target for the unit tests, which replay the corpus.
struct Target {
  Target(const char* name, Body body);
  const char* name;
  Body body;
  Target* next;  ///< the one created before
};

/// The target created last.
Target*& Targets();

/// Stops if the condition is false: the fuzzer reports a crash, the replay a failure.
inline void Expect(bool holds, const char* what) {
  if (!holds) throw std::logic_error(what);
}

}  // namespace marl::fuzz

/// Begins the definition of a target, whose body gets `data` and `size`. Its name is that of its
/// source and of its folder below fuzz/corpus.
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
