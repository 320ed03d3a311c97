// Shortens arbitrary bytes for a message, with the usual limit and with a
// small one taken from the input's size, and holds every result to the
// reference: a cut at code-point boundaries for plain UTF-8, and valid UTF-8
// of at most limit + 3 code points otherwise.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "errors/shorten_reference.h"
#include "qta/errors/catalogue.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const size_t limit : {qta::errors::kMessageTextLimit, size % 8}) {
    const std::string result = qta::errors::shortenForMessage(text, limit);
    if (!qtatest::checkShortened(text, result, limit).empty()) std::abort();
  }
  return 0;
}
