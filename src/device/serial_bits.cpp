#include "device/serial_bits.h"

#include <bit>
#include <stdexcept>

namespace qta::device::detail {

namespace {

constexpr uint64_t kAllBits = (uint64_t{1} << kSerialBits) - 1;

constexpr uint64_t fieldMask(unsigned width) { return (uint64_t{1} << width) - 1; }

}  // namespace

void SerialBits::set(unsigned position, unsigned width, unsigned value) {
  if (position > kSerialBits || width > kSerialBits - position) {
    throw std::out_of_range("setBits index");
  }
  const unsigned shift = kSerialBits - position - width;
  bits_ &= ~(fieldMask(width) << shift);
  bits_ |= (uint64_t{value} << shift) & kAllBits;
}

unsigned SerialBits::get(unsigned position, unsigned width) const {
  if (position > kSerialBits || width > kSerialBits - position) {
    throw std::out_of_range("getBits index");
  }
  return static_cast<unsigned>((bits_ >> (kSerialBits - position - width)) & fieldMask(width));
}

unsigned dammInterim(const SerialBits& bits, unsigned groups) {
  unsigned interim = 0;
  for (unsigned group = 0; group < groups; ++group) {
    interim = kDammTable[interim][bits.get(group * kGroupBits, kGroupBits)];
  }
  return interim;
}

unsigned macParity(const SerialBits& bits) {
  return static_cast<unsigned>(std::popcount(bits.get(11, 24))) & 1;
}

}  // namespace qta::device::detail
