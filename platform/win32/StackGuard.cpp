// What -fstack-protector-strong calls, in place of the compiler's library, which asks a
// cryptographic provider for its number and so loads libraries before the search for them is
// restricted (Hardening.h).

#include <windows.h>

#include <cstdint>

extern "C" {

// In the file for as long as some function is protected; the tests look for it.
extern const char g_stackGuardMark[];
const char g_stackGuardMark[] = "Marl: the stack is damaged";

// Also before it is set, an overrun with zeros is noticed.
std::uintptr_t __stack_chk_guard = static_cast<std::uintptr_t>(0xBB40E64E7D2A19F1u);

[[noreturn]] __attribute__((no_stack_protector)) void __stack_chk_fail() {
  // Nothing that needs the stack, such as an exception. Reading the text keeps it in the file.
  static_cast<void>(*static_cast<const volatile char*>(g_stackGuardMark));
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
  __builtin_trap();
}

}  // extern "C"

namespace {

/// A number that an attacker outside the process cannot know: time, counters, and addresses that
/// Windows chooses at random. Its lowest byte stays 0, which ends an overrun by text.
__attribute__((constructor(101), no_stack_protector)) void SetStackGuard() {
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  std::uint64_t number = static_cast<std::uint64_t>(counter.QuadPart);
  const auto mix = [&number](std::uint64_t value) __attribute__((no_stack_protector)) {
    number = (number ^ value) * 0x9E3779B97F4A7C15u;
    number ^= number >> 29;
  };
  mix(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  mix(std::uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId());
  mix(reinterpret_cast<std::uintptr_t>(&number));
  mix(reinterpret_cast<std::uintptr_t>(GetModuleHandleW(nullptr)));
  mix(GetTickCount64());
  __stack_chk_guard = static_cast<std::uintptr_t>(number) & ~std::uintptr_t{0xFF};
}

}  // namespace
