// Rate conversions against exact 128-bit quotients: the 64-bit thresholds and
// their neighbours, both saturation ends, extreme rates and corrections.
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

#include "qta/time/rate_conversion.h"

namespace qta::time {
namespace {

constexpr int64_t kMax = INT64_MAX;
constexpr int64_t kMin = INT64_MIN;
constexpr int64_t kSecond = 1000000000;

// count x factor / rate, exact (the operands here keep the product in 128
// bits), truncated toward zero and saturated.
int64_t reference(int64_t count, int64_t factor, int64_t rate) {
  const __int128 quotient = static_cast<__int128>(count) * factor / rate;
  return quotient > kMax ? kMax : quotient < kMin ? kMin : static_cast<int64_t>(quotient);
}

TEST(RateConversion, CountsMatchTheExactQuotient) {
  const int64_t counts[] = {0,           1,          -1,         48000,       -48000,
                            9223372035,  9223372036, 9223372037, -9223372035, -9223372036,
                            -9223372037, 4611686017, 4611686018, kMax,        kMin,
                            kMax - 1,    kMin + 1};
  const int64_t rates[] = {1, 2, 3, -1, -7, 48000, kMax, kMin};
  const int32_t ppms[] = {0, 1, -1, -1000000, 1000000, INT32_MAX, INT32_MIN};
  // Anchors the reference itself: truncation toward zero.
  EXPECT_EQ(countToNanoseconds(-1, 3), -333333333);
  for (const int64_t count : counts) {
    for (const int64_t rate : rates) {
      EXPECT_EQ(countToNanoseconds(count, rate), reference(count, kSecond, rate))
          << count << "/" << rate;
      for (const int32_t ppm : ppms) {
        EXPECT_EQ(correctedCountToNanoseconds(count, rate, ppm),
                  reference(count, kSecond - int64_t{1000} * ppm, rate))
            << count << "/" << rate << " ppm " << ppm;
      }
    }
  }
}

TEST(RateConversion, ScaledCountsSaturateBeyondTheProduct) {
  const int64_t cases[][4] = {{3, 16000, 48000, kSecond},
                              {-3, -16000, -48000, -kSecond},
                              {0, kMin, 1, 0},
                              {kMax, kMax, kMax, kMax},
                              {kMax, 1, kMax, kSecond},
                              {9223372036, 1, 1, 9223372036000000000},
                              {9223372037, -1, 1, kMin},

                              {kMin, kMin, kMin, kMin},
                              {kMin, kMin, -1, kMin}};
  for (const auto& [a, b, rate, nanos] : cases) {
    EXPECT_EQ(scaledCountToNanoseconds(a, b, rate), nanos) << a << " " << b << " " << rate;
  }
}

TEST(RateConversion, ZeroRateThrowsOnEveryPath) {
  for (const int64_t count : {int64_t{5}, kMax, kMin}) {
    for (const auto& convert : {+[](int64_t n) { countToNanoseconds(n, 0); },
                                +[](int64_t n) { correctedCountToNanoseconds(n, 0, 10); },
                                +[](int64_t n) { scaledCountToNanoseconds(n, n, 0); }}) {
      try {
        convert(count);
        ADD_FAILURE() << "no exception for " << count;
      } catch (const std::overflow_error& error) {
        EXPECT_STREQ(error.what(), "Division by zero.");
      }
    }
  }
}

}  // namespace
}  // namespace qta::time
