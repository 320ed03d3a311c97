// The UTF-8 validity check against the reference model.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "unicode_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  unicodefuzz::requireOnPickedPath(size, [&] { return unicoderef::checkValidity(input); });
  return 0;
}
