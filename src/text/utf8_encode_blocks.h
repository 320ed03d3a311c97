// The block-wise UTF-16 and UTF-32 to UTF-8 converter and the ASCII run loop
// of UTF-16, written once for every vector width.
//
// A block is 8 units per 16-byte part of a vector. Units below 0x10000 that are
// not surrogates encode on their own into 1, 2 or 3 bytes, so such a block is
// converted by computing every unit's bytes in its own lane and packing them
// with one byte shuffle from a table indexed by which units are ASCII and which
// are below 0x800. Blocks of one shape take dedicated steps: all below 0x800
// (Cyrillic, Hebrew, Arabic with ASCII) and all 3 bytes (Chinese, Japanese). From UTF-16, a block
// of well-formed surrogate pairs, each starting a 32-bit lane (emoji), is converted too. Anything
// else ends the run: the scalar code goes on from there and decides every replacement rule; a block
// of ASCII ends it too, since the caller's own ASCII loop is faster.
//
// The shuffles store whole 16-byte parts, up to 12 bytes past a block's output.
// A block is converted only when the 16 units after it are plain units, each
// writing at least a byte, so the output still to come covers those bytes and a
// caller's buffer of exactly the result's size is never overrun.
//
// Each kernel file defines QTA_ENCODE_KERNEL_TARGET (the instruction sets of its
// kernel, as for the target attribute), includes this header and supplies a
// struct of vector operations on 16-bit lanes (listed before encodeBlocks) whose
// functions are declared QTA_ENCODE_KERNEL. Everything here but the tables has
// internal linkage, so each kernel gets its own copy for its instruction set.
#ifndef QTA_TEXT_UTF8_ENCODE_BLOCKS_H_
#define QTA_TEXT_UTF8_ENCODE_BLOCKS_H_

#ifndef QTA_ENCODE_KERNEL_TARGET
#error "define QTA_ENCODE_KERNEL_TARGET before including utf8_encode_blocks.h"
#endif

#include <tmmintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "text/utf8_encode_kernels.h"

// Inlined into the kernel's entry point, compiled for its instruction sets.
#define QTA_ENCODE_KERNEL [[gnu::always_inline, gnu::target(QTA_ENCODE_KERNEL_TARGET)]] inline

