// The block-wise UTF-8 validity check, written once for every vector width.
//
// Whether a lead byte is acceptable depends only on it and the three bytes
// after it, and continuation bytes are never wrong on their own (a stray one is
// passed over). So every position of a block is judged at once from the byte
// there and the three before it:
//   - the byte before and this one, as a pair, by three 16-entry tables
//     indexed by nibbles (one bit per way the pair can be wrong; a bit stays
//     set only when all three tables agree);
//   - whether the byte two or three before is a lead of three or four bytes,
//     which makes this byte a required continuation byte.
// Lead bytes in the last three places of the text still miss bytes after
// them; a separate test of the final bytes catches those.
//
// Each kernel file defines QTA_UTF8_KERNEL_TARGET (the instruction sets of its
// kernel, as for the target attribute), includes this header and supplies a
// struct of vector operations (listed before BlockJudge) whose functions are
// declared QTA_UTF8_KERNEL. Everything here has internal linkage, so each
// kernel gets its own copy compiled for its instruction set.
#ifndef QTA_TEXT_UTF8_VALIDATE_BLOCKS_H_
#define QTA_TEXT_UTF8_VALIDATE_BLOCKS_H_

#ifndef QTA_UTF8_KERNEL_TARGET
#error "define QTA_UTF8_KERNEL_TARGET before including utf8_validate_blocks.h"
#endif

#include <tmmintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "text/utf_sequence.h"

// Inlined into the kernel's entry point, compiled for its instruction sets.
#define QTA_UTF8_KERNEL [[gnu::always_inline, gnu::target(QTA_UTF8_KERNEL_TARGET)]] inline

namespace qta::text::detail {
namespace {

using NibbleTable = std::array<uint8_t, 16>;

// A set of nibble values, one bit each.
constexpr uint16_t nibbles(unsigned first, unsigned last) {
  return static_cast<uint16_t>((2u << last) - (1u << first));
}
constexpr uint16_t kAnyNibble = 0xFFFF;
constexpr uint16_t kContinuationHigh = nibbles(0x8, 0xB);

// One way a pair of bytes (`first`, `second`) is wrong: the first byte's high
// nibble is in `firstHigh` and its low nibble in `firstLow`, the second
// byte's high nibble in `secondHigh`.
struct PairRule {
  uint8_t bit;
  uint16_t firstHigh;
  uint16_t firstLow;
  uint16_t secondHigh;
};

// The bit that does not flag an error by itself: set when the second byte is
// not a continuation byte, which is an error only where one is required.
constexpr uint8_t kNotContinuation = 0x80;

constexpr PairRule kPairRules[] = {
    // A lead byte without a continuation byte after it.
    {0x01, nibbles(0xC, 0xF), kAnyNibble, static_cast<uint16_t>(~kContinuationHigh)},
    // 0xC0 and 0xC1 only start overlong forms.
    {0x02, nibbles(0xC, 0xC), nibbles(0x0, 0x1), kAnyNibble},
    // 0xF4 with 0x90 and up, and 0xF5 and up with anything, are past 0x10FFFF.
    {0x04, nibbles(0xF, 0xF), nibbles(0x4, 0xF), nibbles(0x9, 0xB)},
    {0x08, nibbles(0xF, 0xF), nibbles(0x5, 0xF), nibbles(0x8, 0x8)},
    // 0xE0 needs 0xA0 and up next, 0xF0 needs 0x90 and up (else overlong).
    {0x10, nibbles(0xE, 0xE), nibbles(0x0, 0x0), nibbles(0x8, 0x9)},
    {0x20, nibbles(0xF, 0xF), nibbles(0x0, 0x0), nibbles(0x8, 0x8)},
    {kNotContinuation, kAnyNibble, kAnyNibble, static_cast<uint16_t>(~kContinuationHigh)},
};

// The table for one nibble of the pair: entry n holds the bits of the rules
// whose set for that nibble contains n.
constexpr NibbleTable pairTable(uint16_t PairRule::*nibble) {
  NibbleTable table{};
  for (const PairRule& rule : kPairRules) {
    for (unsigned n = 0; n < 16; ++n) {
      if ((rule.*nibble >> n & 1) != 0) table[n] |= rule.bit;
    }
  }
  return table;
}

constexpr NibbleTable kFirstHigh = pairTable(&PairRule::firstHigh);
constexpr NibbleTable kFirstLow = pairTable(&PairRule::firstLow);
constexpr NibbleTable kSecondHigh = pairTable(&PairRule::secondHigh);

// Saturating subtraction of these leaves bit 7 set exactly for bytes from 0xE0
// (a lead of three or four bytes) and from 0xF0 (a lead of four).
constexpr uint8_t kThreeByteLeadBias = 0xE0 - 0x80;
constexpr uint8_t kFourByteLeadBias = 0xF0 - 0x80;

// The largest acceptable value of each of the last 64 bytes of a text: a lead
// byte in the last three places lacks continuation bytes.
constexpr std::array<uint8_t, 64> makeFinalLimits() {
  std::array<uint8_t, 64> limits{};
  for (uint8_t& limit : limits) limit = 0xFF;
  limits[61] = 0xEF;
  limits[62] = 0xDF;
  limits[63] = 0xBF;
  return limits;
}
constexpr std::array<uint8_t, 64> kFinalLimits = makeFinalLimits();

// The vector operations a kernel provides (V is its vector type):
//   kSize                 bytes in a vector (16, 32 or 64)
//   load(p)               kSize bytes from p
//   splat(b), table(t)    b in every lane; t in every 16-byte part
//   lookup(t, i)          t[i] in each 16-byte part (i below 16)
//   highNibbles(v)        each byte's high nibble in its low bits, with
//                         other bits above that the caller masks off
//   subSaturated(a, b)    a - b per byte, at least 0
//   shiftedIn<n>(v)       v moved up by n bytes, zeros shifted in
//   anyHigh(v), anySet(v) a lane has bit 7 / any bit set
//   highMask(v), bit6Mask(v), zeroMask(v)
//                         one bit per lane: bit 7 set, bit 6 set, lane zero
// plus & and | on V.

// The judge of blocks, with its constants in registers for the whole check.
template <typename Vec>
struct BlockJudge {
  using V = typename Vec::V;
  V firstHigh, firstLow, secondHigh, lowNibble, threeByteLead, fourByteLead, errorBits;

