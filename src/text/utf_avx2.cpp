// AVX2 block converters. Both rely on the same observation: what a UTF-8 lead
// byte turns into depends only on that byte and the few after it, and
// continuation bytes never produce output of their own. So a block is
// converted by computing a value at every position at once and then squeezing
// out the positions that produce nothing (or widening the positions that
// produce several bytes) with one byte shuffle from a table.
#include "text/utf_avx2.h"

#include <immintrin.h>

#include <array>

#include "text/utf_blocks.h"

namespace qta::text::detail {
namespace {

struct alignas(16) Shuffle {
  uint8_t index[16];
};

// For four 32-bit lanes holding 1, 2 or 3 UTF-8 bytes each, indexed by the
// lanes from 0x80 up (low nibble) and from 0x800 up (high nibble): pack the
// bytes of every lane one after the other.
struct Expansion {
  std::array<Shuffle, 256> shuffle;
  std::array<uint8_t, 256> length;
};

constexpr Expansion makeExpansionTable() {
  Expansion table{};
  for (unsigned index = 0; index < 256; ++index) {
    unsigned k = 0;
    for (unsigned lane = 0; lane < 4; ++lane) {
      const unsigned bytes = 1 + (index >> lane & 1) + (index >> (lane + 4) & 1);
      for (unsigned b = 0; b < bytes; ++b) {
        table.shuffle[index].index[k++] = static_cast<uint8_t>(4 * lane + b);
      }
    }
    table.length[index] = static_cast<uint8_t>(k);
    while (k < 16) table.shuffle[index].index[k++] = 0x80;
  }
  return table;
}

// For eight 16-bit lanes holding a two-byte form each, indexed by the lanes
// that are ASCII: keep both bytes of the others and only the low byte of these.
constexpr Expansion makeTwoByteTable() {
  Expansion table{};
  for (unsigned ascii = 0; ascii < 256; ++ascii) {
    unsigned k = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      table.shuffle[ascii].index[k++] = static_cast<uint8_t>(2 * lane);
      if ((ascii >> lane & 1) == 0)
        table.shuffle[ascii].index[k++] = static_cast<uint8_t>(2 * lane + 1);
    }
    table.length[ascii] = static_cast<uint8_t>(k);
    while (k < 16) table.shuffle[ascii].index[k++] = 0x80;
  }
  return table;
}

constexpr Expansion kExpand = makeExpansionTable();
constexpr Expansion kTwoBytes = makeTwoByteTable();

__attribute__((target("avx2"))) inline __m256i shuffles(const Shuffle& low, const Shuffle& high) {
  return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(high.index),
                             reinterpret_cast<const __m128i*>(low.index));
}

__attribute__((target("avx2"))) inline bool hasSurrogates(const char16_t* p) {
  const __m128i top5 = _mm_and_si128(loadBytes(p), _mm_set1_epi16(static_cast<short>(0xF800)));
  return _mm_movemask_epi8(_mm_cmpeq_epi16(top5, _mm_set1_epi16(static_cast<short>(0xD800)))) != 0;
}

// Sixteen units all below 0x800 (Cyrillic, Greek, Arabic, Hebrew and ASCII):
// writes their UTF-8 form and returns its length, or returns 0 when some unit
// is from 0x800 up. Stores reach 16 bytes past the second half's start, so
// the output still to come must cover 8 bytes beyond the block.
__attribute__((target("avx2"))) inline size_t belowU800(const char16_t* p, char* out) {
  const __m256i u = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i zero = _mm256_setzero_si256();
  const __m256i wide = _mm256_and_si256(u, _mm256_set1_epi16(static_cast<short>(0xF800)));
  if (_mm256_movemask_epi8(_mm256_cmpeq_epi16(wide, zero)) != -1) return 0;
  const __m256i ascii =
      _mm256_cmpeq_epi16(_mm256_and_si256(u, _mm256_set1_epi16(static_cast<short>(0xFF80))), zero);
  // Each lane holds the lead byte below and the continuation byte above.
  const __m256i two = _mm256_or_si256(
      _mm256_or_si256(_mm256_srli_epi16(u, 6),
                      _mm256_slli_epi16(_mm256_and_si256(u, _mm256_set1_epi16(0x3F)), 8)),
      _mm256_set1_epi16(static_cast<short>(0x80C0)));
  const __m256i lanes = _mm256_blendv_epi8(two, u, ascii);
  // One bit per unit: the packed mask repeats each half's 8 bits.
  const auto mask = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_packs_epi16(ascii, ascii)));
  const unsigned low = mask & 0xFF;
  const unsigned high = mask >> 16 & 0xFF;
  const __m256i packed =
      _mm256_shuffle_epi8(lanes, shuffles(kTwoBytes.shuffle[low], kTwoBytes.shuffle[high]));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(packed));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + kTwoBytes.length[low]),
                   _mm256_extracti128_si256(packed, 1));
  return kTwoBytes.length[low] + kTwoBytes.length[high];
}

