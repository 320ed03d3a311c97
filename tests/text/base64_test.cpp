#include "qta/text/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace qta::text {
namespace {

using namespace std::string_literals;

std::string decodeStandard(std::string_view text) {
  const std::string asString = base64DecodeToString(text.data(), text.size());
  const std::vector<uint8_t> asVector = base64Decode(text.data(), text.size());
  EXPECT_EQ(asString, std::string(asVector.begin(), asVector.end())) << text;
  return asString;
}

std::string decodeUrl(std::string_view text) {
  const std::string asString = base64UrlDecodeToString(text.data(), text.size());
  const std::vector<uint8_t> asVector = base64UrlDecode(text.data(), text.size());
  EXPECT_EQ(asString, std::string(asVector.begin(), asVector.end())) << text;
  return asString;
}

TEST(Base64, EncodesBothAlphabets) {
  struct Case {
    std::string bytes, standard, url;
  };
  const Case cases[] = {
      {"", "", ""},
      {"f", "Zg==", "Zg"},
      {"fo", "Zm8=", "Zm8"},
      {"foo", "Zm9v", "Zm9v"},
      {"foob", "Zm9vYg==", "Zm9vYg"},
      {"foobar", "Zm9vYmFy", "Zm9vYmFy"},
      {"\xFB\xFF", "+/8=", "-_8"},
      {"\xFF\xEF\xBE", "/+++", "_---"},
      {"\0\0\0\0"s, "AAAAAA==", "AAAAAA"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(base64Encode(c.bytes.data(), c.bytes.size()), c.standard) << c.bytes;
    EXPECT_EQ(base64UrlEncode(c.bytes.data(), c.bytes.size()), c.url) << c.bytes;
  }
}

TEST(Base64, DecodingSkipsEverythingOutsideTheAlphabet) {
  struct Case {
    std::string text, standard, url;
  };
  const Case cases[] = {
      {"", "", ""},
      {"Zm9v\nYmFy", "foobar", "foobar"},
      {"Zg", "f", "f"},
      {"Zg==", "f", "f"},
      {"Z", "", ""},
      {"Z=g", "f", "f"},
      {"Zm9vY", "foo", "foo"},  // a final lone character gives nothing
      {"Zh", "f", "f"},         // unused low bits are not checked
      {"-_8", "", "\xFB\xFF"},  // each alphabet skips the other's two characters
      {"+/8=", "\xFB\xFF", ""},
      {" Z\tm\r\n9 v ", "foo", "foo"},  // white space anywhere
      {"Zm\x80\xFF"
       "9v",
       "foo", "foo"},  // bytes of 128 and above
      {"Zm\0"
       "9v"s,
       "foo", "foo"},  // NUL is just another skipped byte
      {"====", "", ""},
      {"Zm9v====YmFy", "foobar", "foobar"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(decodeStandard(c.text), c.standard) << c.text;
    EXPECT_EQ(decodeUrl(c.text), c.url) << c.text;
  }
}

TEST(Base64, NullPointerWithZeroLengthIsEmpty) {
  EXPECT_EQ(base64Encode(nullptr, 0), "");
  EXPECT_EQ(base64UrlEncode(nullptr, 0), "");
  EXPECT_TRUE(base64Decode(nullptr, 0).empty());
  EXPECT_EQ(base64UrlDecodeToString(nullptr, 0), "");
}

TEST(Base64, StringViewOverloadsMatch) {
  EXPECT_EQ(base64Encode(std::string_view("foo")), "Zm9v");
  EXPECT_EQ(base64UrlEncode(std::string_view("\xFB\xFF")), "-_8");
  EXPECT_EQ(base64DecodeToString(std::string_view("Zm9v")), "foo");
  EXPECT_EQ(base64UrlDecodeToString(std::string_view("-_8")), "\xFB\xFF");
}

}  // namespace
}  // namespace qta::text
