// Memory for JSON nodes: each thread carves the nodes it makes out of 64 KiB
// blocks of its own, so making a node is a pointer bump instead of a malloc
// call, and the nodes of one document lie together. A node may be deleted on
// any thread. A block goes back to the heap when its last node is deleted and
// its thread has moved on to another block (or exited), so a few nodes kept
// from a large document keep their blocks.
//
// Counting: while a thread carves a block, the block's count stands at
// kCarving less the nodes deleted. When the thread moves on it subtracts
// kCarving less the nodes it carved, which leaves the nodes still alive.
// Whoever brings the count to zero frees the block.
//
// Emptied blocks are kept for reuse, a few per thread (by the thread that
// empties them), instead of going back to malloc one by one: freeing a 64 KiB
// chunk makes malloc merge all its small free chunks, which the strings and
// map nodes of the next document would then have to be carved from again.
//
// Under AddressSanitizer nodes come from the ordinary heap, so that overruns
// of a node and leaked documents are reported.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "json/thread_exit.h"
#include "qta/json/json.h"

#if defined(__SANITIZE_ADDRESS__)
#define QTA_JSON_PLAIN_NODES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QTA_JSON_PLAIN_NODES 1
#endif
#endif

namespace qta {

#ifdef QTA_JSON_PLAIN_NODES

void* JSON::operator new(std::size_t size) { return ::operator new(size); }
void JSON::operator delete(void* node, std::size_t) noexcept { ::operator delete(node); }

#else

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;
// Larger nodes (of a class derived outside the library) come from the heap.
constexpr std::size_t kLargestCarved = 256;
constexpr std::uint32_t kCarving = 1U << 30;  // far above the nodes a block can hold
constexpr std::size_t kSpareBlocks = 16;      // kept per thread: 1 MiB at most

struct alignas(16) Block {
  std::atomic<std::uint32_t> count;
};

// The block the calling thread carves. Plain data, so it is usable at any
// point of the thread's life, its exit included.
struct Carver {
  Block* block;
  char* next;
  char* end;
  std::uint32_t carved;
  bool registered;  // the thread-exit handler is set up
  std::size_t spareCount;
  Block* spares[kSpareBlocks];  // emptied blocks waiting to be carved again
};

constinit thread_local Carver carver{};

// Keeps an emptied block as a spare while the thread's exit handler, which
// frees the spares, is still to run; frees it otherwise.
void releaseBlock(Block* block) {
  Carver& state = carver;
  if (state.registered && state.spareCount < kSpareBlocks) {
    state.spares[state.spareCount++] = block;
  } else {
    std::free(block);
  }
}

void freeBlockIfLast(Block* block, std::uint32_t share) {
  if (block->count.fetch_sub(share, std::memory_order_acq_rel) == share) releaseBlock(block);
}

void leaveBlock(Carver& state) {
  if (state.block != nullptr) freeBlockIfLast(state.block, kCarving - state.carved);
  state.block = nullptr;
  state.next = state.end = nullptr;
}

void leaveAtThreadExit(void*) noexcept {
  leaveBlock(carver);
  carver.registered = false;
  while (carver.spareCount > 0) std::free(carver.spares[--carver.spareCount]);
}

[[gnu::noinline]] void startBlock(Carver& state) {
  if (!state.registered) {
    json::detail::atThreadExit(leaveAtThreadExit);
    state.registered = true;
  }
  void* memory = state.spareCount > 0 ? state.spares[--state.spareCount]
                                      : std::aligned_alloc(kBlockSize, kBlockSize);
  if (memory == nullptr) throw std::bad_alloc();
  leaveBlock(state);
  state.block = new (memory) Block{kCarving};
  state.next = static_cast<char*>(memory) + sizeof(Block);
  state.end = static_cast<char*>(memory) + kBlockSize;
  state.carved = 0;
}

std::size_t roundedSize(std::size_t size) { return (size + 7) & ~std::size_t{7}; }

}  // namespace

void* JSON::operator new(std::size_t size) {
  if (size > kLargestCarved) return ::operator new(size);
  size = roundedSize(size);
  Carver& state = carver;
  if (static_cast<std::size_t>(state.end - state.next) < size) startBlock(state);
  void* node = state.next;
  state.next += size;
  ++state.carved;
  return node;
}

void JSON::operator delete(void* node, std::size_t size) noexcept {
  if (node == nullptr) return;
  if (size > kLargestCarved) return ::operator delete(node);
  const auto address = reinterpret_cast<std::uintptr_t>(node);
  freeBlockIfLast(reinterpret_cast<Block*>(address & ~(kBlockSize - 1)), 1);
}

#endif

}  // namespace qta
