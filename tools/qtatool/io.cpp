#include "io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

namespace qtatool {
namespace {

// Appends everything left on `fd` to `out`. A regular file's size is reserved
// up front, so the string is never regrown and copied on the way.
bool readAll(int fd, std::string& out) {
  struct stat info;
  if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
    out.reserve(static_cast<size_t>(info.st_size));
  }
  char buffer[64 * 1024];
  for (;;) {
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got == 0) return true;
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    out.append(buffer, static_cast<size_t>(got));
  }
}

}  // namespace

bool readInput(std::string_view path, std::string& out) {
  const bool standardInput = path == "-";
  const std::string name = standardInput ? "standard input" : std::string(path);
  const int fd = standardInput ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    std::cerr << "qtatool: cannot open " << name << ": " << std::strerror(errno) << "\n";
    return false;
  }
  const bool read = readAll(fd, out);
  const int readError = errno;
  if (!standardInput) close(fd);
  if (!read)
    std::cerr << "qtatool: cannot read " << name << ": " << std::strerror(readError) << "\n";
  return read;
}

void writeBytes(std::string_view bytes) {
  std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace qtatool
