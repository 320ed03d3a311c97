#include "qta/uri/host.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "uri/libidn_reference.h"

namespace {

TEST(URIHost, IPv6Addresses) {
  // clang-format off
  const char* valid[] = {"::1", "1::", "1:2:3:4:5:6:7:8", "fe80::1%eth0", "ABCD::ef",
                         "::ffff:1.2.3.4", "1:2:3:4:5:6:1.2.3.4", "1::2:3%", "0:0::0:0"};
  const char* invalid[] = {"", "::", ":1", ":::1", "1:", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9",
                           "1:2:3:4:5:6:7:8::", "1::2::3", "1:::2", "12345::", "g::1", "::1.2.3",
                           "::1.2.3.256", "::1.2.3.4:5", "1:2:3:4:5:6:7:1.2.3.4", "%eth0", "::1 "};
  // clang-format on
  for (const char* text : valid) EXPECT_TRUE(qta::uri::isIPv6Address(text)) << text;
  for (const char* text : invalid) EXPECT_FALSE(qta::uri::isIPv6Address(text)) << text;
}

TEST(URIHost, IPv4Addresses) {
  EXPECT_TRUE(qta::uri::isIPv4Address("1.2.3.4"));
  EXPECT_TRUE(qta::uri::isIPv4Address("255.255.255.255"));
  EXPECT_TRUE(qta::uri::isIPv4Address("01.02.003.4"));
  EXPECT_TRUE(qta::uri::isIPv4Address("1.2.3.4%x", '%'));
  const char* invalid[] = {"",         "256.1.1.1", "1.2.3",   "1.2.3.4.5", "1..2.3",
                           "1.2.3.4.", ".1.2.3",    "1.2.3.a", "1.2.3.4%x"};
  for (const char* text : invalid) EXPECT_FALSE(qta::uri::isIPv4Address(text)) << text;
  EXPECT_FALSE(qta::uri::isIPv4Address("%1.2.3.4", '%'));
}

TEST(URIHost, CheckHost) {
  struct Case {
    const char* scheme;
    const char* host;
    bool keepTrailingHyphen;
    const char* expected;  // nullptr: rejected
  };
  const Case cases[] = {
      {"http", "", false, ""},
      {"http", "Ex.COM", false, "ex.com"},
      {"http",
       "B\xC3\xBC"
       "cher.example",
       false, "xn--bcher-kva.example"},
      {"http", "[fe80::1%eth0]", false, "fe80::1%eth0"},
      {"http", "[::1]", false, "::1"},
      {"http", "[::1%]", false, nullptr},
      {"http", "[::1%e_0]", false, nullptr},
      {"http", "[::]", false, nullptr},
      {"http", "[", false, nullptr},
      {"http", "-a", false, nullptr},
      {"http", "a-", false, nullptr},
      {"http", "a-", true, "a-"},
      {"http", "Ab-", true, "ab-"},
      {"http", "a b", false, nullptr},
      {"http", "a:1", false, nullptr},
      {"qta", "Any Thing:1", false, "Any Thing:1"},
      {"qta", "a\x01", false, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.host);
    qta::URI::Data data;
    data.scheme = c.scheme;
    data.host = c.host;
    EXPECT_EQ(qta::uri::checkHost(data, c.keepTrailingHyphen), c.expected != nullptr);
    if (c.expected != nullptr) {
      EXPECT_EQ(data.host, c.expected);
    }
  }
}

TEST(URIHost, ToAsciiHostLeavesRejectedHostsUnchanged) {
  std::string host = "a_b";
  EXPECT_FALSE(qta::uri::toAsciiHost(host, false));
  EXPECT_EQ(host, "a_b");
  host = std::string("a\0b", 3);
  EXPECT_FALSE(qta::uri::toAsciiHost(host, false));
  host = "x\xFF";  // not UTF-8
  EXPECT_FALSE(qta::uri::toAsciiHost(host, false));
  EXPECT_EQ(host, "x\xFF");
}

void expectSameAsLibidn(const std::string& host) {
  std::string converted = host;
  const bool accepted = qta::uri::toAsciiHost(converted, false);
  const std::optional<std::string> reference = qtatest::libidnToAscii(host);
  ASSERT_EQ(accepted, reference.has_value()) << '"' << host << '"';
  EXPECT_EQ(converted, accepted ? *reference : host) << '"' << host << '"';
}

TEST(URIHost, AsciiFastPathAgreesWithLibidn) {
  const std::string label63(63, 'q');
  // clang-format off
  const std::string crafted[] = {
      "", ".", "..", "a.", "a..", ".a", "a..b", "-", "a-", "-a", "a-b", "a--b", "xn--a",
      "UPPER.Case", "0.0", "1.2.3.4", "a.-b", "a-.b", label63, label63 + "q", label63 + ".a",
      "a." + label63 + "q", label63 + ".", "a_b", "a b", "a/b", "a:b", "a@b", "a~b", "\x7f",
      std::string(300, 'a'), "www.example.com", "www.EXAMPLE.com.",
  };
  // clang-format on
  for (const std::string& host : crafted) expectSameAsLibidn(host);

  std::mt19937 random(20240611);
  const std::string alphabet = "aZ09-._";
  for (int i = 0; i < 20000; ++i) {
    std::string host(random() % 12, ' ');
    for (char& c : host) c = alphabet[random() % alphabet.size()];
    if (random() % 8 == 0) host.insert(host.size() / 2, std::string(60 + random() % 6, 'k'));
    expectSameAsLibidn(host);
  }
}

}  // namespace