  QTA_UTF8_KERNEL BlockJudge()
      : firstHigh(Vec::table(kFirstHigh)),
        firstLow(Vec::table(kFirstLow)),
        secondHigh(Vec::table(kSecondHigh)),
        lowNibble(Vec::splat(0x0F)),
        threeByteLead(Vec::splat(kThreeByteLeadBias)),
        fourByteLead(Vec::splat(kFourByteLeadBias)),
        errorBits(Vec::splat(static_cast<uint8_t>(~kNotContinuation))) {}

  // Error bits of the block `current`, given the same block shifted by one,
  // two and three bytes (the bytes before each position).
  QTA_UTF8_KERNEL V errors(V current, V before1, V before2, V before3) const {
    const V pair = Vec::lookup(firstHigh, Vec::highNibbles(before1) & lowNibble) &
                   Vec::lookup(firstLow, before1 & lowNibble) &
                   Vec::lookup(secondHigh, Vec::highNibbles(current) & lowNibble);
    const V continuationRequired =
        Vec::subSaturated(before2, threeByteLead) | Vec::subSaturated(before3, fourByteLead);
    return pair & (continuationRequired | errorBits);
  }

  // The errors of the block at `p`, whose three bytes before are readable.
  QTA_UTF8_KERNEL V errorsAt(const uint8_t* p, V current) const {
    return errors(current, Vec::load(p - 1), Vec::load(p - 2), Vec::load(p - 3));
  }
};

// Nonzero when the block ends in a lead byte whose sequence would go past it.
template <typename Vec, typename V = typename Vec::V>
QTA_UTF8_KERNEL V unfinishedAtEnd(V block) {
  return Vec::subSaturated(block, Vec::load(kFinalLimits.data() + 64 - Vec::kSize));
}

// The operations with 16-byte vectors, which every kernel's instruction sets
// include: the whole SSSE3 kernel, and the wider kernels' texts too short for
// their own vectors.
struct Vectors16 {
  using V = __m128i;
  static constexpr size_t kSize = 16;

  QTA_UTF8_KERNEL static V load(const uint8_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const V*>(p));
  }
  QTA_UTF8_KERNEL static V splat(uint8_t b) { return _mm_set1_epi8(static_cast<char>(b)); }
  QTA_UTF8_KERNEL static V table(const NibbleTable& t) { return load(t.data()); }
  QTA_UTF8_KERNEL static V lookup(V t, V index) { return _mm_shuffle_epi8(t, index); }
  QTA_UTF8_KERNEL static V highNibbles(V v) { return _mm_srli_epi16(v, 4); }
  QTA_UTF8_KERNEL static V subSaturated(V a, V b) { return _mm_subs_epu8(a, b); }
  template <int n>
  QTA_UTF8_KERNEL static V shiftedIn(V v) {
    return _mm_slli_si128(v, n);
  }
  QTA_UTF8_KERNEL static bool anyHigh(V v) { return _mm_movemask_epi8(v) != 0; }
  QTA_UTF8_KERNEL static bool anySet(V v) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())) != 0xFFFF;
  }
  QTA_UTF8_KERNEL static uint32_t highMask(V v) {
    return static_cast<uint32_t>(_mm_movemask_epi8(v));
  }
  QTA_UTF8_KERNEL static uint32_t bit6Mask(V v) { return highMask(_mm_slli_epi16(v, 1)); }
  QTA_UTF8_KERNEL static uint32_t zeroMask(V v) {
    return highMask(_mm_cmpeq_epi8(v, _mm_setzero_si128()));
  }
};

