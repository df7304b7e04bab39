#include "tests/contract/LiveBytes.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "tests/contract/FailingAllocations.h"

namespace {

std::atomic<std::int64_t> live = 0;

/// In front of each block: the size that was asked for. The allocator's own answer would vary,
/// since it hands out a larger block where the rest of it would be of no use.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Header {
  std::size_t size;
};

void* Take(std::size_t size) noexcept {
  if (size > PTRDIFF_MAX - sizeof(Header)) return nullptr;
  auto* const header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
  if (!header) return nullptr;
  header->size = size;
  live += static_cast<std::int64_t>(size);
  return header + 1;
}

void* TakeOrThrow(std::size_t size) {
  if (marl::theFailingAllocations.Fails()) throw std::bad_alloc();
  void* const memory = Take(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void Give(void* memory) noexcept {
  if (!memory) return;
  Header* const header = static_cast<Header*>(memory) - 1;
  live -= static_cast<std::int64_t>(header->size);
  std::free(header);
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
