// qta/time/clock_value.h: clock values, the time offsets and durations of
// timing attributes ("1:02:03.5", "90min", "250ms", "indefinite", ...), with
// their parser and their formatter in several styles.
//
// ClockValue is a plain value; every function is a pure function of its
// arguments (results are owned by the caller), so any number of threads may
// call them at once. Parsing never throws: it reports bad text through its
// boolean result. Numbers are read and written by C-locale rules.
#ifndef QTA_TIME_CLOCK_VALUE_H_
#define QTA_TIME_CLOCK_VALUE_H_

#include <cstdint>
#include <string>

#include "qta/export.h"

namespace qta {

struct QTA_EXPORT ClockValue {
  enum Type : uint32_t {
    kResolved = 0,    // `value` holds the nanoseconds
    kIndefinite = 1,  // "indefinite"
    kUnresolved = 2,  // "unresolved"
    kMedia = 3,       // "media"
  };
  Type type = kResolved;
  int64_t value = 0;  // nanoseconds; meaningful for kResolved only
};

}  // namespace qta

namespace qta::time {

// Reads `text` whole: "media" and "indefinite" (exact, case-sensitive), or a
// number as parseClockText() reads it. For a number, `out` becomes resolved
// with the value in nanoseconds even when the result is false. The result is
// false when text is left unread, when the value is negative and
// `allowNegative` is not set, or when it is 0 and neither flag is set.
QTA_EXPORT bool parseClockValue(ClockValue& out, const std::string& text, bool allowZero,
                                bool allowNegative);

// Scans a clock value at `cursor` and returns it in microseconds, leaving the
// cursor after what it read and after trailing blanks (space, tab, CR, LF).
// Reads an optional sign, then either a clock form "H:M:S.fraction" or
// "M:S.fraction" (fields unchecked, so "1:75" is 135 s) or a count with an
// optional fraction and metric "h", "min", "s" or "ms" (seconds without one).
// Fraction digits past the microsecond are cut; arithmetic that leaves the
// 64-bit range wraps.
QTA_EXPORT int64_t parseClockText(const char*& cursor);

// Writes `value` in `style`: "" or "s" ("1.5s"), "ms" ("1500ms"), "hms"
// ("1:02:03"), "hms." ("1:02:03.500", milliseconds rounded half up without a
// carry into the seconds, so 59.9996 s gives "0:00:59.1000"), "hms..." (as
// "hms." but without ".000"). Keywords print as themselves whatever the
// style; an unknown type gives "<invalid value type>", an unknown style
// "<invalid format>".
QTA_EXPORT std::string formatClockValue(const ClockValue& value, const std::string& style);

}  // namespace qta::time

#endif  // QTA_TIME_CLOCK_VALUE_H_
