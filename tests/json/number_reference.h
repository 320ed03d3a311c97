// Reference answers for the model's number text, taken from the C library
// (the program's locale must be "C"). Shared by the unit tests and the fuzz
// harnesses.
#ifndef QTA_TESTS_JSON_NUMBER_REFERENCE_H_
#define QTA_TESTS_JSON_NUMBER_REFERENCE_H_

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace qta::numref {

// `value` as printf("%.16g") writes it.
inline std::string printfText(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.16g", value);
  return buffer;
}

// What JSONString::toNumber() must answer for `text`: 0 for empty text,
// sscanf("%lg%n") followed by nothing but space, tab, line feed and carriage
// return, NaN otherwise.
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

}  // namespace qta::numref

#endif  // QTA_TESTS_JSON_NUMBER_REFERENCE_H_
