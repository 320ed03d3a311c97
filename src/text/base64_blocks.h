// The base64 block kernels, written once for every vector width.
//
// Encoding: each 16-byte part of a vector takes four 3-byte groups, spreads
// them to four 32-bit words, cuts each word into four 6-bit values with two
// multiplies, and turns the values into characters with one shuffle of
// per-slot shifts (base64_alphabet.h). Decoding runs the other way: a shuffle
// by high nibble gives each character's shift to its value, two multiply-adds
// pack four values into three bytes. Whether a byte is in the alphabet is two
// nibble-indexed shuffles and an and.
//
// Each kernel file defines QTA_BASE64_KERNEL_TARGET (the instruction sets of
// its kernels, as for the target attribute), includes this header and
// supplies a struct of vector operations (listed before the kernels) whose
// functions are declared QTA_BASE64_KERNEL. Everything here has internal
// linkage, so each kernel file gets its own copy compiled for its instruction
// sets.
#ifndef QTA_TEXT_BASE64_BLOCKS_H_
#define QTA_TEXT_BASE64_BLOCKS_H_

#ifndef QTA_BASE64_KERNEL_TARGET
#error "define QTA_BASE64_KERNEL_TARGET before including base64_blocks.h"
#endif

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "text/base64_alphabet.h"
#include "text/base64_compress.h"
#include "text/base64_kernels.h"
#include "text/base64_scalar.h"

// Inlined into the kernel's entry point, compiled for its instruction sets.
#define QTA_BASE64_KERNEL [[gnu::always_inline, gnu::target(QTA_BASE64_KERNEL_TARGET)]] inline
// The kernels themselves, each starting on a cache line of its own, so that
// where the linker happens to place them cannot shift their loops across line
// boundaries (the filter loop ran 5 to 10% slower at an unlucky offset).
#define QTA_BASE64_ENTRY [[gnu::target(QTA_BASE64_KERNEL_TARGET), gnu::aligned(64)]]
// The helpers' lambdas.
#define QTA_BASE64_LAMBDA __attribute__((always_inline, target(QTA_BASE64_KERNEL_TARGET)))

