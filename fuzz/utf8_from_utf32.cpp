// UTF-32 (the input bytes read as code points) to UTF-8 in every form against
// the reference model, including the length estimate.
#include <cstddef>
#include <cstdint>
#include <string>

#include "unicode_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::u32string units = unicodefuzz::unitsFromBytes<char32_t>(data, size);
  unicodefuzz::requireOnPickedPath(
      size, [&] { return unicoderef::checkDirection(unicoderef::kUtf32ToUtf8, units); });
  return 0;
}
