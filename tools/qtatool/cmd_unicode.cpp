// qtatool utf8 / utf16 / utf32: checks UTF-8, shows the UTF-16 or UTF-32 units
// of UTF-8 input in hexadecimal, and turns hexadecimal units back into UTF-8.
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

#include "cli.h"
#include "qta/text/unicode.h"

namespace qtatool {
namespace {

// The FILE operand that may follow a mode: none or "-" is standard input.
bool inputOperand(const Command& command, Args rest, std::string& path, int& status) {
  path = "-";
  if (rest.size() > 1) {
    status = usageError(command, "more than one FILE");
    return false;
  }
  if (!rest.empty()) {
    if (rest[0].size() > 1 && rest[0][0] == '-') {
      status = usageError(command, "unknown option '" + rest[0] + "'");
      return false;
    }
    path = rest[0];
  }
  return true;
}

template <typename String>
void printUnits(const String& units) {
  std::string line;
  char hex[16];
  for (const auto unit : units) {
    std::snprintf(hex, sizeof hex, "%s%04X", line.empty() ? "" : " ", static_cast<unsigned>(unit));
    line += hex;
  }
  writeBytes(line + "\n");
}

// Reads hexadecimal operands of at most `maxDigits` digits each as units.
template <typename Unit>
int hexToUtf8(const Command& command, Args args, size_t maxDigits) {
  if (args.empty() || args[0] != "to-utf8") return usageError(command, "expected 'to-utf8'");
  std::basic_string<Unit> units;
  for (const std::string& arg : args.subspan(1)) {
    const bool hex = !arg.empty() && arg.size() <= maxDigits &&
                     arg.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    if (!hex) {
      return usageError(command, "'" + arg + "' is not a hexadecimal value of at most " +
                                     std::to_string(maxDigits) + " digits");
    }
    units.push_back(static_cast<Unit>(std::stoul(arg, nullptr, 16)));
  }
  if constexpr (sizeof(Unit) == 2) {
    writeBytes(qta::text::utf16ToUtf8(units));
  } else {
    writeBytes(qta::text::utf32ToUtf8(units));
  }
  return kSuccess;
}

}  // namespace

int runUtf8(Args args) {
  const Command& command = *findCommand("utf8");
  if (args.empty()) return usageError(command, "missing 'check', 'to-utf16' or 'to-utf32'");
  const std::string& mode = args[0];
  if (mode != "check" && mode != "to-utf16" && mode != "to-utf32") {
    return usageError(command, "unknown mode '" + mode + "'");
  }
  std::string path;
  int status = kSuccess;
  if (!inputOperand(command, args.subspan(1), path, status)) return status;
  std::string input;
  if (!readInput(path, input)) return kUsage;

  if (mode == "check") {
    if (qta::text::isValidUtf8(input)) return kSuccess;
    std::cerr << "qtatool utf8: the input is not valid UTF-8\n";
    return kRejected;
  }
  if (mode == "to-utf16") {
    printUnits(qta::text::utf8ToUtf16(input));
  } else {
    printUnits(qta::text::utf8ToUtf32(input));
  }
  return kSuccess;
}

int runUtf16(Args args) { return hexToUtf8<char16_t>(*findCommand("utf16"), args, 4); }

int runUtf32(Args args) { return hexToUtf8<char32_t>(*findCommand("utf32"), args, 8); }

}  // namespace qtatool