namespace qta::text::base64 {
namespace {

// The vector operations a kernel provides (V is its vector type):
//   kSize                   bytes in a vector (16 or 32)
//   kEncodeRead             bytes spreadGroups reads (at least kSize / 4 * 3)
//   kEncodeBack, kEncodeAhead
//                           bytes before and from `in` that spreadGroupsWithin
//                           reads
//   Mask                    an unsigned integer of a bit per byte of a vector
//   kAllKept                the Mask of a vector of alphabet characters
//   load(p), store(p, v)    kSize bytes, unaligned
//   splat8(b), splat32(w)   b in every byte, w in every 32-bit word
//   table(t)                the 16 bytes at t in every 16-byte part
//   lookup(t, i)            t[i] in each 16-byte part (i below 16)
//   add8, sub8, subsU8      per byte: a + b, a - b, a - b at least 0
//   greater8, equal8        per signed byte: all ones where a > b, a == b
//   mulhiU16, mulloU16      per 16-bit word: high, low half of a * b
//   maddU8S8, maddS16       multiply-adds of adjacent bytes, of adjacent words
//   shiftRight32<n>(v)      each 32-bit word moved down n bits
//   byteBits(v)             a Mask with bit i set when byte i has bit 7 set
//   anySet(v)               some bit is set
//   spreadGroups(in)        kSize / 4 groups of 3 bytes from `in`, each in a
//                           32-bit word as bytes 1, 0, 2, 1 of the group
//   spreadGroupsWithin(in)  the same, in fewer steps where the bytes around
//                           the groups may be read
//   packDecoded(v)          byte 2, 1, 0 of each 32-bit word, packed at the
//                           front (kSize / 4 * 3 bytes)
//   storeDecoded(p, v)      exactly the kSize / 4 * 3 bytes packDecoded gives
//   compressStore(v, m, out, kept)
//                           appends the bytes of v whose bits are set in m at
//                           out + kept (may write kFilterSlack bytes past the
//                           new count); returns the new count
// plus & and | on V. A kernel whose vectors can index tables of 64 and 128
// bytes sets kWholeTables and provides
//   lookup64(t, i), lookup128(low, high, i)
//                           t[i % 64]; low:high[i % 128], in every byte
//   sixBitFields(v)         the four 6-bit values of each group that
//                           spreadGroups gives, one per byte (bits 6-7 of no
//                           value)
//   joinFront(n, front, back)
//                           the first n bytes of front, the rest of back (n
//                           from 1 to kSize)
// which replace the nibble tables and the arithmetic.

// 6-bit values to characters through the alphabet's slot shifts: values
// above 51 count up from slot 2, and those above 25 gain 1 (the comparison
// gives -1).
template <typename Vec, typename V = typename Vec::V>
QTA_BASE64_KERNEL V valuesToChars(V values, V shift) {
  const V slot =
      Vec::sub8(Vec::subsU8(values, Vec::splat8(51)), Vec::greater8(values, Vec::splat8(25)));
  return Vec::add8(values, Vec::lookup(shift, slot));
}

// The table encodeBlock takes: the alphabet itself for whole tables, else its
// slot shifts.
template <typename Vec, typename V = typename Vec::V>
QTA_BASE64_KERNEL V encodeTable(const Alphabet& alphabet) {
  if constexpr (Vec::kWholeTables) {
    return Vec::load(alphabet.encode.data());
  } else {
    return Vec::table(alphabet.encodeShift.data());
  }
}

// Groups of 3 bytes, spread as spreadGroups gives them, to their characters.
template <typename Vec, typename V = typename Vec::V>
QTA_BASE64_KERNEL V encodeBlock(V spread, V shift) {
  if constexpr (Vec::kWholeTables) return Vec::lookup64(shift, Vec::sixBitFields(spread));
  // Each 32-bit word ends up holding the four 6-bit values of its group in
  // its four bytes, from the top and bottom of two 16-bit products.
  const V first = Vec::mulhiU16(spread & Vec::splat32(0x0fc0fc00), Vec::splat32(0x04000040));
  const V second = Vec::mulloU16(spread & Vec::splat32(0x003f03f0), Vec::splat32(0x01000010));
  return valuesToChars<Vec>(first | second, shift);
}

// Encodes 3-byte groups a block at a time while a block's read stays inside
// the input, then one block ending as near the last full group as its read
// allows (rewriting what it overlaps with the same characters); returns the
// bytes consumed (a multiple of 3, or 0).
template <typename Vec>
QTA_BASE64_ENTRY size_t encodeBlocks(const uint8_t* in, size_t size, char* out,
                                     const Alphabet& alphabet) {
  using V = typename Vec::V;
  constexpr size_t kIn = Vec::kSize / 4 * 3;
  constexpr size_t kRead = Vec::kEncodeRead;
  if (size < kRead) return 0;
  const V shift = encodeTable<Vec>(alphabet);
  const auto encodeAt = [&](size_t at) QTA_BASE64_LAMBDA {
    Vec::store(out + at / 3 * 4, encodeBlock<Vec>(Vec::spreadGroups(in + at), shift));
  };
  // The input and output move on by pointer, with no division by 3 in the
  // loops. Blocks with room around them load in fewer steps: all but the
  // first when the faster load reaches back, and those far enough from the end.
  constexpr size_t kBack = Vec::kEncodeBack;
  constexpr size_t kAhead = Vec::kEncodeAhead;
  const uint8_t* const end = in + size;
  const uint8_t* from = in;
  char* to = out;
  if constexpr (kBack > 0) {
    encodeAt(0);
    from += kIn;
    to += Vec::kSize;
  }
  // Four independent blocks per round keep the shuffle and multiply units busy.
  for (; static_cast<size_t>(end - from) >= 3 * kIn + kAhead; from += 4 * kIn) {
    for (size_t block = 0; block < 4; ++block) {
      Vec::store(to, encodeBlock<Vec>(Vec::spreadGroupsWithin(from + block * kIn), shift));
      to += Vec::kSize;
    }
  }
  for (; static_cast<size_t>(end - from) >= kRead; from += kIn, to += Vec::kSize) {
    Vec::store(to, encodeBlock<Vec>(Vec::spreadGroups(from), shift));
  }
  const size_t done = static_cast<size_t>(from - in);
  const size_t full = size - size % 3;
  const size_t last = std::min(full - kIn, (size - kRead) / 3 * 3);
  if (last + kIn <= done) return done;
  encodeAt(last);
  return last + kIn;
}

// The skip tables of one alphabet, in registers for a whole kernel.
template <typename Vec>
struct SkipTables {
  using V = typename Vec::V;
  V low, high, lowNibble;

