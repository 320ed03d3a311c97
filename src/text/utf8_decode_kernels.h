// The vector converters of UTF-8 to UTF-16 and UTF-32, one per instruction
// set; the caller picks one the processor has (cpu_features.h). Each converts
// from `src` the well-formed text it handles, never reading outside
// [src, end) nor writing more than `room` units (nor past the units the rest of
// the text gives), stops where the sequence reader must go on, advances `src`
// and returns the units written.
#ifndef QTA_TEXT_UTF8_DECODE_KERNELS_H_
#define QTA_TEXT_UTF8_DECODE_KERNELS_H_

#include <cstddef>
#include <cstdint>

namespace qta::text::detail {

// Windows judged with the validity check's tables (utf8_decode_blocks.h).
size_t decodeUtf8Ssse3(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeUtf8Ssse3(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

// Blocks of 16 bytes while at least 48 remain and `room` is at least 16.
size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_KERNELS_H_
