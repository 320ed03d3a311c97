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

// Sixteen bytes that are exactly four well-formed four-byte sequences of
// 0x10000 to 0x10FFFF (emoji text): their code points, else false.
__attribute__((target("avx2"))) inline bool fourByteSequences(__m128i w, __m128i& codePoints) {
  const __m128i shape =
      _mm_cmpeq_epi32(_mm_and_si128(w, _mm_set1_epi32(0xC0C0C0F8)), _mm_set1_epi32(0x808080F0));
  const __m128i v =
      _mm_or_si128(_mm_or_si128(_mm_slli_epi32(_mm_and_si128(w, _mm_set1_epi32(0x07)), 18),
                                _mm_slli_epi32(_mm_and_si128(w, _mm_set1_epi32(0x3F00)), 4)),
                   _mm_or_si128(_mm_and_si128(_mm_srli_epi32(w, 10), _mm_set1_epi32(0xFC0)),
                                _mm_and_si128(_mm_srli_epi32(w, 24), _mm_set1_epi32(0x3F))));
  const __m128i inRange = _mm_and_si128(_mm_cmpgt_epi32(v, _mm_set1_epi32(0xFFFF)),
                                        _mm_cmpgt_epi32(_mm_set1_epi32(0x110000), v));
  codePoints = v;
  return _mm_movemask_epi8(_mm_and_si128(shape, inRange)) == 0xFFFF;
}

// Writes four code points from 0x10000 up as four surrogate pairs or as themselves.
__attribute__((target("avx2"))) inline size_t storeSupplementary(__m128i v, char16_t* out) {
  const __m128i t = _mm_sub_epi32(v, _mm_set1_epi32(0x10000));
  const __m128i high = _mm_or_si128(_mm_srli_epi32(t, 10), _mm_set1_epi32(0xD800));
  const __m128i low = _mm_or_si128(_mm_and_si128(t, _mm_set1_epi32(0x3FF)), _mm_set1_epi32(0xDC00));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_or_si128(high, _mm_slli_epi32(low, 16)));
  return 8;
}

__attribute__((target("avx2"))) inline size_t storeSupplementary(__m128i v, char32_t* out) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), v);
  return 4;
}

// One bit per continuation byte among the 16 bytes at `p`.
inline unsigned continuationBits(const uint8_t* p) {
  return static_cast<unsigned>(_mm_movemask_epi8(continuationLanes(loadBytes(p))));
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

template <typename Unit>
__attribute__((target("avx2"))) size_t decodeBlocks(const uint8_t*& src, const uint8_t* end,
                                                    Unit* out, size_t room) {
  const uint8_t* p = src;
  size_t written = 0;
  const __m128i all = _mm_set1_epi8(-1);
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
    const unsigned keep = 0xFFFF & ~_mm_movemask_epi8(continuationLanes(b0));
    const unsigned leadsAfter = ~(continuationBits(p + 16) | continuationBits(p + 32) << 16);
    if (highBits(atLeast(b0, 0xF0)) != 0) {
      __m128i codePoints;
      if (!fourByteSequences(b0, codePoints)) break;
      written += storeSupplementary(codePoints, out + written);
      p += kBlock;
      continue;
    }
    if (__builtin_popcount(keep >> 8) + __builtin_popcount(leadsAfter) < 8) break;

    const __m128i b1 = loadBytes(p + 1);
    const __m128i b2 = loadBytes(p + 2);
    const __m128i lead = atLeast(b0, 0xC0);  // two- and three-byte leads
    const __m128i lead3 = atLeast(b0, 0xE0);
    // '?' for a lead without its continuation bytes, for 0xC0 and 0xC1 (always
    // overlong) and for 0xE0 followed by less than 0xA0 (overlong).
    __m128i bad = _mm_andnot_si128(continuationLanes(b1), lead);
    bad = _mm_or_si128(bad, _mm_andnot_si128(continuationLanes(b2), lead3));
    bad = _mm_or_si128(bad, _mm_cmpeq_epi8(_mm_and_si128(b0, _mm_set1_epi8(-2)),
                                           _mm_set1_epi8(static_cast<char>(0xC0))));
    const __m128i e0 = _mm_cmpeq_epi8(b0, _mm_set1_epi8(static_cast<char>(0xE0)));
    bad = _mm_or_si128(bad, _mm_and_si128(e0, _mm_xor_si128(atLeast(b1, 0xA0), all)));

    // The value at every position, as if a sequence started there.
    const __m256i w0 = _mm256_cvtepu8_epi16(b0);
    const __m256i low1 = _mm256_and_si256(_mm256_cvtepu8_epi16(b1), _mm256_set1_epi16(0x3F));
    const __m256i low2 = _mm256_and_si256(_mm256_cvtepu8_epi16(b2), _mm256_set1_epi16(0x3F));
    const __m256i two =
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(w0, _mm256_set1_epi16(0x1F)), 6), low1);
    const __m256i three = _mm256_or_si256(
        _mm256_or_si256(_mm256_slli_epi16(w0, 12), _mm256_slli_epi16(low1, 6)), low2);
    __m256i value = _mm256_blendv_epi8(w0, two, _mm256_cvtepi8_epi16(lead));
    value = _mm256_blendv_epi8(value, three, _mm256_cvtepi8_epi16(lead3));
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

}  // namespace

size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char16_t* out, size_t room) {
  return decodeBlocks(src, end, out, room);
}

size_t decodeUtf8Avx2(const uint8_t*& src, const uint8_t* end, char32_t* out, size_t room) {
  return decodeBlocks(src, end, out, room);
}

}  // namespace qta::text::detail
