// UTF-16 (the input bytes read as units) to UTF-8 in every form against the
// reference model.
#include <cstddef>
#include <cstdint>
#include <string>

#include "text/unicode_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u16string units = unicoderef::unitsFromBytes<char16_t>(data, size);
  unicoderef::require(unicoderef::onEveryPath([&] {
    return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, units,
                                      unicoderef::capacityLimitFor(units.size()));
  }));
  return 0;
}
