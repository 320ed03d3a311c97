// The number text of the model against the C library in the C locale.
#include <gtest/gtest.h>
#include <locale.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "qta/json/json.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

std::string printfText(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.16g", value);
  return buffer;
}

// Doubles of every sort: raw bit patterns (subnormals, NaNs of either sign,
// infinities), whole numbers, powers of ten and their neighbours, and values
// whose 17th digit sits on a rounding boundary.
double sampleDouble(std::mt19937_64& random) {
  const std::uint64_t bits = random();
  switch (bits % 8) {
    case 0:
    case 1: {
      double value;
      const std::uint64_t pattern = random();
      std::memcpy(&value, &pattern, sizeof value);
      return value;
    }
    case 2:
      return static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 64));
    case 3:
      return std::pow(10.0, static_cast<int>(random() % 640) - 330);
    case 4:
      return std::nextafter(std::pow(10.0, static_cast<int>(random() % 40) - 10),
                            (random() & 1) ? INFINITY : 0.0);
    case 5:
      return static_cast<double>(random() % 100000000000000000ULL) * 5e-17 *
             std::pow(10.0, static_cast<int>(random() % 60) - 30);
    case 6:
      return std::uniform_real_distribution<double>(-1000, 1000)(random);
    default: {
      const double special[] = {0.0,
                                -0.0,
                                INFINITY,
                                -INFINITY,
                                NAN,
                                -NAN,
                                std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::max(),
                                9.3,
                                0.3};
      return special[random() % std::size(special)];
    }
  }
}

TEST(JSONNumberText, MatchesPrintfOnRoundingTiesAndRangeEdges) {
  const double cases[] = {4503599627370496.5,
                          4503599627370497.5,
                          1000000000000000.5,
                          1000000000000001.5,
                          999999999999999.94,
                          9999999999999998.0,
                          0.1 + 0.2,
                          1e-7,
                          9.999999999999999e-8,
                          1e-5,
                          0.000123456789,
                          123456.78901234567};
  for (double value : cases) EXPECT_EQ(JSONNumber(value).toString(), printfText(value));
}

TEST(JSONNumberText, MatchesPrintfOverAMillionDoubles) {
  std::mt19937_64 random(20261121);
  for (int i = 0; i < 1000000; ++i) {
    const double value = sampleDouble(random);
    const std::string ours = JSONNumber(value).toString();
    if (ours != printfText(value)) {
      FAIL() << "bits " << std::hex << std::bit_cast<std::uint64_t>(value) << ": " << ours
             << " != " << printfText(value);
    }
  }
}

// Sets a locale for the test's lifetime and restores the previous one.
class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name) : previous_(setlocale(LC_ALL, nullptr)) {
    active_ = setlocale(LC_ALL, name) != nullptr;
  }
  ~ScopedLocale() { setlocale(LC_ALL, previous_.c_str()); }
  bool active() const { return active_; }

 private:
  std::string previous_;
  bool active_;
};

TEST(JSONNumberText, IgnoresTheProgramsLocale) {
  const ScopedLocale german("de_DE.UTF-8");
  ASSERT_TRUE(german.active()) << "the de_DE.UTF-8 locale is not installed";
  ASSERT_EQ(printfText(0.5), "0,5");  // the C library itself now writes a comma
  JSONArray array;
  array.push(json::makeNumber(0.5));
  array.push(json::makeNumber(-1234.25e10));
  EXPECT_EQ(json::toJSONText(array), "[ 0.5, -12342500000000 ]");
  EXPECT_EQ(JSONNumber(2.5e-7).toString(), "2.5e-07");
  EXPECT_EQ(JSONString("0.5").toNumber(), 0.5);
  EXPECT_TRUE(std::isnan(JSONString("0,5").toNumber()));
}

// What the model must answer for `text`, worked out with sscanf directly.
double scanfExpectation(const std::string& text) {
  if (text.empty()) return 0;
  double value;
  int consumed = 0;
  if (std::sscanf(text.c_str(), "%lg%n", &value, &consumed) != 1) return NAN;
  if (text.find_first_not_of(" \t\n\r", static_cast<std::size_t>(consumed)) != std::string::npos) {
    return NAN;
  }
  return value;
}

TEST(JSONNumberText, StringsScanAsPercentLg) {
  const char* crafted[] = {"1e",   "0x", "0x1p3",  "infinity", "nan(123)", "nan(",   "-nan",
                           "1.",   ".5", "+.5e-3", "1e+",      "  -0 ",    "0x.8p1", "1e99999",
                           "INF ", "in", "1,5",    "\t7\n",    "1e-400",   "00012",  "--1"};
  for (const char* text : crafted) {
    const double expected = scanfExpectation(text);
    const double actual = JSONString(text).toNumber();
    EXPECT_TRUE(std::isnan(expected) ? std::isnan(actual) : actual == expected) << text;
  }
  std::mt19937_64 random(7);
  const char alphabet[] = "0123456789+-.eExXpPinfatyINFA() \t\n";
  for (int i = 0; i < 200000; ++i) {
    std::string text(random() % 12, ' ');
    for (char& c : text) c = alphabet[random() % (sizeof alphabet - 1)];
    const double expected = scanfExpectation(text);
    const double actual = JSONString(text).toNumber();
    ASSERT_TRUE(std::isnan(expected) ? std::isnan(actual)
                                     : std::bit_cast<std::uint64_t>(actual) ==
                                           std::bit_cast<std::uint64_t>(expected))
        << "'" << text << "'";
  }
}

}  // namespace
}  // namespace qta
