// The validity check on every code path against the reference model: every
// short text made of bytes of each kind, and windows of such bytes at every
// place of longer texts, so that each byte meets every block edge, the ASCII
// runs passed over, the final overlapping block and the end of the text.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "qta/text/unicode.h"
#include "text/code_paths.h"
#include "text/unicode_reference.h"

namespace {

// One byte of every kind: ASCII, continuation bytes on each side of the limits
// that follow 0xE0, 0xF0 and 0xF4, and lead bytes good and bad of every length.
constexpr unsigned char kEveryKind[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF,
                                        0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xED, 0xEF,
                                        0xF0, 0xF1, 0xF4, 0xF5, 0xF7, 0xF8, 0xFF};
constexpr unsigned char kFewerKinds[] = {0x41, 0x80, 0x8F, 0x9F, 0xA0, 0xBF,
                                         0xC1, 0xC2, 0xE0, 0xF0, 0xF4, 0xF5};

// Every string of `length` bytes taken from `alphabet`.
std::vector<std::string> everyString(std::span<const unsigned char> alphabet, size_t length) {
  std::vector<std::string> strings = {""};
  for (size_t i = 0; i < length; ++i) {
    std::vector<std::string> longer;
    longer.reserve(strings.size() * alphabet.size());
    for (const std::string& s : strings) {
      for (unsigned char byte : alphabet) longer.push_back(s + static_cast<char>(byte));
    }
    strings.swap(longer);
  }
  return strings;
}

// The check on a copy in a buffer of exactly its size, so that a sanitizer
// sees any read past either end.
bool validInExactBuffer(std::string_view text) {
  const auto buffer = std::make_unique<char[]>(text.size());
  text.copy(buffer.get(), text.size());
  return qta::text::isValidUtf8(std::string_view(buffer.get(), text.size()));
}

TEST(Utf8Validate, EveryTextOfUpToFourBytesOfEveryKind) {
  for (size_t length = 0; length <= 4; ++length) {
    for (const std::string& text : everyString(kEveryKind, length)) {
      const bool expected = unicoderef::isValidUtf8(text);
      qtatest::onEachVectorLevel([&](qtatest::VectorLevel level) {
        ASSERT_EQ(validInExactBuffer(text), expected)
            << testing::PrintToString(text) << " " << qtatest::vectorLevelName(level);
      });
    }
  }
}

// Four bytes at every offset of ASCII texts of lengths on both sides of the
// short-text limit of each vector width, and of lengths that end in a whole
// run and in a partial block; windows at the end are cut short. ASCII never
// changes how the bytes around it are judged, so the reference verdict on the
// window alone is the verdict on the whole text.
TEST(Utf8Validate, FourBytesAtEveryPlaceOfLongerTexts) {
  const std::vector<std::string> windows = everyString(kFewerKinds, 4);
  std::vector<bool> expected;  // per window and kept length 1 to 4
  for (const std::string& window : windows) {
    for (size_t kept = 1; kept <= 4; ++kept) {
      expected.push_back(unicoderef::isValidUtf8(window.substr(0, kept)));
    }
  }
  for (const size_t length : {18, 19, 34, 35, 63, 64, 67, 68, 134, 160}) {
    const auto text = std::make_unique<char[]>(length);
    qtatest::onEachVectorLevel([&](qtatest::VectorLevel level) {
      for (size_t at = 0; at < length; ++at) {
        const size_t kept = std::min<size_t>(4, length - at);
        for (size_t w = 0; w < windows.size(); ++w) {
          std::fill_n(text.get(), length, 'a');
          windows[w].copy(text.get() + at, kept);
          ASSERT_EQ(qta::text::isValidUtf8(std::string_view(text.get(), length)),
                    expected[w * 4 + kept - 1])
              << testing::PrintToString(windows[w]) << " at " << at << " of " << length << " "
              << qtatest::vectorLevelName(level);
        }
      }
    });
  }
}

}  // namespace