namespace qta::text::detail {

// A byte shuffle for one 16-byte part and the bytes it leaves in front.
struct alignas(16) PackShuffle {
  std::array<uint8_t, 16> index;
  uint8_t length;
};

// The shuffle that keeps, in order, `bytes(lane)` bytes from the start of each of
// `lanes` lanes of `laneSize` bytes.
template <typename Bytes>
constexpr PackShuffle packLanes(unsigned lanes, unsigned laneSize, Bytes bytes) {
  PackShuffle shuffle{};
  unsigned k = 0;
  for (unsigned lane = 0; lane < lanes; ++lane) {
    for (unsigned b = 0; b < bytes(lane); ++b) shuffle.index[k++] = lane * laneSize + b;
  }
  shuffle.length = static_cast<uint8_t>(k);
  while (k < 16) shuffle.index[k++] = 0x80;
  return shuffle;
}

// Eight 16-bit lanes of 1- or 2-byte forms, indexed by the lanes that are ASCII.
constexpr std::array<PackShuffle, 256> makeTwoByteShuffles() {
  std::array<PackShuffle, 256> table{};
  for (unsigned ascii = 0; ascii < 256; ++ascii) {
    table[ascii] = packLanes(8, 2, [ascii](unsigned lane) { return 2 - (ascii >> lane & 1); });
  }
  return table;
}

// Four 32-bit lanes of 1-, 2- or 3-byte forms, indexed by the lanes that are
// ASCII (low nibble) and those below 0x800 (high nibble).
constexpr std::array<PackShuffle, 256> makeMixedShuffles() {
  std::array<PackShuffle, 256> table{};
  for (unsigned index = 0; index < 256; ++index) {
    table[index] = packLanes(4, 4, [index](unsigned lane) {
      return 3 - (index >> lane & 1) - (index >> (lane + 4) & 1);
    });
  }
  return table;
}

inline constexpr std::array<PackShuffle, 256> kTwoByteShuffles = makeTwoByteShuffles();
inline constexpr std::array<PackShuffle, 256> kMixedShuffles = makeMixedShuffles();

namespace {

// The units a block must be followed by, all plain, before it is converted.
constexpr size_t kPlainAhead = 16;

// The vector operations a kernel provides (V holds 16-bit lanes):
//   kUnits, kParts         units in a vector, and its 16-byte parts
//   load(const char16_t*)  kUnits units
//   narrow(const char32_t*, V&)  kUnits code points cut to 16-bit lanes, and
//                          whether all are below 0x10000
//   splat(u), srli<n>, slli<n>, equal    on 16-bit lanes
//   splat32(u), srli32<n>, slli32<n>, add32, equal32   on 32-bit lanes
//   select(m, a, b)        a where m is set, else b
//   unpackLow, unpackHigh  16-bit lanes interleaved, within each part
//   quarterMasks(a, b)     one bit per lane of the comparison results a and b,
//                          per 16-byte part a's first four lanes, b's first
//                          four, a's last four, b's last four
//   laneMasks(a)           one bit per lane of a, bits 16p to 16p+7 for part p
//   anySet(m), allSet(m)   of comparison results
//   shuffle(v, s)          part i shuffled by s[i]->index
//   part<i>(v)             16-byte part i
//   noBitsOf(v, bits)      whether no lane of v has any of `bits`
//   storeNarrowed(out, a[, b])  the ASCII units of a (and then b) as bytes
// plus &, | on V.

// `v`, hidden from the compiler's view of constants. Without this, the loops
// build their constant vectors again in every iteration (from an integer
// register, three instructions each) rather than keep them in registers.
template <typename V>
QTA_ENCODE_KERNEL V opaque(V v) {
  asm("" : "+x"(v));
  return v;
}

// The operations on 16-byte vectors, which every kernel's instruction sets
// include: the whole SSSE3 kernel, and the wider kernels' last blocks.
struct Units8 {
  using V = __m128i;
  static constexpr size_t kUnits = 8;
  static constexpr size_t kParts = 1;

