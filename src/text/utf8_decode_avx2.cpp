// UTF-8 to UTF-16 and UTF-32 with AVX2, sixteen bytes at a time (runs of
// ASCII 64 at a time): what a lead
// byte turns into depends only on that byte and the two after it, and
// continuation bytes give no output of their own. So a block is converted by
// computing the value at every position at once and squeezing out the
// continuation bytes with one byte shuffle from a table. Blocks of four
// four-byte sequences have a step of their own; any other block with bytes
// from 0xF0 up stops the converter, and the caller goes on from there.
#include <immintrin.h>

#include <array>

#include "text/utf8_block_rules.h"
#include "text/utf8_decode_kernels.h"
#include "text/utf_blocks.h"

namespace qta::text::detail {
namespace {

struct alignas(16) Shuffle {
  uint8_t index[16];
};

// For each 8-bit mask of 16-bit lanes to keep: move the kept lanes to the front.
constexpr std::array<Shuffle, 256> makeKeepTable() {
  std::array<Shuffle, 256> table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    unsigned k = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((mask >> lane & 1) == 0) continue;
      table[mask].index[k++] = static_cast<uint8_t>(2 * lane);
      table[mask].index[k++] = static_cast<uint8_t>(2 * lane + 1);
    }
    while (k < 16) table[mask].index[k++] = 0x80;
  }
  return table;
}

constexpr std::array<Shuffle, 256> kKeep = makeKeepTable();

__attribute__((target("avx2"))) inline __m256i shuffles(const Shuffle& low, const Shuffle& high) {
  return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(high.index),
                             reinterpret_cast<const __m128i*>(low.index));
}

__attribute__((target("avx2"))) inline void storeUnits(char16_t* out, __m128i units) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), units);
}

__attribute__((target("avx2"))) inline void storeUnits(char32_t* out, __m128i units) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvtepu16_epi32(units));
}

// Writes 16 ASCII bytes as 16 units.
__attribute__((target("avx2"))) inline void widenAscii(__m128i bytes, char16_t* out) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvtepu8_epi16(bytes));
}

__attribute__((target("avx2"))) inline void widenAscii(__m128i bytes, char32_t* out) {
  auto* o = reinterpret_cast<__m256i*>(out);
  _mm256_storeu_si256(o, _mm256_cvtepu8_epi32(bytes));
  _mm256_storeu_si256(o + 1, _mm256_cvtepu8_epi32(_mm_srli_si128(bytes, 8)));
}

// Widens the 8 bytes at `p` into 8 units, as vpmovzxbd with a memory operand.
__attribute__((target("avx2"))) inline __m256i widenedQuarter(const uint8_t* p) {
  return _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
}

// Whether the 64 bytes at `p` are ASCII.
__attribute__((target("avx2"))) inline bool asciiBlock64(const uint8_t* p) {
  const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
  return _mm256_movemask_epi8(_mm256_or_si256(a, b)) == 0;
}

// Stores 64 ASCII bytes, already checked, as 64 units.
__attribute__((target("avx2"))) inline void widen64(const uint8_t* p, char16_t* out) {
  auto* o = reinterpret_cast<__m256i*>(out);
  for (int i = 0; i < 4; ++i) {
    _mm256_storeu_si256(o + i, _mm256_cvtepu8_epi16(loadBytes(p + 16 * i)));
  }
}

__attribute__((target("avx2"))) inline void widen64(const uint8_t* p, char32_t* out) {
  auto* o = reinterpret_cast<__m256i*>(out);
  for (int i = 0; i < 8; ++i) _mm256_storeu_si256(o + i, widenedQuarter(p + 8 * i));
}

// Widens the run of ASCII that starts with the 64 ASCII bytes at `p`, 64 bytes
// a step while whole steps fit in the text and in `room` (at least 64). Output
// is four (UTF-32) or two times the input, so the stores set the pace: the
// first block is stored unaligned and only part of it kept, so that every later
// 32-byte store starts on a 32-byte boundary and none straddles cache lines.
// Advances `p` (by at least 1); returns the units written.
template <typename Unit>
__attribute__((target("avx2"))) size_t widenAscii64(const uint8_t*& p, const uint8_t* end,
                                                    Unit* out, size_t room) {
  constexpr size_t kPerStore = 32 / sizeof(Unit);
  widenAscii(loadBytes(p), out);
  const size_t toBoundary = (-reinterpret_cast<uintptr_t>(out) & 31) / sizeof(Unit);
  size_t written = kBlock - (kBlock - toBoundary) % kPerStore;
  const uint8_t* q = p + written;
  while (end - q >= 64 && room - written >= 64 && asciiBlock64(q)) {
    widen64(q, out + written);
    q += 64;
    written += 64;
  }
  p = q;
  return written;
}

