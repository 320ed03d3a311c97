#include "qta/text/base64.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
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

// Bytes that run through every value in no simple cycle.
std::string patternBytes(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7919 >> 3);
  return bytes;
}

std::string withLineBreaks(const std::string& text) {
  std::string lines;
  for (size_t i = 0; i < text.size(); i += 76) lines.append(text, i, 76).append("\r\n");
  return lines;
}

// Runs a caller-buffer form on a heap buffer of exactly `capacity` bytes, so
// that AddressSanitizer sees any write past it. Returns what was written, or
// when the result does not fit, checks that nothing was and returns "".
template <typename Write>
std::string writeExactly(size_t capacity, size_t expectedLength, Write write) {
  constexpr char kUntouched = '\x7F';  // no encoder writes it
  const auto buffer = std::make_unique<char[]>(capacity);
  std::fill_n(buffer.get(), capacity, kUntouched);
  const size_t length = write(buffer.get(), capacity);
  EXPECT_EQ(length, expectedLength) << capacity;
  if (length <= capacity) return std::string(buffer.get(), length);
  EXPECT_TRUE(
      std::all_of(buffer.get(), buffer.get() + capacity, [](char c) { return c == kUntouched; }));
  return "";
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
      {std::string(3000, ' ') + "Zm9v", "foo", "foo"},  // the room for 2250 bytes shrinks
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
  EXPECT_EQ(base64EncodeTo(nullptr, 0, nullptr, 0), 0u);
  EXPECT_EQ(base64UrlDecodeTo(nullptr, 0, nullptr, 0), 0u);
  EXPECT_EQ(base64EncodeTo("f", 1, nullptr, 0), 4u);  // the length it needs
  EXPECT_EQ(base64UrlDecodeTo("Zm9v", 4, nullptr, 0), 3u);
}

// Lengths around the vector blocks and over several filtered chunks, with and
// without line breaks, at every kernel level; fuzz/base64_* explore the rest.
TEST(Base64, LongTextsMatchTheReferenceAtEveryLevel) {
  qtatest::onEachVectorLevel([](qtatest::VectorLevel level) {
    const int at = static_cast<int>(level);
    for (size_t size : {11, 12, 15, 16, 17, 23, 24, 25, 95, 96, 97, 767, 768, 769, 3000, 20000}) {
      const std::string bytes = patternBytes(size);
      const std::string text = base64Encode(bytes);
      ASSERT_EQ(text, base64ref::encodeStandard(bytes)) << size << at;
      ASSERT_EQ(base64UrlEncode(bytes), base64ref::encodeUrl(bytes)) << size << at;
      const std::string lines = withLineBreaks(text);
      for (const std::string& encoded : {text, lines, lines + "=" + text}) {
        ASSERT_EQ(decode(encoded, false), base64ref::decodeStandard(encoded)) << size << at;
        ASSERT_EQ(decode(encoded, true), base64ref::decodeUrl(encoded)) << size << at;
      }
    }
  });
}

// Every byte value inside the vector blocks, in short text (filtered at once)
// and in long text (scanned first), at every kernel level.
TEST(Base64, EveryByteIsKeptOrSkippedAsTheAlphabetSays) {
  qtatest::onEachVectorLevel([](qtatest::VectorLevel level) {
    for (const size_t length : {40, 1100}) {
      std::string text;
      while (text.size() < length) text += "Zm9v+/8-_A";
      for (int byte = 0; byte < 256; ++byte) {
        for (const size_t at : {size_t{5}, length / 2, length - 3}) {
          std::string marked = text;
          marked[at] = static_cast<char>(byte);
          ASSERT_EQ(decode(marked, false), base64ref::decodeStandard(marked))
              << byte << " " << at << " " << static_cast<int>(level);
          ASSERT_EQ(decode(marked, true), base64ref::decodeUrl(marked));
        }
      }
    }
  });
}

std::string breakLines(const std::string& text, size_t lineChars, const std::string& separator) {
  std::string lines;
  for (size_t i = 0; i < text.size(); i += lineChars) {
    lines.append(text, i, lineChars);
    lines += separator;
  }
  return lines;
}

