// UTF-8 to UTF-16 and UTF-32 with AVX2: windows judged 32 bytes at a time.
#include "text/utf8_decode_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "avx2"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which they build on.
#include "text/utf8_avx2_vectors.h"
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {

[[gnu::target("avx2")]] size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end,
                                              char16_t* out, size_t room) {
  return decodeUtf8Vectors<Avx2Vectors>(src, end, out, room);
}

[[gnu::target("avx2")]] size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end,
                                              char32_t* out, size_t room) {
  return decodeUtf8Vectors<Avx2Vectors>(src, end, out, room);
}

}  // namespace qta::text::detail
