#include "json/number_text.h"

#include <locale.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

namespace qta::json::detail {
namespace {

// Appends the decimal digits of `magnitude` at `cursor`; returns the new end.
char* writeUnsigned(std::uint64_t magnitude, char* cursor) {
  char digits[20];
  char* first = digits + sizeof digits;
  do {
    *--first = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  const std::size_t count = static_cast<std::size_t>(digits + sizeof digits - first);
  std::memcpy(cursor, first, count);
  return cursor + count;
}

// The C locale, made once and freed at exit, for scanning numbers.
class CLocale {
 public:
  CLocale() : locale_(newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr))) {}
  ~CLocale() {
    if (locale_ != static_cast<locale_t>(nullptr)) freelocale(locale_);
  }
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;
  locale_t get() const { return locale_; }

 private:
  locale_t locale_;
};

// Makes the C locale current on this thread for its lifetime.
class UseCLocale {
 public:
  UseCLocale() {
    static const CLocale cLocale;
    if (cLocale.get() != static_cast<locale_t>(nullptr)) previous_ = uselocale(cLocale.get());
  }
  ~UseCLocale() {
    if (previous_ != static_cast<locale_t>(nullptr)) uselocale(previous_);
  }
  UseCLocale(const UseCLocale&) = delete;
  UseCLocale& operator=(const UseCLocale&) = delete;

 private:
  locale_t previous_ = static_cast<locale_t>(nullptr);
};

bool isTrailingSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

std::size_t formatNumber(double value, char (&buffer)[kNumberTextMax]) {
  char* cursor = buffer;
  if (std::signbit(value)) *cursor++ = '-';
  const double magnitude = std::fabs(value);
  if (std::isnan(value)) {
    std::memcpy(cursor, "nan", 3);
    return static_cast<std::size_t>(cursor + 3 - buffer);
  }
  if (std::isinf(value)) {
    std::memcpy(cursor, "inf", 3);
    return static_cast<std::size_t>(cursor + 3 - buffer);
  }
  // Whole numbers below 1e16 have at most 16 digits: "%.16g" prints them plainly.
  if (magnitude < 1e16) {
    const auto whole = static_cast<std::uint64_t>(magnitude);
    if (static_cast<double>(whole) == magnitude) {
      return static_cast<std::size_t>(writeUnsigned(whole, cursor) - buffer);
    }
  }
  // to_chars with a precision rounds exactly as printf does and prints the
  // same "%g" layout, without consulting the locale.
  const auto result =
      std::to_chars(cursor, buffer + kNumberTextMax, magnitude, std::chars_format::general, 16);
  return static_cast<std::size_t>(result.ptr - buffer);
}

double scanNumber(const std::string& text) {
  if (text.empty()) return 0;
  double value = 0;
  int consumed = 0;
  int converted;
  {
    const UseCLocale cLocale;
    converted = std::sscanf(text.c_str(), "%lg%n", &value, &consumed);
  }
  if (converted != 1) return std::numeric_limits<double>::quiet_NaN();
  for (std::size_t i = static_cast<std::size_t>(consumed); i < text.size(); ++i) {
    if (!isTrailingSpace(text[i])) return std::numeric_limits<double>::quiet_NaN();
  }
  return value;
}

}  // namespace qta::json::detail
