// Runs every form of one conversion direction on one input and compares each
// with the reference model. Shared by the differential tests and the fuzz
// harnesses: a check returns an empty string when all forms agree, else a
// description of the first disagreement. Buffers are allocated at exactly the
// size the contract promises, so a sanitizer sees any write past them.
#ifndef QTA_TESTS_TEXT_UNICODE_CHECKS_H_
#define QTA_TESTS_TEXT_UNICODE_CHECKS_H_

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "qta/text/unicode.h"
#include "text/code_paths.h"
#include "text/unicode_reference.h"

namespace unicoderef {

template <typename In, typename Out>
struct Direction {
  using InView = std::basic_string_view<In>;
  using OutString = std::basic_string<Out>;
  size_t (*terminated)(const In*, Out*, bool);
  size_t (*counted)(const In*, size_t, Out*, bool);
  size_t (*partial)(const In*&, size_t&, Out*, size_t);
  OutString (*string)(InView);
  size_t (*length)(InView);
  OutString (*reference)(InView);
  size_t (*referenceLength)(InView);  // the reference's length rule
  size_t progressCapacity;            // a capacity that always makes progress
};

inline const Direction<char, char16_t> kUtf8ToUtf16{
    qta::text::utf8ToUtf16,
    qta::text::utf8ToUtf16,
    qta::text::utf8ToUtf16Partial,
    qta::text::utf8ToUtf16,
    qta::text::utf8ToUtf16Length,
    utf8ToUtf16,
    [](std::string_view s) { return utf8ToUtf16(s).size(); },
    2};
inline const Direction<char, char32_t> kUtf8ToUtf32{
    qta::text::utf8ToUtf32,
    qta::text::utf8ToUtf32,
    qta::text::utf8ToUtf32Partial,
    qta::text::utf8ToUtf32,
    qta::text::utf8ToUtf32Length,
    utf8ToUtf32,
    [](std::string_view s) { return utf8ToUtf32(s).size(); },
    1};
inline const Direction<char16_t, char> kUtf16ToUtf8{
    qta::text::utf16ToUtf8,
    qta::text::utf16ToUtf8,
    qta::text::utf16ToUtf8Partial,
    qta::text::utf16ToUtf8,
    qta::text::utf16ToUtf8Length,
    utf16ToUtf8,
    [](std::u16string_view s) { return utf16ToUtf8(s).size(); },
    4};
inline const Direction<char32_t, char> kUtf32ToUtf8{
    qta::text::utf32ToUtf8,        qta::text::utf32ToUtf8,
    qta::text::utf32ToUtf8Partial, qta::text::utf32ToUtf8,
    qta::text::utf32ToUtf8Length,  utf32ToUtf8,
    utf32ToUtf8Estimate,           4};

// The incremental form with output buffers of `capacity` units, called until
// the input is used up or a call makes no progress. Returns the joined output,
// or a message starting with "!" when a call broke the contract.
template <typename In, typename Out>
std::basic_string<Out> runPartial(const Direction<In, Out>& d, std::basic_string_view<In> input,
                                  size_t capacity, bool& stalled, std::string& problem) {
  std::basic_string<Out> joined;
  const In* src = input.data();
  size_t remaining = input.size();
  stalled = false;
  const auto buffer = std::make_unique<Out[]>(capacity);
  while (remaining > 0) {
    const In* before = src;
    const size_t n = d.partial(src, remaining, buffer.get(), capacity);
    if (n > capacity || src < before ||
        static_cast<size_t>(src - input.data()) + remaining != input.size()) {
      problem = "incremental form broke its contract at capacity " + std::to_string(capacity);
      return joined;
    }
    joined.append(buffer.get(), n);
    if (src == before) {
      stalled = true;
      break;
    }
  }
  return joined;
}

template <typename In, typename Out>
std::string checkDirection(const Direction<In, Out>& d,
                           std::type_identity_t<std::basic_string_view<In>> input,
                           size_t maxCapacity) {
  const std::basic_string<Out> expected = d.reference(input);
  if (d.string(input) != expected) return "string form differs";
  if (d.length(input) != d.referenceLength(input)) return "length form differs";

  auto buffer = std::make_unique<Out[]>(expected.size() + 1);
  buffer[expected.size()] = Out{'#'};
  size_t n = d.counted(input.data(), input.size(), buffer.get(), false);
  if (n != expected.size() || std::basic_string_view<Out>(buffer.get(), n) != expected ||
      buffer[n] != Out{'#'}) {
    return "counted form differs (or wrote a terminator it was not asked for)";
  }
  n = d.counted(input.data(), input.size(), buffer.get(), true);
  if (n != expected.size() || buffer[n] != Out{0}) return "counted form did not terminate";

  // The terminated form reads up to the first 0 unit.
  const std::basic_string<In> terminatedInput(input.substr(0, input.find(In{0})));
  const std::basic_string<Out> expectedPrefix = d.reference(terminatedInput);
  auto prefixBuffer = std::make_unique<Out[]>(expectedPrefix.size() + 1);
  n = d.terminated(terminatedInput.c_str(), prefixBuffer.get(), true);
  if (n != expectedPrefix.size() ||
      std::basic_string_view<Out>(prefixBuffer.get(), n) != expectedPrefix ||
      prefixBuffer[n] != Out{0}) {
    return "terminated form differs";
  }

  const size_t capacities = std::min(maxCapacity, expected.size() + 1);
  for (size_t capacity = 1; capacity <= capacities; ++capacity) {
    bool stalled = false;
    std::string problem;
    const std::basic_string<Out> joined = runPartial(d, input, capacity, stalled, problem);
    if (!problem.empty()) return problem;
    if (stalled ? capacity >= d.progressCapacity || joined.size() > expected.size() ||
                      expected.compare(0, joined.size(), joined) != 0
                : joined != expected) {
      return "incremental form differs at capacity " + std::to_string(capacity);
    }
  }
  return "";
}

inline std::string checkValidity(std::string_view input) {
  if (qta::text::isValidUtf8(input) != isValidUtf8(input)) return "validity check differs";
  return "";
}

// Runs `check` with the AVX2 block converters switched off and then on (where
// the processor has AVX2), so both the portable and the AVX2 paths are compared
// with the reference; returns the first problem found, naming the path.
template <typename Check>
std::string onEveryPath(Check check) {
  std::string problem;
  qtatest::onEachCodePath([&](bool avx2) {
    if (!problem.empty()) return;
    problem = check();
    if (!problem.empty()) problem += avx2 ? " (AVX2 path)" : " (portable path)";
  });
  return problem;
}

// For the fuzz harnesses: stops the run with the message when a check failed.
inline void require(const std::string& problem) {
  if (problem.empty()) return;
  std::fprintf(stderr, "unicode check failed: %s\n", problem.c_str());
  std::abort();
}

// Every capacity from 1 up for short inputs; the first 64 for long ones.
inline size_t capacityLimitFor(size_t inputSize) {
  return inputSize <= 512 ? inputSize * 2 + 2 : 64;
}

// Reinterprets raw fuzz bytes as units of `Unit` (a trailing partial unit is dropped).
template <typename Unit>
std::basic_string<Unit> unitsFromBytes(const uint8_t* data, size_t size) {
  std::basic_string<Unit> units(size / sizeof(Unit), Unit{0});
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * sizeof(Unit));
  return units;
}

}  // namespace unicoderef

#endif  // QTA_TESTS_TEXT_UNICODE_CHECKS_H_
