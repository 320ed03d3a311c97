// Shortening long URLs and paths for messages.
#include <string>
#include <string_view>

#include "qta/errors/catalogue.h"
#include "qta/text/unicode.h"

namespace qta::errors {

std::string shortenForMessage(std::string_view text, size_t limit) {
  // Every code point takes at least one byte, and so does every '?' a broken
  // sequence decodes to: a text of at most `limit` bytes needs no decoding.
  if (text.size() <= limit) return std::string(text);
  const std::u32string codePoints = text::utf8ToUtf32(text);
  if (codePoints.size() <= limit) return std::string(text);
  const size_t half = limit / 2;
  const std::u32string_view all = codePoints;
  return text::utf32ToUtf8(all.substr(0, half)) + "..." +
         text::utf32ToUtf8(all.substr(all.size() - half));
}

}  // namespace qta::errors
