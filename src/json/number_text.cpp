#include "json/number_text.h"

#include <locale.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace qta::json::detail {
namespace {

constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

using Wide = unsigned __int128;

constexpr int kMaxScale = 22;  // 10^22 times a 53-bit significand fits in 128 bits

constexpr std::array<Wide, kMaxScale + 1> kPowersOfTen = [] {
  std::array<Wide, kMaxScale + 1> powers{};
  Wide power = 1;
  for (Wide& entry : powers) {
    entry = power;
    power *= 10;
  }
  return powers;
}();

// The number of decimal digits of `value`: log10 from the bit length (1233 /
// 4096 is just above log10(2)), corrected by one comparison.
int digitCount(std::uint64_t value) {
  value |= 1;
  const int estimate = (64 - __builtin_clzll(value)) * 1233 >> 12;
  return estimate + (value >= kPowersOfTen[estimate] ? 1 : 0);
}

// Writes exactly 4 digits of `value` (below 10^4) at `cursor`.
void writeFourDigits(std::uint32_t value, char* cursor) {
  std::memcpy(cursor, kDigitPairs + value / 100 * 2, 2);
  std::memcpy(cursor + 2, kDigitPairs + value % 100 * 2, 2);
}

// Writes the decimal digits of `magnitude` at `cursor`, four at a time from
// the last one back (each step's division by 10^4 waits only for the one
// before, not for the digits), then the one to four left; returns the new end.
char* writeUnsigned(std::uint64_t magnitude, char* cursor) {
  char* const end = cursor + digitCount(magnitude);
  char* digit = end;
  while (magnitude >= 10000) {
    digit -= 4;
    writeFourDigits(static_cast<std::uint32_t>(magnitude % 10000), digit);
    magnitude /= 10000;
  }
  if (magnitude >= 100) {
    digit -= 2;
    std::memcpy(digit, kDigitPairs + magnitude % 100 * 2, 2);
    magnitude /= 100;
  }
  if (magnitude >= 10) {
    std::memcpy(digit - 2, kDigitPairs + magnitude * 2, 2);
  } else {
    digit[-1] = static_cast<char>('0' + magnitude);
  }
  return end;
}

// Writes exactly 16 digits of `value` (below 10^16) at `cursor`, in four
// independent groups so the divisions do not wait for each other.
void writeSixteenDigits(std::uint64_t value, char* cursor) {
  const auto high = static_cast<std::uint32_t>(value / 100000000);
  const auto low = static_cast<std::uint32_t>(value % 100000000);
  writeFourDigits(high / 10000, cursor);
  writeFourDigits(high % 10000, cursor + 4);
  writeFourDigits(low / 10000, cursor + 8);
  writeFourDigits(low % 10000, cursor + 12);
}

constexpr std::uint64_t kTenTo15 = 1000000000000000ULL;
constexpr std::uint64_t kTenTo16 = 10 * kTenTo15;

// The 16 significant digits of a finite positive double and the decimal
// exponent of the first: value ~ digits * 10^(exponent - 15).
struct Decimal16 {
  std::uint64_t digits;  // 10^15 <= digits < 10^16
  int exponent;
};

// Rounds significand * 2^-shift * 10^scale to an integer, ties to even, as
// printf rounds in the default rounding mode. Needs 0 < shift < 128.
std::uint64_t roundScaled(std::uint64_t significand, int shift, int scale) {
  const Wide product = significand * kPowersOfTen[scale];
  const auto whole = static_cast<std::uint64_t>(product >> shift);
  const Wide remainder = product & ((Wide{1} << shift) - 1);
  const Wide half = Wide{1} << (shift - 1);
  const bool up = remainder > half || (remainder == half && (whole & 1) != 0);
  return whole + (up ? 1 : 0);
}

// Exact 16-digit rounding with 128-bit integers, for the normal doubles with
// a fraction between 1e-7 and 1e16 (where the scaled significand fits).
// Returns false for the others.
bool toDecimal16(double value, Decimal16& decimal) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  const int biased = static_cast<int>(bits >> 52) & 0x7FF;
  if (biased == 0) return false;  // subnormal
  const std::uint64_t significand =
      (bits & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52);
  const int shift = 1075 - biased;        // value = significand * 2^-shift
  const int binaryExponent = 52 - shift;  // 2^binaryExponent <= value < 2^(binaryExponent + 1)
  if (shift <= 0) return false;
  // floor(log10(value)) is this estimate or one more.
  int exponent = (binaryExponent * 78913) >> 18;
  if (15 - exponent > kMaxScale || exponent > 15) return false;
  std::uint64_t digits = roundScaled(significand, shift, 15 - exponent);
  if (digits >= kTenTo16) {
    ++exponent;
    if (exponent > 15) return false;
    digits = roundScaled(significand, shift, 15 - exponent);
  }
  if (digits == kTenTo16) {  // rounded up to the next power of ten
    digits = kTenTo15;
    ++exponent;
  }
  decimal = Decimal16{digits, exponent};
  return true;
}

