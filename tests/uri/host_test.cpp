#include "qta/uri/host.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "uri/host_detail.h"
#include "uri/libidn_reference.h"

namespace {

TEST(URIHost, IPAddresses) {
  // clang-format off
  const char* valid6[] = {"::1", "1::", "1:2:3:4:5:6:7:8", "fe80::1%eth0", "ABCD::ef",
                          "::ffff:1.2.3.4", "1:2:3:4:5:6:1.2.3.4", "1::2:3%", "0:0::0:0"};
  const char* invalid6[] = {"", "::", ":1", ":::1", "1:", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9",
                            "1:2:3:4:5:6:7:8::", "1::2::3", "1:::2", "12345::", "g::1", "::1.2.3",
                            "::1.2.3.256", "::1.2.3.4:5", "1:2:3:4:5:6:7:1.2.3.4", "%eth0", "::1 "};
  const char* valid4[] = {"1.2.3.4", "255.255.255.255", "01.02.003.4"};
  const char* invalid4[] = {"", "256.1.1.1", "1.2.3", "1.2.3.4.5", "1..2.3", "1.2.3.4.", ".1.2.3",
                            "1.2.3.a", "1.2.3.4%x"};
  // clang-format on
  for (const char* text : valid6) EXPECT_TRUE(qta::uri::isIPv6Address(text)) << text;
  for (const char* text : invalid6) EXPECT_FALSE(qta::uri::isIPv6Address(text)) << text;
  for (const char* text : valid4) EXPECT_TRUE(qta::uri::isIPv4Address(text)) << text;
  for (const char* text : invalid4) EXPECT_FALSE(qta::uri::isIPv4Address(text)) << text;
  EXPECT_TRUE(qta::uri::isIPv4Address("1.2.3.4%x", '%'));
  EXPECT_FALSE(qta::uri::isIPv4Address("%1.2.3.4", '%'));
}

TEST(URIHost, CheckHost) {
  struct Case {
    const char* scheme;
    const char* host;
    bool keepTrailingHyphen;
    const char* expected;  // nullptr: rejected
  };
  // clang-format off
  const Case cases[] = {
      {"http", "", false, ""}, {"http", "Ex.COM", false, "ex.com"},
      {"http", "Bücher.example", false, "xn--bcher-kva.example"},
      {"http", "[fe80::1%eth0]", false, "fe80::1%eth0"}, {"http", "[::1%]", false, nullptr},
      {"http", "[::1%e_0]", false, nullptr}, {"http", "[::]", false, nullptr},
      {"http", "[", false, nullptr}, {"http", "-a", false, nullptr}, {"http", "a-", false, nullptr},
      {"http", "Ab-", true, "ab-"}, {"http", "a b", false, nullptr},
      {"qta", "Any Thing:1", false, "Any Thing:1"}, {"qta", "a\x01", false, nullptr},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.host);
    qta::URI::Data data;
    data.scheme = c.scheme;
    data.host = c.host;
    EXPECT_EQ(qta::uri::checkHost(data, c.keepTrailingHyphen), c.expected != nullptr);
    EXPECT_EQ(data.host, c.expected != nullptr ? c.expected : c.host);
  }
}

// The boundaries of the ASCII fast path; the uri_host fuzz harness holds any
// other name to libidn.
TEST(URIHost, AsciiFastPathAgreesWithLibidn) {
  const std::string label63(63, 'q');
  const std::string hosts[] = {"a..b", "a.", ".", "-a", "a_b", label63 + ".", label63 + "q"};
  for (const std::string& host : hosts) {
    std::string converted = host;
    const bool accepted = qta::uri::toAsciiHost(converted, false);
    const std::optional<std::string> reference = qtatest::libidnToAscii(host);
    ASSERT_EQ(accepted, reference.has_value()) << '"' << host << '"';
    EXPECT_EQ(converted, accepted ? *reference : host) << '"' << host << '"';
  }
  std::string withNul("a\0b", 3);
  EXPECT_FALSE(qta::uri::toAsciiHost(withNul, false));
}

}  // namespace
