// qta/device/mac_serial.h: the device's MAC address and its printed serial number.
//
// DeviceMac holds a 5-bit variant number and a MAC address normalised to 12
// lower-case hex digits under the maker's OUI 00c0de. macToSerial renders one
// as an eight-character serial number (a leading "X", the variant, a parity
// bit, the MAC's last three bytes and a check character, 5 bits per character
// from the alphabet "23456789ABCDEFGHJKLMNPQRSTUVWXYZ"); serialToMac reads it
// back. The check character makes every single-character substitution and
// every adjacent transposition of a serial number detectable.
//
// Failures are reported as std::invalid_argument or std::out_of_range with
// fixed texts ("bad mac", "invalid base32 character", "Parity error", ...).
// Values are plain copies owned by the caller; every function is pure and any
// number of threads may call them at once.
#ifndef QTA_DEVICE_MAC_SERIAL_H_
#define QTA_DEVICE_MAC_SERIAL_H_

#include <cstdint>
#include <string>

#include "qta/export.h"

namespace qta {

class QTA_EXPORT DeviceMac {
 public:
  // Keeps the hex digits of `macText` from its start (upper-case ones as
  // lower case), skipping ":" and "-" and stopping at any other character.
  // Throws std::invalid_argument("bad mac") unless exactly 12 digits
  // beginning with "00c0de" were kept.
  DeviceMac(uint8_t variant, const std::string& macText);

  uint8_t variant() const { return variant_; }
  // The 12 lower-case hex digits, no separators.
  const std::string& mac() const { return mac_; }

 private:
  uint8_t variant_;
  std::string mac_;
};

namespace device {

// The eight-character serial number of `mac`. Only variants 0-31 fit; a larger
// one spoils the leading "X" (it is not masked).
QTA_EXPORT std::string macToSerial(const DeviceMac& mac);

// Reads a serial number, letters in either case. Throws std::invalid_argument
// with "Serial number must start with an X", "invalid base32 character",
// "Parity error", "Damm code error" or "bad mac", and std::out_of_range with
// "setBits index" for a text longer than eight characters.
QTA_EXPORT DeviceMac serialToMac(const std::string& serial);

}  // namespace device
}  // namespace qta

#endif  // QTA_DEVICE_MAC_SERIAL_H_
