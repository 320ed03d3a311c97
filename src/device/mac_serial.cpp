#include "qta/device/mac_serial.h"

#include <stdexcept>
#include <string_view>

#include "device/serial_bits.h"

namespace qta {

namespace {

constexpr std::string_view kOui = "00c0de";
constexpr size_t kMacDigits = 12;

}  // namespace

DeviceMac::DeviceMac(uint8_t variant, const std::string& macText) : variant_(variant) {
  for (const char c : macText) {
    if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')) {
      mac_ += c;
    } else if (c >= 'A' && c <= 'F') {
      mac_ += static_cast<char>(c - 'A' + 'a');
    } else if (c != ':' && c != '-') {
      break;
    }
    // Stop early so a huge text costs no more than a long one.
    if (mac_.size() > kMacDigits) break;
  }
  if (mac_.size() != kMacDigits || !mac_.starts_with(kOui)) {
    throw std::invalid_argument("bad mac");
  }
}

namespace device {

namespace {

using detail::kGroupBits;
using detail::kSerialGroups;
using detail::SerialBits;

constexpr std::string_view kAlphabet = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr unsigned kLeadX = 29;  // "X" in the alphabet
constexpr unsigned kVariantAt = 5;
constexpr unsigned kParityAt = 10;
constexpr unsigned kMacAt = 11;
constexpr unsigned kMacBits = 24;
constexpr unsigned kCheckAt = 35;
constexpr unsigned kDataGroups = kSerialGroups - 1;

unsigned hexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  throw std::invalid_argument("invalid base 16 character");
}

// The alphabet index of `c`, letters in either case.
unsigned base32Value(char c) {
  const char upper = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
  const size_t at = kAlphabet.find(upper);
  if (at == std::string_view::npos) {
    throw std::invalid_argument("invalid base32 character");
  }
  return static_cast<unsigned>(at);
}

}  // namespace

std::string macToSerial(const DeviceMac& mac) {
  SerialBits bits;
  bits.set(0, kGroupBits, kLeadX);
  bits.set(kVariantAt, kGroupBits, mac.variant());
  unsigned position = kMacAt;
  for (const char c : mac.mac().substr(kOui.size())) {
    const unsigned digit = hexValue(c);
    bits.set(position, 4, digit);
    position += 4;
  }
  bits.set(kParityAt, 1, detail::macParity(bits));
  bits.set(kCheckAt, kGroupBits, detail::dammInterim(bits, kDataGroups));

  std::string serial;
  for (unsigned group = 0; group < kSerialGroups; ++group) {
    serial += kAlphabet[bits.get(group * kGroupBits, kGroupBits)];
  }
  return serial;
}

DeviceMac serialToMac(const std::string& serial) {
  if (serial.empty()) throw std::invalid_argument("Serial number must start with an X");
  SerialBits bits;
  unsigned position = 0;
  for (const char c : serial) {
    const unsigned value = base32Value(c);
    bits.set(position, kGroupBits, value);
    position += kGroupBits;
  }
  if (bits.get(0, kGroupBits) != kLeadX) {
    throw std::invalid_argument("Serial number must start with an X");
  }
  if (bits.get(kParityAt, 1) != detail::macParity(bits)) {
    throw std::invalid_argument("Parity error");
  }
  if (detail::dammInterim(bits, kSerialGroups) != 0) {
    throw std::invalid_argument("Damm code error");
  }

  static constexpr char kHexDigits[] = "0123456789ABCDEF";
  std::string macText(kOui);
  for (unsigned at = kMacAt; at < kMacAt + kMacBits; at += 4)
    macText += kHexDigits[bits.get(at, 4)];
  return DeviceMac(static_cast<uint8_t>(bits.get(kVariantAt, kGroupBits)), macText);
}

}  // namespace device
}  // namespace qta
