#include "qta/utils/io_loops.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace qta::utils {
namespace {

// One call moves at most this much: larger counts are implementation-defined.
constexpr std::size_t kMaxChunk = SSIZE_MAX;

// Runs `transfer(offset, count)` over the rest of the buffer until all of it
// has moved, `transfer` reports an error other than EINTR, or it moves nothing
// (end of file for reads). Returns the result and stores the total in `done`.
template <typename Transfer>
int loop(std::size_t length, std::size_t* done, bool nothingIsAnError, Transfer transfer) {
  std::size_t total = 0;
  int result = 0;
  while (total < length) {
    const ssize_t moved = transfer(total, std::min(length - total, kMaxChunk));
    if (moved > 0) {
      total += static_cast<std::size_t>(moved);
    } else if (moved < 0 && errno == EINTR) {
      continue;
    } else if (moved < 0) {
      result = -1;
      break;
    } else {
      if (nothingIsAnError) {
        errno = EIO;
        result = -1;
      }
      break;
    }
  }
  if (done != nullptr) *done = total;
  return result;
}

}  // namespace

int writeAll(int fd, const void* buffer, std::size_t length, std::size_t* done) {
  const char* bytes = static_cast<const char*>(buffer);
  return loop(length, done, true, [&](std::size_t offset, std::size_t count) {
    return ::write(fd, bytes + offset, count);
  });
}

int readAll(int fd, void* buffer, std::size_t length, std::size_t* done) {
  char* bytes = static_cast<char*>(buffer);
  return loop(length, done, false, [&](std::size_t offset, std::size_t count) {
    return ::read(fd, bytes + offset, count);
  });
}

}  // namespace qta::utils