  // With whole tables, low and high are the halves of the decoding table for
  // bytes below 128, with bit 7 set in the entries of skipped bytes.
  QTA_BASE64_KERNEL explicit SkipTables(const Alphabet& alphabet)
      : low(table(alphabet, 0)), high(table(alphabet, 1)), lowNibble(Vec::splat8(0x0f)) {}

  QTA_BASE64_KERNEL static V table(const Alphabet& alphabet, size_t half) {
    if constexpr (Vec::kWholeTables) {
      const V values = Vec::load(alphabet.decode.data() + 64 * half);
      return Vec::add8(values, values & Vec::splat8(kSkip));
    } else {
      return Vec::table(half == 0 ? alphabet.skipLow.data() : alphabet.skipHigh.data());
    }
  }

  // The 6-bit value of each alphabet character, with whole tables.
  QTA_BASE64_KERNEL V values(V chars) const { return Vec::lookup128(low, high, chars); }

  QTA_BASE64_KERNEL V highNibbles(V chars) const {
    return Vec::template shiftRight32<4>(chars) & lowNibble;
  }

  // Non-zero in the bytes of `chars` that are outside the alphabet.
  QTA_BASE64_KERNEL V skipped(V chars) const {
    if constexpr (Vec::kWholeTables) return (chars | values(chars)) & Vec::splat8(0x80);
    return Vec::lookup(low, chars & lowNibble) & Vec::lookup(high, highNibbles(chars));
  }

  // Bit i set when byte i of `chars` is an alphabet character.
  QTA_BASE64_KERNEL typename Vec::Mask kept(V chars) const {
    return Vec::byteBits(Vec::equal8(skipped(chars), Vec::splat8(0)));
  }
};

template <typename Vec>
QTA_BASE64_ENTRY size_t filterBlocks(const char* text, size_t size, char* out,
                                     const Alphabet& alphabet) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  const SkipTables<Vec> tables(alphabet);
  size_t kept = 0;
  size_t i = 0;
  for (; size - i >= kSize; i += kSize) {
    const V chars = Vec::load(text + i);
    const typename Vec::Mask mask = tables.kept(chars);
    if (mask == Vec::kAllKept) {
      Vec::store(out + kept, chars);
      kept += kSize;
    } else if (mask != 0) {
      kept = Vec::compressStore(chars, mask, out, kept);
    }
  }
  if (i == size || size < kSize) {
    return kept + filterScalar(text + i, size - i, out + kept, alphabet);
  }
  // The last block, less the bytes already filtered.
  const size_t at = size - kSize;
  const V chars = Vec::load(text + at);
  return Vec::compressStore(chars, tables.kept(chars) & (Vec::kAllKept << (i - at)), out, kept);
}

// Decoding with its constants in registers for a whole kernel.
template <typename Vec>
struct BlockDecoder {
  using V = typename Vec::V;
  SkipTables<Vec> tables;
  V shift, lastChar, lastCharAdd;

  QTA_BASE64_KERNEL explicit BlockDecoder(const Alphabet& alphabet)
      : tables(alphabet),
        shift(Vec::table(alphabet.decodeShift.data())),
        lastChar(Vec::splat8(static_cast<uint8_t>(alphabet.lastChar))),
        lastCharAdd(Vec::splat8(static_cast<uint8_t>(alphabet.lastCharAdd))) {}

  // kSize alphabet characters to kSize / 4 * 3 bytes, at the front of the result.
  QTA_BASE64_KERNEL V decode(V chars) const {
    if constexpr (Vec::kWholeTables) return pack(tables.values(chars));
    const V slot = Vec::add8(tables.highNibbles(chars), Vec::equal8(chars, lastChar) & lastCharAdd);
    return pack(Vec::add8(chars, Vec::lookup(shift, slot)));
  }