// Converts blocks of 16 bytes up to a run of three-byte sequences (then
// `atRun` is set).
template <typename Unit>
__attribute__((target("avx2"))) size_t decodeBlocks(const uint8_t*& src, const uint8_t* end,
                                                    Unit* out, size_t room, bool& atRun) {
  const uint8_t* p = src;
  size_t written = 0;
  while (end - p >= 48 && room - written >= 16) {
    const __m128i b0 = loadBytes(p);
    if (highBits(b0) == 0) {
      // Runs of ASCII go 64 bytes a step; their ends, 16 bytes a step.
      if (end - p >= 64 && room - written >= 64 && asciiBlock64(p)) {
        written += widenAscii64(p, end, out + written, room - written);
        continue;
      }
      widenAscii(b0, out + written);
      p += kBlock;
      written += kBlock;
      continue;
    }
    // The second half is stored as 8 units after the first half's output, so the
    // output still to come must reach that far: count the lead bytes of the
    // block's second half and of the 32 bytes after it.
    const unsigned keep = leadBits(p);
    const unsigned leadsAfter = leadBits(p + 16) | leadBits(p + 32) << 16;
    // Blocks with three- or four-byte leads: four four-byte sequences, or the
    // start of a run of three-byte sequences (leads three bytes apart), which
    // goes to a kernel of its own. One test keeps two-byte scripts off both.
    const bool threeByteLeads = highBits(atLeast(b0, 0xE0)) != 0;
    if (threeByteLeads) {
      if (highBits(atLeast(b0, 0xF0)) != 0) {
        __m128i codePoints;
        if (!fourByteSequences(b0, codePoints)) break;
        written += storeSupplementary(codePoints, out + written);
        p += kBlock;
        continue;
      }
      if (keep == 0x9249 || keep == 0x4924 || keep == 0x2492) {
        if (const uint8_t* run = threeByteRunAt(p)) {
          p = run;
          atRun = true;
          break;
        }
      }
    }
    if (__builtin_popcount(keep >> 8) + __builtin_popcount(leadsAfter) < 8) break;

    const __m128i b1 = loadBytes(p + 1);
    const __m128i lead = atLeast(b0, 0xC0);  // two- and three-byte leads

    // The value at every position, as if a sequence started there. Blocks of
    // one- and two-byte sequences (accented Latin, Cyrillic, Greek, Arabic,
    // Hebrew) skip the three-byte forms and their checks.
    const __m256i w0 = _mm256_cvtepu8_epi16(b0);
    const __m256i low1 = _mm256_and_si256(_mm256_cvtepu8_epi16(b1), _mm256_set1_epi16(0x3F));
    const __m256i two =
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(w0, _mm256_set1_epi16(0x1F)), 6), low1);
    __m256i value = _mm256_blendv_epi8(w0, two, _mm256_cvtepi8_epi16(lead));
    __m128i bad;
    if (threeByteLeads) {
      const __m128i b2 = loadBytes(p + 2);
      const __m256i low2 = _mm256_and_si256(_mm256_cvtepu8_epi16(b2), _mm256_set1_epi16(0x3F));
      const __m256i three = _mm256_or_si256(
          _mm256_or_si256(_mm256_slli_epi16(w0, 12), _mm256_slli_epi16(low1, 6)), low2);
      value = _mm256_blendv_epi8(value, three, _mm256_cvtepi8_epi16(atLeast(b0, 0xE0)));
      bad = leadsGivingReplacement(b0, b1, b2);
    } else {
      bad = twoByteLeadsGivingReplacement(b0, b1);
    }
    value = _mm256_blendv_epi8(value, _mm256_set1_epi16('?'), _mm256_cvtepi8_epi16(bad));

    // Keep the positions that are not continuation bytes, half by half.
    const __m256i packed =
        _mm256_shuffle_epi8(value, shuffles(kKeep[keep & 0xFF], kKeep[keep >> 8]));
    storeUnits(out + written, _mm256_castsi256_si128(packed));
    written += __builtin_popcount(keep & 0xFF);
    storeUnits(out + written, _mm256_extracti128_si256(packed, 1));
    written += __builtin_popcount(keep >> 8);
    p += kBlock;
  }
  src = p;
  return written;
}

// Blocks and runs of three-byte sequences in turn, until a run converts
// nothing (the caller's sequence reader goes on there) or the blocks stop.
template <typename Unit>
size_t decodeBlocksAndRuns(const uint8_t*& src, const uint8_t* end, Unit* out, size_t room) {
  size_t written = 0;
  for (;;) {
    bool atRun = false;
    written += decodeBlocks(src, end, out + written, room - written, atRun);
    if (!atRun) return written;
    const size_t units = decodeThreeByteRunAvx2(src, end, out + written, room - written);
    if (units == 0) return written;
    written += units;
  }
}

}  // namespace

size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room) {
  return decodeBlocksAndRuns(src, end, out, room);
}

size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room) {
  return decodeBlocksAndRuns(src, end, out, room);
}

}  // namespace qta::text::detail