  QTA_ENCODE_KERNEL static V load(const char16_t* p) {
    return _mm_loadu_si128(reinterpret_cast<const V*>(p));
  }
  QTA_ENCODE_KERNEL static bool narrow(const char32_t* p, V& units) {
    const V a = _mm_loadu_si128(reinterpret_cast<const V*>(p));
    const V b = _mm_loadu_si128(reinterpret_cast<const V*>(p + 4));
    // Signed saturation keeps values below 0x10000 once moved into its range.
    const V bias = splat32(0x8000);
    units = _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias)) ^ splat(0x8000);
    return allSet(equal32((a | b) & splat32(0xFFFF0000), splat32(0)));
  }
  QTA_ENCODE_KERNEL static V splat(uint16_t u) {
    return opaque(_mm_set1_epi16(static_cast<short>(u)));
  }
  template <int n>
  QTA_ENCODE_KERNEL static V srli(V v) {
    return _mm_srli_epi16(v, n);
  }
  template <int n>
  QTA_ENCODE_KERNEL static V slli(V v) {
    return _mm_slli_epi16(v, n);
  }
  QTA_ENCODE_KERNEL static V equal(V a, V b) { return _mm_cmpeq_epi16(a, b); }
  QTA_ENCODE_KERNEL static V splat32(uint32_t u) {
    return opaque(_mm_set1_epi32(static_cast<int>(u)));
  }
  template <int n>
  QTA_ENCODE_KERNEL static V srli32(V v) {
    return _mm_srli_epi32(v, n);
  }
  template <int n>
  QTA_ENCODE_KERNEL static V slli32(V v) {
    return _mm_slli_epi32(v, n);
  }
  QTA_ENCODE_KERNEL static V add32(V a, V b) { return _mm_add_epi32(a, b); }
  QTA_ENCODE_KERNEL static V equal32(V a, V b) { return _mm_cmpeq_epi32(a, b); }
  QTA_ENCODE_KERNEL static V select(V m, V a, V b) { return (m & a) | _mm_andnot_si128(m, b); }
  QTA_ENCODE_KERNEL static V unpackLow(V a, V b) { return _mm_unpacklo_epi16(a, b); }
  QTA_ENCODE_KERNEL static V unpackHigh(V a, V b) { return _mm_unpackhi_epi16(a, b); }
  QTA_ENCODE_KERNEL static unsigned quarterMasks(V a, V b) {
    const V order = _mm_setr_epi8(0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15);
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_shuffle_epi8(_mm_packs_epi16(a, b), order)));
  }
  QTA_ENCODE_KERNEL static unsigned laneMasks(V a) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(a, a)));
  }
  QTA_ENCODE_KERNEL static bool anySet(V m) { return _mm_movemask_epi8(m) != 0; }
  QTA_ENCODE_KERNEL static bool allSet(V m) { return _mm_movemask_epi8(m) == 0xFFFF; }
  QTA_ENCODE_KERNEL static V shuffle(V v, const PackShuffle* const* s) {
    return _mm_shuffle_epi8(v, _mm_load_si128(reinterpret_cast<const V*>(s[0]->index.data())));
  }
  template <int i>
  QTA_ENCODE_KERNEL static __m128i part(V v) {
    static_assert(i == 0);
    return v;
  }
  QTA_ENCODE_KERNEL static bool noBitsOf(V v, V bits) {
    return _mm_movemask_epi8(_mm_cmpeq_epi16(v & bits, _mm_setzero_si128())) == 0xFFFF;
  }
  QTA_ENCODE_KERNEL static void storeNarrowed(char* out, V ascii) {
    _mm_storel_epi64(reinterpret_cast<V*>(out), _mm_packus_epi16(ascii, ascii));
  }
  QTA_ENCODE_KERNEL static void storeNarrowed(char* out, V ascii, V next) {
    _mm_storeu_si128(reinterpret_cast<V*>(out), _mm_packus_epi16(ascii, next));
  }
};

// Stores a 16-byte part at `out`.
QTA_ENCODE_KERNEL void storePart(char* out, __m128i part) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), part);
}

// The constant vectors of the steps, built once before a kernel's loop.
template <typename Vec>
struct Constants {
  using V = typename Vec::V;
  V zero, low6, high9, top5, surrogate, twoByteMarks, threeByteMarks, continuationMark;

  QTA_ENCODE_KERNEL Constants()
      : zero(Vec::splat(0)),
        low6(Vec::splat(0x3F)),
        high9(Vec::splat(0xFF80)),
        top5(Vec::splat(0xF800)),
        surrogate(Vec::splat(0xD800)),
        twoByteMarks(Vec::splat(0x80C0)),
        threeByteMarks(Vec::splat(0x80E0)),
        continuationMark(Vec::splat(0x80)) {}
};

// True when the vector at `p` holds no unit outside the plain range (below
// 0x10000 and not a surrogate); its units are then in `units`.
template <typename Vec>
QTA_ENCODE_KERNEL bool plainBlock(const char16_t* p, typename Vec::V& units,
                                  const Constants<Vec>& k) {
  units = Vec::load(p);
  return !Vec::anySet(Vec::equal(units & k.top5, k.surrogate));
}

template <typename Vec>
QTA_ENCODE_KERNEL bool plainBlock(const char32_t* p, typename Vec::V& units,
                                  const Constants<Vec>& k) {
  return Vec::narrow(p, units) && !Vec::anySet(Vec::equal(units & k.top5, k.surrogate));
}

