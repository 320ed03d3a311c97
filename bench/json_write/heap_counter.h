// Counts the bytes the program holds on the heap, through a replacement of the
// global operator new and delete (heap_counter.cpp). The count is the usable
// size of each block as malloc reports it, so allocator rounding is included.
#ifndef QTA_BENCH_JSON_WRITE_HEAP_COUNTER_H_
#define QTA_BENCH_JSON_WRITE_HEAP_COUNTER_H_

#include <cstddef>

namespace qtabench {

// Bytes currently held through operator new.
std::size_t heapInUse();

}  // namespace qtabench

#endif  // QTA_BENCH_JSON_WRITE_HEAP_COUNTER_H_