// True when the 64 bytes at `p` are all ASCII.
template <typename Vec>
QTA_UTF8_KERNEL bool asciiRun(const uint8_t* p) {
  auto any = Vec::load(p);
  for (size_t at = Vec::kSize; at < 64; at += Vec::kSize) any = any | Vec::load(p + at);
  return !Vec::anyHigh(any);
}

// The check of a text of exactly a vector, or of at least a vector and three
// bytes (so that the bytes before the final vector can be loaded). Runs of 64 ASCII
// bytes are passed over after one test; other runs are judged vector by
// vector, with the bytes before each vector loaded again from memory (cheaper
// than moving them over from the vector before). A run that ends in a lead
// byte whose sequence goes on is judged again by the next run's first vector,
// unless that run is ASCII, which makes the text invalid. After the last whole
// run, the vectors that fit and then one that ends at the end of the text.
template <typename Vec>
QTA_UTF8_KERNEL bool validUtf8Blocks(const uint8_t* text, size_t size) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  constexpr size_t kRun = 64;
  constexpr size_t kPerRun = kRun / kSize;
  const BlockJudge<Vec> judge;
  const uint8_t* p = text;
  const uint8_t* const end = text + size;
  const V first = Vec::load(p);
  V errors{};
  if (Vec::anyHigh(first)) {
    errors = judge.errors(first, Vec::template shiftedIn<1>(first),
                          Vec::template shiftedIn<2>(first), Vec::template shiftedIn<3>(first));
  }
  V previous = first;  // the vector before `p`, whose last lead byte may go on
  p += kSize;
  const uint8_t* const runsEnd = p + static_cast<size_t>(end - p) / kRun * kRun;
  for (; p != runsEnd; p += kRun) {
    V run[kPerRun];
    V any = run[0] = Vec::load(p);
    for (size_t i = 1; i < kPerRun; ++i) any = any | (run[i] = Vec::load(p + i * kSize));
    if (!Vec::anyHigh(any)) {
      if (Vec::anySet(errors | unfinishedAtEnd<Vec>(previous))) return false;
      previous = run[kPerRun - 1];
      // The ASCII runs that follow, in a loop of their own.
      while (p + kRun != runsEnd && asciiRun<Vec>(p + kRun)) p += kRun;
      continue;
    }
    // Errors are gathered and tested at the next ASCII run or the end: a test
    // per run costs more on valid text than it saves on invalid text.
    for (size_t i = 0; i < kPerRun; ++i) errors = errors | judge.errorsAt(p + i * kSize, run[i]);
    previous = run[kPerRun - 1];
  }
  for (; static_cast<size_t>(end - p) >= kSize; p += kSize) {
    errors = errors | judge.errorsAt(p, Vec::load(p));
  }
  const V last = Vec::load(end - kSize);
  if (p != end) errors = errors | judge.errorsAt(end - kSize, last);
  return !Vec::anySet(errors | unfinishedAtEnd<Vec>(last));
}

// Texts from 16 bytes up to this size are first tested for ASCII as a whole.
// Most short texts (keys, names, single words) are ASCII, and that test costs
// less than judging a single vector; above it the ASCII runs are passed over
// by the blocks' own test.
constexpr size_t kShortText = 64;

// True when the `size` bytes at `text`, 16 to kShortText of them, are ASCII.
QTA_UTF8_KERNEL bool asciiShortText(const uint8_t* text, size_t size) {
  auto any = Vectors16::load(text + size - Vectors16::kSize);
  for (size_t at = 0; at + Vectors16::kSize < size; at += Vectors16::kSize) {
    any = any | Vectors16::load(text + at);
  }
  return !Vectors16::anyHigh(any);
}

// The whole check: short ASCII texts after one test, texts too short for the
// kernel's vectors with 16-byte vectors, and those too short for these with
// the sequence reader.
template <typename Vec>
QTA_UTF8_KERNEL bool validUtf8Vectors(const uint8_t* text, size_t size) {
  if (size >= Vectors16::kSize && size < kShortText && asciiShortText(text, size)) return true;
  if (size >= Vec::kSize + 3 || size == Vec::kSize) return validUtf8Blocks<Vec>(text, size);
  if (size >= Vectors16::kSize + 3 || size == Vectors16::kSize) {
    return validUtf8Blocks<Vectors16>(text, size);
  }
  return validSequences(text, text + size);
}

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_VALIDATE_BLOCKS_H_
