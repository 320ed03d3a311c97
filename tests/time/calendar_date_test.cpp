// Calendar dates: ISO and RFC 822 texts across the whole 64-bit range, and the
// three HTTP date forms.
#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <utility>

#include "qta/time/calendar_date.h"

namespace qta::time {
namespace {

constexpr int64_t kSecond = 1000000000;
constexpr int64_t kNovember1994 = 784111777 * kSecond;  // Sun, 06 Nov 1994 08:49:37 GMT
constexpr int64_t kMax = INT64_MAX;

TEST(CalendarDate, FormatsIsoAndRfc822) {
  const std::tuple<int64_t, const char*, const char*> cases[] = {
      {-1, "1970-01-01T00:00:00Z", "Thu, 01 Jan 1970 00:00:00 GMT"},  // truncated toward 0
      {-kSecond, "1969-12-31T23:59:59Z", "Wed, 31 Dec 1969 23:59:59 GMT"},
      {kNovember1994 + kSecond - 1, "1994-11-06T08:49:37Z", "Sun, 06 Nov 1994 08:49:37 GMT"},
      {kMax, "2262-04-11T23:47:16Z", "Fri, 11 Apr 2262 23:47:16 GMT"},
      {-kMax - 1, "1677-09-21T00:12:44Z", "Tue, 21 Sep 1677 00:12:44 GMT"},
  };
  for (const auto& [ns, iso, rfc822] : cases) {
    EXPECT_EQ(formatIsoDate(ns), iso) << ns;
    EXPECT_EQ(formatRfc822Date(ns), rfc822) << ns;
  }
}

TEST(CalendarDate, ParsesHttpDates) {
  const std::pair<const char*, int64_t> cases[] = {
      {"Sun, 06 Nov 1994 08:49:37 GMT", kNovember1994},
      {"Sunday, 06-Nov-94 08:49:37 GMT", kNovember1994},
      {"Sun Nov  6 08:49:37 1994", kNovember1994},
      {"Fri, 31 Dec 9999 23:59:59 GMT", kMax},  // saturated
      {"Sun, 06 Nox 1994 08:49:37 GMT", 0},
      {"", 0},
      {nullptr, 0},
  };
  for (const auto& [text, ns] : cases) {
    EXPECT_EQ(parseHttpDate(text), ns) << (text ? text : "(null)");
  }
}

}  // namespace
}  // namespace qta::time