// Stores part `i` of `packed`, shuffled by shuffles[i], at `out`; returns the
// end of the bytes it holds.
template <typename Vec, int i>
QTA_ENCODE_KERNEL char* storeShuffled(char* out, typename Vec::V packed,
                                      const PackShuffle* const* shuffles) {
  storePart(out, Vec::template part<i>(packed));
  return out + shuffles[i]->length;
}

// Each unit's two bytes as if it took two: the lead byte below.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL V twoByteForms(V units, const Constants<Vec>& k) {
  return Vec::template srli<6>(units) | Vec::template slli<8>(units & k.low6) | k.twoByteMarks;
}

// Units below 0x800: each lane holds its 1 or 2 bytes, packed by the ASCII mask.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL char* belowU800(char* out, V units, V ascii, const Constants<Vec>& k) {
  const unsigned asciiMasks = Vec::laneMasks(ascii);
  const V two = twoByteForms<Vec>(units, k);
  const PackShuffle* shuffles[Vec::kParts];
  for (size_t part = 0; part < Vec::kParts; ++part) {
    shuffles[part] = &kTwoByteShuffles[asciiMasks >> 16 * part & 0xFF];
  }
  const V packed = Vec::shuffle(Vec::select(ascii, units, two), shuffles);
  out = storeShuffled<Vec, 0>(out, packed, shuffles);
  if constexpr (Vec::kParts == 2) out = storeShuffled<Vec, 1>(out, packed, shuffles);
  return out;
}

// True when the vector at `p` holds only units below 0x800 (never surrogates);
// they are then in `units`.
template <typename Vec, typename Unit>
QTA_ENCODE_KERNEL bool belowU800Block(const Unit* p, typename Vec::V& units,
                                      const Constants<Vec>& k) {
  if constexpr (sizeof(Unit) == 2) {
    units = Vec::load(p);
  } else if (!Vec::narrow(p, units)) {
    return false;
  }
  return Vec::allSet(Vec::equal(units & k.top5, k.zero));
}

// A run of blocks below 0x800, not all ASCII (Cyrillic, Greek, Arabic, Hebrew
// text with its spaces and punctuation), from the block at `p`, which is known
// to be one (`units`). A block is stored once the block after it is known to
// be below 0x800 too: its bytes then cover the scratch bytes of the block's
// store, so each block is loaded and checked once. Stops at the first other
// block, when fewer than two blocks remain or a block would start more than
// `reach` bytes past `out`. Advances `p`; returns the end of the output.
template <typename Vec, typename Unit, typename V = typename Vec::V>
QTA_ENCODE_KERNEL char* belowU800Run(const Unit*& p, const Unit* end, char* out, size_t reach,
                                     V units, const Constants<Vec>& k) {
  const char* const start = out;
  while (static_cast<size_t>(end - p) >= 2 * Vec::kUnits &&
         static_cast<size_t>(out - start) <= reach) {
    const V ascii = Vec::equal(units & k.high9, k.zero);
    V next;
    if (Vec::allSet(ascii) || !belowU800Block<Vec>(p + Vec::kUnits, next, k)) break;
    out = belowU800<Vec>(out, units, ascii, k);
    p += Vec::kUnits;
    units = next;
  }
  return out;
}

// Each unit's first two bytes as if it took three: the lead byte below, the
// first continuation byte above.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL V threeByteHeads(V units, const Constants<Vec>& k) {
  return Vec::template srli<12>(units) |
         Vec::template slli<8>(Vec::template srli<6>(units) & k.low6) | k.threeByteMarks;
}

// Each unit's last continuation byte.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL V lastContinuations(V units, const Constants<Vec>& k) {
  return (units & k.low6) | k.continuationMark;
}

