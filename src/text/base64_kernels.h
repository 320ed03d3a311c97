// The base64 kernels of each instruction-set level, as tables of functions;
// the caller picks a level the processor has (cpu_features.h). The vector
// kernels work through whole blocks and say how far they got; the scalar
// kernels (base64_scalar.h) finish the rest with the same rules. Blocks near
// the end may overlap ones already done: they rewrite the same output.
#ifndef QTA_TEXT_BASE64_KERNELS_H_
#define QTA_TEXT_BASE64_KERNELS_H_

#include <cstddef>
#include <cstdint>

#include "text/base64_alphabet.h"

namespace qta::text::base64 {

// Room past their count that the vector filters may write to (with bytes of
// no value).
inline constexpr size_t kFilterSlack = 32;

struct Kernels {
  // Encodes 3-byte groups while a block's worth remains; returns the bytes
  // consumed (a multiple of 3, or 0).
  size_t (*encode)(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet);
  // Copies the alphabet characters of `text` to `out` (room for
  // size + kFilterSlack bytes); returns how many were copied.
  size_t (*filter)(const char* text, size_t size, char* out, const Alphabet& alphabet);
  // Decodes the run of alphabet characters `text` starts with, in whole
  // groups, while at least a block's worth is there, into `out`, which has
  // room for `room` bytes and at least for what the characters decode to;
  // returns the characters consumed (a multiple of 4, or 0). It stops where
  // a skipped byte or the end of the text is less than a block ahead.
  size_t (*decodeRun)(const char* text, size_t size, uint8_t* out, size_t room,
                      const Alphabet& alphabet);
  // Decodes lines of `lineChars` alphabet characters each followed by `gap`
  // bytes outside the alphabet, from the start of `text` while it keeps to
  // that shape, into `out`, which has room for what they decode to; returns
  // the lines decoded.
  size_t (*decodeLines)(const char* text, size_t size, uint8_t* out, size_t lineChars, size_t gap,
                        const Alphabet& alphabet);
};

// 16 bytes at a time, for processors with SSSE3.
extern const Kernels kSsse3Kernels;
// 32 bytes at a time, for processors with AVX2.
extern const Kernels kAvx2Kernels;
// 64 bytes at a time, for processors with AVX-512 BW, VBMI, VBMI2 and BMI2.
extern const Kernels kAvx512Kernels;

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_KERNELS_H_
