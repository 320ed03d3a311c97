#include "text/base64_scalar.h"

namespace qta::text::base64 {

void encodeScalar(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet) {
  const char* chars = alphabet.encode.data();
  const uint8_t* end = in + size - size % 3;
  for (; in != end; in += 3, out += 4) {
    const uint32_t group = (uint32_t{in[0]} << 16) | (uint32_t{in[1]} << 8) | in[2];
    out[0] = chars[group >> 18];
    out[1] = chars[(group >> 12) & 63];
    out[2] = chars[(group >> 6) & 63];
    out[3] = chars[group & 63];
  }
  switch (size % 3) {
    case 1:
      out[0] = chars[in[0] >> 2];
      out[1] = chars[(in[0] & 3) << 4];
      if (alphabet.padded) out[2] = out[3] = '=';
      break;
    case 2:
      out[0] = chars[in[0] >> 2];
      out[1] = chars[((in[0] & 3) << 4) | (in[1] >> 4)];
      out[2] = chars[(in[1] & 15) << 2];
      if (alphabet.padded) out[3] = '=';
      break;
  }
}

size_t filterScalar(const char* text, size_t size, char* out, const Alphabet& alphabet) {
  size_t kept = 0;
  for (size_t i = 0; i < size; ++i) {
    // Store unconditionally and advance only over kept characters: no branch
    // to mispredict on text with scattered line breaks.
    out[kept] = text[i];
    kept += alphabet.decode[static_cast<uint8_t>(text[i])] != kSkip;
  }
  return kept;
}

void decodeScalar(const char* text, size_t kept, uint8_t* out, const Alphabet& alphabet) {
  const auto value = [&](size_t i) -> uint32_t {
    return alphabet.decode[static_cast<uint8_t>(text[i])];
  };
  const size_t full = kept - kept % 4;
  size_t i = 0;
  for (; i < full; i += 4, out += 3) {
    const uint32_t group =
        (value(i) << 18) | (value(i + 1) << 12) | (value(i + 2) << 6) | value(i + 3);
    out[0] = static_cast<uint8_t>(group >> 16);
    out[1] = static_cast<uint8_t>(group >> 8);
    out[2] = static_cast<uint8_t>(group);
  }
  // A final group of two or three values gives one or two bytes; one value gives none.
  const size_t rest = kept - full;
  if (rest >= 2) out[0] = static_cast<uint8_t>((value(i) << 2) | (value(i + 1) >> 4));
  if (rest == 3) out[1] = static_cast<uint8_t>((value(i + 1) << 4) | (value(i + 2) >> 2));
}

}  // namespace qta::text::base64