// Text broken into lines of many lengths (around the vector sizes, multiples
// of 4 or not; the last line full or short) by separators of one to nine bytes, as it stands and
// with the shape broken once in its middle (a line or a gap), through every decoder form at
// every level.
TEST(Base64, LineBrokenTextOfEveryShapeMatchesTheReference) {
  using Change = std::string (*)(std::string lines, size_t middle);
  const Change changes[] = {
      [](std::string lines, size_t) { return lines; },
      [](std::string lines, size_t middle) { return lines.erase(middle, 1); },
      [](std::string lines, size_t middle) { return lines.insert(middle, 1, '\n'); },
      [](std::string lines, size_t middle) { return lines.replace(middle, 1, 1, '*'); },
      [](std::string lines, size_t middle) { return lines.replace(middle, 1, 1, 'Q'); },
      // A gap byte made an alphabet character, which joins two lines.
      [](std::string lines, size_t middle) {
        const size_t at = lines.find_first_of(" \t\r\n", middle);
        if (at != std::string::npos) lines[at] = 'Q';
        return lines;
      },
  };
  const std::string separators[] = {"\n", "\r\n", " \t\n\n", std::string(8, ' '),
                                    std::string(9, ' ')};
  qtatest::onEachVectorLevel([&](qtatest::VectorLevel level) {
    const int at = static_cast<int>(level);
    for (size_t lineChars :
         {4, 16, 20, 31, 32, 36, 48, 60, 64, 72, 76, 100, 128, 132, 256, 260, 300}) {
      // Seven and a bit lines ending in padding, and exactly four lines.
      for (const size_t size : {lineChars * 7 + 5, lineChars * 3}) {
        const std::string text = base64Encode(patternBytes(size));
        for (const std::string& separator : separators) {
          const std::string lines = breakLines(text, lineChars, separator);
          for (const Change change : changes) {
            for (const size_t middle : {lines.size() / 2, lines.size() - 2}) {
              const std::string changed = change(lines, middle);
              const std::string expected = base64ref::decodeStandard(changed);
              ASSERT_EQ(decode(changed, false), expected) << lineChars << " " << middle << at;
              ASSERT_EQ(decode(changed, true), base64ref::decodeUrl(changed)) << lineChars << at;
              const auto decodeTo = [&](char* out, size_t capacity) {
                return base64DecodeTo(changed, out, capacity);
              };
              ASSERT_EQ(writeExactly(expected.size(), expected.size(), decodeTo), expected);
            }
          }
        }
      }
    }
  });
}

// Each caller-buffer form writes what its allocating form returns, into a
// buffer of exactly that size or of the advertised size, and writes nothing
// into one byte less.
TEST(Base64, CallerBufferFormsWriteWhatTheAllocatingFormsReturn) {
  qtatest::onEachVectorLevel([](qtatest::VectorLevel level) {
    const int at = static_cast<int>(level);
    for (size_t size : {0, 1, 2, 3, 4, 23, 24, 25, 47, 48, 49, 95, 96, 97, 769, 1000, 3001}) {
      const std::string bytes = patternBytes(size);
      for (const bool url : {false, true}) {
        const std::string text = url ? base64UrlEncode(bytes) : base64Encode(bytes);
        ASSERT_EQ(text.size(), url ? base64UrlEncodedSize(size) : base64EncodedSize(size));
        const auto encodeTo = [&](char* out, size_t capacity) {
          return url ? base64UrlEncodeTo(bytes, out, capacity)
                     : base64EncodeTo(bytes, out, capacity);
        };
        EXPECT_EQ(writeExactly(text.size(), text.size(), encodeTo), text) << size << url << at;
        if (size > 0) writeExactly(text.size() - 1, text.size(), encodeTo);

        for (const std::string& encoded : {text, withLineBreaks(text), "=" + text + "=="}) {
          const std::string decoded = decode(encoded, url);
          const auto decodeTo = [&](char* out, size_t capacity) {
            return url ? base64UrlDecodeTo(encoded, out, capacity)
                       : base64DecodeTo(encoded, out, capacity);
          };
          const size_t most = base64DecodedSizeMax(encoded.size());
          ASSERT_GE(most, decoded.size());
          EXPECT_EQ(writeExactly(most, decoded.size(), decodeTo), decoded) << size << url << at;
          EXPECT_EQ(writeExactly(decoded.size(), decoded.size(), decodeTo), decoded);
          if (size > 0) writeExactly(decoded.size() - 1, decoded.size(), decodeTo);
        }
      }
    }
  });
}

}  // namespace
}  // namespace qta::text
