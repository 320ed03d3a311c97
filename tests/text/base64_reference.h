// A plain, obviously-correct base64 codec written straight from the rules,
// one character at a time. The differential tests and the fuzz harnesses
// hold the library's vectorised code to it byte for byte.
#ifndef QTA_TESTS_TEXT_BASE64_REFERENCE_H_
#define QTA_TESTS_TEXT_BASE64_REFERENCE_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace base64ref {

inline constexpr std::string_view kStandard =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
inline constexpr std::string_view kUrl =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

// Three bytes at a time as one 24-bit group; a final group of n bytes gives
// n + 1 characters, then padding to four when asked.
inline std::string encode(std::string_view bytes, std::string_view alphabet, bool padded) {
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t n = std::min<size_t>(3, bytes.size() - i);
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) {
      group = group << 8 | (k < n ? static_cast<uint8_t>(bytes[i + k]) : 0u);
    }
    for (size_t k = 0; k <= n; ++k) text += alphabet[group >> (18 - 6 * k) & 63];
    if (padded) text.append(3 - n, '=');
  }
  return text;
}

inline std::string decode(std::string_view text, std::string_view alphabet) {
  std::string values;  // the 6-bit values of the kept characters
  int table[256];      // the value of each byte, -1 outside the alphabet
  std::fill_n(table, 256, -1);
  for (size_t i = 0; i < alphabet.size(); ++i) {
    table[static_cast<uint8_t>(alphabet[i])] = static_cast<int>(i);
  }
  for (char c : text) {
    const int value = table[static_cast<uint8_t>(c)];
    if (value >= 0) values += static_cast<char>(value);
  }
  std::string bytes;
  for (size_t i = 0; i + 1 < values.size(); i += 4) {
    const size_t group = std::min<size_t>(4, values.size() - i);
    const auto v = [&](size_t k) { return static_cast<unsigned>(values[i + k]); };
    bytes += static_cast<char>((v(0) << 2) | (v(1) >> 4));
    if (group >= 3) bytes += static_cast<char>((v(1) << 4) | (v(2) >> 2));
    if (group == 4) bytes += static_cast<char>((v(2) << 6) | v(3));
  }
  return bytes;
}

inline std::string encodeStandard(std::string_view bytes) { return encode(bytes, kStandard, true); }
inline std::string encodeUrl(std::string_view bytes) { return encode(bytes, kUrl, false); }
inline std::string decodeStandard(std::string_view text) { return decode(text, kStandard); }
inline std::string decodeUrl(std::string_view text) { return decode(text, kUrl); }

}  // namespace base64ref

#endif  // QTA_TESTS_TEXT_BASE64_REFERENCE_H_
