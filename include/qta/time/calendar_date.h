// qta/time/calendar_date.h: calendar-date texts for absolute times, which are
// signed 64-bit nanoseconds since 1970-01-01T00:00:00Z (UTC).
//
// Results are new strings owned by the caller; the functions keep no state
// (the broken-down time comes from gmtime_r), so they are safe from any
// number of threads. None throws.
#ifndef QTA_TIME_CALENDAR_DATE_H_
#define QTA_TIME_CALENDAR_DATE_H_

#include <cstdint>
#include <string>

#include "qta/export.h"

namespace qta::time {

// "YYYY-MM-DDThh:mm:ssZ" for the whole seconds of `ns` (truncated).
QTA_EXPORT std::string formatIsoDate(int64_t ns);

// "Sun, 06 Nov 1994 08:49:37 GMT" for the whole seconds of `ns`; the empty
// string when the date cannot be written.
QTA_EXPORT std::string formatRfc822Date(int64_t ns);

// Reads an HTTP date (RFC 1123, RFC 850 or asctime form) and returns its time
// in nanoseconds; 0 for a null or unreadable text. A date too late for the
// 64-bit range gives the largest value.
QTA_EXPORT int64_t parseHttpDate(const char* text);

}  // namespace qta::time

#endif  // QTA_TIME_CALENDAR_DATE_H_
