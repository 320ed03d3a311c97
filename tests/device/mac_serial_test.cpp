// The MAC address text rules and the serial-number codec: fixed answers,
// refusals with their exact exception types and texts, the round trip, and
// exhaustive single-character substitutions and adjacent transpositions.
#include <gtest/gtest.h>

#include <cctype>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "device/serial_bits.h"
#include "qta/device/mac_serial.h"

namespace {

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

TEST(DammTable, RowZeroDiagonalAndLatinSquare) {
  const auto& table = qta::device::detail::kDammTable;
  const std::vector<int> rowZero = {0, 2, 4, 6, 8,  10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30,
                                    3, 1, 7, 5, 11, 9,  15, 13, 19, 17, 23, 21, 27, 25, 31, 29};
  for (int c = 0; c < 32; ++c) EXPECT_EQ(table[0][c], rowZero[c]) << c;
  for (int r = 0; r < 32; ++r) {
    EXPECT_EQ(table[r][r], 0);
    unsigned seenInRow = 0, seenInColumn = 0;
    for (int c = 0; c < 32; ++c) {
      seenInRow |= 1u << table[r][c];
      seenInColumn |= 1u << table[c][r];
    }
    EXPECT_EQ(seenInRow, 0xFFFFFFFFu) << r;
    EXPECT_EQ(seenInColumn, 0xFFFFFFFFu) << r;
  }
}

TEST(DeviceMacText, NormalisesOrRefuses) {
  const std::pair<std::string, std::string> accepted[] = {
      {"00-C0-DE-12-34-56", "00c0de123456"},        {"00c0de123456", "00c0de123456"},
      {"00:c0:de:12:34:56 (eth0)", "00c0de123456"}, {"::00c0--DEabcDEF-", "00c0deabcdef"},
      {"00c0deffffffg00", "00c0deffffff"},
  };
  for (const auto& [text, mac] : accepted) EXPECT_EQ(DeviceMac(7, text).mac(), mac) << text;
  EXPECT_EQ(DeviceMac(7, "00c0de000000").variant(), 7);

  const std::string refused[] = {"00c0de12345",
                                 "001122334455",
                                 "00c0de1234567",
                                 "",
                                 " 00c0de123456",
                                 "00c0de12 3456",
                                 std::string("00c0de\0"
                                             "123456",
                                             13)};
  for (const std::string& text : refused) {
    EXPECT_EQ(thrown([&] { DeviceMac(0, text); }), "invalid_argument: bad mac") << text;
  }
}

TEST(SerialCodec, KnownSerialsBothWays) {
  const DeviceMac zero(0, "00c0de000000");
  EXPECT_EQ(macToSerial(zero), "X222222J");
  const struct {
    int variant;
    std::string mac;
  } macs[] = {{0, "00c0de000000"}, {31, "00c0deffffff"}, {5, "00c0de123456"}, {17, "00c0dea5a5a5"}};
  for (const auto& [variant, mac] : macs) {
    const std::string serial = macToSerial(DeviceMac(static_cast<uint8_t>(variant), mac));
    ASSERT_EQ(serial.size(), 8u);
    EXPECT_EQ(serial[0], 'X');
    EXPECT_EQ(serial.find_first_not_of(kAlphabet), std::string::npos) << serial;
    std::string lower = serial;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const std::string& text : {serial, lower}) {
      const DeviceMac back = serialToMac(text);
      EXPECT_EQ(back.variant(), variant) << text;
      EXPECT_EQ(back.mac(), mac) << text;
    }
  }
}

// The variant is written unmasked: its low five bits land in its field, the
// rest is ORed into the leading "X".
TEST(SerialCodec, VariantAboveThirtyOneSpillsIntoTheLeadingX) {
  const DeviceMac plain(0, "00c0de123456");
  EXPECT_EQ(macToSerial(DeviceMac(32, plain.mac())), macToSerial(plain));
  EXPECT_EQ(macToSerial(DeviceMac(64, plain.mac()))[0], 'Z');
  EXPECT_EQ(thrown([&] { serialToMac(macToSerial(DeviceMac(255, plain.mac()))); }),
            "invalid_argument: Serial number must start with an X");
}

