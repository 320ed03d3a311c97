// Encodes a few bytes in both base64 alphabets and decodes text that carries
// line breaks and padding, which the decoders skip.
#include <cstdio>
#include <string>
#include <vector>

#include "qta/text/base64.h"

int main() {
  using namespace qta::text;
  const unsigned char key[] = {0xFB, 0xFF, 0x00, 0x10};
  const std::string standard = base64Encode(key, sizeof key);
  const std::string url = base64UrlEncode(key, sizeof key);
  std::printf("standard: %s\nurl-safe: %s\n", standard.c_str(), url.c_str());

  const std::vector<uint8_t> bytes = base64UrlDecode(url);
  std::printf("decoded %zu bytes:", bytes.size());
  for (uint8_t byte : bytes) std::printf(" %02X", byte);
  std::printf("\n");

  const std::string text = base64DecodeToString("Zm9v\nYmFy\n====");
  std::printf("\"%s\"\n", text.c_str());
  return 0;
}
