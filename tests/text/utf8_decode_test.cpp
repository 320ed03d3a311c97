// UTF-8 to UTF-16 and UTF-32 on texts long enough for the vector kernels:
// every shape of script they have a step for, cut at every length, and with
// each kind of ill-formed input at every place, on every instruction-set
// level. The checks compare every form with the reference model and use
// buffers of exactly the result's size.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "text/unicode_checks.h"

namespace {

std::string bothDirections(const std::string& input) {
  return unicoderef::checkDirection(unicoderef::kUtf8ToUtf16, input) +
         unicoderef::checkDirection(unicoderef::kUtf8ToUtf32, input);
}

// Repeats `piece` until the text holds `size` bytes (the last copy cut short).
std::string repeated(const std::string& piece, size_t size) {
  std::string text;
  while (text.size() < size) text += piece;
  text.resize(size);
  return text;
}

// The shapes of text the kernels have steps for, and mixtures of them.
const std::vector<std::string> kScripts = {
    "plain ASCII text, ",
    "caf\xC3\xA9 cr\xC3\xA8me ",                          // mostly ASCII, some two-byte
    "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 ",  // two-byte runs and spaces
    "\xC2\x80\xDF\xBF\xD0\x80\xC3\xBF\x7F",               // bounds of two-byte runs
    "\xD7\x93\xD7\xAA \xD7\xA9\xD7\x9B\xD7\x9C, ",        // two-byte short words
    "\xE4\xB8\xAD\xE6\x96\x87\xE6\x96\x87\xE5\xAD\x97",   // three-byte runs
    "\xE0\xA4\xB9\xE0\xA4\xBF \xE0\xA4\xA8",              // three-byte with ASCII
    "\xF0\x9F\x98\x80\xF0\x9F\x8E\x89",                   // four-byte runs
    "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80",              // one of each length
    "\xED\xA0\x80\xED\xBF\xBF\xEF\xBF\xBF",               // surrogate values, 0xFFFF
    "\xF4\x8F\xBF\xBF\xC2\x80\xE0\xA0\x80\x7F",           // bounds of every length
};

TEST(Utf8Decode, EveryScriptCutAtEveryLength) {
  for (const std::string& script : kScripts) {
    SCOPED_TRACE(testing::PrintToString(script));
    for (size_t size = 0; size <= 200; ++size) {
      const std::string input = repeated(script, size);
      EXPECT_EQ(unicoderef::onEveryPath([&] { return bothDirections(input); }), "") << size;
    }
  }
}

// Output buffers that start at every offset from a 32-byte boundary: the
// vector steps align their stores to the output, so what they keep of a block
// depends on where the output starts. The units before the buffer must stay
// untouched, the buffer ends with the result and the result must not depend
// on the offset.
template <typename Unit>
std::string checkAtEveryOffset(const std::string& input, const std::basic_string<Unit>& expected) {
  constexpr size_t kOffsets = 32 / sizeof(Unit);
  for (size_t offset = 0; offset < kOffsets; ++offset) {
    std::vector<Unit> buffer(offset + expected.size(), Unit{'#'});
    Unit* const out = buffer.data() + offset;
    size_t n = 0;
    if constexpr (sizeof(Unit) == 2) {
      n = qta::text::utf8ToUtf16(input.data(), input.size(), out, false);
    } else {
      n = qta::text::utf8ToUtf32(input.data(), input.size(), out, false);
    }
    const bool before = std::all_of(buffer.data(), out, [](Unit u) { return u == Unit{'#'}; });
    if (!before || std::basic_string_view<Unit>(out, n) != expected) {
      return std::to_string(8 * sizeof(Unit)) + "-bit output differs at offset " +
             std::to_string(offset);
    }
  }
  return "";
}

TEST(Utf8Decode, OutputAtEveryOffset) {
  for (const std::string& script : kScripts) {
    SCOPED_TRACE(testing::PrintToString(script));
    // Long ASCII runs before, between and after each script.
    const std::string ascii = repeated("ascii text ", 150);
    const std::string input = ascii + repeated(script, 70) + ascii + script + ascii;
    const std::u16string utf16 = unicoderef::utf8ToUtf16(input);
    const std::u32string utf32 = unicoderef::utf8ToUtf32(input);
    EXPECT_EQ(unicoderef::onEveryPath([&] {
                const std::string problem = checkAtEveryOffset(input, utf16);
                return problem.empty() ? checkAtEveryOffset(input, utf32) : problem;
              }),
              "");
  }
}

// Each ill-formed input at every place of a text of each script: the kernels
// must convert the well-formed text before it and leave it to the rules.
TEST(Utf8Decode, IllFormedInputAtEveryPlace) {
  const std::vector<std::string> defects = {
      "\x80",              // stray continuation byte
      "\xBF\xBF",          // two of them
      "\xC3",              // lead cut off
      "\xC0\x80",          // overlong
      "\xC1\xBF",          // overlong
      "\xE0\x9F\xBF",      // overlong
      "\xE2\x82",          // cut off
      "\xF0\x9F\x98",      // cut off
      "\xF4\x90\x80\x80",  // past 0x10FFFF
      "\xF5\x80\x80\x80",
      "\xF0\x8F\xBF\xBF",  // overlong
      "\xFF",
      "\xC3\xA9\xA9",           // one continuation byte too many
      std::string(20, '\x80'),  // more stray continuation bytes than a step: no output
  };
  for (const std::string& script : kScripts) {
    const std::string text = repeated(script, 150);
    for (const std::string& defect : defects) {
      SCOPED_TRACE(testing::PrintToString(script) + " with " + testing::PrintToString(defect));
      for (size_t at = 0; at <= text.size(); ++at) {
        std::string input = text;
        input.insert(at, defect);
        EXPECT_EQ(unicoderef::onEveryPath([&] { return bothDirections(input); }), "") << at;
      }
    }
  }
}

// Long texts, so the kernels run through whole runs and ever larger windows
// before they meet the ill-formed input: each step must judge its own bytes.
TEST(Utf8Decode, IllFormedInputDeepInLongText) {
  const std::vector<std::string> scripts = {kScripts[2], kScripts[5], kScripts[6], kScripts[7]};
  const std::vector<std::string> defects = {"\xE0\x9F\xBF", "\x80", "\xE2\x82", "\xF0\x9F\x98",
                                            "\xC3"};
  for (const std::string& script : scripts) {
    const std::string text = repeated(script, 3000);
    for (const std::string& defect : defects) {
      SCOPED_TRACE(testing::PrintToString(script) + " with " + testing::PrintToString(defect));
      for (size_t at = 200; at <= text.size(); at += 97) {
        std::string input = text;
        input.insert(at, defect);
        EXPECT_EQ(unicoderef::onEveryPath([&] { return bothDirections(input); }), "") << at;
      }
    }
  }
}

// The incremental form into buffers of every size up to a few windows, on a
// text that goes from long ASCII runs to every script and back: a call must
// never write past its buffer, whichever step or window the end of the
// buffer falls in.
TEST(Utf8Decode, IncrementalFormAtEveryCapacity) {
  std::string text = repeated("ascii ", 150);
  for (const std::string& script : kScripts) text += repeated(script, 70);
  text += repeated("tail ", 140);
  const std::u16string utf16 = unicoderef::utf8ToUtf16(text);
  const std::u32string utf32 = unicoderef::utf8ToUtf32(text);
  for (size_t capacity = 1; capacity <= 200; ++capacity) {
    const auto check = [&] {
      return unicoderef::checkPartial<char, char16_t>(unicoderef::kUtf8ToUtf16, text, utf16,
                                                      capacity, false) +
             unicoderef::checkPartial<char, char32_t>(unicoderef::kUtf8ToUtf32, text, utf32,
                                                      capacity, false);
    };
    EXPECT_EQ(unicoderef::onEveryPath(check), "") << capacity;
  }
}

}  // namespace
