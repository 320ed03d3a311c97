// The clock-value scanner and parser. Arithmetic runs on unsigned 64-bit
// numbers, so an absurdly long number wraps instead of overflowing a signed
// type.
#include <cstdint>
#include <string>
#include <string_view>

#include "qta/time/clock_value.h"

namespace qta::time {
namespace {

constexpr uint64_t kMicrosPerSecond = 1000000;
// More fraction digits than this are cut: 10^18 is the largest power of ten
// that fits, and digits this deep no longer change a microsecond result.
constexpr int kMaxFractionDigits = 18;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

void skipBlanks(const char*& cursor) {
  while (isBlank(*cursor)) ++cursor;
}

// A run of decimal digits (none: 0).
uint64_t readNumber(const char*& cursor) {
  uint64_t number = 0;
  for (; isDigit(*cursor); ++cursor) number = number * 10 + static_cast<uint64_t>(*cursor - '0');
  return number;
}

struct Fraction {
  uint64_t digits = 0;  // the first kMaxFractionDigits digits as a number
  uint64_t scale = 1;   // 10 to the power of how many of them there are
};

// The digits after a "." (the cursor is past it); every digit is consumed.
Fraction readFraction(const char*& cursor) {
  Fraction fraction;
  for (int count = 0; isDigit(*cursor); ++cursor, ++count) {
    if (count >= kMaxFractionDigits) continue;
    fraction.digits = fraction.digits * 10 + static_cast<uint64_t>(*cursor - '0');
    fraction.scale *= 10;
  }
  return fraction;
}

// `fraction` of one `unit` (in microseconds), truncated.
uint64_t scaleFraction(const Fraction& fraction, uint64_t unit) {
  if (unit >= fraction.scale) return unit / fraction.scale * fraction.digits;
  return fraction.digits / (fraction.scale / unit);
}

// The metric after a count, in microseconds; consumes it. An "m" that starts
// neither "ms" nor "min" is left unread.
uint64_t readMetric(const char*& cursor) {
  struct Metric {
    const char* text;
    uint64_t unit;
  };
  static constexpr Metric kMetrics[] = {{"ms", 1000},
                                        {"min", 60 * kMicrosPerSecond},
                                        {"h", 3600 * kMicrosPerSecond},
                                        {"s", kMicrosPerSecond}};
  for (const Metric& metric : kMetrics) {
    const std::string_view text(metric.text);
    if (std::string_view(cursor).starts_with(text)) {
      cursor += text.size();
      return metric.unit;
    }
  }
  return kMicrosPerSecond;
}

}  // namespace

int64_t parseClockText(const char*& cursor) {
  skipBlanks(cursor);
  bool negative = false;
  if (*cursor == '+' || *cursor == '-') {
    negative = *cursor == '-';
    ++cursor;
    skipBlanks(cursor);
  }
  const uint64_t first = readNumber(cursor);
  uint64_t micros = 0;
  if (*cursor == ':') {
    ++cursor;
    uint64_t seconds = first * 60 + readNumber(cursor);
    if (*cursor == ':') {
      ++cursor;
      seconds = seconds * 60 + readNumber(cursor);
    }
    micros = seconds * kMicrosPerSecond;
    if (*cursor == '.') {
      ++cursor;
      micros += scaleFraction(readFraction(cursor), kMicrosPerSecond);
    }
  } else {
    Fraction fraction;
    if (*cursor == '.') {
      ++cursor;
      fraction = readFraction(cursor);
    }
    const uint64_t unit = readMetric(cursor);
    micros = first * unit + scaleFraction(fraction, unit);
  }
  skipBlanks(cursor);
  return static_cast<int64_t>(negative ? 0 - micros : micros);
}

bool parseClockValue(ClockValue& out, const std::string& text, bool allowZero, bool allowNegative) {
  if (text == "media" || text == "indefinite") {
    out.type = text == "media" ? ClockValue::kMedia : ClockValue::kIndefinite;
    return true;
  }
  const char* cursor = text.c_str();
  const int64_t micros = parseClockText(cursor);
  out.type = ClockValue::kResolved;
  out.value = static_cast<int64_t>(static_cast<uint64_t>(micros) * 1000);
  if (cursor != text.c_str() + text.size()) return false;
  if (allowNegative) return true;
  return out.value > 0 || (out.value == 0 && allowZero);
}

}  // namespace qta::time