// Units from 0x800 up: three bytes each, packed by a fixed shuffle. Each
// 16-byte part's 24 bytes are stored as two 12-byte pieces.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL char* threeBytes(char* out, V units, const Constants<Vec>& k) {
  const V heads = threeByteHeads<Vec>(units, k);
  const V tails = lastContinuations<Vec>(units, k);
  const PackShuffle* shuffles[Vec::kParts];
  for (auto& s : shuffles) s = &kMixedShuffles[0];
  const V low = Vec::shuffle(Vec::unpackLow(heads, tails), shuffles);
  const V high = Vec::shuffle(Vec::unpackHigh(heads, tails), shuffles);
  storePart(out, Vec::template part<0>(low));
  storePart(out + 12, Vec::template part<0>(high));
  if constexpr (Vec::kParts == 2) {
    storePart(out + 24, Vec::template part<1>(low));
    storePart(out + 36, Vec::template part<1>(high));
  }
  return out + 3 * Vec::kUnits;
}

// Any mix of 1-, 2- and 3-byte units: each 32-bit lane holds one unit's bytes.
template <typename Vec, typename V = typename Vec::V>
QTA_ENCODE_KERNEL char* mixed(char* out, V units, V ascii, V below800, unsigned masks,
                              const Constants<Vec>& k) {
  const V two = twoByteForms<Vec>(units, k);
  const V heads =
      Vec::select(below800, Vec::select(ascii, units, two), threeByteHeads<Vec>(units, k));
  const V tails = lastContinuations<Vec>(units, k);
  const V low = Vec::unpackLow(heads, tails);
  const V high = Vec::unpackHigh(heads, tails);
  // The index of four units: their ASCII bits below, below-0x800 bits above.
  const auto index = [masks](size_t part, unsigned quarter) {
    return masks >> (16 * part + 8 * quarter) & 0xFF;
  };
  const PackShuffle* lowShuffles[Vec::kParts];
  const PackShuffle* highShuffles[Vec::kParts];
  for (size_t part = 0; part < Vec::kParts; ++part) {
    lowShuffles[part] = &kMixedShuffles[index(part, 0)];
    highShuffles[part] = &kMixedShuffles[index(part, 1)];
  }
  const V lowPacked = Vec::shuffle(low, lowShuffles);
  const V highPacked = Vec::shuffle(high, highShuffles);
  out = storeShuffled<Vec, 0>(out, lowPacked, lowShuffles);
  out = storeShuffled<Vec, 0>(out, highPacked, highShuffles);
  if constexpr (Vec::kParts == 2) {
    out = storeShuffled<Vec, 1>(out, lowPacked, lowShuffles);
    out = storeShuffled<Vec, 1>(out, highPacked, highShuffles);
  }
  return out;
}

// Blocks of surrogate pairs, each starting a 32-bit lane (emoji), while they
// last, whole blocks remain and a block starts at most `reach` bytes past `out`:
// their 4-byte forms, exactly the blocks' output. Advances `p`; returns the end
// of the output.
template <typename Vec>
QTA_ENCODE_KERNEL char* surrogatePairs(const char16_t*& p, const char16_t* end, char* out,
                                       size_t reach) {
  using V = typename Vec::V;
  const V shapeBits = Vec::splat32(0xFC00FC00);
  const V shape = Vec::splat32(0xDC00D800);  // the high surrogate below, the low one above
  const V tenBits = Vec::splat32(0x3FF);
  const V planeOne = Vec::splat32(0x10000);
  const V six = Vec::splat32(0x3F);
  const V markers = Vec::splat32(0x808080F0);
  const char* const start = out;
  while (static_cast<size_t>(end - p) >= Vec::kUnits && static_cast<size_t>(out - start) <= reach) {
    const V pairs = Vec::load(p);
    if (!Vec::allSet(Vec::equal32(pairs & shapeBits, shape))) break;
    const V value = Vec::add32(
        Vec::template slli32<10>(pairs & tenBits) | (Vec::template srli32<16>(pairs) & tenBits),
        planeOne);
    const V bytes = Vec::template srli32<18>(value) |
                    Vec::template slli32<8>(Vec::template srli32<12>(value) & six) |
                    Vec::template slli32<16>(Vec::template srli32<6>(value) & six) |
                    Vec::template slli32<24>(value & six) | markers;
    storePart(out, Vec::template part<0>(bytes));
    if constexpr (Vec::kParts == 2) storePart(out + 16, Vec::template part<1>(bytes));
    out += 2 * Vec::kUnits;
    p += Vec::kUnits;
  }
  return out;
}

