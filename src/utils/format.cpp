#include "qta/utils/format.h"

#include <climits>
#include <memory>
#include <stdexcept>

namespace qta {
namespace {

constexpr size_t kInitialSize = 512;

}  // namespace

std::string formatStringV(const char* format, va_list args) {
  size_t size = kInitialSize;
  for (;;) {
    std::unique_ptr<char[]> buffer(new char[size]);
    va_list attempt;
    va_copy(attempt, args);
    const int written = vsnprintf(buffer.get(), size, format, attempt);
    va_end(attempt);
    if (written >= 0 && static_cast<size_t>(written) < size) {
      return std::string(buffer.get(), static_cast<size_t>(written));
    }
    if (written >= 0) {
      size = static_cast<size_t>(written) + 1;
    } else if (size <= static_cast<size_t>(INT_MAX)) {
      size *= 2;
    } else {
      throw std::length_error("formatString: the C library cannot format this text");
    }
  }
}

std::string formatString(const char* format, ...) {
  va_list args;
  va_start(args, format);
  try {
    std::string text = formatStringV(format, args);
    va_end(args);
    return text;
  } catch (...) {
    va_end(args);
    throw;
  }
}

}  // namespace qta
