// One- and two-byte UTF-8 sequences to UTF-16 and UTF-32, 16 bytes a step.
#include "text/utf8_decode_pairs.h"

#define QTA_UTF8_KERNEL_TARGET "ssse3"
#include "text/utf8_validate_blocks.h"
// Keep after the header above, which it builds on.
#include "text/utf8_decode_blocks.h"

namespace qta::text::detail {
namespace {

// Sixteen bytes judged as one- and two-byte sequences.
struct PairBlock {
  __m128i bytes;
  __m128i next;    // the byte after each one (the 17th only when it is in the text)
  __m128i leads;   // 0xFF where a byte leads a two-byte sequence
  unsigned keep;   // positions that start a converted sequence (ASCII bytes and leads)
  unsigned carry;  // the last byte leads a sequence whose continuation byte it converts
  unsigned cut;    // the last byte leads a sequence left to the next step or the reader
  bool ok;         // the block holds nothing else, and a lead
};

// Judges the 16 bytes at `p`, whose first byte is the continuation byte of
// the block before when `carry`.
QTA_UTF8_KERNEL PairBlock judgePairs(const uint8_t* p, const uint8_t* end, unsigned carry) {
  const __m128i v = load16(p);
  const __m128i next = end - p > 16 ? load16(p + 1) : _mm_srli_si128(v, 1);
  // As signed bytes, continuation bytes are -128 to -65 and the leads 0xC2 to
  // 0xDF (0xC0 and 0xC1 only start overlong forms) are -62 to -33.
  const __m128i leadLanes =
      _mm_and_si128(_mm_cmpgt_epi8(v, _mm_set1_epi8(-63)), _mm_cmplt_epi8(v, _mm_set1_epi8(-32)));
  const auto ascii = static_cast<unsigned>(~_mm_movemask_epi8(v)) & 0xFFFF;
  const auto leads = static_cast<unsigned>(_mm_movemask_epi8(leadLanes));
  const __m128i sixtyFour = _mm_set1_epi8(-64);
  const auto continuations = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(v, sixtyFour)));
  const auto followed = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(next, sixtyFour)));
  // Every byte is of one kind, and a continuation byte follows each lead. A
  // block of ASCII alone is left to the caller's wider ASCII steps.
  const bool ok = leads != 0 && (ascii | leads | continuations) == 0xFFFF &&
                  continuations == ((leads << 1 | carry) & 0xFFFF);
  const unsigned last = leads >> 15;
  const unsigned cut = last & ~(followed >> 15);
  return {v, next, leadLanes, (ascii | leads) & (0xFFFFu >> cut), last & ~cut, cut, ok};
}

// Writes the units of a judged block and returns how many. With `spare`, the
// stores may reach up to 8 units past them.
template <typename Unit>
QTA_UTF8_KERNEL size_t storePairBlock(Unit* out, const PairBlock& block, bool spare) {
  // Each position's value as if a sequence started there, as byte pairs and
  // weights for one multiply-add: an ASCII byte's 7 bits times 1, or a lead's
  // 5 bits times 64 and the 6 bits of the byte after it times 1.
  const __m128i lead = block.leads;
  const __m128i firstBits =
      _mm_xor_si128(_mm_set1_epi8(0x7F), _mm_and_si128(lead, _mm_set1_epi8(0x60)));
  const __m128i first = _mm_and_si128(block.bytes, firstBits);
  const __m128i second = _mm_and_si128(block.next, _mm_and_si128(lead, _mm_set1_epi8(0x3F)));
  const __m128i ones = _mm_set1_epi8(1);
  const __m128i weight = _mm_add_epi8(ones, _mm_and_si128(lead, _mm_set1_epi8(63)));
  const __m128i lowValues =
      _mm_maddubs_epi16(_mm_unpacklo_epi8(first, second), _mm_unpacklo_epi8(weight, ones));
  const __m128i highValues =
      _mm_maddubs_epi16(_mm_unpackhi_epi8(first, second), _mm_unpackhi_epi8(weight, ones));
  // The lead and ASCII positions moved to the front, half by half.
  const unsigned lowKeep = block.keep & 0xFF;
  const unsigned highKeep = block.keep >> 8;
  const size_t lowCount = kBitCounts[lowKeep];
  const size_t units = lowCount + kBitCounts[highKeep];
  // The high half's units overwrite whatever the low half's store writes
  // past its own, up to the block's end.
  storeUnits16(out, _mm_shuffle_epi8(lowValues, load16(kKeep[lowKeep].data())), lowCount,
               spare || units >= 8);
  storeUnits16(out + lowCount, _mm_shuffle_epi8(highValues, load16(kKeep[highKeep].data())),
               units - lowCount, spare);
  return units;
}

template <typename Unit>
QTA_UTF8_KERNEL size_t decodePairs(const uint8_t*& src, const uint8_t* end, Unit* out,
                                   size_t room) {
  const uint8_t* p = src;
  if (end - p < kPairStepBytes || room < 16) return 0;
  size_t written = 0;
  PairBlock block = judgePairs(p, end, 0);
  if (!block.ok) return 0;
  for (;;) {
    // A well-formed block after this one gives at least 8 units: room for
    // this block's spare stores.
    PairBlock following{};
    if (block.cut == 0 && end - p >= 2 * kPairStepBytes) {
      following = judgePairs(p + kPairStepBytes, end, block.carry);
    }
    const bool more = following.ok && room - written >= 32;
    written += storePairBlock(out + written, block, more);
    if (!more) break;
    p += kPairStepBytes;
    block = following;
  }
  src = p + kPairStepBytes + block.carry - block.cut;
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
