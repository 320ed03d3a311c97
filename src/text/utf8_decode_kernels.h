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

// Blocks of 16 bytes while at least 48 remain and `room` is at least 16, up
// to a block of ASCII; runs of three-byte sequences (see startsThreeByteRun)
// go through the run kernel below.
size_t decodeBlocksSsse3(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeBlocksSsse3(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

// The run of well-formed three-byte sequences at `src`, 24 bytes a step.
size_t decodeThreeByteRunSsse3(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeThreeByteRunSsse3(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);
size_t decodeThreeByteRunAvx2(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeThreeByteRunAvx2(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

// Blocks of 16 bytes while at least 48 remain and `room` is at least 16
// (runs of ASCII 64 at a time); runs of three-byte sequences go through the
// run kernel above.
size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room);
size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room);

// Eight three-byte leads at `p`, three bytes apart; reads at most p[21], so
// the caller keeps 22 bytes in view.
inline bool startsThreeByteRun(const uint8_t* p) {
  for (size_t at = 0; at < 24; at += 3) {
    if ((p[at] & 0xF0) != 0xE0) return false;
  }
  return true;
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_KERNELS_H_
