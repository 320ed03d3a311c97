// Locale-independent number text for the JSON model: "%.16g" output and "%lg"
// input with C-locale rules, whatever locale the program has set.
#ifndef QTA_JSON_NUMBER_TEXT_H_
#define QTA_JSON_NUMBER_TEXT_H_

#include <cstddef>
#include <string>

namespace qta::json::detail {

// Enough for any "%.16g" text of a double ("-1.234567890123457e-308").
inline constexpr std::size_t kNumberTextMax = 32;

// Writes `value` as "%.16g" in the C locale into `buffer`, which has room for
// kNumberTextMax characters (no NUL is added), and
// returns the number of characters written.
std::size_t formatNumber(double value, char* buffer);

// Scans the number that starts at `text`, whose terminating NUL is at `end`
// (an earlier NUL ends it as well), exactly as
// sscanf(text, "%lg%n") does in the C locale: on success stores the value and
// returns the end of the characters the scan consumes; returns null when
// nothing converts. Plain decimal forms are converted directly; the others
// (hexadecimal, infinities and NaN, exponents without digits, values out of
// range) by the C library on a copy of the token, so the time taken depends
// on the token's length only, never on the text after it.
const char* scanNumberPrefix(const char* text, const char* end, double& value);

// Scans `text` as sscanf("%lg%n") in the C locale and then requires that only
// space, tab, line feed and carriage return follow up to the end of the text.
// Empty text gives 0; no conversion or other trailing bytes give NaN.
double scanNumber(const std::string& text);

}  // namespace qta::json::detail

#endif  // QTA_JSON_NUMBER_TEXT_H_
