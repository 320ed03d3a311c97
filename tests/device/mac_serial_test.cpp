// The MAC address text rules and the serial-number codec: fixed answers,
// refusals with their exact exception types and texts, the round trip, and
// exhaustive single-character substitutions and adjacent transpositions.
#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "qta/device/mac_serial.h"

namespace {

using namespace std::string_literals;
using qta::DeviceMac;
using qta::device::macToSerial;
using qta::device::serialToMac;

constexpr char kAlphabet[] = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";

// Runs `call` and returns "type: text" of what it throws, or "" when it returns.
template <typename Call>
std::string thrown(Call call) {
  try {
    call();
  } catch (const std::invalid_argument& error) {
    return std::string("invalid_argument: ") + error.what();
  } catch (const std::out_of_range& error) {
    return std::string("out_of_range: ") + error.what();
  }
  return "";
}

bool rejected(const std::string& serial) {
  return thrown([&] { serialToMac(serial); }).starts_with("invalid_argument");
}

TEST(DeviceMacText, NormalisesOrRefuses) {
  const std::pair<std::string, std::string> accepted[] = {
      {"00-C0-DE-12-34-56", "00c0de123456"},        {"00c0de123456", "00c0de123456"},
      {"00:c0:de:12:34:56 (eth0)", "00c0de123456"}, {"::00c0--DEabcDEF-", "00c0deabcdef"},
      {"00c0deffffffg00", "00c0deffffff"},
  };
  for (const auto& [text, mac] : accepted) EXPECT_EQ(DeviceMac(7, text).mac(), mac) << text;
  const std::string refused[] = {"00c0de12345",   "001122334455",  "00c0de1234567",       "",
                                 " 00c0de123456", "00c0de12 3456", "00c0de\0"s + "123456"};
  for (const std::string& text : refused) {
    EXPECT_EQ(thrown([&] { DeviceMac(0, text); }), "invalid_argument: bad mac") << text;
  }
}

TEST(SerialCodec, KnownSerialsBothWays) {
  const struct {
    int variant;
    std::string mac, serial, lower;
  } known[] = {{0, "00c0de000000", "X222222J", "x222222j"},
               {31, "00c0deffffff", "XZHZZZZK", "xzhzzzzk"},
               {5, "00c0de123456", "X7K6F4QL", "x7k6f4ql"},
               {17, "00c0dea5a5a5", "XKCDBF73", "xkcdbf73"}};
  for (const auto& [variant, mac, serial, lower] : known) {
    EXPECT_EQ(macToSerial(DeviceMac(static_cast<uint8_t>(variant), mac)), serial);
    for (const std::string& text : {serial, lower}) {
      EXPECT_EQ(serialToMac(text).variant(), variant) << text;
      EXPECT_EQ(serialToMac(text).mac(), mac) << text;
    }
  }
  // The variant is written unmasked: bits above the low five are ORed into the leading "X".
  EXPECT_EQ(macToSerial(DeviceMac(32, "00c0de000000")), "X222222J");
  EXPECT_EQ(macToSerial(DeviceMac(64, "00c0de000000"))[0], 'Z');
}

TEST(SerialCodec, RefusesWithExactExceptions) {
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"invalid_argument: Serial number must start with an X", {"", "Y2345678"}},
      {"invalid_argument: invalid base32 character",
       {"X0000000", "X2I", "X2o", "X2\0"s, "X222222J!"}},
      // Short texts are not refused as such: the missing groups read as 0.
      {"invalid_argument: Damm code error", {"X", "XX"}},
      {"invalid_argument: Parity error", {"X2P", "X22P"}},
      {"out_of_range: setBits index", {"X222222J2", "X23456789ABC"}},
  };
  for (const auto& [error, serials] : cases) {
    for (const std::string& serial : serials) {
      EXPECT_EQ(thrown([&] { serialToMac(serial); }), error) << serial;
    }
  }
}

TEST(SerialCodec, RoundTripsAndCatchesEveryTypo) {
  // The corners, and one MAC per bit of the device half.
  std::vector<std::string> macs = {"00c0de000000", "00c0deffffff", "00c0de123456"};
  for (unsigned bit = 0; bit < 24; ++bit) {
    char device[7];
    std::snprintf(device, sizeof device, "%06x", (1u << bit) ^ (0x5a3c96u * bit & 0xffffffu));
    macs.push_back(std::string("00c0de") + device);
  }
  for (const std::string& mac : macs) {
    for (int variant = 0; variant < 32; ++variant) {
      const std::string serial = macToSerial(DeviceMac(static_cast<uint8_t>(variant), mac));
      const DeviceMac back = serialToMac(serial);
      ASSERT_EQ(back.variant(), variant) << serial;
      ASSERT_EQ(back.mac(), mac) << serial;
      for (size_t at = 0; at < serial.size(); ++at) {
        for (const char* c = kAlphabet; *c != '\0'; ++c) {
          std::string typo = serial;
          typo[at] = *c;
          EXPECT_TRUE(typo == serial || rejected(typo)) << typo;
        }
        std::string swapped = serial;
        if (at + 1 < serial.size()) std::swap(swapped[at], swapped[at + 1]);
        EXPECT_TRUE(swapped == serial || rejected(swapped)) << swapped;
      }
    }
  }
}

}  // namespace
