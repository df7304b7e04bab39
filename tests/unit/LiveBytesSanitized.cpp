// Under the sanitizers, their own allocator serves and counts; it must not be replaced. Operator
// new is put in front of theirs, to fail on request.

#include <dlfcn.h>

#include <cstddef>
#include <new>

#include "tests/contract/FailingAllocations.h"
#include "tests/contract/LiveBytes.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

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