// Sixteen units that are eight surrogate pairs: writes their 32 UTF-8 bytes.
__attribute__((target("avx2"))) inline bool surrogatePairs(const char16_t* p, char* out) {
  // Each 32-bit lane holds one pair: the high surrogate below, the low one above.
  const __m256i pairs = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i shape = _mm256_cmpeq_epi32(_mm256_and_si256(pairs, _mm256_set1_epi32(0xFC00FC00)),
                                           _mm256_set1_epi32(0xDC00D800));
  if (_mm256_movemask_epi8(shape) != -1) return false;
  const __m256i v = _mm256_add_epi32(
      _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(pairs, _mm256_set1_epi32(0x3FF)), 10),
                      _mm256_and_si256(_mm256_srli_epi32(pairs, 16), _mm256_set1_epi32(0x3FF))),
      _mm256_set1_epi32(0x10000));
  const __m256i six = _mm256_set1_epi32(0x3F);
  const __m256i bytes = _mm256_or_si256(
      _mm256_or_si256(_mm256_srli_epi32(v, 18),
                      _mm256_slli_epi32(_mm256_and_si256(_mm256_srli_epi32(v, 12), six), 8)),
      _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(_mm256_srli_epi32(v, 6), six), 16),
                      _mm256_slli_epi32(_mm256_and_si256(v, six), 24)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out),
                      _mm256_or_si256(bytes, _mm256_set1_epi32(static_cast<int>(0x808080F0))));
  return true;
}

}  // namespace

__attribute__((target("avx2"))) size_t encodeBlocksAvx2(const char16_t*& src, const char16_t* end,
                                                        char* out, size_t room) {
  const char16_t* p = src;
  size_t written = 0;
  while (end - p >= 24 && room - written >= 32) {
    if (narrowAscii(p, out + written)) {  // 16 ASCII units
      p += kBlock;
      written += kBlock;
      continue;
    }
    if (surrogatePairs(p, out + written)) {  // 8 pairs, 32 bytes
      p += 16;
      written += 32;
      continue;
    }
    if (hasSurrogates(p) || hasSurrogates(p + 8) || hasSurrogates(p + 16)) break;
    if (const size_t bytes = belowU800(p, out + written); bytes != 0) {
      p += 16;
      written += bytes;
      continue;
    }

    const __m256i u = _mm256_cvtepu16_epi32(loadBytes(p));
    const __m256i from80 = _mm256_cmpgt_epi32(u, _mm256_set1_epi32(0x7F));
    const __m256i from800 = _mm256_cmpgt_epi32(u, _mm256_set1_epi32(0x7FF));
    const __m256i low6 = _mm256_and_si256(u, _mm256_set1_epi32(0x3F));
    const __m256i mid6 = _mm256_and_si256(_mm256_srli_epi32(u, 6), _mm256_set1_epi32(0x3F));
    // Lanes hold the UTF-8 bytes in order: lead first, continuation bytes after.
    const __m256i two =
        _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi32(u, 6), _mm256_slli_epi32(low6, 8)),
                        _mm256_set1_epi32(0x80C0));
    const __m256i three =
        _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi32(u, 12), _mm256_slli_epi32(mid6, 8)),
                        _mm256_or_si256(_mm256_slli_epi32(low6, 16), _mm256_set1_epi32(0x8080E0)));
    __m256i bytes = _mm256_blendv_epi8(u, two, from80);
    bytes = _mm256_blendv_epi8(bytes, three, from800);

    const auto m80 = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(from80)));
    const auto m800 = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(from800)));
    const unsigned low = (m80 & 0xF) | (m800 & 0xF) << 4;
    const unsigned high = m80 >> 4 | (m800 >> 4) << 4;
    const __m256i packed =
        _mm256_shuffle_epi8(bytes, shuffles(kExpand.shuffle[low], kExpand.shuffle[high]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + written), _mm256_castsi256_si128(packed));
    written += kExpand.length[low];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + written),
                     _mm256_extracti128_si256(packed, 1));
    written += kExpand.length[high];
    p += 8;
  }
  src = p;
  return written;
}

}  // namespace qta::text::detail
