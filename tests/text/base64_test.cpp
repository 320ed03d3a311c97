#include "qta/text/base64.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "text/base64_reference.h"
#include "text/code_paths.h"

namespace qta::text {
namespace {

using namespace std::string_literals;

// Decodes with the string and the vector form of one alphabet; they must agree.
std::string decode(std::string_view text, bool url) {
  const std::string asString = url ? base64UrlDecodeToString(text) : base64DecodeToString(text);
  const std::vector<uint8_t> asVector = url ? base64UrlDecode(text) : base64Decode(text);
  EXPECT_EQ(asString, std::string(asVector.begin(), asVector.end())) << text;
  return asString;
}

TEST(Base64, EncodesBothAlphabets) {
  const std::array<std::string, 3> cases[] = {
      {"f", "Zg==", "Zg"},
      {"foo", "Zm9v", "Zm9v"},
      {"foobar", "Zm9vYmFy", "Zm9vYmFy"},
      {"\xFB\xFF", "+/8=", "-_8"},
      {"\xFF\xEF\xBE", "/+++", "_---"},
      {"\0\0\0\0"s, "AAAAAA==", "AAAAAA"},
  };
  for (const auto& [bytes, standard, url] : cases) {
    EXPECT_EQ(base64Encode(bytes), standard) << bytes;
    EXPECT_EQ(base64UrlEncode(bytes), url) << bytes;
  }
}

TEST(Base64, DecodingSkipsEverythingOutsideTheAlphabet) {
  const std::array<std::string, 3> cases[] = {
      {"Zm9v\nYmFy", "foobar", "foobar"},
      {"Zg", "f", "f"},
      {"Z=g", "f", "f"},
      {"Zm9vY", "foo", "foo"},  // a final lone character gives nothing
      {"Zh", "f", "f"},         // unused low bits are not checked
      {"-_8", "", "\xFB\xFF"},  // each alphabet skips the other's two characters
      {"+/8=", "\xFB\xFF", ""},
      {" Z\tm\r\n9 v ", "foo", "foo"},    // white space anywhere
      {"Zm\x80\xFF\x39v", "foo", "foo"},  // bytes of 128 and above
      {"Zm\09v"s, "foo", "foo"},          // NUL is just another skipped byte
      {"Zm9v====YmFy", "foobar", "foobar"},
  };
  for (const auto& [text, standard, url] : cases) {
    EXPECT_EQ(decode(text, false), standard) << text;
    EXPECT_EQ(decode(text, true), url) << text;
  }
}

TEST(Base64, NullPointerWithZeroLengthIsEmpty) {
  EXPECT_EQ(base64Encode(nullptr, 0), "");
  EXPECT_EQ(base64UrlEncode(nullptr, 0), "");
  EXPECT_TRUE(base64Decode(nullptr, 0).empty());
  EXPECT_EQ(base64UrlDecodeToString(nullptr, 0), "");
}

// Lengths around the vector blocks and the short-text limit, with and without
// line breaks, on both code paths; fuzz/base64_* explore the rest.
TEST(Base64, LongTextsMatchTheReferenceOnBothPaths) {
  qtatest::onEachCodePath([](bool avx2) {
    for (size_t size : {23, 24, 25, 95, 96, 97, 767, 768, 769, 3000}) {
      std::string bytes(size, '\0');
      for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7919 >> 3);
      const std::string text = base64Encode(bytes);
      ASSERT_EQ(text, base64ref::encodeStandard(bytes)) << size << avx2;
      ASSERT_EQ(base64UrlEncode(bytes), base64ref::encodeUrl(bytes)) << size << avx2;
      std::string lines;
      for (size_t i = 0; i < text.size(); i += 76) lines.append(text, i, 76).append("\r\n");
      for (const std::string& encoded : {text, lines, lines + "=" + text}) {
        ASSERT_EQ(decode(encoded, false), base64ref::decodeStandard(encoded)) << size << avx2;
        ASSERT_EQ(decode(encoded, true), base64ref::decodeUrl(encoded)) << size << avx2;
      }
    }
  });
}

}  // namespace
}  // namespace qta::text
