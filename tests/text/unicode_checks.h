// Runs every form of one conversion direction on one input and compares each
// with the reference model. Shared by the unit tests and the fuzz harnesses: a check returns an
// empty string when all forms agree, else a description of the first disagreement. Buffers are
// allocated at exactly the size the contract promises, so a sanitizer sees any write past them.
#ifndef QTA_TESTS_TEXT_UNICODE_CHECKS_H_
#define QTA_TESTS_TEXT_UNICODE_CHECKS_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

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
  size_t (*referenceLength)(InView);  // the length rule, when not the result's size
  size_t progressCapacity;            // a capacity that always makes progress
};

inline const Direction<char, char16_t> kUtf8ToUtf16{qta::text::utf8ToUtf16,
                                                    qta::text::utf8ToUtf16,
                                                    qta::text::utf8ToUtf16Partial,
                                                    qta::text::utf8ToUtf16,
                                                    qta::text::utf8ToUtf16Length,
                                                    utf8ToUtf16,
                                                    nullptr,
                                                    2};
inline const Direction<char, char32_t> kUtf8ToUtf32{qta::text::utf8ToUtf32,
                                                    qta::text::utf8ToUtf32,
                                                    qta::text::utf8ToUtf32Partial,
                                                    qta::text::utf8ToUtf32,
                                                    qta::text::utf8ToUtf32Length,
                                                    utf8ToUtf32,
                                                    nullptr,
                                                    1};
inline const Direction<char16_t, char> kUtf16ToUtf8{qta::text::utf16ToUtf8,
                                                    qta::text::utf16ToUtf8,
                                                    qta::text::utf16ToUtf8Partial,
                                                    qta::text::utf16ToUtf8,
                                                    qta::text::utf16ToUtf8Length,
                                                    utf16ToUtf8,
                                                    nullptr,
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
    // Each call converts exactly what it consumed: no sequence is split.
    if (std::basic_string_view<Out>(buffer.get(), n) !=
        d.reference(std::basic_string_view<In>(before, static_cast<size_t>(src - before)))) {
      problem = "incremental form split a sequence at capacity " + std::to_string(capacity);
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

// Output capacities for the incremental form: every one below the capacity
// that always makes progress (where it may stall), the exact size of the
// result and the one above it, and four chosen by units of the input, so a
// fuzzer steers them. Each costs one pass over the input, whatever its length.
template <typename In, typename Out>
std::vector<size_t> capacitiesFor(const Direction<In, Out>& d, std::basic_string_view<In> input,
                                  size_t expectedSize) {
  std::vector<size_t> capacities;
  for (size_t c = 1; c <= d.progressCapacity; ++c) capacities.push_back(c);
  capacities.push_back(expectedSize);
  capacities.push_back(expectedSize + 1);
  for (size_t k = 0; k < 4 && !input.empty(); ++k) {
    const auto unit = static_cast<size_t>(input[k * (input.size() - 1) / 3]);
    capacities.push_back(1 + (unit + k) % (expectedSize + 1));
  }
  return capacities;
}

template <typename In, typename Out>
std::string checkDirection(const Direction<In, Out>& d,
                           std::type_identity_t<std::basic_string_view<In>> input) {
  const std::basic_string<Out> expected = d.reference(input);
  if (d.string(input) != expected) return "string form differs";
  const size_t length = d.referenceLength ? d.referenceLength(input) : expected.size();
  if (d.length(input) != length) return "length form differs";

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

  for (const size_t capacity : capacitiesFor(d, input, expected.size())) {
    if (capacity == 0) continue;
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

}  // namespace unicoderef

#endif  // QTA_TESTS_TEXT_UNICODE_CHECKS_H_
