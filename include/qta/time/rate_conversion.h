// qta/time/rate_conversion.h: a count of ticks at a rate (ticks per second),
// converted to nanoseconds.
//
// The results are exact quotients truncated toward zero; a result outside
// the signed 64-bit range saturates to its largest or smallest value by the
// sign of the true result. Products that could overflow 64 bits are formed in
// 128-bit arithmetic. A rate of 0 throws std::overflow_error with the text
// "Division by zero.". Pure functions: safe from any number of threads.
#ifndef QTA_TIME_RATE_CONVERSION_H_
#define QTA_TIME_RATE_CONVERSION_H_

#include <cstdint>

#include "qta/export.h"

namespace qta::time {

// count x 1000000000 / rate.
QTA_EXPORT int64_t countToNanoseconds(int64_t count, int64_t rate);

// a x b x 1000000000 / rate, always in 128 bits.
QTA_EXPORT int64_t scaledCountToNanoseconds(int64_t a, int64_t b, int64_t rate);

// count x (1000000000 - 1000 x ppm) / rate: a count at a rate that runs `ppm`
// parts per million fast.
QTA_EXPORT int64_t correctedCountToNanoseconds(int64_t count, int64_t rate, int32_t ppm);

}  // namespace qta::time

#endif  // QTA_TIME_RATE_CONVERSION_H_
