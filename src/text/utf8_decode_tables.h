// The constant tables of the UTF-8 decoding kernel (utf8_decode_blocks.h),
// built by constexpr code at compile time: the shuffles of its table steps,
// indexed by sequence ends, and the small tables its stores and loads use.
#ifndef QTA_TEXT_UTF8_DECODE_TABLES_H_
#define QTA_TEXT_UTF8_DECODE_TABLES_H_

#include <array>
#include <cstdint>

namespace qta::text::detail {
namespace {

using Bytes16 = std::array<uint8_t, 16>;

// How a table step lays the bytes of its sequences into 32-bit lanes: the
// last byte of a sequence in the lane's low byte, the lead in the highest
// byte it reaches, zeros above.
enum class StepKind : uint8_t { kNone, kUpTo3, kUpTo4 };

struct StepPlan {
  StepKind kind;
  uint8_t consumed;  // bytes of the sequences the step converts
  uint8_t shuffle;   // index into kStepShuffles
};

constexpr unsigned kStepBits = 12;
constexpr unsigned kUpTo3Sequences = 4;
constexpr unsigned kUpTo4Sequences = 3;
constexpr unsigned kUpTo3Shuffles = 81;  // 3^4 ways to have four sequences of 1 to 3 bytes
constexpr unsigned kUpTo4Shuffles = 64;  // 4^3 ways to have three of 1 to 4 bytes

// The lengths of the whole sequences that the ends in `mask` (bit i: byte i
// ends a sequence) mark from byte 0 on, up to `limit` of them, each up to
// `longest` bytes; returns how many.
constexpr unsigned sequenceLengths(unsigned mask, unsigned longest, unsigned limit,
                                   unsigned* lengths) {
  unsigned count = 0;
  unsigned start = 0;
  for (unsigned i = 0; i < kStepBits && count < limit; ++i) {
    if ((mask >> i & 1) == 0) continue;
    if (i + 1 - start > longest) break;
    lengths[count++] = i + 1 - start;
    start = i + 1;
  }
  return count;
}

// Lane k holds the bytes of sequence k, last byte lowest.
constexpr Bytes16 laneShuffle(const unsigned* lengths, unsigned count) {
  Bytes16 shuffle{};
  for (uint8_t& index : shuffle) index = 0x80;
  unsigned start = 0;
  for (unsigned k = 0; k < count; ++k) {
    for (unsigned j = 0; j < lengths[k]; ++j) {
      shuffle[4 * k + j] = static_cast<uint8_t>(start + lengths[k] - 1 - j);
    }
    start += lengths[k];
  }
  return shuffle;
}

struct StepTables {
  std::array<StepPlan, 1u << kStepBits> plans;
  std::array<Bytes16, kUpTo3Shuffles + kUpTo4Shuffles> shuffles;
};

constexpr StepTables makeStepTables() {
  StepTables tables{};
  for (unsigned mask = 0; mask < (1u << kStepBits); ++mask) {
    unsigned lengths[kUpTo3Sequences] = {};
    StepKind kind = StepKind::kNone;
    unsigned count = sequenceLengths(mask, 3, kUpTo3Sequences, lengths);
    unsigned index = 0;
    if (count == kUpTo3Sequences) {
      kind = StepKind::kUpTo3;
      for (unsigned k = count; k-- > 0;) index = index * 3 + lengths[k] - 1;
    } else {
      count = sequenceLengths(mask, 4, kUpTo4Sequences, lengths);
      if (count == kUpTo4Sequences) {
        kind = StepKind::kUpTo4;
        for (unsigned k = count; k-- > 0;) index = index * 4 + lengths[k] - 1;
        index += kUpTo3Shuffles;
      }
    }
    if (kind == StepKind::kNone) continue;
    unsigned consumed = 0;
    for (unsigned k = 0; k < count; ++k) consumed += lengths[k];
    tables.plans[mask] = {kind, static_cast<uint8_t>(consumed), static_cast<uint8_t>(index)};
    tables.shuffles[index] = laneShuffle(lengths, count);
  }
  return tables;
}

constexpr StepTables kStepTables = makeStepTables();

// The step shuffle for four three-byte sequences, the commonest table step.
constexpr Bytes16 makeThreeByteShuffle() {
  const unsigned lengths[] = {3, 3, 3, 3};
  return laneShuffle(lengths, 4);
}
constexpr Bytes16 kThreeByteShuffle = makeThreeByteShuffle();

// For each 8-bit mask of 16-bit lanes to keep: the kept lanes moved to the front.
constexpr std::array<Bytes16, 256> makeKeepTable() {
  std::array<Bytes16, 256> table{};
  for (unsigned mask = 0; mask < 256; ++mask) {
    unsigned k = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((mask >> lane & 1) == 0) continue;
      table[mask][k++] = static_cast<uint8_t>(2 * lane);
      table[mask][k++] = static_cast<uint8_t>(2 * lane + 1);
    }
    while (k < 16) table[mask][k++] = 0x80;
  }
  return table;
}
constexpr std::array<Bytes16, 256> kKeep = makeKeepTable();

// Bits set in each byte value (the kernels' instruction sets may lack popcnt).
constexpr std::array<uint8_t, 256> makeBitCounts() {
  std::array<uint8_t, 256> counts{};
  for (unsigned v = 1; v < 256; ++v) counts[v] = static_cast<uint8_t>(counts[v >> 1] + (v & 1));
  return counts;
}
constexpr std::array<uint8_t, 256> kBitCounts = makeBitCounts();

// For three 32-bit lanes, indexed by those that hold a surrogate pair: keep
// the low unit of the others and both units of these.
constexpr std::array<Bytes16, 8> makePairTable() {
  std::array<Bytes16, 8> table{};
  for (unsigned pairs = 0; pairs < 8; ++pairs) {
    unsigned k = 0;
    for (unsigned lane = 0; lane < 3; ++lane) {
      const unsigned bytes = (pairs >> lane & 1) != 0 ? 4 : 2;
      for (unsigned b = 0; b < bytes; ++b) table[pairs][k++] = static_cast<uint8_t>(4 * lane + b);
    }
    while (k < 16) table[pairs][k++] = 0x80;
  }
  return table;
}
constexpr std::array<Bytes16, 8> kPairs = makePairTable();

// Bytes 0 to 15, then 0x80: loaded from offset s, a shuffle that moves bytes
// down by s places.
constexpr std::array<uint8_t, 32> makeShiftDown() {
  std::array<uint8_t, 32> table{};
  for (unsigned i = 0; i < 32; ++i) table[i] = static_cast<uint8_t>(i < 16 ? i : 0x80);
  return table;
}
constexpr std::array<uint8_t, 32> kShiftDown = makeShiftDown();
}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_TABLES_H_
