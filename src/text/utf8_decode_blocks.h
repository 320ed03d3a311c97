// UTF-8 to UTF-16 and UTF-32 with vectors, a template over the vector type
// that judges the text (the SSSE3 kernel uses 16-byte vectors).
//
// The text is taken a window of up to 64 bytes at a time. The window is judged
// with the validity check's tables (utf8_validate_blocks.h), and three bit
// masks come out of it: where sequences end, which bytes lead a sequence of
// three or four bytes, and from where on the window is not well formed (a
// stray continuation byte counts as not well formed here, since it gives no
// output). Then the window is converted step by step up to the first sequence
// that is not well formed, each step picked by the sequence ends among the next
// 12 or 16 bytes: 16 ASCII bytes; 16 bytes of one- and two-byte sequences;
// four three-byte sequences; four four-byte sequences; else a step from a table
// indexed by the 12 bits of sequence ends, which moves the bytes of the next
// four sequences of up to three bytes (or three of up to four) into lanes of
// their own with one byte shuffle. Everything the window does not convert is
// left to the caller's sequence reader, which stays the rule for every
// replacement.
//
// Every store writes exactly the units it converts, so a buffer of exactly
// the result's size is never overrun. Loads stay inside the text: steps near
// its end load the 16 bytes that end there and shift them into place.
//
// Each kernel file defines QTA_UTF8_KERNEL_TARGET, includes
// utf8_validate_blocks.h (and a vector struct of its own) and then this header.
#ifndef QTA_TEXT_UTF8_DECODE_BLOCKS_H_
#define QTA_TEXT_UTF8_DECODE_BLOCKS_H_

#include "text/utf8_decode_tables.h"
#include "text/utf8_validate_blocks.h"

#include <tmmintrin.h>

#include <array>
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

// Writes `count` (up to 4) code points below 0x10000 held in 32-bit lanes.
QTA_UTF8_KERNEL void storeUnits32(char16_t* out, __m128i v, size_t count) {
  const __m128i lowHalves = _mm_setr_epi8(0, 1, 4, 5, 8, 9, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1);
  storeBytes(out, _mm_shuffle_epi8(v, lowHalves), 2 * count);
}

QTA_UTF8_KERNEL void storeUnits32(char32_t* out, __m128i v, size_t count) {
  storeBytes(out, v, 4 * count);
}

// The 16 ASCII bytes of `v` as 16 units.
template <typename Unit>
QTA_UTF8_KERNEL void widenAscii(Unit* out, __m128i v) {
  const __m128i zero = _mm_setzero_si128();
  storeUnits16(out, _mm_unpacklo_epi8(v, zero), 8);
  storeUnits16(out + 8, _mm_unpackhi_epi8(v, zero), 8);
}

// The 64 ASCII bytes at `p` as 64 units.
template <typename Unit>
QTA_UTF8_KERNEL void widenAscii64(Unit* out, const uint8_t* p) {
  for (size_t at = 0; at < 64; at += 16) widenAscii(out + at, load16(p + at));
}

