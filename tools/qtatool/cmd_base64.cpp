// qtatool base64: encodes bytes as base64 or base64url text, or decodes such
// text back to bytes; and the base64 section of `qtatool demo`.
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/text/base64.h"

namespace qtatool {
namespace {

// Whole 3-byte groups, so only the last piece can end in padding and the
// pieces' texts join into the text of the whole input.
constexpr size_t kEncodePiece = kOutputPiece / 4 * 3;

void encode(std::string_view bytes, bool url) {
  for (size_t at = 0; at < bytes.size(); at += kEncodePiece) {
    const std::string_view piece = bytes.substr(at, kEncodePiece);
    writeBytes(url ? qta::text::base64UrlEncode(piece) : qta::text::base64Encode(piece));
  }
  writeBytes("\n");
}

// The decoded bytes are at most three quarters of the text, so they are
// written in one piece.
void decode(std::string_view text, bool url) {
  writeBytes(url ? qta::text::base64UrlDecodeToString(text)
                 : qta::text::base64DecodeToString(text));
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(
      self, args,
      {.modes = {"encode", "decode"}, .flags = {"--url"}, .operand = "FILE", .maxOperands = 1});
  if (!parsed) return kUsage;
  std::string input;
  if (!readInput(parsed->operands.empty() ? "-" : parsed->operands[0], input)) return kUsage;
  if (parsed->mode == "encode") {
    encode(input, parsed->has("--url"));
  } else {
    decode(input, parsed->has("--url"));
  }
  return kSuccess;
}

// Shows text with line breaks and other controls as C escapes.
std::string quoted(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out = "\"";
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      out += "\\n";
    } else if (byte < 0x20 || byte >= 0x7f) {
      out += "\\x";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    } else {
      out += c;
    }
  }
  return out + "\"";
}

void demo(std::ostream& out) {
  using namespace qta::text;
  out << "== base64\n";
  for (std::string_view bytes : {"f", "foobar", "\xFB\xFF"}) {
    out << "encode " << quoted(bytes) << ": " << base64Encode(bytes)
        << "  url: " << base64UrlEncode(bytes) << "\n";
  }
  // Decoding skips whatever is not in the alphabet, so it never fails.
  for (std::string_view text : {"Zm9v\nYmFy", "Zg==", "Z=g", "-_8"}) {
    out << "decode " << quoted(text) << ": " << quoted(base64DecodeToString(text))
        << "  url: " << quoted(base64UrlDecodeToString(text)) << "\n";
  }
}

const RegisterCommand kBase64({
    .order = 30,
    .name = "base64",
    .summary = "encode bytes as base64 text or decode it back",
    .usage = "Usage: qtatool base64 encode [--url] [FILE]\n"
             "       qtatool base64 decode [--url] [FILE]\n\n"
             "Reads FILE, or standard input when FILE is omitted or \"-\".\n"
             "encode writes the bytes as base64 text padded with \"=\" (with --url: base64url,\n"
             "unpadded) and one newline. decode writes the bytes the text stands for, with\n"
             "nothing added; characters outside the alphabet (line breaks, \"=\", white space,\n"
             "the other alphabet's \"+/\" or \"-_\") are skipped, so decoding never fails.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
