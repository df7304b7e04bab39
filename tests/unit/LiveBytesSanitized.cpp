// Under the sanitizers, their own allocator serves and counts; it must not be replaced. Operator
// new is put in front of theirs, to fail on request.

#include <dlfcn.h>

#include <cstddef>
#include <new>

#include "tests/contract/FailingAllocations.h"
#include "tests/contract/LiveBytes.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

// The stacks of where blocks come from, and a quarter of a gigabyte of freed blocks that are
// watched for later uses, take a quarter of the tests' time. An error is found all the same; to see
// where its block comes from, run the test again with ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=1:quarantine_size_mb=16";
}

namespace {

using Allocate = void* (*)(std::size_t size);

/// The sanitizer's operator with this (mangled) name.
Allocate Next(const char* name) { return reinterpret_cast<Allocate>(dlsym(RTLD_NEXT, name)); }

}  // namespace

void* operator new(std::size_t size) {
  static const Allocate next = Next("_Znwm");
  if (marl::theFailingAllocations.Fails()) throw std::bad_alloc();
  return next(size);
}

void* operator new[](std::size_t size) {
  static const Allocate next = Next("_Znam");
  if (marl::theFailingAllocations.Fails()) throw std::bad_alloc();
  return next(size);
}

namespace marl {

std::int64_t LiveBytes() {
  return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
}

}  // namespace marl
