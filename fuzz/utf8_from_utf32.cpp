// UTF-32 (the input bytes read as code points) to UTF-8 in every form against
// the reference model, including the length estimate.
#include <cstddef>
#include <cstdint>
#include <string>

#include "text/unicode_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u32string units = unicoderef::unitsFromBytes<char32_t>(data, size);
  unicoderef::require(unicoderef::onEveryPath([&] {
    return unicoderef::checkDirection(unicoderef::kUtf32ToUtf8, units,
                                      unicoderef::capacityLimitFor(units.size()));
  }));
  return 0;
}