template <typename Vec>
QTA_ENCODE_KERNEL char* surrogatePairs(const char32_t*&, const char32_t*, char* out, size_t) {
  return out;
}

// Converts blocks from `src` while a block and the kPlainAhead units after it
// are in the text and a step's output and stores fit in `room`. Stops at the
// first block it does not handle. Advances `src`; returns the bytes written.
template <typename Vec, typename Unit>
QTA_ENCODE_KERNEL size_t encodeBlocks(const Unit*& src, const Unit* end, char* out, size_t room) {
  using V = typename Vec::V;
  constexpr size_t kUnits = Vec::kUnits;
  constexpr size_t kStepRoom = 3 * kUnits + kPlainAhead;  // a step's output and overstore
  // Every lane's bit set in quarterMasks(ascii, below800): all ASCII, or all below 0x800.
  constexpr unsigned kAllAscii = Vec::kParts == 1 ? 0x0F0F : 0x0F0F0F0F;
  constexpr unsigned kAllBelowU800 = kAllAscii << 4;
  if (room < kStepRoom) return 0;
  const Constants<Vec> k;
  const Unit* p = src;
  char* o = out;
  const Unit* plainUntil = p;  // the units from p up to here are plain
  while (static_cast<size_t>(end - p) >= kUnits + kPlainAhead &&
         static_cast<size_t>(o - out) <= room - kStepRoom) {
    // A block not known to be plain may start a run of surrogate pairs (emoji),
    // converted in a loop of its own.
    if (plainUntil <= p) {
      char* const before = o;
      o = surrogatePairs<Vec>(p, end, o, room - kStepRoom - static_cast<size_t>(o - out));
      if (o != before) continue;
      plainUntil = p;
    }
    V ahead;
    while (plainUntil < p + kUnits + kPlainAhead && plainBlock<Vec>(plainUntil, ahead, k)) {
      plainUntil += kUnits;
    }
    if (plainUntil < p + kUnits + kPlainAhead) break;
    V units;
    plainBlock<Vec>(p, units, k);
    const V ascii = Vec::equal(units & k.high9, k.zero);
    const V below800 = Vec::equal(units & k.top5, k.zero);
    const unsigned masks = Vec::quarterMasks(ascii, below800);
    if ((masks & kAllAscii) == kAllAscii) break;  // the caller's ASCII loop is faster
    if ((masks & kAllBelowU800) == kAllBelowU800) {
      // Only on 16-byte vectors: in the 32-byte loop its code made the steps
      // for three-byte text (Chinese, Japanese, Korean) slower.
      if constexpr (Vec::kParts == 1) {
        const Unit* const runStart = p;
        o = belowU800Run<Vec>(p, end, o, room - kStepRoom - static_cast<size_t>(o - out), units, k);
        if (p != runStart) continue;
      }
      o = belowU800<Vec>(o, units, ascii, k);
    } else if ((masks & kAllBelowU800) == 0) {
      o = threeBytes<Vec>(o, units, k);
    } else {
      o = mixed<Vec>(o, units, ascii, below800, masks, k);
    }
    p += kUnits;
  }
  src = p;
  return static_cast<size_t>(o - out);
}

