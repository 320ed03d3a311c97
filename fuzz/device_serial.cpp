// Feeds any text to the serial-number reader. Its documented refusals are
// std::invalid_argument and std::out_of_range; anything else escapes and
// aborts. An accepted serial number must encode back to the same text in
// upper case.
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "qta/device/mac_serial.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string serial(reinterpret_cast<const char*>(data), size);
  try {
    const qta::DeviceMac mac = qta::device::serialToMac(serial);
    std::string upper = serial;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    // Fewer than eight characters read as padded with "2", the zero group.
    upper.resize(8, '2');
    if (mac.mac().size() != 12 || qta::device::macToSerial(mac) != upper) std::abort();
  } catch (const std::invalid_argument&) {
  } catch (const std::out_of_range&) {
  }
  return 0;
}
