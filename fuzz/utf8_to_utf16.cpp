// UTF-8 to UTF-16 in every form against the reference model, and the round
// trip UTF-8 -> UTF-16 -> UTF-8 for well-formed text without surrogates.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qta/text/unicode.h"
#include "unicode_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  unicodefuzz::requireOnPickedPath(
      size, [&] { return unicoderef::checkDirection(unicoderef::kUtf8ToUtf16, input); });
  // Well formed means valid, with no stray continuation bytes and no surrogates:
  // then the decoded code points re-encode to exactly the input.
  const std::u32string codePoints = qta::text::utf8ToUtf32(input);
  size_t encodedSize = 0;
  bool surrogates = false;
  for (char32_t c : codePoints) {
    surrogates |= c >= 0xD800 && c <= 0xDFFF;
    encodedSize += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
  }
  if (qta::text::isValidUtf8(input) && !surrogates && encodedSize == size) {
    if (qta::text::utf16ToUtf8(qta::text::utf8ToUtf16(input)) != input) {
      unicodefuzz::require("UTF-8 -> UTF-16 -> UTF-8 changed well-formed text");
    }
    if (qta::text::utf32ToUtf8(codePoints) != input) {
      unicodefuzz::require("UTF-8 -> UTF-32 -> UTF-8 changed well-formed text");
    }
  }
  return 0;
}