// Sixteen bytes that are eight two-byte sequences: their eight units.
template <typename Unit>
QTA_UTF8_KERNEL void twoByteBlock(Unit* out, __m128i v) {
  // Lane i holds the lead below and the continuation byte above.
  const __m128i bits = _mm_and_si128(v, _mm_set1_epi16(0x3F1F));
  storeUnits16(out, _mm_maddubs_epi16(bits, _mm_set1_epi16(0x0140)), 8);
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

// Code points of the sequences laid into 32-bit lanes by a step shuffle
// (sequences of up to three bytes).
QTA_UTF8_KERNEL __m128i upTo3Values(__m128i lanes) {
  // The lead's bits: 0x7F of an ASCII byte in the low byte, 0x1F of a
  // two-byte lead in the middle one (0x3F keeps its 0 bit 5 too), 0x0F of a
  // three-byte lead in the high one.
  const __m128i bits = _mm_and_si128(lanes, _mm_set1_epi32(0x000F3F7F));
  const __m128i pairs = _mm_maddubs_epi16(bits, _mm_set1_epi16(0x4001));
  return _mm_madd_epi16(pairs, _mm_set1_epi32(0x10000001));
}

// The same for sequences of up to four bytes, whose lead may sit in any byte:
// each byte's payload mask comes from its high nibble.
QTA_UTF8_KERNEL __m128i upTo4Values(__m128i lanes) {
  const __m128i payload = _mm_setr_epi8(0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x3F, 0x3F,
                                        0x3F, 0x3F, 0x1F, 0x1F, 0x0F, 0x07);
  const __m128i highNibble = _mm_and_si128(_mm_srli_epi16(lanes, 4), _mm_set1_epi8(0x0F));
  const __m128i bits = _mm_and_si128(lanes, _mm_shuffle_epi8(payload, highNibble));
  const __m128i pairs = _mm_maddubs_epi16(bits, _mm_set1_epi16(0x4001));
  return _mm_madd_epi16(pairs, _mm_set1_epi32(0x10000001));
}

// Writes `count` code points held in 32-bit lanes, some from 0x10000 up (with
// `spare`, the buffer has room for 8 units and the stores may go past them).
QTA_UTF8_KERNEL size_t storeCodePoints(char16_t* out, __m128i v, size_t count, bool spare = false) {
  const __m128i supplementary = _mm_cmpgt_epi32(v, _mm_set1_epi32(0xFFFF));
  const __m128i t = _mm_sub_epi32(v, _mm_set1_epi32(0x10000));
  const __m128i high = _mm_or_si128(_mm_srli_epi32(t, 10), _mm_set1_epi32(0xD800));
  const __m128i low = _mm_or_si128(_mm_and_si128(t, _mm_set1_epi32(0x3FF)), _mm_set1_epi32(0xDC00));
  const __m128i pair = _mm_or_si128(high, _mm_slli_epi32(low, 16));
  const __m128i lanes =
      _mm_or_si128(_mm_and_si128(supplementary, pair), _mm_andnot_si128(supplementary, v));
  if (count == 4) {  // four four-byte sequences
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), lanes);
    return 8;
  }
  const auto pairs = static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(supplementary))) & 7;
  const size_t units = count + kBitCounts[pairs];
  storeBytes(out, _mm_shuffle_epi8(lanes, load16(kPairs[pairs].data())), spare ? 16 : 2 * units);
  return units;
}

QTA_UTF8_KERNEL size_t storeCodePoints(char32_t* out, __m128i v, size_t count, bool = false) {
  storeBytes(out, v, 4 * count);
  return count;
}

// Four four-byte sequences: their code points in 32-bit lanes.
QTA_UTF8_KERNEL __m128i fourByteValues(__m128i v) {
  const Bytes16 reversed = {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12};
  return upTo4Values(_mm_shuffle_epi8(v, load16(reversed.data())));
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

// The steps through runs of sequences of one length (Chinese, Japanese and
// emoji text), with fixed shuffles and no table look-up. A kernel with wider
// vectors may specialise this for its own vector struct.
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

  // Four four-byte sequences at `p`; returns the units written.
  template <typename Unit>
  QTA_UTF8_KERNEL static size_t fourByte(const uint8_t* p, Unit* out) {
    return storeCodePoints(out, fourByteValues(load16(p)), 4);
  }
};

template <typename Vec>
struct RunSteps : RunSteps16 {};

// Sequence ends of a run of three-byte and of four-byte sequences, from a
// sequence boundary on.
constexpr uint64_t periodicBits(unsigned period) {
  uint64_t bits = 0;
  for (unsigned i = period - 1; i < 64; i += period) bits |= uint64_t{1} << i;
  return bits;
}
constexpr uint64_t kThreeByteEnds = periodicBits(3);
constexpr uint64_t kFourByteEnds = periodicBits(4);

