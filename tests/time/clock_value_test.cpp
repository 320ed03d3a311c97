// Clock values: the parser's forms, flags and leftovers, and every format style.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "qta/time/clock_value.h"

namespace qta::time {
namespace {

constexpr int64_t kSecond = 1000000000;

struct ParseCase {
  std::string text;
  bool allowZero;
  bool allowNegative;
  bool accepted;
  int64_t nanos;  // stored whether or not the text is accepted
};

TEST(ClockValueParse, ReadsNumbersAndAppliesFlags) {
  const ParseCase cases[] = {
      {"  1:02:03.5  ", false, false, true, 3723 * kSecond + kSecond / 2},
      {"1:02:03.5s", false, false, false, 3723 * kSecond + kSecond / 2},  // no metric after h:m:s
      {"1:75", false, false, true, 135 * kSecond},                        // fields unchecked
      {":30", false, false, true, 30 * kSecond},
      {"2:.", false, false, true, 120 * kSecond},
      {"1:2:3:4", false, false, false, 3723 * kSecond},
      {"0:00:01.1234567", false, false, true, 1123456000},
      {"90min", false, false, true, 5400 * kSecond},
      {"1.5h", false, false, true, 5400 * kSecond},
      {"2.5min", false, false, true, 150 * kSecond},
      {"250ms", false, false, true, kSecond / 4},
      {"1.5ms", false, false, true, 1500000},
      {"10", false, false, true, 10 * kSecond},
      {"1.s", false, false, true, kSecond},
      {"1.23456789s", false, false, true, 1234567000},
      {"0.0000015s", false, false, true, 1000},
      {"1.00000000000000000000009h", false, false, true, 3600 * kSecond},
      {"\t+ 3s\r\n", false, false, true, 3 * kSecond},
      {"5m", false, false, false, 5 * kSecond},  // the "m" is left unread
      {"1 s", false, false, false, kSecond},
      {"-5s", false, false, false, -5 * kSecond},
      {"-5s", true, false, false, -5 * kSecond},
      {"- 5s", false, true, true, -5 * kSecond},
      {"0", false, false, false, 0},
      {"0", true, false, true, 0},
      {"0", false, true, true, 0},
      {"", true, false, true, 0},
      {"unresolved", true, true, false, 0},
      {"Media", true, true, false, 0},
      {std::string("10\0s", 4), false, false, false, 10 * kSecond},
  };
  for (const ParseCase& c : cases) {
    ClockValue value{ClockValue::kMedia, -1};
    EXPECT_EQ(parseClockValue(value, c.text, c.allowZero, c.allowNegative), c.accepted) << c.text;
    EXPECT_EQ(value.type, ClockValue::kResolved) << c.text;
    EXPECT_EQ(value.value, c.nanos) << c.text;
  }
}

TEST(ClockValueParse, KeywordsAreExactAndKeepTheValue) {
  ClockValue value{ClockValue::kResolved, 7};
  EXPECT_TRUE(parseClockValue(value, "media", false, false));
  EXPECT_EQ(value.type, ClockValue::kMedia);
  EXPECT_TRUE(parseClockValue(value, "indefinite", false, false));
  EXPECT_EQ(value.type, ClockValue::kIndefinite);
  EXPECT_EQ(value.value, 7);
  EXPECT_FALSE(parseClockValue(value, " media", true, true));
}

TEST(ClockValueParse, ScannerStopsAtTheFirstUnreadCharacter) {
  const std::string text = " 12ms  x";
  const char* cursor = text.c_str();
  EXPECT_EQ(parseClockText(cursor), 12000);
  EXPECT_STREQ(cursor, "x");
}

struct FormatCase {
  ClockValue value;
  std::string style;
  std::string text;
};

TEST(ClockValueFormat, WritesEveryStyle) {
  const auto resolved = [](int64_t nanos) { return ClockValue{ClockValue::kResolved, nanos}; };
  const FormatCase cases[] = {
      {resolved(1500000000), "", "1.5s"},
      {resolved(2 * kSecond), "s", "2s"},
      {resolved(1234567890), "s", "1.234567s"},
      {resolved(-1500000000), "", "-1.5s"},
      {resolved(-1500000000), "ms", "-1500ms"},
      {resolved(1000001000), "ms", "1000.001ms"},
      {resolved(1000000999), "ms", "1000ms"},
      {resolved(-999), "", "-0s"},
      {resolved(std::numeric_limits<int64_t>::min()), "", "-9223372036.854775s"},
      {resolved(3723 * kSecond + kSecond / 2), "hms", "1:02:03"},
      {resolved(3723 * kSecond + kSecond / 2), "hms.", "1:02:03.500"},
      {resolved(3723 * kSecond + kSecond / 2), "hms...", "1:02:03.500"},
      {resolved(59999600000), "hms.", "0:00:59.1000"},  // the rounding does not carry
      {resolved(5 * kSecond + 499000), "hms...", "0:00:05"},
      {resolved(5 * kSecond), "hms.", "0:00:05.000"},
      {resolved(360000 * kSecond), "hms", "100:00:00"},
      {resolved(-61 * kSecond), "hms", "-0:01:01"},
      {resolved(kSecond), "hms..", "<invalid format>"},
      {resolved(kSecond), "S", "<invalid format>"},
      {{ClockValue::kIndefinite, 0}, "bogus", "indefinite"},
      {{ClockValue::kUnresolved, 0}, "", "unresolved"},
      {{ClockValue::kMedia, 0}, "hms", "media"},
      {{static_cast<ClockValue::Type>(4), 0}, "", "<invalid value type>"},
  };
  for (const FormatCase& c : cases) {
    EXPECT_EQ(formatClockValue(c.value, c.style), c.text) << c.value.value << " " << c.style;
  }
}

}  // namespace
}  // namespace qta::time
