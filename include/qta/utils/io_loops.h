// qta/utils/io_loops.h: whole-buffer read and write on a file descriptor.
//
// writeAll() and readAll() repeat write() and read() until the whole buffer
// has moved, retrying calls that a signal interrupted (EINTR), so callers on
// pipes and child processes need not care whether their signal handlers were
// installed with SA_RESTART. They block as the descriptor blocks. The caller
// owns the descriptor and the buffer; the functions keep no state and may run
// on any number of threads at once (on different descriptors).
#ifndef QTA_UTILS_IO_LOOPS_H_
#define QTA_UTILS_IO_LOOPS_H_

#include <cstddef>

#include "qta/export.h"

namespace qta::utils {

// Writes `length` bytes of `buffer` to `fd`. Returns 0 when all were written,
// -1 on an error other than EINTR (errno tells which; a write that accepts
// nothing counts as the error EIO). When `done` is not null it receives the
// number of bytes written, in both cases.
QTA_EXPORT int writeAll(int fd, const void* buffer, std::size_t length,
                        std::size_t* done = nullptr);

// Reads up to `length` bytes from `fd` into `buffer`. Returns 0 when the
// buffer is full and also at end of file (compare `*done` with `length`), -1
// on an error other than EINTR (errno tells which). When `done` is not null it
// receives the number of bytes read, in all cases.
QTA_EXPORT int readAll(int fd, void* buffer, std::size_t length, std::size_t* done = nullptr);

}  // namespace qta::utils

#endif  // QTA_UTILS_IO_LOOPS_H_
