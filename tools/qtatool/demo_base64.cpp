#include <ostream>
#include <string>
#include <string_view>

#include "demo.h"
#include "qta/text/base64.h"

namespace qtatool {
namespace {

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

}  // namespace

void demoBase64(std::ostream& out) {
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

}  // namespace qtatool
