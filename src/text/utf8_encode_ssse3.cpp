// UTF-16 and UTF-32 to UTF-8, eight units at a time with SSSE3 (its byte
// shuffle packs the bytes), and ASCII 64 units a test.
#include "text/utf8_encode_kernels.h"

#define QTA_ENCODE_KERNEL_TARGET "ssse3"
#include "text/utf8_encode_blocks.h"

namespace qta::text::detail {

[[gnu::target("ssse3")]] size_t encodeUtf8BlocksSsse3(const char16_t*& p, const char16_t* end,
                                                      char* out, size_t room) {
  return encodeBlocks<Units8>(p, end, out, room);
}

[[gnu::target("ssse3")]] size_t encodeUtf8BlocksSsse3(const char32_t*& p, const char32_t* end,
                                                      char* out, size_t room) {
  return encodeBlocks<Units8>(p, end, out, room);
}

[[gnu::target("ssse3")]] size_t narrowAsciiSsse3(const char16_t*& src, const char16_t* end,
                                                 char* out, size_t room) {
  return narrowAsciiRuns<Units8>(src, end, out, room);
}

}  // namespace qta::text::detail
