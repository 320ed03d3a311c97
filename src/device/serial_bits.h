// The 40-bit buffer of a serial number and the check arithmetic over it.
//
// Bits are numbered 0-39 from the most significant bit of the first byte. A
// field is written or read at such a position and may straddle bytes; a field
// reaching past bit 39 throws std::out_of_range.
#ifndef QTA_SRC_DEVICE_SERIAL_BITS_H_
#define QTA_SRC_DEVICE_SERIAL_BITS_H_

#include <array>
#include <cstdint>

namespace qta::device::detail {

inline constexpr unsigned kSerialBits = 40;
inline constexpr unsigned kGroupBits = 5;
inline constexpr unsigned kSerialGroups = kSerialBits / kGroupBits;

class SerialBits {
 public:
  // Replaces the field of `width` bits at `position` with `value`. Bits of
  // `value` above the field are ORed into the bits before it, as the variant
  // is written unmasked. Throws std::out_of_range("setBits index").
  void set(unsigned position, unsigned width, unsigned value);
  // Throws std::out_of_range("getBits index").
  unsigned get(unsigned position, unsigned width) const;

 private:
  uint64_t bits_ = 0;  // the 40 bits in the low end, bit 0 as bit 39
};

// The Damm quasigroup of order 32: table[r][c] = 2 * (r XOR c) in GF(2^5)
// modulo x^5 + x + 1. Its diagonal is 0 and it is weakly totally
// anti-symmetric, so a check over it catches substitutions and adjacent
// transpositions.
constexpr std::array<std::array<uint8_t, 32>, 32> makeDammTable() {
  std::array<std::array<uint8_t, 32>, 32> table{};
  for (unsigned r = 0; r < 32; ++r) {
    for (unsigned c = 0; c < 32; ++c) {
      unsigned doubled = (r ^ c) << 1;
      if (doubled & 0x20) doubled ^= 0x23;
      table[r][c] = static_cast<uint8_t>(doubled);
    }
  }
  return table;
}

inline constexpr auto kDammTable = makeDammTable();

// The interim value after the first `groups` 5-bit groups of `bits`.
unsigned dammInterim(const SerialBits& bits, unsigned groups);

// The XOR of bits 11-34, the MAC's last three bytes.
unsigned macParity(const SerialBits& bits);

}  // namespace qta::device::detail

#endif  // QTA_SRC_DEVICE_SERIAL_BITS_H_
