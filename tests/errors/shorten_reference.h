// A reference for shortening texts in messages, shared by the unit tests and
// the fuzz harness. For valid UTF-8 without encoded surrogates the result is
// a cut of the original bytes at code-point boundaries; for every input it is
// valid UTF-8 when it differs from the input, and holds at most limit + 3
// code points.
#ifndef QTA_TESTS_ERRORS_SHORTEN_REFERENCE_H_
#define QTA_TESTS_ERRORS_SHORTEN_REFERENCE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "qta/text/unicode.h"

namespace qtatest {

// The expected result for valid UTF-8 `text` with no surrogate (ED A0..BF ..,
// which UTF-8 writers drop): the bytes cut at code-point starts; nothing for
// other texts.
inline std::optional<std::string> referenceShorten(std::string_view text, size_t limit) {
  if (!qta::text::isValidUtf8(text)) return std::nullopt;  // leads have their continuations
  std::vector<size_t> starts;
  for (size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if ((lead & 0xC0) == 0x80) return std::nullopt;  // a stray continuation byte
    if (lead == 0xED && static_cast<unsigned char>(text[at + 1]) >= 0xA0) return std::nullopt;
    starts.push_back(at);
    at += lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  }
  if (starts.size() <= limit) return std::string(text);
  const size_t half = limit / 2;
  const size_t tailStart = half == 0 ? text.size() : starts[starts.size() - half];
  return std::string(text.substr(0, starts[half])) + "..." + std::string(text.substr(tailStart));
}

// Properties every result has; empty when they hold, else what failed.
inline std::string checkShortened(std::string_view text, std::string_view result, size_t limit) {
  if (const std::optional<std::string> expected = referenceShorten(text, limit)) {
    return *expected == result ? "" : "differs from the reference";
  }
  if (result == text) return "";
  if (!qta::text::isValidUtf8(result)) return "result is not valid UTF-8";
  if (qta::text::utf8ToUtf32Length(result) > limit + 3) return "result too long";
  if (result.find("...") == std::string_view::npos) return "no \"...\" in the result";
  return "";
}

}  // namespace qtatest

#endif  // QTA_TESTS_ERRORS_SHORTEN_REFERENCE_H_
