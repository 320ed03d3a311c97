// Block converters for processors with AVX2, chosen at run time. They handle
// the common shapes of text sixteen bytes (or eight units) at a time and stop
// at the first block they do not handle; the portable converters go on from
// there and give the same result for everything either of them does.
#ifndef QTA_TEXT_UTF_AVX2_H_
#define QTA_TEXT_UTF_AVX2_H_

#include <cstddef>
#include <cstdint>

#include "text/cpu_features.h"  // callers ask avx2Enabled() before using these

namespace qta::text::detail {

// UTF-8 to UTF-16 or UTF-32 over blocks of 16 bytes that are either four
// four-byte sequences or free of bytes 0xF0 and up, while at least 48 bytes
// remain, `room` is at least 16 and the lead bytes ahead promise output beyond
// the block's wider stores (so a caller's buffer of exactly the result's size
// is never overrun). Advances `p`; returns units written.
size_t decodeBlocksAvx2(const uint8_t*& p, const uint8_t* end, char16_t* out, size_t room);
size_t decodeBlocksAvx2(const uint8_t*& p, const uint8_t* end, char32_t* out, size_t room);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF_AVX2_H_
