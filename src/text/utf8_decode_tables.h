// The constant tables of the UTF-8 decoding kernels (utf8_decode_blocks.h),
// built by constexpr code at compile time.
#ifndef QTA_TEXT_UTF8_DECODE_TABLES_H_
#define QTA_TEXT_UTF8_DECODE_TABLES_H_

#include <array>
#include <cstdint>

namespace qta::text::detail {
namespace {

using Bytes16 = std::array<uint8_t, 16>;

// Lays four three-byte sequences into 32-bit lanes, the last byte lowest.
constexpr Bytes16 makeThreeByteShuffle() {
  Bytes16 shuffle{};
  for (unsigned lane = 0; lane < 4; ++lane) {
    for (unsigned j = 0; j < 3; ++j) shuffle[4 * lane + j] = static_cast<uint8_t>(3 * lane + 2 - j);
    shuffle[4 * lane + 3] = 0x80;
  }
  return shuffle;
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

}  // namespace
}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_DECODE_TABLES_H_
