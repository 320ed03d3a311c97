// JSON string literals: plain runs are found a word at a time and appended
// whole; escapes are decoded one by one, "\u" escapes through the Unicode code.
#include "json/string_literal.h"

#include "json/string_stop_bytes.h"
#include "qta/text/unicode.h"

namespace qta::json::detail {
namespace {

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  if (lower >= 'a' && lower <= 'f') return lower - 'a' + 10;
  return -1;
}

// The 16-bit unit of four hexadecimal digits at `digits`, or -1. Stops at the
// first byte that is not a digit, so it never reads past the end of the text.
long hexUnit(const char* digits) {
  long unit = 0;
  for (int i = 0; i < 4; ++i) {
    const int digit = hexValue(digits[i]);
    if (digit < 0) return -1;
    unit = unit << 4 | digit;
  }
  return unit;
}

bool isHighSurrogate(long unit) { return (unit & 0xFC00) == 0xD800; }

// Decodes the "\u" escape at `cursor` (on the backslash). A high surrogate
// takes a following "\u" escape with it: the two units are converted together
// as UTF-16, so a true pair gives one code point and otherwise the high one is
// dropped. A high surrogate without such a follower gives "?". Other units are
// appended as code points, which drops a lone low surrogate.
bool decodeUnicodeEscape(const char*& cursor, std::string& out) {
  const long unit = hexUnit(cursor + 2);
  if (unit <= 0) return false;  // not four hexadecimal digits, or "\u0000"
  cursor += 6;
  if (!isHighSurrogate(unit)) {
    text::appendUtf8(out, static_cast<char32_t>(unit));
    return true;
  }
  const long next = cursor[0] == '\\' && cursor[1] == 'u' ? hexUnit(cursor + 2) : -1;
  if (next < 0) {
    out += '?';
    return true;
  }
  const char16_t units[2] = {static_cast<char16_t>(unit), static_cast<char16_t>(next)};
  char bytes[8];
  out.append(bytes, text::utf16ToUtf8(units, 2, bytes, false));
  cursor += 6;
  return true;
}

// Decodes the escape at `cursor` (on the backslash) and moves past it.
bool decodeEscape(const char*& cursor, std::string& out) {
  char byte;
  switch (cursor[1]) {
    case '"':
    case '/':
    case '\\':
      byte = cursor[1];
      break;
    case 'b':
      byte = '\b';
      break;
    case 'f':
      byte = '\f';
      break;
    case 'n':
      byte = '\n';
      break;
    case 'r':
      byte = '\r';
      break;
    case 't':
      byte = '\t';
      break;
    case 'u':
      return decodeUnicodeEscape(cursor, out);
    default:
      return false;
  }
  out += byte;
  cursor += 2;
  return true;
}

// The first special byte at or after `cursor`; the NUL at `end` at the latest.
const char* nextSpecial(const char* cursor, const char* end) {
  return cursor + plainRun(cursor, end);
}

}  // namespace

bool decodeStringRest(const char*& cursor, const char* end, std::string& out) {
  for (;;) {
    const char* run = cursor;
    cursor = nextSpecial(cursor, end);
    out.append(run, static_cast<std::size_t>(cursor - run));
    if (*cursor == '"') {
      ++cursor;
      return true;
    }
    if (*cursor != '\\' || !decodeEscape(cursor, out)) return false;
  }
}

bool readString(const char*& cursor, const char* end, std::string& scratch,
                std::string_view& text) {
  if (*cursor != '"') return false;
  const char* start = cursor + 1;
  const char* stop = nextSpecial(start, end);
  if (*stop == '"') {
    text = std::string_view(start, static_cast<std::size_t>(stop - start));
    cursor = stop + 1;
    return true;
  }
  scratch.assign(start, static_cast<std::size_t>(stop - start));
  cursor = stop;
  if (!decodeStringRest(cursor, end, scratch)) return false;
  text = scratch;
  return true;
}

}  // namespace qta::json::detail