  QTA_BASE64_KERNEL static V pack(V values) {
    // Pairs of values into 12-bit fields, then pairs of those into 24 bits.
    const V pairs = Vec::maddU8S8(values, Vec::splat32(0x01400140));
    return Vec::packDecoded(Vec::maddS16(pairs, Vec::splat32(0x00011000)));
  }
};

// Decodes blocks straight from the text while they hold alphabet characters
// only, two per round with one test for skipped bytes. Where a block holds
// one, the whole groups before it are decoded as one more block that ends
// there and overlaps blocks already done (rewriting the same bytes).
template <typename Vec>
QTA_BASE64_ENTRY size_t decodeRunBlocks(const char* text, size_t size, uint8_t* out, size_t room,
                                        const Alphabet& alphabet) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  constexpr size_t kOut = kSize / 4 * 3;
  if (size < kSize) return 0;
  const BlockDecoder<Vec> decoder(alphabet);
  const SkipTables<Vec>& tables = decoder.tables;
  const auto decode = [&](V chars) QTA_BASE64_LAMBDA { return decoder.decode(chars); };
  // Whole-vector stores (kOut bytes of result, the rest scratch that the
  // next block overwrites) while the scratch stays inside `room`.
  size_t i = 0;
  size_t o = 0;
  for (; size - i >= 2 * kSize && room - o >= kOut + kSize; i += 2 * kSize, o += 2 * kOut) {
    const V first = Vec::load(text + i);
    const V second = Vec::load(text + i + kSize);
    if (Vec::anySet(tables.skipped(first) | tables.skipped(second))) break;
    Vec::store(out + o, decode(first));
    Vec::store(out + o + kOut, decode(second));
  }
  typename Vec::Mask kept = 0;
  for (; size - i >= kSize; i += kSize, o += kOut) {
    const V chars = Vec::load(text + i);
    kept = tables.kept(chars);
    if (kept != Vec::kAllKept) break;
    if (room - o >= kSize) {
      Vec::store(out + o, decode(chars));
    } else {
      Vec::storeDecoded(out + o, decode(chars));
    }
  }
  if (i == size) return i;
  // Fewer than a block left: its bytes from the last block of the text.
  if (size - i < kSize) kept = tables.kept(Vec::load(text + size - kSize)) >> (i - (size - kSize));
  // Alphabet characters from i up to the first skipped byte or the end.
  const size_t run = std::min(
      static_cast<size_t>(std::countr_zero(static_cast<typename Vec::Mask>(~kept))), size - i);
  const size_t groups = run - run % 4;
  if (groups == 0 || i + groups < kSize) return i;
  const size_t at = i + groups - kSize;
  Vec::storeDecoded(out + at / 4 * 3, decode(Vec::load(text + at)));
  return i + groups;
}

// True when the `count` bytes at `bytes` are all outside the alphabet (the
// gap after a line); tests every byte, so it only steers a branch.
inline bool allSkipped(const char* bytes, size_t count, const Alphabet& alphabet) {
  bool skipped = true;
  for (size_t at = 0; at < count; ++at) {
    skipped &= alphabet.decode[static_cast<uint8_t>(bytes[at])] == kSkip;
  }
  return skipped;
}

// Decodes lines of `lineChars` alphabet characters (a multiple of 4 from
// kLeading * kSize + 1 to (kLeading + 1) * kSize) each followed by `gap`
// skipped bytes, where they stand, while the text keeps to that shape. A line
// is kLeading blocks from its start and one ending at its end; all of them and
// the gap bytes are tested before any is stored, so the tests only steer a
// branch and no line waits for the one before.
template <typename Vec, size_t kLeading>
QTA_BASE64_KERNEL size_t decodeLinesOf(const char* text, size_t size, uint8_t* out,
                                       size_t lineChars, size_t gap, const Alphabet& alphabet) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  constexpr size_t kOut = kSize / 4 * 3;
  const BlockDecoder<Vec> decoder(alphabet);
  const size_t stride = lineChars + gap;
  const size_t lineOut = lineChars / 4 * 3;
  const size_t lastAt = lineChars - kSize;
  // Each leading block is stored whole (its scratch rewritten by the next
  // store) unless the last one's scratch would pass the line's end.
  const bool lastLeadingWhole = kLeading > 0 && (kLeading - 1) * kOut + kSize <= lineOut;
  size_t lines = 0;
  for (const char* line = text; static_cast<size_t>(text + size - line) >= stride;
       line += stride, out += lineOut, ++lines) {
    V chars[kLeading + 1];
    chars[kLeading] = Vec::load(line + lastAt);
    V skipped = decoder.tables.skipped(chars[kLeading]);
    for (size_t k = 0; k < kLeading; ++k) {
      chars[k] = Vec::load(line + k * kSize);
      skipped = skipped | decoder.tables.skipped(chars[k]);
    }
    if (Vec::anySet(skipped) || !allSkipped(line + lineChars, gap, alphabet)) break;
    for (size_t k = 0; k < kLeading; ++k) {
      const V bytes = decoder.decode(chars[k]);
      if (k + 1 < kLeading || lastLeadingWhole) {
        Vec::store(out + k * kOut, bytes);
      } else {
        Vec::storeDecoded(out + k * kOut, bytes);
      }
    }
    Vec::storeDecoded(out + lastAt / 4 * 3, decoder.decode(chars[kLeading]));
  }
  return lines;
}

