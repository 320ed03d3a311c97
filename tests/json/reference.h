// Reference answers for the model's text, shared by the unit tests and the
// fuzz harnesses: numbers from the C library (in the "C" locale), strings
// escaped byte by byte, and number texts aimed at the corners of "%lg".
#ifndef QTA_TESTS_JSON_REFERENCE_H_
#define QTA_TESTS_JSON_REFERENCE_H_

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

namespace qta::jsonref {

// `value` as printf("%.16g") writes it.
inline std::string printfText(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.16g", value);
  return buffer;
}

// sscanf(text, "%lg%n"): the characters consumed, 0 when nothing converts.
inline std::size_t scanfPrefix(const char* text, double& value) {
  int consumed = 0;
  if (std::sscanf(text, "%lg%n", &value, &consumed) != 1) return 0;
  return static_cast<std::size_t>(consumed);
}

// What JSONString::toNumber() must answer: 0 for empty text, else sscanf's
// "%lg" when only space, tab, line feed and carriage return follow, else NaN.
inline double scanfNumber(const std::string& text) {
  if (text.empty()) return 0;
  double value;
  const std::size_t consumed = scanfPrefix(text.c_str(), value);
  if (consumed == 0) return NAN;
  const auto trailer = text.find_first_not_of(" \t\n\r", consumed);
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

// Number texts that start with a digit or "-", aimed at the corners of the C
// library's "%lg" scan: exponents and hexadecimal prefixes without digits,
// long mantissas, the edges of the double range and of the subnormals, the
// spellings of infinity and NaN, and a byte after the number that a scan
// might or might not take. The same seed gives the same texts.
class NumberTexts {
 public:
  explicit NumberTexts(std::uint64_t seed) : random_(seed) {}

  std::string next() {
    std::string text;
    switch (below(8)) {
      case 0:
        text = hexadecimal();
        break;
      case 1:
        text = pick(kWords);
        break;
      case 2:
        text = pick(kEdges);
        break;
      default:
        text = decimal();
        break;
    }
    if (below(2) == 0 || !isDigit(text[0])) text.insert(text.begin(), '-');
    if (below(4) == 0) text += pick(kFollowers);
    return text;
  }

 private:
  static constexpr const char* kWords[] = {
      "inf",        "INF", "Inf", "infinity", "INFINITY", "infin", "infinit",
      "in",         "i",   "nan", "NaN",      "nan(123)", "nan()", "nan(",
      "nan(abc_9)", "na",  "n",   "nanx",     "-",        "+1",    ".5"};
  static constexpr const char* kEdges[] = {"1.7976931348623157e308",
                                           "1.7976931348623158e308",
                                           "1.797693134862315807e308",
                                           "1.7976931348623159e308",
                                           "2.2250738585072014e-308",
                                           "2.2250738585072011e-308",
                                           "2.2250738585072012e-308",
                                           "4.9406564584124654e-324",
                                           "2.4703282292062327e-324",
                                           "2.4703282292062328e-324",
                                           "7.4109846876186982e-324",
                                           "1e-324",
                                           "1e-400",
                                           "1e309",
                                           "9007199254740993",
                                           "9007199254740992.5",
                                           "0.1e-307",
                                           "1000000000000000000000e-330",
                                           "0x1p-1074",
                                           "0x1.fffffffffffffp1023",
                                           "0x1p1024",
                                           "0x0.0000000000001p-1022",
                                           "123456789012345678901234567890"};
  static constexpr const char* kFollowers[] = {"e", "E+", "e-", ".", "x", "X1", "p", "p+", "(",
                                               ")", "a",  "f",  ",", "]", " ",  "0", "_",  "--"};

  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  std::uint64_t below(std::uint64_t bound) { return random_() % bound; }

  template <std::size_t N>
  const char* pick(const char* const (&list)[N]) {
    return list[below(N)];
  }

  // A digit count biased to none, one, the 15 to 20 digits where doubles
  // stop being exact, and now and then hundreds.
  std::size_t digitCount() {
    switch (below(6)) {
      case 0:
        return 0;
      case 1:
        return 1;
      case 2:
        return 15 + below(6);
      case 3:
        return below(4) == 0 ? 300 + below(500) : below(40);
      default:
        return 1 + below(8);
    }
  }

  std::string digits(std::size_t count, const char* alphabet, std::size_t size) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) out += alphabet[below(size)];
    // Runs of nines and zeros sit on rounding edges.
    if (count > 2 && below(3) == 0) out.replace(1, count - 2, count - 2, below(2) ? '9' : '0');
    return out;
  }

  std::string exponent(const char* letters) {
    std::string out(1, letters[below(2)]);
    if (below(2) == 0) out += below(2) ? '+' : '-';
    switch (below(5)) {
      case 0:
        break;  // no digits: the scan takes the letter and sign all the same
      case 1:
        out += std::to_string(300 + below(40));
        break;
      case 2:
        out += std::string(below(30), '0') + std::to_string(below(400));
        break;
      default:
        out += std::to_string(below(30));
        break;
    }
    return out;
  }

  std::string decimal() {
    std::string out = digits(digitCount(), "0123456789", 10);
    if (out.empty() || below(3) == 0) {
      out += '.';
      out += digits(digitCount(), "0123456789", 10);
    }
    if (below(2) == 0) out += exponent("eE");
    if (!isDigit(out[0])) out.insert(0, "0");
    return out;
  }

  std::string hexadecimal() {
    std::string out = below(2) ? "0x" : "0X";
    out += digits(below(3) == 0 ? 0 : digitCount() % 20, "0123456789abcdefABCDEF", 22);
    if (below(2) == 0) out += '.' + digits(below(16), "0123456789abcdef", 16);
    if (below(2) == 0) out += exponent("pP");
    return out;
  }

  std::mt19937_64 random_;
};

}  // namespace qta::jsonref

#endif  // QTA_TESTS_JSON_REFERENCE_H_
