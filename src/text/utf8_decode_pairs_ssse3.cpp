// One- and two-byte UTF-8 sequences to UTF-16 and UTF-32, 16 bytes a step.
//
// A step judges its 16 bytes with two comparisons and three bit masks. Each
// half block then needs one byte shuffle, from a table indexed by which of
// its bytes (and the one after it) are continuation bytes: the shuffle lays
// every sequence that starts in the half into a 16-bit lane, its lead byte
// high and its continuation byte low (an ASCII byte low, a zero high),
// already moved to the front. One mask and one multiply-add then give the
// code points.
#include "text/utf8_decode_pairs.h"

#include <algorithm>

#define QTA_UTF8_KERNEL_TARGET "ssse3"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which it builds on.
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {
namespace {

// For each 9-bit mask of the positions 0 to 8 holding continuation bytes: the
// sequences that start at positions 0 to 7, one 16-bit lane each, in order. A
// position followed by a continuation byte leads a two-byte sequence (lane:
// the byte after it low, the lead high); any other is an ASCII byte (lane: the
// byte low, zero high). Lanes past the sequences are zero.
constexpr std::array<Bytes16, 512> makePairShuffles() {
  std::array<Bytes16, 512> table{};
  for (unsigned mask = 0; mask < 512; ++mask) {
    unsigned k = 0;
    for (unsigned pos = 0; pos < 8; ++pos) {
      if ((mask >> pos & 1) != 0) continue;
      const bool lead = (mask >> (pos + 1) & 1) != 0;
      table[mask][k++] = static_cast<uint8_t>(lead ? pos + 1 : pos);
      table[mask][k++] = lead ? static_cast<uint8_t>(pos) : 0x80;
    }
    while (k < 16) table[mask][k++] = 0x80;
  }
  return table;
}
constexpr std::array<Bytes16, 512> kPairShuffles = makePairShuffles();

// For the same masks: the sequences that start at positions 0 to 7.
constexpr std::array<uint8_t, 512> makePairCounts() {
  std::array<uint8_t, 512> counts{};
  for (unsigned mask = 0; mask < 512; ++mask) counts[mask] = 8 - kBitCounts[mask & 0xFF];
  return counts;
}
constexpr std::array<uint8_t, 512> kPairCounts = makePairCounts();

// Sixteen bytes judged as one- and two-byte sequences.
struct PairBlock {
  __m128i bytes;
  // Bit i set where byte i is a continuation byte; bit 16 where the byte
  // after the block is (the block's last byte leads a sequence).
  unsigned continuations;
  bool ok;  // the block holds nothing else, and a lead
};

// Judges the 16 bytes at `p`, whose first byte is the continuation byte of
// the block before when `carry`.
QTA_UTF8_KERNEL PairBlock judgePairs(const uint8_t* p, unsigned carry) {
  const __m128i v = load16(p);
  // As signed bytes, continuation bytes are -128 to -65.
  const auto high = static_cast<unsigned>(_mm_movemask_epi8(v));
  const auto leads = static_cast<unsigned>(_mm_movemask_epi8(twoByteLeadLanes(v)));
  const auto continuations =
      static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(v, _mm_set1_epi8(-64))));
  // Every byte is of one kind, and a continuation byte follows each lead. A
  // block of ASCII alone is left to the caller's wider ASCII steps.
  const unsigned expected = leads << 1 | carry;
  const bool ok =
      leads != 0 && (expected & 0xFFFF) == continuations && (continuations | leads) == high;
  return {v, expected, ok};
}

// The code points of the sequences starting in the half block whose bytes
// (and the one after them) are at the front of `bytes`, per `shuffle`.
QTA_UTF8_KERNEL __m128i pairHalf(__m128i bytes, const Bytes16& shuffle) {
  const __m128i lanes = _mm_shuffle_epi8(bytes, load16(shuffle.data()));
  // A continuation byte's low six bits and a two-byte lead's low five (the
  // bit above them is clear from 0xC0 to 0xDF) or an ASCII byte; then the
  // high byte times 64 plus the low one.
  const __m128i bits = _mm_and_si128(lanes, _mm_set1_epi16(0x3F7F));
  return _mm_maddubs_epi16(bits, _mm_set1_epi16(0x4001));
}

// Writes the units of a judged block and returns how many. `afterHalf` holds
// the block's bytes from its ninth on, and the byte after it when the block
// ends with a lead, unless `dropLast` leaves that lead out. With `spare`, the
// stores may reach up to 8 units past the units written.
template <typename Unit>
QTA_UTF8_KERNEL size_t storePairBlock(Unit* out, const PairBlock& block, __m128i afterHalf,
                                      bool spare, unsigned dropLast) {
  const unsigned lowMask = block.continuations & 0x1FF;
  const unsigned highMask = block.continuations >> 8;
  const size_t lowCount = kPairCounts[lowMask];
  const size_t units = lowCount + kPairCounts[highMask] - dropLast;
  // The high half's units overwrite whatever the low half's store writes
  // past its own, up to the block's end.
  storeUnits16(out, pairHalf(block.bytes, kPairShuffles[lowMask]), lowCount, spare || units >= 8);
  storeUnits16(out + lowCount, pairHalf(afterHalf, kPairShuffles[highMask]), units - lowCount,
               spare);
  return units;
}

template <typename Unit>
QTA_UTF8_KERNEL size_t decodePairs(const uint8_t*& src, const uint8_t* end, Unit* out,
                                   size_t room) {
  const uint8_t* p = src;
  if (end - p < kPairStepBytes || room < 16) return 0;
  PairBlock block = judgePairs(p, 0);
  if (!block.ok) return 0;
  size_t written = 0;
  // While the next block is well formed it gives at least 8 units, room for
  // this block's spare stores; and it holds the byte after this block. The
  // steps keep 32 bytes of text and 32 units of room ahead of them (a step
  // writes at most 16 units).
  for (auto steps = std::min<size_t>((end - p) / kPairStepBytes, room / 16) - 1; steps != 0;
       --steps) {
    const PairBlock following = judgePairs(p + kPairStepBytes, block.continuations >> 16);
    if (!following.ok) break;
    written += storePairBlock(out + written, block, load16(p + 8), true, 0);
    p += kPairStepBytes;
    block = following;
  }
  // The last block, written exactly; a lead at its end is left to the
  // sequence reader, which checks the byte after it.
  const unsigned lastLead = block.continuations >> 16;
  written += storePairBlock(out + written, block, _mm_srli_si128(block.bytes, 8), false, lastLead);
  src = p + kPairStepBytes - lastLead;
  return written;
}

}  // namespace

[[gnu::target("ssse3")]] size_t decodePairsSsse3(const uint8_t*& src, const uint8_t* end,
                                                 char16_t* out, size_t room) {
  return decodePairs(src, end, out, room);
}

[[gnu::target("ssse3")]] size_t decodePairsSsse3(const uint8_t*& src, const uint8_t* end,
                                                 char32_t* out, size_t room) {
  return decodePairs(src, end, out, room);
}

}  // namespace qta::text::detail