// How many whole sequences of `length` bytes the 64 bits of sequence ends
// `ends` (from a sequence boundary on) begin with; `pattern` is the ends of
// such a run.
constexpr size_t runLength(uint64_t ends, uint64_t pattern, unsigned length) {
  const uint64_t differ = ends ^ pattern;
  return (differ == 0 ? 64 : static_cast<size_t>(__builtin_ctzll(differ))) / length;
}

// What a stretch of up to 64 bytes holds, one bit per byte.
struct ByteClasses {
  uint64_t bad;  // not well formed there (a stray continuation byte included)
  uint64_t continuations;
  uint64_t fourByteLeads;
  bool ascii;
};

constexpr uint64_t lowBits(size_t n) { return n >= 64 ? ~uint64_t{0} : (uint64_t{1} << n) - 1; }

// Classifies the `size` bytes at `p` (one vector, or at least a vector and
// three bytes, and at most 64), which end the text when `atEnd`. When
// `first`, the bytes before `p` are not looked at: the text is judged as if
// it started there (the callers start at a sequence boundary).
template <typename Vec>
QTA_UTF8_KERNEL ByteClasses classify(const uint8_t* p, size_t size, bool first, bool atEnd) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  if (size == 64 && !atEnd && asciiRun<Vec>(p)) {
    // Only a sequence cut short just before `p` can be wrong here.
    const bool cutShort = !first && (p[-1] >= 0xC0 || p[-2] >= 0xE0 || p[-3] >= 0xF0);
    return {cutShort ? 1u : 0u, 0, 0, true};
  }
  const BlockJudge<Vec> judge;
  const V threeByteLead = Vec::splat(kThreeByteLeadBias);
  const V twoByteLead = Vec::splat(0xC0 - 0x80);
  ByteClasses classes{};
  for (size_t at = 0; at < size; at += kSize) {
    const size_t offset = at + kSize <= size ? at : size - kSize;
    const V current = Vec::load(p + offset);
    V before1, before2, before3;
    if (offset == 0 && first) {
      before1 = Vec::template shiftedIn<1>(current);
      before2 = Vec::template shiftedIn<2>(current);
      before3 = Vec::template shiftedIn<3>(current);
    } else {
      before1 = Vec::load(p + offset - 1);
      before2 = Vec::load(p + offset - 2);
      before3 = Vec::load(p + offset - 3);
    }
    V errors = judge.errors(current, before1, before2, before3);
    if (atEnd && offset + kSize == size) errors = errors | unfinishedAtEnd<Vec>(current);
    const V required = Vec::subSaturated(before1, twoByteLead) |
                       Vec::subSaturated(before2, threeByteLead) |
                       Vec::subSaturated(before3, judge.fourByteLead);
    const uint64_t continuation = Vec::highMask(current) & ~Vec::bit6Mask(current);
    const uint64_t stray = continuation & ~Vec::highMask(required);
    const uint64_t errorLanes = ~Vec::zeroMask(errors);
    const uint64_t fourByteLeads = Vec::highMask(Vec::subSaturated(current, judge.fourByteLead));
    classes.bad |= ((errorLanes | stray) & lowBits(kSize)) << offset;
    classes.continuations |= (continuation & lowBits(kSize)) << offset;
    classes.fourByteLeads |= (fourByteLeads & lowBits(kSize)) << offset;
  }
  return classes;
}

// Masks over up to 128 bytes.
__extension__ typedef unsigned __int128 Mask128;

constexpr Mask128 lowBits128(size_t n) { return n >= 128 ? ~Mask128{0} : (Mask128{1} << n) - 1; }

constexpr Mask128 joined(uint64_t low, uint64_t high) { return Mask128{high} << 64 | low; }

// What the steps go by, one bit per byte from where they start.
struct StepMasks {
  Mask128 ends;  // the byte ends a well-formed sequence that may be converted
  Mask128 leads;
  Mask128 fourByteLeads;
};

