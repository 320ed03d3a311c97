// qtatool serial: renders a MAC address and variant as the device's serial
// number, or reads a serial number back; and the serial section of
// `qtatool demo`.
#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "args.h"
#include "command.h"
#include "qta/device/mac_serial.h"

namespace qtatool {
namespace {

// A whole decimal number 0-255, read in the C locale.
std::optional<uint8_t> variantNumber(std::string_view text) {
  uint8_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// Runs the codec step `step`, printing its refusal (the exception's text) on
// stderr.
template <typename Step>
int refusedOr(Step step) {
  try {
    step();
    return kSuccess;
  } catch (const std::invalid_argument& error) {
    std::cerr << error.what() << "\n";
  } catch (const std::out_of_range& error) {
    std::cerr << error.what() << "\n";
  }
  return kRejected;
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(
      self, args, {.modes = {"encode", "decode"}, .operand = "operand", .maxOperands = 2});
  if (!parsed) return kUsage;
  const std::vector<std::string_view>& operands = parsed->operands;
  if (parsed->mode == "encode") {
    if (operands.size() != 2) return usageError(self, "encode needs VARIANT and MAC");
    const std::optional<uint8_t> variant = variantNumber(operands[0]);
    if (!variant)
      return usageError(self, "VARIANT is not a number 0-255: '" + std::string(operands[0]) + "'");
    return refusedOr([&] {
      std::cout << qta::device::macToSerial(qta::DeviceMac(*variant, std::string(operands[1])))
                << "\n";
    });
  }
  if (operands.size() != 1) return usageError(self, "decode needs one SERIAL");
  return refusedOr([&] {
    const qta::DeviceMac mac = qta::device::serialToMac(std::string(operands[0]));
    std::cout << static_cast<unsigned>(mac.variant()) << " " << mac.mac() << "\n";
  });
}

void demo(std::ostream& out) {
  using qta::device::macToSerial;
  using qta::device::serialToMac;
  out << "== serial\n";
  const std::pair<uint8_t, std::string_view> devices[] = {
      {0, "00:C0:DE:00:00:01"}, {7, "00-c0-de-12-34-56"}, {31, "00c0deffffff (eth0)"}};
  std::string lastSerial;
  for (const auto& [variant, text] : devices) {
    const qta::DeviceMac mac(variant, std::string(text));
    lastSerial = macToSerial(mac);
    out << "encode " << static_cast<unsigned>(variant) << " \"" << text << "\": " << lastSerial
        << "\n";
  }
  // A typo in one character, two swapped characters and a foreign maker's
  // address are all refused.
  std::string typo = lastSerial;
  typo[4] = typo[4] == 'A' ? 'B' : 'A';
  std::string swapped = lastSerial;
  std::swap(swapped[2], swapped[3]);
  for (const std::string& serial : {lastSerial, typo, swapped, std::string("X0000000")}) {
    out << "decode " << serial << ": ";
    try {
      const qta::DeviceMac mac = serialToMac(serial);
      out << "variant " << static_cast<unsigned>(mac.variant()) << ", mac " << mac.mac() << "\n";
    } catch (const std::invalid_argument& error) {
      out << "refused: " << error.what() << "\n";
    }
  }
  try {
    qta::DeviceMac(0, "00:11:22:33:44:55");
  } catch (const std::invalid_argument& error) {
    out << "mac 00:11:22:33:44:55: refused: " << error.what() << "\n";
  }
}

const RegisterCommand kSerial({
    .order = 71,
    .name = "serial",
    .summary = "turn a MAC address into the device serial number, or back",
    .usage = "Usage: qtatool serial encode VARIANT MAC\n"
             "       qtatool serial decode SERIAL\n\n"
             "encode prints the eight-character serial number of the MAC address MAC (12 hex\n"
             "digits under the OUI 00c0de, \":\" and \"-\" allowed between them) with the\n"
             "decimal variant number VARIANT (0-31 fit; up to 255 is accepted and spoils the\n"
             "leading \"X\"). decode prints the variant, a space and the MAC address as 12\n"
             "lower-case hex digits. A refused MAC or serial number prints the reason on\n"
             "stderr and exits with status 1.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
