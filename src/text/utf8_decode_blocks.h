// UTF-8 to UTF-16 and UTF-32 with 16-byte vectors, the steps the kernels
// share: a block of 16 bytes of sequences of up to three bytes, whose value at
// every position is computed at once before the continuation bytes are
// squeezed out with a byte shuffle from a table; and runs of three-byte
// sequences, 24 bytes a step, each step judging its own bytes (a kernel with
// wider vectors may specialise the run step for its vector struct).
//
// Each kernel file defines QTA_UTF8_KERNEL_TARGET, includes
// utf8_validate_blocks.h (and a vector struct of its own) and then this header.
#ifndef QTA_TEXT_UTF8_DECODE_BLOCKS_H_
#define QTA_TEXT_UTF8_DECODE_BLOCKS_H_

#include "text/utf8_decode_tables.h"
#include "text/utf8_validate_blocks.h"

#include <tmmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qta::text::detail {
namespace {

QTA_UTF8_KERNEL __m128i load16(const void* p) {
  return _mm_loadu_si128(static_cast<const __m128i*>(p));
}

// Writes the first `bytes` bytes of `v` (an even number up to 16).
QTA_UTF8_KERNEL void storeBytes(void* out, __m128i v, size_t bytes) {
  auto* o = static_cast<uint8_t*>(out);
  if (bytes == 16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(o), v);
    return;
  }
  if ((bytes & 8) != 0) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(o), v);
    v = _mm_srli_si128(v, 8);
    o += 8;
  }
  if ((bytes & 4) != 0) {
    const auto word = static_cast<uint32_t>(_mm_cvtsi128_si32(v));
    std::memcpy(o, &word, 4);
    v = _mm_srli_si128(v, 4);
    o += 4;
  }
  if ((bytes & 2) != 0) {
    const auto half = static_cast<uint16_t>(_mm_extract_epi16(v, 0));
    std::memcpy(o, &half, 2);
  }
}

// Writes `count` (up to 8) units held in the 16-bit lanes of `v`; with
// `spare`, the buffer has room for all 8 and their stores may go past `count`.
QTA_UTF8_KERNEL void storeUnits16(char16_t* out, __m128i v, size_t count, bool spare = false) {
  storeBytes(out, v, spare ? 16 : 2 * count);
}

QTA_UTF8_KERNEL void storeUnits16(char32_t* out, __m128i v, size_t count, bool spare = false) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i low = _mm_unpacklo_epi16(v, zero);
  if (count < 4 && !spare) {
    storeBytes(out, low, 4 * count);
    return;
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), low);
  storeBytes(out + 4, _mm_unpackhi_epi16(v, zero), spare ? 16 : 4 * (count - 4));
}

// Selects `a` in the lanes of `mask`, else `b`.
QTA_UTF8_KERNEL __m128i select(__m128i mask, __m128i a, __m128i b) {
  return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}

// Eight 16-bit lanes holding the byte at a position and the low six bits of
// the two after it: the value as if a sequence started there, with the
// positions picked by `shuffle` moved to the front.
QTA_UTF8_KERNEL __m128i upTo3Half(__m128i b0, __m128i b1, __m128i b2, const Bytes16& shuffle) {
  const __m128i two = _mm_or_si128(_mm_slli_epi16(_mm_and_si128(b0, _mm_set1_epi16(0x1F)), 6), b1);
  // The 16-bit shift keeps only the low nibble of a three-byte lead.
  const __m128i three =
      _mm_or_si128(_mm_or_si128(_mm_slli_epi16(b0, 12), _mm_slli_epi16(b1, 6)), b2);
  const __m128i lead2 = _mm_cmpgt_epi16(b0, _mm_set1_epi16(0xBF));
  const __m128i lead3 = _mm_cmpgt_epi16(b0, _mm_set1_epi16(0xDF));
  const __m128i value = select(lead3, three, select(lead2, two, b0));
  return _mm_shuffle_epi8(value, load16(shuffle.data()));
}

