#include "tests/contract/LiveBytes.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> live = 0;

std::int64_t SizeOf(void* memory) {
#ifdef _WIN32
  return static_cast<std::int64_t>(_msize(memory));
#else
  return static_cast<std::int64_t>(malloc_usable_size(memory));
#endif
}

void* Take(std::size_t size) noexcept {
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (memory) live += SizeOf(memory);
  return memory;
}

void* TakeOrThrow(std::size_t size) {
  void* const memory = Take(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void Give(void* memory) noexcept {
  if (memory) live -= SizeOf(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return TakeOrThrow(size); }
void* operator new[](std::size_t size) { return TakeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Take(size); }
void operator delete(void* memory) noexcept { Give(memory); }
void operator delete[](void* memory) noexcept { Give(memory); }
void operator delete(void* memory, std::size_t) noexcept { Give(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Give(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Give(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Give(memory); }

namespace marl {

std::int64_t LiveBytes() { return live; }

}  // namespace marl
