// Runs every form of one conversion direction on one input and compares each
// with the reference model. Shared by the unit tests and the fuzz harnesses: a check returns an
// empty string when all forms agree, else a description of the first disagreement. Buffers are
// allocated at exactly the size the contract promises, so a sanitizer sees any write past them.
#ifndef QTA_TESTS_TEXT_UNICODE_CHECKS_H_
#define QTA_TESTS_TEXT_UNICODE_CHECKS_H_

#include <algorithm>
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

// One row per direction: the library's terminated, counted, incremental,
// string and length forms, the reference, its length rule and the capacity.
namespace lib = qta::text;
// clang-format off
inline const Direction<char, char16_t> kUtf8ToUtf16{lib::utf8ToUtf16, lib::utf8ToUtf16,
    lib::utf8ToUtf16Partial, lib::utf8ToUtf16, lib::utf8ToUtf16Length, utf8ToUtf16, nullptr, 2};
inline const Direction<char, char32_t> kUtf8ToUtf32{lib::utf8ToUtf32, lib::utf8ToUtf32,
    lib::utf8ToUtf32Partial, lib::utf8ToUtf32, lib::utf8ToUtf32Length, utf8ToUtf32, nullptr, 1};
inline const Direction<char16_t, char> kUtf16ToUtf8{lib::utf16ToUtf8, lib::utf16ToUtf8,
    lib::utf16ToUtf8Partial, lib::utf16ToUtf8, lib::utf16ToUtf8Length, utf16ToUtf8, nullptr, 4};
inline const Direction<char32_t, char> kUtf32ToUtf8{lib::utf32ToUtf8, lib::utf32ToUtf8,
    lib::utf32ToUtf8Partial, lib::utf32ToUtf8, lib::utf32ToUtf8Length, utf32ToUtf8,
    utf32ToUtf8Estimate, 4};
// clang-format on

// The incremental form with output buffers of `capacity` units, called until
// the input is used up. A call may make no progress only below the capacity
// that always does; the joined output must be the whole result, or its
// beginning when a call made no progress. With `eachCall`, every call must
// also convert exactly what it consumed, so no sequence is split.
template <typename In, typename Out>
std::string checkPartial(const Direction<In, Out>& d, std::basic_string_view<In> input,
                         const std::basic_string<Out>& expected, size_t capacity, bool eachCall) {
  const std::string where = " at capacity " + std::to_string(capacity);
  const auto buffer = std::make_unique<Out[]>(capacity);
  std::basic_string<Out> joined;
  const In* src = input.data();
  size_t remaining = input.size();
  while (remaining > 0) {
    const In* before = src;
    const size_t n = d.partial(src, remaining, buffer.get(), capacity);
    if (n > capacity || src < before ||
        static_cast<size_t>(src - input.data()) + remaining != input.size()) {
      return "incremental form broke its contract" + where;
    }
    const std::basic_string_view<In> consumed(before, static_cast<size_t>(src - before));
    if (eachCall && std::basic_string_view<Out>(buffer.get(), n) != d.reference(consumed)) {
      return "incremental form split a sequence" + where;
    }
    joined.append(buffer.get(), n);
    if (src == before) {
      const bool mayStall = capacity < d.progressCapacity && expected.starts_with(joined);
      return mayStall ? "" : "incremental form stalled" + where;
    }
  }
  return joined == expected ? "" : "incremental form differs" + where;
}

// The incremental form at every capacity up to the one that always makes
// progress, call by call, on the first 64 units (these make a call per
// sequence or so); then on the whole input at the exact size of the result
// and at two capacities picked by units of the input, so that a fuzzer steers
// them. The cost stays linear in the input.
template <typename In, typename Out>
std::string checkPartialForms(const Direction<In, Out>& d, std::basic_string_view<In> input,
                              const std::basic_string<Out>& expected) {
  const std::basic_string_view<In> head = input.substr(0, 64);
  const std::basic_string<Out> headExpected = d.reference(head);
  const size_t expectedSize = expected.size();
  std::string problem;
  for (size_t c = 1; c <= d.progressCapacity && problem.empty(); ++c) {
    problem = checkPartial(d, head, headExpected, c, true);
  }
  std::vector<size_t> capacities = {std::max<size_t>(expectedSize, 1)};
  for (const size_t at : {size_t{0}, input.size() - 1}) {
    if (at >= input.size()) break;
    const auto unit = static_cast<size_t>(input[at]);
    capacities.push_back(d.progressCapacity + (unit + at) % (expectedSize + 1));
  }
  for (const size_t capacity : capacities) {
    if (problem.empty()) problem = checkPartial(d, input, expected, capacity, false);
  }
  return problem;
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

  return checkPartialForms(d, input, expected);
}

inline std::string checkValidity(std::string_view input) {
  if (qta::text::isValidUtf8(input) != isValidUtf8(input)) return "validity check differs";
  return "";
}

// `problem`, when there is one, followed by the code path it was found on.
inline std::string namingPath(std::string problem, qtatest::VectorLevel level) {
  if (!problem.empty()) problem += std::string(" (") + qtatest::vectorLevelName(level) + " path)";
  return problem;
}

// Runs `check` with the kernels allowed up to each instruction-set level (the
// portable SSE2 and SSSE3 code, the AVX2 block converters where the processor
// has them), so every path is compared with the reference; returns the first
// problem found, naming the path.
template <typename Check>
std::string onEveryPath(Check check) {
  std::string problem;
  qtatest::onEachVectorLevel([&](qtatest::VectorLevel level) {
    if (problem.empty()) problem = namingPath(check(), level);
  });
  return problem;
}

}  // namespace unicoderef

#endif  // QTA_TESTS_TEXT_UNICODE_CHECKS_H_
