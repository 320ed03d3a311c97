// UTF-8 to UTF-32 in every form against the reference model.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "unicode_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  unicodefuzz::requireOnPickedPath(
      size, [&] { return unicoderef::checkDirection(unicoderef::kUtf8ToUtf32, input); });
  return 0;
}
