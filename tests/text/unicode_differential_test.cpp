// The fast converters against the plain reference model, on random texts built
// to hit the block-wise paths: long ASCII runs, runs of one script, broken
// sequences, stray bytes and surrogates at every offset. Every check runs on
// the portable path and on the AVX2 path.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "qta/text/unicode.h"
#include "text/unicode_checks.h"

namespace {

using unicoderef::checkDirection;

// First code points of Cyrillic, CJK and emoji: two-, three- and four-byte runs.
constexpr char32_t kScripts[] = {0x400, 0x4E00, 0x1F300};

class RandomText {
 public:
  explicit RandomText(unsigned seed) : rng_(seed) {}

  std::string utf8() {
    std::string s;
    for (size_t pieces = pick(40); pieces > 0; --pieces) {
      switch (pick(7)) {
        case 0:
          s.append(pick(40), static_cast<char>('a' + pick(26)));
          break;
        case 1:
          unicoderef::encode(s, static_cast<uint32_t>(0x80 + pick(0x10FF80)));
          break;
        case 2:
          s.push_back(static_cast<char>(0x80 + pick(0x80)));  // any high byte
          break;
        case 3: {  // a valid sequence cut short
          std::string seq;
          unicoderef::encode(seq, static_cast<uint32_t>(0x80 + pick(0x10FF80)));
          s += seq.substr(0, seq.empty() ? 0 : pick(seq.size()));
          break;
        }
        default:
          for (const char32_t c : scriptRun()) unicoderef::encode(s, c);
          if (pick(2) == 0) s.push_back(' ');
      }
    }
    return s;
  }

  template <typename Unit>
  std::basic_string<Unit> units() {
    std::basic_string<Unit> s;
    for (size_t pieces = pick(40); pieces > 0; --pieces) {
      switch (pick(6)) {
        case 0:
          s.append(pick(40), static_cast<Unit>('a' + pick(26)));
          break;
        case 1:
          s.push_back(static_cast<Unit>(pick(0x800)));
          break;
        case 2:
          s.push_back(static_cast<Unit>(0xD800 + pick(0x800)));  // surrogates
          break;
        case 3:
          s.push_back(static_cast<Unit>(sizeof(Unit) == 2 ? pick(0x10000) : pick(0x120000)));
          break;
        default:
          if constexpr (sizeof(Unit) == 2) {
            s += qta::text::utf8ToUtf16(unicoderef::utf32ToUtf8(scriptRun()));
          } else {
            s += scriptRun();
          }
      }
    }
    return s;
  }

 private:
  size_t pick(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(rng_); }

  std::u32string scriptRun() {
    const char32_t base = kScripts[pick(3)];
    std::u32string run;
    for (size_t n = pick(40); n > 0; --n) run.push_back(base + static_cast<char32_t>(pick(0x100)));
    return run;
  }

  std::mt19937 rng_;
};

TEST(UnicodeDifferential, EveryFormMatchesTheReference) {
  RandomText random(20261121);
  for (int i = 0; i < 1500; ++i) {
    const std::string utf8 = random.utf8();
    const std::u16string utf16 = random.units<char16_t>();
    const std::u32string utf32 = random.units<char32_t>();
    SCOPED_TRACE(testing::PrintToString(utf8));
    ASSERT_EQ(unicoderef::onEveryPath([&] {
                return checkDirection(unicoderef::kUtf8ToUtf16, utf8, 24) +
                       checkDirection(unicoderef::kUtf8ToUtf32, utf8, 24) +
                       unicoderef::checkValidity(utf8) +
                       checkDirection(unicoderef::kUtf16ToUtf8, utf16, 24) +
                       checkDirection(unicoderef::kUtf32ToUtf8, utf32, 24);
              }),
              "");
  }
}

TEST(UnicodeDifferential, ValidTextRoundTrips) {
  RandomText random(7);
  for (int i = 0; i < 500; ++i) {
    // UTF-16 without unpaired surrogates, through UTF-8 and back.
    const std::u16string utf16 =
        qta::text::utf8ToUtf16(qta::text::utf16ToUtf8(random.units<char16_t>()));
    const std::string utf8 = qta::text::utf16ToUtf8(utf16);
    ASSERT_TRUE(qta::text::isValidUtf8(utf8));
    EXPECT_EQ(qta::text::utf8ToUtf16(utf8), utf16);
    EXPECT_EQ(qta::text::utf32ToUtf8(qta::text::utf8ToUtf32(utf8)), utf8);
  }
}

}  // namespace