// Sixteen bytes `v` (with `next` and `after` the same moved on by one and two
// bytes) that hold no four-byte lead and whose sequences end by the second
// byte after them: the value at every position as if a sequence of one to
// three bytes started there, with the positions that `keep` does not mark
// (continuation bytes) squeezed out, half by half. Writes one unit per lead
// (with `spare`, as for storeUnits16) and returns how many.
template <typename Unit>
QTA_UTF8_KERNEL size_t upTo3ByteBlock(Unit* out, __m128i v, __m128i next, __m128i after,
                                      unsigned keep, bool spare) {
  const auto& low = kKeep[keep & 0xFF];
  const auto& high = kKeep[keep >> 8];
  const size_t lowCount = kBitCounts[keep & 0xFF];
  const size_t highCount = kBitCounts[keep >> 8];
  const __m128i zero = _mm_setzero_si128();
  const __m128i sixBits = _mm_set1_epi8(0x3F);
  next = _mm_and_si128(next, sixBits);
  after = _mm_and_si128(after, sixBits);
  const __m128i lowUnits = upTo3Half(_mm_unpacklo_epi8(v, zero), _mm_unpacklo_epi8(next, zero),
                                     _mm_unpacklo_epi8(after, zero), low);
  const __m128i highUnits = upTo3Half(_mm_unpackhi_epi8(v, zero), _mm_unpackhi_epi8(next, zero),
                                      _mm_unpackhi_epi8(after, zero), high);
  storeUnits16(out, lowUnits, lowCount, spare);
  storeUnits16(out + lowCount, highUnits, highCount, spare);
  return lowCount + highCount;
}

// Writes eight code points below 0x10000 held in the 32-bit lanes of `low`
// and `high`.
QTA_UTF8_KERNEL void storeUnits32x2(char16_t* out, __m128i low, __m128i high) {
  const __m128i lowHalves = _mm_setr_epi8(0, 1, 4, 5, 8, 9, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m128i units =
      _mm_unpacklo_epi64(_mm_shuffle_epi8(low, lowHalves), _mm_shuffle_epi8(high, lowHalves));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), units);
}

QTA_UTF8_KERNEL void storeUnits32x2(char32_t* out, __m128i low, __m128i high) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), low);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4), high);
}

// Three-byte sequences laid into 32-bit lanes by kThreeByteShuffle (the last
// byte lowest), as a vector of any width: their code points, and the lanes
// that do not hold a well-formed sequence (-1 there): a lead of 0xE0 to 0xEF
// with two continuation bytes and no overlong form (surrogate values are
// decoded like any other).
template <typename Lanes>
QTA_UTF8_KERNEL Lanes threeByteValues(Lanes lanes) {
  return (lanes >> 4 & 0xF000) | (lanes >> 2 & 0xFC0) | (lanes & 0x3F);
}

template <typename Lanes>
QTA_UTF8_KERNEL Lanes notThreeByte(Lanes lanes, Lanes values) {
  return ((lanes & 0xF0C0C0) != 0xE08080) | (values < 0x800);
}

using Lanes4 = int32_t __attribute__((vector_size(16)));

// The step through runs of three-byte sequences (Chinese, Japanese text), with
// a fixed shuffle and no table look-up. A kernel with wider vectors may
// specialise it for its own vector struct.
struct RunSteps16 {
  // Three-byte sequences a step converts, and the bytes from its start it reads.
  static constexpr size_t kThreeByteSequences = 8;
  static constexpr size_t kThreeByteReads = 28;

  // Converts the step's sequences when they are all well formed, else
  // writes nothing and returns false.
  template <typename Unit>
  QTA_UTF8_KERNEL static bool threeByte(const uint8_t* p, Unit* out) {
    const __m128i shuffle = load16(kThreeByteShuffle.data());
    const auto low = reinterpret_cast<Lanes4>(_mm_shuffle_epi8(load16(p), shuffle));
    const auto high = reinterpret_cast<Lanes4>(_mm_shuffle_epi8(load16(p + 12), shuffle));
    const Lanes4 lowValues = threeByteValues(low);
    const Lanes4 highValues = threeByteValues(high);
    const Lanes4 bad = notThreeByte(low, lowValues) | notThreeByte(high, highValues);
    if (_mm_movemask_epi8(reinterpret_cast<__m128i>(bad)) != 0) return false;
    storeUnits32x2(out, reinterpret_cast<__m128i>(lowValues),
                   reinterpret_cast<__m128i>(highValues));
    return true;
  }
};

template <typename Vec>
struct RunSteps : RunSteps16 {};

// Converts from `src` (a sequence boundary) the run of three-byte sequences
// there, a step at a time while the step's sequences are all well formed:
// each step judges its own bytes. Advances `src`; returns the units written.
template <typename Vec, typename Unit>
QTA_UTF8_KERNEL size_t threeByteRun(const uint8_t*& src, const uint8_t* end, Unit* out,
                                    size_t room) {
  using Runs = RunSteps<Vec>;
  const uint8_t* p = src;
  size_t written = 0;
  while (end - p >= static_cast<ptrdiff_t>(Runs::kThreeByteReads) &&
         room - written >= Runs::kThreeByteSequences && Runs::threeByte(p, out + written)) {
    p += 3 * Runs::kThreeByteSequences;
    written += Runs::kThreeByteSequences;
  }
  src = p;
  return written;
}

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_BLOCKS_H_
