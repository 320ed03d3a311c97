// Rate conversions against exact 128-bit quotients: the 64-bit thresholds and
// their neighbours, both saturation ends, extreme rates and corrections.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "qta/time/rate_conversion.h"

namespace qta::time {
namespace {

constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
constexpr int64_t kSecond = 1000000000;

// count x factor / rate, exact (the operands here keep the product in 128
// bits), truncated toward zero and saturated.
int64_t reference(int64_t count, int64_t factor, int64_t rate) {
  const __int128 quotient = static_cast<__int128>(count) * factor / rate;
  if (quotient > kMax) return kMax;
  if (quotient < kMin) return kMin;
  return static_cast<int64_t>(quotient);
}

TEST(RateConversion, CountsMatchTheExactQuotient) {
  const int64_t counts[] = {0,           1,           -1,         48000,      -48000,
                            9223372034,  9223372035,  9223372036, 9223372037, -9223372035,
                            -9223372036, -9223372037, 4611686016, 4611686017, 4611686018,
                            kMax,        kMin,        kMax - 1,   kMin + 1};
  const int64_t rates[] = {1, 2, 3, -1, -7, 48000, 90000, kMax, kMin};
  const int32_t ppms[] = {0,
                          1,
                          -1,
                          50,
                          -1000000,
                          1000000,
                          std::numeric_limits<int32_t>::max(),
                          std::numeric_limits<int32_t>::min()};
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

TEST(RateConversion, KnownValues) {
  EXPECT_EQ(countToNanoseconds(48000, 48000), kSecond);
  EXPECT_EQ(countToNanoseconds(-1, 3), -333333333);
  EXPECT_EQ(countToNanoseconds(9223372036, 1), 9223372036000000000);  // 128 bits, in range
  EXPECT_EQ(countToNanoseconds(9223372037, 1), kMax);
  EXPECT_EQ(countToNanoseconds(kMin, 1), kMin);
  EXPECT_EQ(countToNanoseconds(kMin, -1), kMax);
  EXPECT_EQ(countToNanoseconds(kMax, kMax), kSecond);
  EXPECT_EQ(correctedCountToNanoseconds(1000000, 1000000, 100), kSecond - 100000);
  EXPECT_EQ(correctedCountToNanoseconds(kMax, 1, 1000000), 0);
}

TEST(RateConversion, ScaledCountsSaturateBeyondTheProduct) {
  struct Case {
    int64_t a, b, rate, nanos;
  };
  const Case cases[] = {
      {3, 16000, 48000, kSecond},
      {-3, 16000, 48000, -kSecond},
      {-3, -16000, -48000, -kSecond},
      {0, kMin, 1, 0},
      {kMax, kMax, kMax, kMax},
      {kMax, 1, kMax, kSecond},
      {9223372036, 1, 1, 9223372036000000000},
      {9223372037, -1, 1, kMin},
      {kMax, kMax, 1, kMax},
      {kMin, kMax, 1, kMin},
      {kMin, kMin, kMin, kMin},
      {kMin, kMin, -1, kMin},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(scaledCountToNanoseconds(c.a, c.b, c.rate), c.nanos)
        << c.a << " " << c.b << " " << c.rate;
  }
}

TEST(RateConversion, ZeroRateThrowsOnEveryPath) {
  const auto expectDivisionByZero = [](auto convert) {
    try {
      convert();
      ADD_FAILURE() << "no exception";
    } catch (const std::overflow_error& error) {
      EXPECT_STREQ(error.what(), "Division by zero.");
    }
  };
  for (const int64_t count : {int64_t{5}, kMax, kMin}) {
    expectDivisionByZero([&] { countToNanoseconds(count, 0); });
    expectDivisionByZero([&] { correctedCountToNanoseconds(count, 0, 10); });
    expectDivisionByZero([&] { scaledCountToNanoseconds(count, count, 0); });
  }
}

}  // namespace
}  // namespace qta::time
