// qtatool utf8 / utf16 / utf32: checks UTF-8, shows the UTF-16 or UTF-32 units
// of UTF-8 input in hexadecimal, and turns hexadecimal units back into UTF-8;
// and the Unicode section of `qtatool demo`.
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/text/unicode.h"

namespace qtatool {
namespace {

// Appends `value` in upper-case hexadecimal with at least `digits` digits.
void appendHex(std::string& out, uint32_t value, int digits) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  int shown = digits;
  while (shown < 8 && (value >> (4 * shown)) != 0) ++shown;
  for (int nibble = shown - 1; nibble >= 0; --nibble) out += kHex[(value >> (4 * nibble)) & 15];
}

// Converts `input` a piece at a time and prints the units as space-separated
// hexadecimal on one line.
template <typename Unit>
void printUnits(std::string_view input,
                size_t (*convert)(const char*&, size_t&, Unit*, size_t capacity)) {
  constexpr size_t kUnits = kOutputPiece / 8;
  Unit units[kUnits];
  std::string line;
  line.reserve(kUnits * 9);
  const char* src = input.data();
  size_t remaining = input.size();
  bool first = true;
  while (remaining > 0) {
    const size_t count = convert(src, remaining, units, kUnits);
    line.clear();
    for (size_t i = 0; i < count; ++i) {
      if (!first) line += ' ';
      first = false;
      appendHex(line, units[i], 4);
    }
    writeBytes(line);
  }
  writeBytes("\n");
}

int runUtf8(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args,
                {.modes = {"check", "to-utf16", "to-utf32"}, .operand = "FILE", .maxOperands = 1});
  if (!parsed) return kUsage;
  std::string input;
  if (!readInput(parsed->operands.empty() ? "-" : parsed->operands[0], input)) return kUsage;
  if (parsed->mode == "check") {
    if (qta::text::isValidUtf8(input)) return kSuccess;
    std::cerr << "qtatool utf8: the input is not valid UTF-8\n";
    return kRejected;
  }
  if (parsed->mode == "to-utf16") {
    printUnits<char16_t>(input, qta::text::utf8ToUtf16Partial);
  } else {
    printUnits<char32_t>(input, qta::text::utf8ToUtf32Partial);
  }
  return kSuccess;
}

// Reads hexadecimal operands of at most `maxDigits` digits each as units.
template <typename Unit>
int hexToUtf8(const Command& self, Args args, size_t maxDigits) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args, {.modes = {"to-utf8"}, .maxOperands = SIZE_MAX});
  if (!parsed) return kUsage;
  std::basic_string<Unit> units;
  for (std::string_view arg : parsed->operands) {
    const bool hex = !arg.empty() && arg.size() <= maxDigits &&
                     arg.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    if (!hex) {
      // Appended piece by piece: g++ 12 at -O3 reports a false -Wrestrict on
      // a chain of operator+ that starts with a one-character literal.
      std::string message = "'";
      message.append(arg).append("' is not a hexadecimal value of at most ");
      message.append(std::to_string(maxDigits)).append(" digits");
      return usageError(self, message);
    }
    units.push_back(static_cast<Unit>(std::stoul(std::string(arg), nullptr, 16)));
  }
  if constexpr (sizeof(Unit) == 2) {
    writeBytes(qta::text::utf16ToUtf8(units));
  } else {
    writeBytes(qta::text::utf32ToUtf8(units));
  }
  return kSuccess;
}

int runUtf16(const Command& self, Args args) { return hexToUtf8<char16_t>(self, args, 4); }

int runUtf32(const Command& self, Args args) { return hexToUtf8<char32_t>(self, args, 8); }

// Bytes or units as upper-case hexadecimal, space-separated.
template <typename String>
std::string hex(const String& units, int digits) {
  std::string out;
  for (const auto unit : units) {
    if (!out.empty()) out += ' ';
    appendHex(out, static_cast<std::make_unsigned_t<decltype(unit)>>(unit), digits);
  }
  return out.empty() ? "(nothing)" : out;
}

void demo(std::ostream& out) {
  using namespace qta::text;
  out << "== Unicode text\n";
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
  out << "UTF-8   " << hex(text, 2) << "\n"
      << "UTF-16  " << hex(utf8ToUtf16(text), 4) << "\n"
      << "UTF-32  " << hex(utf8ToUtf32(text), 4) << "\n";
  // Broken input is never an error: bad sequences become "?" or are dropped.
  for (std::string_view bytes : {std::string_view("\xC0\x80"), std::string_view("a\x80z"),
                                 std::string_view("\xF4\x90\x80\x80")}) {
    out << "decode " << hex(bytes, 2) << ": UTF-16 " << hex(utf8ToUtf16(bytes), 4)
        << ", valid: " << (isValidUtf8(bytes) ? "yes" : "no") << "\n";
  }
  const std::u16string units = {0xD83D, 0xDE00, 0xDE00, u'!'};
  out << "encode UTF-16 " << hex(units, 4) << ": " << hex(utf16ToUtf8(units), 2) << "\n";
}

const RegisterCommand kUtf8({
    .order = 20,
    .name = "utf8",
    .summary = "check UTF-8 or show its UTF-16 or UTF-32 units",
    .usage = "Usage: qtatool utf8 check [FILE]\n"
             "       qtatool utf8 to-utf16 [FILE]\n"
             "       qtatool utf8 to-utf32 [FILE]\n\n"
             "Reads FILE, or standard input when FILE is omitted or \"-\".\n"
             "check exits with 0 when the bytes are valid UTF-8 and 1 when not. to-utf16 and\n"
             "to-utf32 print the converted units in upper-case hexadecimal, space-separated,\n"
             "on one line (for example \"D83D DE00\"); invalid sequences become \"?\".\n",
    .run = runUtf8,
    .demo = demo,
});

const RegisterCommand kUtf16({
    .order = 21,
    .name = "utf16",
    .summary = "turn UTF-16 units given in hexadecimal into UTF-8",
    .usage = "Usage: qtatool utf16 to-utf8 UNIT...\n\n"
             "Writes the UTF-8 bytes of the UTF-16 units (1 to 4 hexadecimal digits each) to\n"
             "standard output. A surrogate pair becomes one character; unpaired surrogates are\n"
             "dropped.\n",
    .run = runUtf16,
});

const RegisterCommand kUtf32({
    .order = 22,
    .name = "utf32",
    .summary = "turn code points given in hexadecimal into UTF-8",
    .usage = "Usage: qtatool utf32 to-utf8 VALUE...\n\n"
             "Writes the UTF-8 bytes of the code points (1 to 8 hexadecimal digits each) to\n"
             "standard output. Surrogates and values above 10FFFF are dropped.\n",
    .run = runUtf32,
});

}  // namespace
}  // namespace qtatool
