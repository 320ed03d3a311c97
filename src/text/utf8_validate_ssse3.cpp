// The validity check sixteen bytes at a time with SSSE3 (its byte shuffle is
// the table lookup).
#include "text/utf8_validate_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "ssse3"
#include "text/utf8_validate_blocks.h"

namespace qta::text::detail {

[[gnu::target("ssse3")]] bool validUtf8Ssse3(const uint8_t* text, size_t size) {
  return validUtf8Vectors<Vectors16>(text, size);
}

}  // namespace qta::text::detail
