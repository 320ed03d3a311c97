// UTF-16 (the input bytes read as units) to UTF-8 in every form against the
// reference model.
#include <cstddef>
#include <cstdint>
#include <string>

#include "unicode_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u16string units = unicodefuzz::unitsFromBytes<char16_t>(data, size);
  unicodefuzz::requireOnPickedPath(
      size, [&] { return unicoderef::checkDirection(unicoderef::kUtf16ToUtf8, units); });
  return 0;
}