// Byte i ends a sequence when byte i + 1 leads one; the last of the `size`
// bytes ends one only at the end of the text. A sequence is converted only
// when nothing up to the byte after it is wrong (that is where a missing
// continuation byte shows).
QTA_UTF8_KERNEL StepMasks stepMasks(Mask128 leads, Mask128 bad, Mask128 fourByteLeads, size_t size,
                                    bool atEnd) {
  Mask128 ends = leads >> 1;
  if (atEnd) ends |= Mask128{1} << (size - 1);
  if (bad != 0) {
    const auto low = static_cast<uint64_t>(bad);
    const size_t firstBad =
        low != 0 ? static_cast<size_t>(__builtin_ctzll(low))
                 : 64 + static_cast<size_t>(__builtin_ctzll(static_cast<uint64_t>(bad >> 64)));
    ends &= firstBad == 0 ? 0 : lowBits128(firstBad - 1);
  }
  // Past the bytes, a sequence boundary (see afterBlock).
  return {ends, leads | ~lowBits128(size), fourByteLeads};
}

// A store may reach this many units past those it converts when the text
// after the step promises as many more (each byte that is not a continuation
// byte gives at least one unit).
constexpr unsigned kSpareUnits = 8;

// Where the sequence boundary after `pos` is, when `pos` is the end of a block
// step: the block's last sequence ends by the second byte after it.
QTA_UTF8_KERNEL size_t afterBlock(const StepMasks& masks, size_t pos) {
  return pos + static_cast<size_t>(__builtin_ctzll(static_cast<uint64_t>(masks.leads >> pos) | 4));
}

