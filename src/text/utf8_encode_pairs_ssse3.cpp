// UTF-16 units below U+0800 to UTF-8, eight units a step: each unit becomes a
// 16-bit lane holding its one or two bytes, and one byte shuffle, picked by
// which units take two bytes, squeezes out the unused high bytes.
#include "text/utf8_encode_pairs.h"

#include <tmmintrin.h>

#include <array>
#include <cstdint>

#define QTA_PAIRS_KERNEL [[gnu::always_inline, gnu::target("ssse3")]] inline

namespace qta::text::detail {
namespace {

struct PairShuffle {
  std::array<uint8_t, 16> bytes;  // lane i gives byte 2i, and byte 2i + 1 when it takes two
  std::array<uint8_t, 16> shiftDown;
  size_t length;  // bytes the eight units give
};

// For each 8-bit mask of units that take two bytes: the shuffle that keeps
// the low byte of every lane and the high byte of the marked ones.
constexpr std::array<PairShuffle, 256> makePairShuffles() {
  std::array<PairShuffle, 256> table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    size_t k = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      table[mask].bytes[k++] = static_cast<uint8_t>(2 * lane);
      if ((mask >> lane & 1) != 0) table[mask].bytes[k++] = static_cast<uint8_t>(2 * lane + 1);
    }
    table[mask].length = k;
    for (size_t i = 0; i < 16; ++i) {
      // Moves the bytes after the first 8 down so that the last one lands in byte 7.
      const size_t from = i + k - 8;
      table[mask].shiftDown[i] = static_cast<uint8_t>(from < 16 ? from : 0x80);
    }
    while (k < 16) table[mask].bytes[k++] = 0x80;
  }
  return table;
}
constexpr std::array<PairShuffle, 256> kPairShuffles = makePairShuffles();

// Eight units judged and converted.
struct UnitBlock {
  __m128i bytes;  // the UTF-8 form, `shuffle->length` bytes from the first
  const PairShuffle* shuffle;
  bool ok;  // every unit is below U+0800
};

QTA_PAIRS_KERNEL UnitBlock convertUnits(const char16_t* p) {
  const __m128i u = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  const __m128i zero = _mm_setzero_si128();
  const __m128i below800 =
      _mm_cmpeq_epi16(_mm_and_si128(u, _mm_set1_epi16(static_cast<short>(0xF800))), zero);
  const __m128i ascii =
      _mm_cmpeq_epi16(_mm_and_si128(u, _mm_set1_epi16(static_cast<short>(0xFF80))), zero);
  const auto twoBytes =
      static_cast<unsigned>(~_mm_movemask_epi8(_mm_packs_epi16(ascii, zero))) & 0xFF;
  // Low byte 0xC0 | u >> 6 (below 0x20 here), high byte 0x80 | the low six bits.
  const __m128i lead = _mm_or_si128(_mm_srli_epi16(u, 6), _mm_set1_epi16(0xC0));
  const __m128i trail = _mm_slli_epi16(_mm_and_si128(u, _mm_set1_epi16(0x3F)), 8);
  const __m128i two = _mm_or_si128(_mm_or_si128(lead, trail), _mm_set1_epi16(0x8000));
  const __m128i lanes = _mm_or_si128(_mm_and_si128(ascii, u), _mm_andnot_si128(ascii, two));
  const PairShuffle& shuffle = kPairShuffles[twoBytes];
  const __m128i bytes = _mm_shuffle_epi8(
      lanes, _mm_loadu_si128(reinterpret_cast<const __m128i*>(shuffle.bytes.data())));
  return {bytes, &shuffle, _mm_movemask_epi8(below800) == 0xFFFF};
}

// Writes exactly the block's 8 to 16 bytes with two 8-byte stores that overlap.
QTA_PAIRS_KERNEL void storeExactly(char* out, const UnitBlock& block) {
  const size_t length = block.shuffle->length;
  const __m128i tail = _mm_shuffle_epi8(
      block.bytes,
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(block.shuffle->shiftDown.data())));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), block.bytes);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out + length - 8), tail);
}

}  // namespace

[[gnu::target("ssse3")]] size_t encodePairsSsse3(const char16_t*& p, const char16_t* end, char* out,
                                                 size_t room) {
  if (end - p < kPairStepUnits || room < 16) return 0;
  size_t written = 0;
  UnitBlock block = convertUnits(p);
  while (block.ok) {
    // Eight more units below U+0800 give at least 8 bytes: room for this
    // block's 16-byte store.
    UnitBlock following{};
    if (end - p >= 2 * kPairStepUnits) following = convertUnits(p + kPairStepUnits);
    const bool more = following.ok && room - written >= 32;
    if (more) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + written), block.bytes);
    } else {
      storeExactly(out + written, block);
    }
    written += block.shuffle->length;
    p += kPairStepUnits;
    if (!more) break;
    block = following;
  }
  return written;
}

}  // namespace qta::text::detail
