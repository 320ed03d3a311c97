// Helpers of the Unicode fuzz harnesses, beside the checks they share with the
// unit tests (tests/text/unicode_checks.h).
#ifndef QTA_FUZZ_UNICODE_FUZZ_H_
#define QTA_FUZZ_UNICODE_FUZZ_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "text/unicode_checks.h"

namespace unicodefuzz {

// Stops the run with the message when a check failed.
inline void require(const std::string& problem) {
  if (problem.empty()) return;
  std::fprintf(stderr, "unicode check failed: %s\n", problem.c_str());
  std::abort();
}

// Runs `check` on the code path the input's length picks and stops the run,
// naming the path, when it reports a problem.
template <typename Check>
void requireOnPickedPath(size_t size, Check check) {
  qtatest::onVectorLevelPickedBy(
      size, [&](qtatest::VectorLevel level) { require(unicoderef::namingPath(check(), level)); });
}

// Reinterprets raw fuzz bytes as units of `Unit` (a trailing partial unit is dropped).
template <typename Unit>
std::basic_string<Unit> unitsFromBytes(const uint8_t* data, size_t size) {
  std::basic_string<Unit> units(size / sizeof(Unit), Unit{0});
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * sizeof(Unit));
  return units;
}

}  // namespace unicodefuzz

#endif  // QTA_FUZZ_UNICODE_FUZZ_H_
