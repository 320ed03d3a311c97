// The UTF-8 validity check against the reference model.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "text/unicode_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  unicoderef::require(unicoderef::onEveryPath([&] { return unicoderef::checkValidity(input); }));
  return 0;
}
