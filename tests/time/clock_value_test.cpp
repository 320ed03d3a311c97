// Clock values: the parser's forms, flags and leftovers, and every format style.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>

#include "qta/time/clock_value.h"

namespace qta::time {
namespace {

constexpr int64_t kSecond = 1000000000;
constexpr int64_t kHms = 3723 * kSecond + kSecond / 2;  // 1:02:03.5
constexpr ClockValue::Type kNumber = ClockValue::kResolved;

TEST(ClockValueParse, ReadsNumbersKeywordsAndFlags) {
  // The value is stored whether or not the text is accepted; keywords keep the old value.
  const std::tuple<std::string, bool, bool, bool, ClockValue::Type, int64_t> cases[] = {
      {"  1:02:03.5  ", false, false, true, kNumber, kHms},
      {"1:02:03.5s", false, false, false, kNumber, kHms},    // no metric after h:m:s
      {"1:75", false, false, true, kNumber, 135 * kSecond},  // fields unchecked
      {"1:2:3:4", false, false, false, kNumber, 3723 * kSecond},
      {"0:00:01.1234567", false, false, true, kNumber, 1123456000},
      {"90min", false, false, true, kNumber, 5400 * kSecond},
      {"1.5h", false, false, true, kNumber, 5400 * kSecond},
      {"1.5ms", false, false, true, kNumber, 1500000},
      {"1.s", false, false, true, kNumber, kSecond},
      {"1.00000000000000000000009h", false, false, true, kNumber, 3600 * kSecond},
      {"\t+ 3s\r\n", false, false, true, kNumber, 3 * kSecond},
      {"5m", false, false, false, kNumber, 5 * kSecond},  // the "m" is left unread
      {"-5s", true, false, false, kNumber, -5 * kSecond},
      {"- 5s", false, true, true, kNumber, -5 * kSecond},
      {"0", false, false, false, kNumber, 0},
      {"0", false, true, true, kNumber, 0},
      {"", true, false, true, kNumber, 0},
      {std::string("10\0s", 4), false, false, false, kNumber, 10 * kSecond},
      {"indefinite", false, false, true, ClockValue::kIndefinite, 7},
      {"media", false, false, true, ClockValue::kMedia, 7},
      {" media", true, true, false, kNumber, 0},
  };
  for (const auto& [text, allowZero, allowNegative, accepted, type, nanos] : cases) {
    ClockValue value{ClockValue::kUnresolved, 7};
    EXPECT_EQ(parseClockValue(value, text, allowZero, allowNegative), accepted) << text;
    EXPECT_EQ(value.type, type) << text;
    EXPECT_EQ(value.value, nanos) << text;
  }
  const char* cursor = " 12ms  x";  // the scanner stops at the first unread character
  EXPECT_EQ(parseClockText(cursor), 12000);
  EXPECT_STREQ(cursor, "x");
}

TEST(ClockValueFormat, WritesEveryStyle) {
  const std::tuple<ClockValue::Type, int64_t, std::string, std::string> cases[] = {
      {kNumber, 1234567890, "s", "1.234567s"},
      {kNumber, -1500000000, "ms", "-1500ms"},
      {kNumber, 1000001000, "ms", "1000.001ms"},
      {kNumber, -999, "", "-0s"},
      {kNumber, INT64_MIN, "", "-9223372036.854775s"},
      {kNumber, kHms, "hms...", "1:02:03.500"},
      {kNumber, 59999600000, "hms.", "0:00:59.1000"},  // the rounding does not carry
      {kNumber, 5 * kSecond + 499000, "hms...", "0:00:05"},
      {kNumber, 5 * kSecond, "hms.", "0:00:05.000"},
      {kNumber, 360000 * kSecond, "hms", "100:00:00"},
      {kNumber, -61 * kSecond, "hms", "-0:01:01"},
      {kNumber, kSecond, "hms..", "<invalid format>"},
      {ClockValue::kIndefinite, 0, "bogus", "indefinite"},
      {ClockValue::kMedia, 0, "hms", "media"},
      {static_cast<ClockValue::Type>(4), 0, "", "<invalid value type>"},
  };
  for (const auto& [type, nanos, style, text] : cases) {
    EXPECT_EQ(formatClockValue(ClockValue{type, nanos}, style), text) << nanos << " " << style;
  }
}

}  // namespace
}  // namespace qta::time
