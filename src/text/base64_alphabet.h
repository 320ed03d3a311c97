// The two base64 alphabets as tables: 6-bit value to character for encoding,
// byte to 6-bit value (or kSkip) for decoding, built at compile time.
#ifndef QTA_TEXT_BASE64_ALPHABET_H_
#define QTA_TEXT_BASE64_ALPHABET_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "qta/text/base64.h"

namespace qta::text::base64 {

// Decoding-table value of every byte outside the alphabet: the filter drops it.
inline constexpr uint8_t kSkip = 64;

// Both alphabets keep "A"-"Z", "a"-"z" and "0"-"9" at values 0-61 and differ
// only in the two characters for 62 and 63, which the vector tables below
// take from the alphabet.
struct Alphabet {
  std::array<char, 64> encode;
  std::array<uint8_t, 256> decode;
  bool padded;  // the encoder appends "=" up to a multiple of 4 characters

  // Vector encoding: a 6-bit value v is classified into a slot (0: 0-25,
  // 1: 26-51, 2-11: 52-61, 12: 62, 13: 63) and encodeShift[slot] is added.
  std::array<int8_t, 16> encodeShift;
  // Vector decoding: decodeShift[high nibble] is added to a character; the
  // character for 63 shares its high nibble with others and uses slot 1.
  std::array<int8_t, 16> decodeShift;
  char lastChar;       // the character for 63
  int8_t lastCharAdd;  // added to its high nibble to reach slot 1
  // A byte is skipped when skipLow[low nibble] & skipHigh[high nibble] != 0.
  // Bit h (h < 8) of skipLow[l] says byte h*16+l is skipped; high nibbles of
  // 8 and above map to bit 0, which every skipLow entry has because no
  // control character is in the alphabet.
  std::array<uint8_t, 16> skipLow;
  std::array<uint8_t, 16> skipHigh;
};

constexpr Alphabet makeAlphabet(const char (&chars)[65], bool padded) {
  Alphabet alphabet{};
  alphabet.decode.fill(kSkip);
  for (uint8_t value = 0; value < 64; ++value) {
    alphabet.encode[value] = chars[value];
    alphabet.decode[static_cast<uint8_t>(chars[value])] = value;
  }
  alphabet.padded = padded;

  alphabet.encodeShift[0] = static_cast<int8_t>(chars[0]);
  alphabet.encodeShift[1] = static_cast<int8_t>(chars[26] - 26);
  for (int slot = 2; slot <= 11; ++slot)
    alphabet.encodeShift[slot] = static_cast<int8_t>(chars[52] - 52);
  alphabet.encodeShift[12] = static_cast<int8_t>(chars[62] - 62);
  alphabet.encodeShift[13] = static_cast<int8_t>(chars[63] - 63);

  for (int value = 0; value < 63; ++value) {
    alphabet.decodeShift[chars[value] >> 4] = static_cast<int8_t>(value - chars[value]);
  }
  alphabet.lastChar = chars[63];
  alphabet.lastCharAdd = static_cast<int8_t>(1 - (chars[63] >> 4));
  alphabet.decodeShift[1] = static_cast<int8_t>(63 - chars[63]);

  for (int byte = 0; byte < 128; ++byte) {
    if (alphabet.decode[byte] == kSkip) alphabet.skipLow[byte & 15] |= 1 << (byte >> 4);
  }
  for (int high = 0; high < 16; ++high) alphabet.skipHigh[high] = high < 8 ? 1 << high : 1;
  return alphabet;
}

// The vector tables rely on each high nibble's characters sharing one shift
// (besides the character for 63), on slot 1 being free and on the letters
// and digits standing in their usual runs.
constexpr bool vectorTablesHold(const Alphabet& alphabet) {
  for (int byte = 0; byte < 256; ++byte) {
    const uint8_t value = alphabet.decode[byte];
    const bool skipped = (alphabet.skipLow[byte & 15] & alphabet.skipHigh[byte >> 4]) != 0;
    if (skipped != (value == kSkip)) return false;
    if (value == kSkip) continue;
    const int slot =
        (byte >> 4) + (byte == static_cast<uint8_t>(alphabet.lastChar) ? alphabet.lastCharAdd : 0);
    if (slot == 1 && value != 63) return false;
    if (byte + alphabet.decodeShift[slot] != value) return false;
  }
  for (int value = 0; value < 64; ++value) {
    const int slot = value < 26 ? 0 : value < 52 ? 1 : value - 50;
    if (value + alphabet.encodeShift[slot] != alphabet.encode[value]) return false;
  }
  return true;
}

inline constexpr Alphabet kStandard =
    makeAlphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/", true);
inline constexpr Alphabet kUrl =
    makeAlphabet("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_", false);

static_assert(vectorTablesHold(kStandard) && vectorTablesHold(kUrl));

// Characters produced for `size` bytes.
constexpr size_t encodedLength(size_t size, bool padded) {
  return padded ? base64EncodedSize(size) : base64UrlEncodedSize(size);
}

// Bytes produced by `kept` alphabet characters; a final lone character gives none.
constexpr size_t decodedLength(size_t kept) { return base64DecodedSizeMax(kept); }

}  // namespace qta::text::base64

#endif  // QTA_TEXT_BASE64_ALPHABET_H_
