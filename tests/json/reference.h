// Reference answers for the model's text, shared by the unit tests and the
// fuzz harnesses: numbers from the C library (in the "C" locale), strings
// escaped byte by byte.
#ifndef QTA_TESTS_JSON_REFERENCE_H_
#define QTA_TESTS_JSON_REFERENCE_H_

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace qta::jsonref {

// `value` as printf("%.16g") writes it.
inline std::string printfText(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.16g", value);
  return buffer;
}

// What JSONString::toNumber() must answer: 0 for empty text, else sscanf's
// "%lg" when only space, tab, line feed and carriage return follow, else NaN.
inline double scanfNumber(const std::string& text) {
  if (text.empty()) return 0;
  double value;
  int consumed = 0;
  if (std::sscanf(text.c_str(), "%lg%n", &value, &consumed) != 1) return NAN;
  const auto trailer = text.find_first_not_of(" \t\n\r", static_cast<std::size_t>(consumed));
  return trailer == std::string::npos ? value : NAN;
}

// Both NaN, or the same bits (so 0 and -0 differ).
inline bool sameNumber(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : std::memcmp(&a, &b, sizeof a) == 0;
}

// `text` up to its first NUL as a quoted JSON string: the quote, backslash
// and five controls get their letter escapes, other bytes below 32 \u00XX.
inline std::string quotedText(const std::string& text) {
  static const char kNamed[] = "\"\\\b\f\n\r\t", kLetters[] = "\"\\bfnrt";
  std::string out = "\"";
  char escape[8];
  for (const char c : text.substr(0, text.find('\0'))) {
    if (const char* named = std::strchr(kNamed, c)) {
      out += {'\\', kLetters[named - kNamed]};
    } else if (static_cast<unsigned char>(c) < 32) {
      out.append(escape, std::snprintf(escape, sizeof escape, "\\u%04X", c));
    } else {
      out += c;
    }
  }
  return out + '"';
}

}  // namespace qta::jsonref

#endif  // QTA_TESTS_JSON_REFERENCE_H_
