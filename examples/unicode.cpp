// Converts a UTF-8 text to UTF-16 and back, shows what happens to broken
// input, and streams a long UTF-16 text into UTF-8 through a small buffer.
#include <cstdio>
#include <string>

#include "qta/text/unicode.h"

int main() {
  using namespace qta::text;

  const std::string text =
      "Gr\xC3\xBC\xC3\x9F"
      "e \xF0\x9F\x91\x8B";  // "Grüße 👋"
  const std::u16string utf16 = utf8ToUtf16(text);
  std::printf("%zu bytes -> %zu UTF-16 units -> %s\n", text.size(), utf16.size(),
              utf16ToUtf8(utf16) == text ? "same text back" : "different text");

  // Conversions never fail: an overlong form becomes "?", a stray byte is dropped.
  const std::string broken =
      "a\xC0\x80"
      "b\x80"
      "c";
  std::printf("valid: %s, as UTF-32: %zu code points\n", isValidUtf8(broken) ? "yes" : "no",
              utf8ToUtf32(broken).size());

  // The incremental form fills a fixed buffer and is called again for the rest.
  std::u16string longText;
  for (int i = 0; i < 1000; ++i) longText += u"\u00E9t\u00E9 ";
  const char16_t* src = longText.data();
  size_t remaining = longText.size();
  char chunk[256];
  size_t total = 0;
  while (remaining > 0) total += utf16ToUtf8Partial(src, remaining, chunk, sizeof chunk);
  std::printf("streamed %zu UTF-8 bytes (expected %zu)\n", total, utf16ToUtf8Length(longText));

  // Appending one code point at a time, as a parser of "\u" escapes does.
  std::string out;
  for (char32_t c : {U'\u00E9', U'\U0001F600', char32_t{0xD800}}) appendUtf8(out, c);
  std::printf("appended %zu bytes (the lone surrogate adds none)\n", out.size());
  return 0;
}