// The block of units at `p`, not all ASCII, converted with the mixed step
// when its units are plain and so are the kPlainAhead after it (their bytes
// cover the step's scratch bytes) and `room` holds the step's stores. Returns
// the end of its output, or nullptr with nothing written.
template <typename Vec>
QTA_ENCODE_KERNEL char* mixedBlock(const char16_t* p, const char16_t* end, char* out, size_t room,
                                   const Constants<Vec>& k) {
  using V = typename Vec::V;
  constexpr size_t kUnits = Vec::kUnits;
  if (static_cast<size_t>(end - p) < kUnits + kPlainAhead || room < 3 * kUnits + kPlainAhead) {
    return nullptr;
  }
  V units;
  V ahead;
  if (!plainBlock<Vec>(p, units, k)) return nullptr;
  for (size_t at = kUnits; at <= kPlainAhead; at += kUnits) {
    if (!plainBlock<Vec>(p + at, ahead, k)) return nullptr;
  }
  const V ascii = Vec::equal(units & k.high9, k.zero);
  const V below800 = Vec::equal(units & k.top5, k.zero);
  return mixed<Vec>(out, units, ascii, below800, Vec::quarterMasks(ascii, below800), k);
}

// The OR of the `n` vectors at `v`, in pairs, so the ORs do not wait for each
// other.
template <size_t n, typename V>
QTA_ENCODE_KERNEL V orTree(const V* v) {
  if constexpr (n == 1) {
    return v[0];
  } else {
    return orTree<n / 2>(v) | orTree<n - n / 2>(v + n / 2);
  }
}

// Narrows runs of kAsciiRunUnits ASCII units after one test while that many
// units remain and fit in `room`. A run with other units is taken block by
// block: ASCII blocks narrowed, the others through the mixed step (slower than
// narrowing, so ASCII blocks skip it), up to 48 units of them in a row; more
// is text of another script, which encodeBlocks() converts faster. Stops
// there, at a block that is not plain and near the end. Advances `src`;
// returns the bytes written.
template <typename Vec>
QTA_ENCODE_KERNEL size_t narrowAsciiRuns(const char16_t*& src, const char16_t* end, char* out,
                                         size_t room) {
  using V = typename Vec::V;
  constexpr size_t kRun = kAsciiRunUnits;
  constexpr size_t kUnits = Vec::kUnits;
  constexpr size_t kVectors = kRun / kUnits;
  constexpr size_t kMixedBlocksInRow = 48 / kUnits;
  const Constants<Vec> k;
  const char16_t* p = src;
  char* o = out;
  size_t mixedBlocks = 0;  // blocks in a row before p that were not all ASCII
  while (static_cast<size_t>(end - p) >= kRun && room - static_cast<size_t>(o - out) >= kRun) {
    V units[kVectors];
    for (size_t i = 0; i < kVectors; ++i) units[i] = Vec::load(p + i * kUnits);
    if (Vec::noBitsOf(orTree<kVectors>(units), k.high9)) [[likely]] {
      for (size_t i = 0; i < kVectors; i += 2) {
        Vec::storeNarrowed(o + i * kUnits, units[i], units[i + 1]);
      }
      p += kRun;
      o += kRun;
      mixedBlocks = 0;
      continue;
    }
    for (const char16_t* const runEnd = p + kRun; p != runEnd; p += kUnits) {
      const V block = Vec::load(p);
      const size_t left = room - static_cast<size_t>(o - out);
      if (Vec::noBitsOf(block, k.high9) && left >= kUnits) {
        Vec::storeNarrowed(o, block);
        o += kUnits;
        mixedBlocks = 0;
        continue;
      }
      char* const next =
          mixedBlocks == kMixedBlocksInRow ? nullptr : mixedBlock<Vec>(p, end, o, left, k);
      if (next == nullptr) {
        src = p;
        return static_cast<size_t>(o - out);
      }
      o = next;
      ++mixedBlocks;
    }
  }
  src = p;
  return static_cast<size_t>(o - out);
}

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_ENCODE_BLOCKS_H_