// Lays out 16 digits as "%.16g" does: plain notation for exponents from -4
// to 15, else d.ddde+XX; trailing zeros and a bare point are dropped.
char* writeGeneral(const Decimal16& decimal, char* cursor) {
  char digits[16];
  writeSixteenDigits(decimal.digits, digits);
  int count = 16;
  while (digits[count - 1] == '0') --count;
  const int exponent = decimal.exponent;
  if (exponent < -4 || exponent > 15) {
    *cursor++ = digits[0];
    if (count > 1) {
      *cursor++ = '.';
      std::memcpy(cursor, digits + 1, static_cast<std::size_t>(count - 1));
      cursor += count - 1;
    }
    *cursor++ = 'e';
    *cursor++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude >= 100) *cursor++ = static_cast<char>('0' + magnitude / 100);
    std::memcpy(cursor, kDigitPairs + magnitude % 100 * 2, 2);
    return cursor + 2;
  }
  if (exponent < 0) {
    std::memcpy(cursor, "0.000", static_cast<std::size_t>(1 - exponent));
    cursor += 1 - exponent;
    std::memcpy(cursor, digits, static_cast<std::size_t>(count));
    return cursor + count;
  }
  const int wholeDigits = exponent + 1;
  std::memcpy(cursor, digits, static_cast<std::size_t>(wholeDigits));
  cursor += wholeDigits;
  if (count > wholeDigits) {
    *cursor++ = '.';
    std::memcpy(cursor, digits + wholeDigits, static_cast<std::size_t>(count - wholeDigits));
    cursor += count - wholeDigits;
  }
  return cursor;
}

// Finishes formatNumber() for a magnitude that is not printed as a whole
// number (NaN, an infinity, a fraction or a number of 1e16 and above) at
// `cursor`, after the sign at `buffer`; returns the length of the text. Kept
// out of line, and reached by a tail call, so that the common whole-number
// path needs no saved registers.
[[gnu::noinline]] std::size_t formatNotWhole(double magnitude, char* buffer, char* cursor) {
  char* end;
  Decimal16 decimal;
  if (std::isnan(magnitude)) {
    end = std::copy_n("nan", 3, cursor);
  } else if (std::isinf(magnitude)) {
    end = std::copy_n("inf", 3, cursor);
  } else if (toDecimal16(magnitude, decimal)) {
    end = writeGeneral(decimal, cursor);
  } else {
    // to_chars with a precision rounds exactly as printf does and prints the
    // same "%g" layout, without consulting the locale.
    end = std::to_chars(cursor, buffer + kNumberTextMax, magnitude, std::chars_format::general, 16)
              .ptr;
  }
  return static_cast<std::size_t>(end - buffer);
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

// sscanf(text, "%lg%n") in the C locale: the number of characters consumed,
// or 0 when nothing converts.
std::size_t scanWithCLibrary(const char* text, double& value) {
  int consumed = 0;
  const UseCLocale cLocale;
  if (std::sscanf(text, "%lg%n", &value, &consumed) != 1) return 0;
  return static_cast<std::size_t>(consumed);
}

bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// The characters a "%lg" scan may consume: signs, digits, letters (hexadecimal
// digits, exponents, "inf", "infinity", "nan") and the point, plus those of a
// "nan(chars)" payload.
bool mayBelongToNumber(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return isDigit(c) || (lower >= 'a' && lower <= 'z') || c == '.' || c == '+' || c == '-' ||
         c == '(' || c == ')' || c == '_';
}

// The plain decimal form -?D+(.D*)?([eE][+-]?D+)?, read by from_chars,
// which takes exactly that form (leading zeros included) and rounds as strtod
// does; `end` bounds it and is the end of the text. Returns the end of the
// number, or null for the forms where a "%lg" scan goes on or reads
// differently: a sign without a digit ("-inf", "-nan", "-.5"), a hexadecimal
// prefix or an exponent letter without digits right after the number, and
// values from_chars reports out of range. The C library decides those.
const char* scanPlainDecimal(const char* text, const char* end, double& value) {
  const char* digits = text + (*text == '-' ? 1 : 0);
  if (!isDigit(*digits)) return nullptr;
  const auto [stop, error] = std::from_chars(text, end, value);
  const char next = static_cast<char>(*stop | 0x20);
  if (error != std::errc() || next == 'e' || next == 'x') return nullptr;
  return stop;
}

// The C library's scan of the token at `text`, made on a NUL-terminated copy
// of the characters that may belong to it.
const char* scanToken(const char* text, double& value) {
  const char* end = text;
  while (mayBelongToNumber(*end)) ++end;
  const auto length = static_cast<std::size_t>(end - text);
  char small[64];
  std::string large;
  char* copy = small;
  if (length >= sizeof small) {
    large.assign(text, length);
    copy = large.data();
  } else {
    std::memcpy(small, text, length);
    small[length] = '\0';
  }
  const std::size_t consumed = scanWithCLibrary(copy, value);
  return consumed == 0 ? nullptr : text + consumed;
}

}  // namespace

std::size_t formatNumber(double value, char* buffer) {
  char* cursor = buffer;
  if (std::signbit(value)) *cursor++ = '-';
  const double magnitude = std::fabs(value);
  // Whole numbers below 1e16 have at most 16 digits: "%.16g" prints them
  // plainly. NaN and the infinities fail the first test.
  if (magnitude < 1e16) {
    const auto whole = static_cast<std::int64_t>(magnitude);
    if (static_cast<double>(whole) == magnitude) {
      return static_cast<std::size_t>(writeUnsigned(static_cast<std::uint64_t>(whole), cursor) -
                                      buffer);
    }
  }
  return formatNotWhole(magnitude, buffer, cursor);
}

const char* scanNumberPrefix(const char* text, const char* end, double& value) {
  if (const char* stop = scanPlainDecimal(text, end, value)) return stop;
  return scanToken(text, value);
}

double scanNumber(const std::string& text) {
  if (text.empty()) return 0;
  double value = 0;
  const std::size_t consumed = scanWithCLibrary(text.c_str(), value);
  if (consumed == 0) return std::numeric_limits<double>::quiet_NaN();
  for (std::size_t i = consumed; i < text.size(); ++i) {
    if (!isTrailingSpace(text[i])) return std::numeric_limits<double>::quiet_NaN();
  }
  return value;
}

}  // namespace qta::json::detail
