// Count-at-a-rate to nanoseconds conversions. Small counts multiply in 64
// bits; larger ones (on either side) go through a 128-bit signed integer whose
// products here cannot overflow, then saturate to the 64-bit range.
#include <boost/multiprecision/cpp_int.hpp>
#include <boost/throw_exception.hpp>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "qta/time/rate_conversion.h"

namespace qta::time {
namespace {

using Int128 = boost::multiprecision::int128_t;

constexpr int64_t kNanosPerSecond = 1000000000;
// The largest counts whose product with the factor still fits 64 bits:
// 1000000000 for countToNanoseconds, up to 2000000000 for a corrected one.
constexpr int64_t kPlainCountLimit = 9223372035;
constexpr int64_t kCorrectedCountLimit = 4611686017;

[[noreturn]] void throwDivisionByZero() {
  BOOST_THROW_EXCEPTION(std::overflow_error("Division by zero."));
}

int64_t saturate(const Int128& value) {
  if (value > std::numeric_limits<int64_t>::max()) return std::numeric_limits<int64_t>::max();
  if (value < std::numeric_limits<int64_t>::min()) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(value);
}

// count x factor / rate, in 64 bits when |count| is at most `limit` and the
// product fits, else in 128 bits.
int64_t multiplyDivide(int64_t count, int64_t factor, int64_t rate, int64_t limit) {
  if (rate == 0) throwDivisionByZero();
  int64_t product = 0;
  // A product of exactly INT64_MIN goes the long way: its quotient by -1
  // does not fit 64 bits.
  if (count <= limit && count >= -limit && !__builtin_mul_overflow(count, factor, &product) &&
      product != std::numeric_limits<int64_t>::min()) {
    return product / rate;
  }
  return saturate(Int128(count) * factor / rate);
}

}  // namespace

int64_t countToNanoseconds(int64_t count, int64_t rate) {
  return multiplyDivide(count, kNanosPerSecond, rate, kPlainCountLimit);
}

int64_t correctedCountToNanoseconds(int64_t count, int64_t rate, int32_t ppm) {
  return multiplyDivide(count, kNanosPerSecond - int64_t{1000} * ppm, rate, kCorrectedCountLimit);
}

int64_t scaledCountToNanoseconds(int64_t a, int64_t b, int64_t rate) {
  if (rate == 0) throwDivisionByZero();
  // |a x b| is below 2^126; times 10^9 it may pass 2^127. Such a product
  // divided by any 64-bit rate is still far beyond the 64-bit range.
  const Int128 magnitude = abs(Int128(a)) * abs(Int128(b));
  const Int128 limit = std::numeric_limits<Int128>::max() / kNanosPerSecond;
  const bool negative = (a < 0) != (b < 0) && a != 0 && b != 0;
  if (magnitude > limit) {
    return negative != (rate < 0) ? std::numeric_limits<int64_t>::min()
                                  : std::numeric_limits<int64_t>::max();
  }
  const Int128 product = magnitude * kNanosPerSecond;
  return saturate((negative ? -product : product) / rate);
}

}  // namespace qta::time