// Converts step by step from `pos` (a sequence boundary) while `pos` is below
// `limit` and the masks allow, with `readable` bytes of text from `p` on;
// steps from `pos` up to `spareUntil` - 16 may store kSpareUnits past their
// units. Adds the units to `written` and returns where the steps stopped.
template <typename Vec, typename Unit>
QTA_UTF8_KERNEL size_t convertSteps(const uint8_t* p, size_t pos, size_t limit, size_t readable,
                                    const StepMasks& masks, size_t spareUntil, Unit* out,
                                    size_t& written) {
  const __m128i threeByteShuffle = load16(kThreeByteShuffle.data());
  while (pos < limit) {
    const auto ends = static_cast<uint64_t>(masks.ends >> pos);
    __m128i v;
    if (pos + 16 <= readable) {
      v = load16(p + pos);
    } else {  // the 16 bytes that end the text, moved down into place
      const size_t shift = pos + 16 - readable;
      v = _mm_shuffle_epi8(load16(p + readable - 16), load16(kShiftDown.data() + shift));
    }
    const auto ends16 = static_cast<unsigned>(ends & 0xFFFF);
    const auto leads = static_cast<uint64_t>(masks.leads >> pos);
    // After a block, `pos` may be inside a sequence that the block converted.
    const bool boundary = (leads & 1) != 0;
    if (boundary && ends == ~uint64_t{0}) {  // 64 ASCII bytes
      widenAscii64(out + written, p + pos);
      written += 64;
      pos += 64;
      continue;
    }
    if (boundary && ends16 == 0xFFFF) {  // ASCII
      widenAscii(out + written, v);
      written += 16;
      pos += 16;
      continue;
    }
    if (boundary && ends16 == 0xAAAA) {
      twoByteBlock(out + written, v);
      written += 8;
      pos += 16;
      continue;
    }
    if (boundary && (ends16 & 0xFFF) == 0x924) {
      using Runs = RunSteps<Vec>;
      const size_t start = pos;
      for (size_t steps = runLength(ends, kThreeByteEnds, 3) / Runs::kThreeByteSequences;
           steps > 0 && pos + Runs::kThreeByteReads <= readable; --steps) {
        if (!Runs::threeByte(p + pos, out + written)) break;
        written += Runs::kThreeByteSequences;
        pos += 3 * Runs::kThreeByteSequences;
      }
      if (pos != start) continue;
      storeUnits32(out + written, upTo3Values(_mm_shuffle_epi8(v, threeByteShuffle)), 4);
      written += 4;
      pos += 12;
      continue;
    }
    if (boundary && ends16 == 0x8888) {
      // The run's bytes lie in the text, and a step reads only its own.
      for (size_t steps = runLength(ends, kFourByteEnds, 4) / 4; steps > 0; --steps) {
        written += RunSteps<Vec>::fourByte(p + pos, out + written);
        pos += 16;
      }
      continue;
    }
    const bool spare = pos + 16 <= spareUntil;
    // Sixteen bytes without four-byte sequences whose last sequence ends by
    // the second byte after them. The next step starts 16 bytes on, which
    // keeps the steps through a run of such blocks independent of each other.
    if ((ends >> 15 & 7) != 0 && (pos + 18 <= readable || (ends >> 15 & 1) != 0) &&
        (static_cast<uint64_t>(masks.fourByteLeads >> pos) & 0xFFFF) == 0) {
      // Past the text, the bytes after come from `v` itself (the last
      // sequence then ends in it).
      const bool inText = pos + 18 <= readable;
      const __m128i next = inText ? load16(p + pos + 1) : _mm_srli_si128(v, 1);
      const __m128i after = inText ? load16(p + pos + 2) : _mm_srli_si128(v, 2);
      written += upTo3ByteBlock(out + written, v, next, after,
                                static_cast<unsigned>(leads & 0xFFFF), spare);
      pos += 16;
      continue;
    }
    if (!boundary) {
      pos = afterBlock(masks, pos);
      continue;
    }
    const StepPlan plan = kStepTables.plans[ends16 & 0xFFF];
    if (plan.kind == StepKind::kNone) break;
    const __m128i lanes = _mm_shuffle_epi8(v, load16(kStepTables.shuffles[plan.shuffle].data()));
    if (plan.kind == StepKind::kUpTo3) {
      storeUnits32(out + written, upTo3Values(lanes), kUpTo3Sequences);
      written += kUpTo3Sequences;
    } else {
      written += storeCodePoints(out + written, upTo4Values(lanes), kUpTo4Sequences, spare);
    }
    pos += plan.consumed;
  }
  return afterBlock(masks, pos);
}

constexpr size_t kChunk = 64;
// Output room the steps through a chunk need: its units, those of a last step
// reaching into the next chunk (up to 64 ASCII bytes), and a spare store.
constexpr size_t kChunkRoom = 2 * kChunk + 16;

// Whether sequence ends `ends` (from a sequence boundary on) start a run of
// three-byte sequences worth leaving the chunks for.
constexpr bool startsThreeByteRun(Mask128 ends) {
  constexpr uint64_t kRun = kThreeByteEnds & 0xFFFFFF;  // eight sequences
  return (static_cast<uint64_t>(ends) & 0xFFFFFF) == kRun;
}