// Line lengths up to this many blocks are decoded line by line.
constexpr size_t kMaxLineBlocks = 8;

template <typename Vec, size_t... kLeading>
QTA_BASE64_KERNEL size_t decodeLinesByLength(std::index_sequence<kLeading...>, const char* text,
                                             size_t size, uint8_t* out, size_t lineChars,
                                             size_t gap, const Alphabet& alphabet) {
  const size_t leading = (lineChars - 1) / Vec::kSize;
  size_t lines = 0;
  // The instance for the line's number of leading blocks runs; the others are passed over.
  ((leading == kLeading ? static_cast<void>(lines = decodeLinesOf<Vec, kLeading>(
                                                text, size, out, lineChars, gap, alphabet))
                        : static_cast<void>(0)),
   ...);
  return lines;
}

// Decodes lines longer than a vector (with whole tables) as one stream of
// blocks that runs across the line ends. A block that meets a line's end loads
// the rest of that line and, separately, the start of the next, and blends the
// two, so the gap costs no block of its own and a line of 76 characters takes
// 1.19 blocks instead of 2. The blended characters are tested as any block's
// are; each gap must repeat the first one byte for byte, which is found
// skipped here. Returns the number of whole lines decoded, stopping at the
// first block that breaks the shape; a partly decoded line is decoded again by
// the caller, and nothing is stored past the decoded characters.
template <typename Vec>
QTA_BASE64_KERNEL size_t decodeJoinedLines(const char* text, size_t size, uint8_t* out,
                                           size_t lineChars, size_t gap, const Alphabet& alphabet) {
  using V = typename Vec::V;
  constexpr size_t kSize = Vec::kSize;
  constexpr size_t kOut = kSize / 4 * 3;
  const size_t stride = lineChars + gap;
  if (size < stride || gap > 8) return 0;
  if (!allSkipped(text + lineChars, gap, alphabet)) return 0;
  // The eight bytes that end a gap, of which the last `gap` (at most eight)
  // are compared; a line has at least kSize characters before them.
  const auto gapWord = [](const char* gapEnd) {
    uint64_t word;
    std::memcpy(&word, gapEnd - 8, 8);
    return word;
  };
  const uint64_t firstGap = gapWord(text + stride);
  const unsigned gapShift = static_cast<unsigned>(8 * (8 - gap));
  const BlockDecoder<Vec> decoder(alphabet);
  const char* const end = text + size;
  const char* line = text;
  size_t offset = 0;  // characters of `line` already decoded
  size_t lines = 0;
  while (static_cast<size_t>(end - line) >= gap + offset + kSize) {
    const size_t left = lineChars - offset;
    V chars;
    if (left > kSize) {
      chars = Vec::load(line + offset);
    } else {
      const char* const next = line + stride;
      if (((gapWord(next) ^ firstGap) >> gapShift) != 0) break;
      chars = Vec::joinFront(left, Vec::load(line + offset), Vec::load(next - left));
    }
    if (Vec::anySet(decoder.tables.skipped(chars))) break;
    Vec::storeDecoded(out, decoder.decode(chars));
    out += kOut;
    if (left > kSize) {
      offset += kSize;
    } else {
      line += stride;
      offset = kSize - left;
      ++lines;
    }
  }
  return lines;
}

template <typename Vec>
QTA_BASE64_ENTRY size_t decodeLinesBlocks(const char* text, size_t size, uint8_t* out,
                                          size_t lineChars, size_t gap, const Alphabet& alphabet) {
  if (lineChars < Vec::kSize || lineChars % 4 != 0) return 0;
  if constexpr (Vec::kWholeTables) {
    if (lineChars > Vec::kSize) {
      return decodeJoinedLines<Vec>(text, size, out, lineChars, gap, alphabet);
    }
  }
  return decodeLinesByLength<Vec>(std::make_index_sequence<kMaxLineBlocks>(), text, size, out,
                                  lineChars, gap, alphabet);
}

// The kernels of one vector width.
template <typename Vec>
constexpr Kernels blockKernels() {
  return {encodeBlocks<Vec>, filterBlocks<Vec>, decodeRunBlocks<Vec>, decodeLinesBlocks<Vec>};
}

}  // namespace
}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_BLOCKS_H_
