// The validity check 32 bytes at a time with AVX2.
#include "text/utf8_validate_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "avx2"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which it builds on.
#include "text/utf8_avx2_vectors.h"

namespace qta::text::detail {

[[gnu::target("avx2")]] bool validUtf8Avx2(const uint8_t* text, size_t size) {
  return validUtf8Vectors<Avx2Vectors>(text, size);
}

}  // namespace qta::text::detail
