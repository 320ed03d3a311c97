// UTF-16 units below U+0800 to UTF-8, eight units a step: each unit becomes a
// 16-bit lane holding its one or two bytes, and one byte shuffle, picked by
// which units take two bytes, squeezes out the unused high bytes.
#include <tmmintrin.h>

#include <array>
#include <cstdint>

#include "text/utf8_encode_pairs.h"

#define QTA_PAIRS_KERNEL [[gnu::always_inline, gnu::target("ssse3")]] inline

namespace qta::text::detail {
namespace {

struct alignas(16) PairShuffle {
  std::array<uint8_t, 16> bytes;      // lane i gives byte 2i, and byte 2i + 1 when it takes two
  std::array<uint8_t, 16> lastEight;  // the same bytes from the eighth-last on, first
  std::array<uint8_t, 9> laneStart;   // where lane i's bytes start; laneStart[8] is the length
};

// For each 8-bit mask of units that take two bytes: the shuffle that keeps
// the low byte of every lane and the high byte of the marked ones.
constexpr std::array<PairShuffle, 256> makePairShuffles() {
  std::array<PairShuffle, 256> table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    PairShuffle& entry = table[mask];
    size_t k = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      entry.laneStart[lane] = static_cast<uint8_t>(k);
      entry.bytes[k++] = static_cast<uint8_t>(2 * lane);
      if ((mask >> lane & 1) != 0) entry.bytes[k++] = static_cast<uint8_t>(2 * lane + 1);
    }
    entry.laneStart[8] = static_cast<uint8_t>(k);
    for (size_t i = 0; i < 8; ++i) entry.lastEight[i] = entry.bytes[k - 8 + i];
    while (k < 16) entry.bytes[k++] = 0x80;
  }
  return table;
}
constexpr std::array<PairShuffle, 256> kPairShuffles = makePairShuffles();

QTA_PAIRS_KERNEL __m128i loadUnits(const char16_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Lanes of units that take two bytes, for units below U+0800.
QTA_PAIRS_KERNEL __m128i twoByteLanes(__m128i u) {
  return _mm_cmpgt_epi16(u, _mm_set1_epi16(0x7F));
}

// Whether every unit in `any`, the OR of some blocks, is below U+0800.
QTA_PAIRS_KERNEL bool below800(__m128i any) {
  const __m128i high = _mm_and_si128(any, _mm_set1_epi16(static_cast<short>(0xF800)));
  return _mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
}

// Eight units below U+0800 converted: the UTF-8 form from its first byte and
// its last eight bytes, and the table entry that knows where each unit's
// bytes start.
struct UnitBlock {
  __m128i bytes;
  __m128i lastEight;
  const PairShuffle* shuffle;

  size_t length() const { return shuffle->laneStart[8]; }
};

// `twoBytes` marks the units in `twoByteLanes(u)`.
QTA_PAIRS_KERNEL UnitBlock convertUnits(__m128i u, __m128i twoByteMask, unsigned twoBytes) {
  // Low byte 0xC0 | u >> 6 (below 0x20 here), high byte 0x80 | the low six bits.
  const __m128i two = _mm_or_si128(
      _mm_or_si128(_mm_srli_epi16(u, 6), _mm_slli_epi16(_mm_and_si128(u, _mm_set1_epi16(0x3F)), 8)),
      _mm_set1_epi16(static_cast<short>(0x80C0)));
  const __m128i lanes =
      _mm_or_si128(_mm_and_si128(twoByteMask, two), _mm_andnot_si128(twoByteMask, u));
  const PairShuffle& shuffle = kPairShuffles[twoBytes];
  const auto order = [](const std::array<uint8_t, 16>& bytes) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(bytes.data()));
  };
  return {_mm_shuffle_epi8(lanes, order(shuffle.bytes)),
          _mm_shuffle_epi8(lanes, order(shuffle.lastEight)), &shuffle};
}

QTA_PAIRS_KERNEL UnitBlock convertUnits(__m128i u) {
  const __m128i twoByteMask = twoByteLanes(u);
  const auto twoBytes =
      static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(twoByteMask, _mm_setzero_si128())));
  return convertUnits(u, twoByteMask, twoBytes);
}

// Writes exactly the block's 8 to 16 bytes with two 8-byte stores that overlap.
QTA_PAIRS_KERNEL void storeExactly(char* out, const UnitBlock& block) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), block.bytes);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + block.length() - 8), block.lastEight);
}

}  // namespace

// Three steps that do not wait for each other: the first eight units, the
// next eight (or the eight that end eight units before the end), the last
// eight. They overlap when there are fewer than 24 units; an overlapped unit
// gives the same bytes at the same place twice.
[[gnu::target("ssse3")]] size_t encodeShortPairsSsse3(const char16_t* p, size_t units, char* out,
                                                      size_t room) {
  const size_t middle = units > 16 ? 8 : units - 8;
  const __m128i a = loadUnits(p);
  const __m128i b = loadUnits(p + middle);
  const __m128i c = loadUnits(p + units - 8);
  if (!below800(_mm_or_si128(_mm_or_si128(a, b), c))) return 0;
  const __m128i twoA = twoByteLanes(a);
  const __m128i twoB = twoByteLanes(b);
  const __m128i twoC = twoByteLanes(c);
  const auto twoAB = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(twoA, twoB)));
  const auto twoC8 = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(twoC, twoC)));
  const UnitBlock first = convertUnits(a, twoA, twoAB & 0xFF);
  const UnitBlock second = convertUnits(b, twoB, twoAB >> 8);
  const UnitBlock last = convertUnits(c, twoC, twoC8 & 0xFF);
  const size_t secondAt = first.shuffle->laneStart[middle];
  const size_t lastAt = secondAt + second.shuffle->laneStart[units - 8 - middle];
  const size_t written = lastAt + last.length();
  if (written > room) return 0;
  storeExactly(out, first);
  storeExactly(out + secondAt, second);
  storeExactly(out + lastAt, last);
  return written;
}

[[gnu::target("ssse3")]] size_t encodePairsSsse3(const char16_t*& p, const char16_t* end, char* out,
                                                 size_t room) {
  if (end - p < kPairStepUnits || room < 16) return 0;
  const char16_t* q = p;
  size_t written = 0;
  __m128i units = loadUnits(q);
  bool ok = below800(units);
  while (ok) {
    const UnitBlock block = convertUnits(units);
    // Eight more units below U+0800 give at least 8 bytes: room for this
    // block's 16-byte store.
    bool more = end - q >= 2 * kPairStepUnits && room - written >= 32;
    if (more) {
      units = loadUnits(q + kPairStepUnits);
      more = below800(units);
    }
    if (more) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + written), block.bytes);
    } else {
      storeExactly(out + written, block);
    }
    written += block.length();
    q += kPairStepUnits;
    ok = more;
  }
  p = q;
  return written;
}

}  // namespace qta::text::detail
