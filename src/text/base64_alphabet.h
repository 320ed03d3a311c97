// The two base64 alphabets as tables: 6-bit value to character for encoding,
// byte to 6-bit value (or kSkip) for decoding, built at compile time.
#ifndef QTA_TEXT_BASE64_ALPHABET_H_
#define QTA_TEXT_BASE64_ALPHABET_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace qta::text::base64 {

// Decoding-table value of every byte outside the alphabet: the filter drops it.
inline constexpr uint8_t kSkip = 64;

struct Alphabet {
  std::array<char, 64> encode;
  std::array<uint8_t, 256> decode;
  bool padded;  // the encoder appends "=" up to a multiple of 4 characters
};

constexpr Alphabet makeAlphabet(const char (&chars)[65], bool padded) {
  Alphabet alphabet{};
  alphabet.decode.fill(kSkip);
  for (uint8_t value = 0; value < 64; ++value) {
    alphabet.encode[value] = chars[value];
    alphabet.decode[static_cast<uint8_t>(chars[value])] = value;
  }
  alphabet.padded = padded;
  return alphabet;
}

inline constexpr Alphabet kStandard =
    makeAlphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/", true);
inline constexpr Alphabet kUrl =
    makeAlphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_", false);

// Characters produced for `size` bytes.
constexpr size_t encodedLength(size_t size, bool padded) {
  const size_t full = 4 * (size / 3);
  const size_t rest = size % 3;
  if (rest == 0) return full;
  return full + (padded ? 4 : rest + 1);
}

// Bytes produced by `kept` alphabet characters; a final lone character gives none.
constexpr size_t decodedLength(size_t kept) {
  const size_t rest = kept % 4;
  return 3 * (kept / 4) + (rest == 0 ? 0 : rest - 1);
}

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_ALPHABET_H_