// Converts from `src` chunk by chunk while two whole chunks lie ahead: each
// chunk is judged once, and the steps through one chunk see the next. Stops
// where the text is not well formed (then `wellFormed` is false), before the
// last two chunks, when `room` runs short, or where a run of three-byte
// sequences starts (then `threeByteRunNext` is true). Advances `src`; returns
// the units written.
template <typename Vec, typename Unit>
QTA_UTF8_KERNEL size_t decodeChunks(const uint8_t*& src, const uint8_t* end, Unit* out, size_t room,
                                    bool& wellFormed, bool& threeByteRunNext) {
  const uint8_t* base = src;
  size_t pos = 0;
  size_t written = 0;
  ByteClasses current = classify<Vec>(base, kChunk, true, false);
  ByteClasses next = classify<Vec>(base + kChunk, kChunk, false, false);
  for (;;) {
    if (current.ascii && next.ascii && (current.bad | next.bad) == 0) {
      widenAscii64(out + written, base + pos);
      written += kChunk;
      pos += kChunk;
    } else {
      const StepMasks masks = stepMasks(
          joined(~current.continuations, ~next.continuations), joined(current.bad, next.bad),
          joined(current.fourByteLeads, next.fourByteLeads), 2 * kChunk, false);
      // A well-formed next chunk has a lead byte in every four bytes.
      const size_t spareUntil = next.bad == 0 ? kChunk + 16 : 0;
      pos = convertSteps<Vec>(base, pos, kChunk, static_cast<size_t>(end - base), masks, spareUntil,
                              out, written);
      if (pos >= kChunk && startsThreeByteRun(masks.ends >> pos)) {
        threeByteRunNext = true;
        break;
      }
    }
    if (pos < kChunk) break;
    if (end - base < static_cast<ptrdiff_t>(3 * kChunk) || room - written < kChunkRoom) break;
    base += kChunk;
    pos -= kChunk;
    current = next;
    // Past a wrong byte nothing is converted, so the chunk after it need not be judged.
    next = current.bad != 0 ? ByteClasses{~uint64_t{0}, 0, 0, false}
                            : classify<Vec>(base + kChunk, kChunk, false, false);
  }
  wellFormed = pos >= kChunk;
  src = base + pos;
  return written;
}

// Converts the window at `p` of `size` bytes (as for classify), `readable`
// bytes of text from `p` on; returns the bytes converted and adds the units
// written to `written`. Its stores write exactly the units converted.
template <typename Vec, typename Unit>
QTA_UTF8_KERNEL size_t decodeWindow(const uint8_t* p, size_t size, size_t readable, Unit* out,
                                    size_t& written, bool& wellFormed) {
  const bool atEnd = size == readable;
  const ByteClasses classes = classify<Vec>(p, size, true, atEnd);
  const uint64_t leads = ~classes.continuations & lowBits(size);
  wellFormed = classes.bad == 0;
  const StepMasks masks = stepMasks(leads, classes.bad, classes.fourByteLeads, size, atEnd);
  return convertSteps<Vec>(p, 0, size, readable, masks, 0, out, written);
}

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

// Windows at most this long; a window converts at most this many units.
constexpr size_t kWindow = 64;

// Converts from `src` while at least 16 bytes remain and `room` holds a
// window's units, up to the first sequence that is not well formed (or a stray
// continuation byte): chunk by chunk, then the last bytes a window at a time.
// Advances `src`; returns the units written.
template <typename Vec, typename Unit>
QTA_UTF8_KERNEL size_t decodeUtf8Vectors(const uint8_t*& src, const uint8_t* end, Unit* out,
                                         size_t room) {
  const uint8_t* p = src;
  size_t written = 0;
  bool wellFormed = true;
  for (bool threeByteRunNext = true; threeByteRunNext;) {
    written += threeByteRun<Vec>(p, end, out + written, room - written);
    threeByteRunNext = false;
    if (end - p >= static_cast<ptrdiff_t>(2 * kChunk) && room - written >= kChunkRoom) {
      written +=
          decodeChunks<Vec>(p, end, out + written, room - written, wellFormed, threeByteRunNext);
    }
  }
  while (wellFormed && room - written >= kWindow) {
    const auto readable = static_cast<size_t>(end - p);
    size_t consumed = 0;
    if (readable >= Vec::kSize + 3 || readable == Vec::kSize) {
      consumed = decodeWindow<Vec>(p, readable < kWindow ? readable : kWindow, readable, out,
                                   written, wellFormed);
    } else if (readable >= Vectors16::kSize + 3 || readable == Vectors16::kSize) {
      consumed = decodeWindow<Vectors16>(p, readable, readable, out, written, wellFormed);
    }
    p += consumed;
    if (consumed == 0) break;
  }
  src = p;
  return written;
}

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_BLOCKS_H_
