#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "demo.h"
#include "qta/text/unicode.h"

namespace qtatool {
namespace {

// Bytes or units as upper-case hexadecimal, space-separated.
template <typename String>
std::string hex(const String& units, int digits) {
  std::string out;
  char buffer[16];
  for (const auto unit : units) {
    std::snprintf(buffer, sizeof buffer, "%s%0*X", out.empty() ? "" : " ", digits,
                  static_cast<unsigned>(static_cast<std::make_unsigned_t<decltype(unit)>>(unit)));
    out += buffer;
  }
  return out.empty() ? "(nothing)" : out;
}

}  // namespace

void demoUnicode(std::ostream& out) {
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

}  // namespace qtatool
