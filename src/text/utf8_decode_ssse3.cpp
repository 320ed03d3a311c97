// UTF-8 to UTF-16 and UTF-32 sixteen bytes at a time with SSSE3.
#include "text/utf8_block_rules.h"
#include "text/utf8_decode_kernels.h"

#define QTA_UTF8_KERNEL_TARGET "ssse3"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which it builds on.
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {
namespace {

// Bits set in the low 16 bits of `bits`.
constexpr size_t bitCount16(unsigned bits) {
  return kBitCounts[bits & 0xFF] + kBitCounts[bits >> 8 & 0xFF];
}

// Converts blocks of 16 bytes while at least 48 remain and `room` holds 16
// units: a block of four four-byte sequences, or of sequences of up to three
// bytes (not all ASCII), whose value at every position is computed at once (a
// lead that gives '?' turns into one) before the continuation bytes are
// squeezed out. Stops at a block with other bytes from 0xF0 up, where a run
// of three-byte sequences starts (the run kernel does it faster), or where
// the text after the block does not promise the units its stores may write
// past its own, or at a block of ASCII. Advances `src`; returns the units
// written.
template <typename Unit>
QTA_UTF8_KERNEL size_t decodeBlocks(const uint8_t*& src, const uint8_t* end, Unit* out,
                                    size_t room) {
  const uint8_t* p = src;
  size_t written = 0;
  while (end - p >= 48 && room - written >= 16) {
    const __m128i b0 = load16(p);
    const auto high = static_cast<unsigned>(_mm_movemask_epi8(b0));
    if (high == 0) break;  // the scalar loop takes ASCII as fast
    if (_mm_movemask_epi8(atLeast(b0, 0xF0)) != 0) {
      __m128i codePoints;
      if (!fourByteSequences(b0, codePoints)) break;
      written += storeSupplementary(codePoints, out + written);
      p += 16;
      continue;
    }
    if (high == 0xFFFF) {
      const uint8_t* run = threeByteRunAt(p);
      const size_t units =
          run != nullptr ? decodeThreeByteRunSsse3(run, end, out + written, room - written) : 0;
      if (units != 0) {
        p = run;
        written += units;
        continue;
      }
    }
    // Each half is stored as 8 units, the second right after the first
    // half's units: the units still to come must reach that far.
    const unsigned keep = leadBits(p);
    if (kBitCounts[keep >> 8] + bitCount16(leadBits(p + 16)) + bitCount16(leadBits(p + 32)) < 8) {
      break;
    }
    const __m128i b1 = load16(p + 1);
    const __m128i b2 = load16(p + 2);
    const __m128i replaced = select(leadsGivingReplacement(b0, b1, b2), _mm_set1_epi8('?'), b0);
    written += upTo3ByteBlock(out + written, replaced, b1, b2, keep, true);
    p += 16;
  }
  src = p;
  return written;
}

}  // namespace

[[gnu::target("ssse3")]] size_t decodeBlocksSsse3(const uint8_t*& src, const uint8_t* end,
                                                  char16_t* out, size_t room) {
  return decodeBlocks(src, end, out, room);
}

[[gnu::target("ssse3")]] size_t decodeBlocksSsse3(const uint8_t*& src, const uint8_t* end,
                                                  char32_t* out, size_t room) {
  return decodeBlocks(src, end, out, room);
}

[[gnu::target("ssse3")]] size_t decodeThreeByteRunSsse3(const uint8_t*& src, const uint8_t* end,
                                                        char16_t* out, size_t room) {
  return threeByteRun<Vectors16>(src, end, out, room);
}

[[gnu::target("ssse3")]] size_t decodeThreeByteRunSsse3(const uint8_t*& src, const uint8_t* end,
                                                        char32_t* out, size_t room) {
  return threeByteRun<Vectors16>(src, end, out, room);
}

}  // namespace qta::text::detail