TEST(SerialCodec, RefusesWithExactExceptions) {
  const std::string valid = macToSerial(DeviceMac(3, "00c0de0a0b0c"));
  const std::pair<std::string, std::string> cases[] = {
      {"", "invalid_argument: Serial number must start with an X"},
      {"Y2345678", "invalid_argument: Serial number must start with an X"},
      {"X0000000", "invalid_argument: invalid base32 character"},
      {"X2I", "invalid_argument: invalid base32 character"},
      {"X2o", "invalid_argument: invalid base32 character"},
      {std::string("X2\0", 3), "invalid_argument: invalid base32 character"},
      // Short texts are not refused as such: the missing groups read as 0.
      {"X", "invalid_argument: Damm code error"},
      {"XX", "invalid_argument: Damm code error"},
      {"X2P", "invalid_argument: Parity error"},
      {"X22P", "invalid_argument: Parity error"},
      {valid + "2", "out_of_range: setBits index"},
      {valid + "!", "invalid_argument: invalid base32 character"},
      {"X23456789ABC", "out_of_range: setBits index"},
  };
  for (const auto& [serial, error] : cases) {
    EXPECT_EQ(thrown([&] { serialToMac(serial); }), error) << serial;
  }
}

// A sample of MACs: the corners, and one per bit of the device half.
std::vector<std::string> sampleMacs() {
  std::vector<std::string> macs = {"00c0de000000", "00c0deffffff", "00c0de123456", "00c0defedcba"};
  static constexpr char kHex[] = "0123456789abcdef";
  for (int bit = 0; bit < 24; ++bit) {
    const unsigned value = (1u << bit) ^ (0x5a3c96u * static_cast<unsigned>(bit));
    std::string mac = "00c0de";
    for (int shift = 20; shift >= 0; shift -= 4) mac += kHex[(value >> shift) & 15];
    macs.push_back(mac);
  }
  return macs;
}

TEST(SerialCodec, RoundTripsAndCatchesEveryTypo) {
  for (const std::string& mac : sampleMacs()) {
    for (int variant = 0; variant < 32; ++variant) {
      const std::string serial = macToSerial(DeviceMac(static_cast<uint8_t>(variant), mac));
      const DeviceMac back = serialToMac(serial);
      ASSERT_EQ(back.variant(), variant) << serial;
      ASSERT_EQ(back.mac(), mac) << serial;

      for (size_t at = 0; at < serial.size(); ++at) {
        for (const char* c = kAlphabet; *c != '\0'; ++c) {
          if (*c == serial[at]) continue;
          std::string typo = serial;
          typo[at] = *c;
          EXPECT_THROW(serialToMac(typo), std::invalid_argument) << serial << " -> " << typo;
        }
      }
      for (size_t at = 0; at + 1 < serial.size(); ++at) {
        if (serial[at] == serial[at + 1]) continue;
        std::string swapped = serial;
        std::swap(swapped[at], swapped[at + 1]);
        EXPECT_THROW(serialToMac(swapped), std::invalid_argument) << serial << " -> " << swapped;
      }
    }
  }
}

TEST(SerialBits, FieldsStraddleBytesAndStopAtTheEnd) {
  qta::device::detail::SerialBits bits;
  bits.set(6, 5, 0x1f);
  EXPECT_EQ(bits.get(0, 8), 0x03u);
  EXPECT_EQ(bits.get(8, 8), 0xe0u);
  bits.set(7, 4, 0);
  EXPECT_EQ(bits.get(6, 5), 0x10u);
  bits.set(35, 5, 0x15);
  EXPECT_EQ(bits.get(35, 5), 0x15u);
  EXPECT_EQ(thrown([&] { bits.set(36, 5, 0); }), "out_of_range: setBits index");
  EXPECT_EQ(thrown([&] { bits.get(37, 4); }), "out_of_range: getBits index");
}

}  // namespace
