// UTF-8 to UTF-16 and UTF-32 sixteen bytes at a time with SSSE3.
#include "text/utf8_decode_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "ssse3"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which it builds on.
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {

[[gnu::target("ssse3")]] size_t decodeUtf8Ssse3(const uint8_t*& src, const uint8_t* end,
                                                char16_t* out, size_t room) {
  return decodeUtf8Vectors<Vectors16>(src, end, out, room);
}

[[gnu::target("ssse3")]] size_t decodeUtf8Ssse3(const uint8_t*& src, const uint8_t* end,
                                                char32_t* out, size_t room) {
  return decodeUtf8Vectors<Vectors16>(src, end, out, room);
}

}  // namespace qta::text::detail
