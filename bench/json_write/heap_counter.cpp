#include "heap_counter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> heldBytes{0};

void* allocate(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  heldBytes.fetch_add(malloc_usable_size(block), std::memory_order_relaxed);
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  heldBytes.fetch_sub(malloc_usable_size(block), std::memory_order_relaxed);
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }

namespace qtabench {

std::size_t heapInUse() { return heldBytes.load(std::memory_order_relaxed); }

}  // namespace qtabench
