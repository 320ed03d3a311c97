// One UTF-8 sequence at a time: the scalar rules that every converter and the
// validity check share. The block-wise fast paths only skip or copy ASCII and
// fall back to these for everything else.
#ifndef QTA_TEXT_UTF_SEQUENCE_H_
#define QTA_TEXT_UTF_SEQUENCE_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qta::text::detail {

constexpr bool isContinuation(uint8_t byte) { return (byte & 0xC0) == 0x80; }

constexpr bool isSurrogate(uint32_t c) { return c - 0xD800 < 0x800; }
constexpr bool isHighSurrogate(uint32_t c) { return c - 0xD800 < 0x400; }
constexpr bool isLowSurrogate(uint32_t c) { return c - 0xDC00 < 0x400; }

// Bytes that encodeUtf8() writes for `c`: 0 for surrogates and above 0x10FFFF.
constexpr size_t utf8Size(uint32_t c) {
  if (c < 0x80) return 1;
  if (c < 0x800) return 2;
  if (c < 0x10000) return isSurrogate(c) ? 0 : 3;
  return c <= 0x10FFFF ? 4 : 0;
}

// Writes the four-byte form of `c` (0x10000 to 0x10FFFF) at `out` with one store.
inline void encodeFourBytes(uint32_t c, char* out) {
  const uint32_t bytes = (0xF0 | c >> 18) | (0x80 | (c >> 12 & 0x3F)) << 8 |
                         (0x80 | (c >> 6 & 0x3F)) << 16 | (0x80 | (c & 0x3F)) << 24;
  std::memcpy(out, &bytes, 4);  // little-endian: the lead byte first
}

// Writes the UTF-8 form of `c` (utf8Size(c) bytes) at `out`; returns the count.
inline size_t encodeUtf8(uint32_t c, char* out) {
  auto* o = reinterpret_cast<uint8_t*>(out);
  if (c < 0x80) {
    o[0] = static_cast<uint8_t>(c);
    return 1;
  }
  if (c < 0x800) {
    o[0] = static_cast<uint8_t>(0xC0 | c >> 6);
    o[1] = static_cast<uint8_t>(0x80 | (c & 0x3F));
    return 2;
  }
  if (c < 0x10000) {
    if (isSurrogate(c)) return 0;
    o[0] = static_cast<uint8_t>(0xE0 | c >> 12);
    o[1] = static_cast<uint8_t>(0x80 | (c >> 6 & 0x3F));
    o[2] = static_cast<uint8_t>(0x80 | (c & 0x3F));
    return 3;
  }
  if (c > 0x10FFFF) return 0;
  encodeFourBytes(c, out);
  return 4;
}

// The outcome of reading the sequence that starts at a lead byte 0xC0 to 0xFF.
struct Decoded {
  uint32_t value;   // the code point when `valid`
  uint32_t length;  // bytes consumed: the whole sequence when well formed, else 1
  bool valid;       // well formed, not overlong, four-byte forms within 0x10000..0x10FFFF
};

// Reads the sequence at `p` (p < end, *p >= 0xC0) without looking at or past `end`.
// Always inlined: the result then lives in registers, never on the stack.
[[gnu::always_inline]] inline Decoded decodeSequence(const uint8_t* p, const uint8_t* end) {
  const uint32_t lead = p[0];
  const size_t available = static_cast<size_t>(end - p);
  if (available >= 4) {
    // Four bytes at once (x86-64 is little-endian: p[0] is the low byte); each
    // test checks the lead's pattern and its continuation bytes together.
    uint32_t w;
    std::memcpy(&w, p, 4);
    if ((w & 0xC0E0) == 0x80C0) {
      const uint32_t v = (w & 0x1F) << 6 | (w >> 8 & 0x3F);
      return {v, 2, v >= 0x80};
    }
    if ((w & 0xC0C0F0) == 0x8080E0) {
      const uint32_t v = (w & 0x0F) << 12 | (w >> 2 & 0xFC0) | (w >> 16 & 0x3F);
      return {v, 3, v >= 0x800};
    }
    if ((w & 0xC0C0C0F8) == 0x808080F0) {
      const uint32_t v =
          (w & 0x07) << 18 | (w << 4 & 0x3F000) | (w >> 10 & 0xFC0) | (w >> 24 & 0x3F);
      return {v, 4, v - 0x10000 < 0x100000};
    }
    return {0, 1, false};
  }
  if (lead < 0xE0) {
    if (available >= 2 && isContinuation(p[1])) {
      const uint32_t v = (lead & 0x1F) << 6 | (p[1] & 0x3F);
      return {v, 2, v >= 0x80};
    }
    return {0, 1, false};
  }
  if (lead < 0xF0) {
    if (available >= 3 && isContinuation(p[1]) && isContinuation(p[2])) {
      const uint32_t v = (lead & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F);
      return {v, 3, v >= 0x800};
    }
    return {0, 1, false};
  }
  if (lead < 0xF8 && available >= 4 && isContinuation(p[1]) && isContinuation(p[2]) &&
      isContinuation(p[3])) {
    const uint32_t v =
        (lead & 0x07) << 18 | (p[1] & 0x3F) << 12 | (p[2] & 0x3F) << 6 | (p[3] & 0x3F);
    return {v, 4, v - 0x10000 < 0x100000};
  }
  return {0, 1, false};
}

// True when every lead byte from `p` to `end` starts a valid sequence; stray
// continuation bytes are passed over.
inline bool validSequences(const uint8_t* p, const uint8_t* end) {
  while (p < end) {
    if (*p < 0xC0) {  // ASCII or a stray continuation byte
      ++p;
      continue;
    }
    const Decoded seq = decodeSequence(p, end);
    if (!seq.valid) return false;
    p += seq.length;
  }
  return true;
}

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF_SEQUENCE_H_
