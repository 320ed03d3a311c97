// The bytes a JSON string cannot hold as they are: NUL and the other control
// bytes below 32, the double quote and the backslash. The writer escapes them;
// the parser stops at them (a quote ends the string, a backslash starts an
// escape, a control byte is an error). Both find them 16 bytes at a time
// with SSE2, eight at a time without.
#ifndef QTA_JSON_STRING_STOP_BYTES_H_
#define QTA_JSON_STRING_STOP_BYTES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace qta::json::detail {

constexpr std::array<bool, 256> kSpecial = [] {
  std::array<bool, 256> special{};
  for (int c = 0; c < 32; ++c) special[c] = true;
  special['"'] = true;
  special['\\'] = true;
  return special;
}();

inline bool isSpecial(char c) { return kSpecial[static_cast<unsigned char>(c)]; }

constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

// A word with the high bit set in each byte of `word` that is zero, and
// possibly in higher bytes after one (only the lowest mark is reliable).
constexpr std::uint64_t zeroBytes(std::uint64_t word) { return (word - kOnes) & ~word & kHighBits; }

// Marks the special bytes of `word` (loaded little-endian) with their high
// bit. The lowest mark is always a special byte; marks above it may be false,
// so the mask tells whether there is one and where the first one is.
inline std::uint64_t specialBytes(std::uint64_t word) {
  const std::uint64_t controls = (word - kOnes * 0x20) & ~word & kHighBits;
  return controls | zeroBytes(word ^ (kOnes * '"')) | zeroBytes(word ^ (kOnes * '\\'));
}

// True when any of the eight bytes of `word` is special.
inline bool hasSpecialByte(std::uint64_t word) { return specialBytes(word) != 0; }

// The index of the first special byte marked in a non-zero specialBytes() mask.
inline std::size_t firstSpecialByte(std::uint64_t mask) {
  return static_cast<std::size_t>(__builtin_ctzll(mask)) / 8;
}

template <typename Word>
Word load(const char* from) {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

#ifdef __SSE2__
// A mask with bit i set when byte i of the 16 at `from` is special.
inline unsigned specialBytes16(const char* from) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  // A byte is below 32 when the unsigned saturating subtraction of 31 leaves 0.
  const __m128i control =
      _mm_cmpeq_epi8(_mm_subs_epu8(bytes, _mm_set1_epi8(31)), _mm_setzero_si128());
  const __m128i quote = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
  const __m128i backslash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_or_si128(control, _mm_or_si128(quote, backslash))));
}
#endif

// The length of the leading run of `[text, end)` that holds no special byte,
// tested a word at a time. Plain text, the usual case, is recognised without a
// byte loop: the last bytes are tested as the word that ends at the end
// (overlapping bytes tested before), and text of four to seven bytes as two
// overlapping halves of one word.
[[gnu::always_inline]] inline std::size_t plainWordRun(const char* text, const char* end) {
  const auto size = static_cast<std::size_t>(end - text);
  const char* cursor = text;
  if (size >= 8) {
    while (end - cursor > 8 && !hasSpecialByte(load<std::uint64_t>(cursor))) cursor += 8;
    if (end - cursor <= 8 && !hasSpecialByte(load<std::uint64_t>(end - 8))) return size;
  } else if (size >= 4) {
    const std::uint64_t halves =
        load<std::uint32_t>(text) | std::uint64_t{load<std::uint32_t>(end - 4)} << 32;
    if (!hasSpecialByte(halves)) return size;
  }
  while (cursor != end && !isSpecial(*cursor)) ++cursor;
  return static_cast<std::size_t>(cursor - text);
}

// The length of the leading run of `[text, end)` that holds no special byte:
// 16 bytes at a time where SSE2 is there, the rest by plainWordRun(). Inlined
// into its callers: as a call it saved and restored six registers for the
// word constants, which cost more than the test of a key.
[[gnu::always_inline]] inline std::size_t plainRun(const char* text, const char* end) {
  std::size_t length = 0;
#ifdef __SSE2__
  for (; end - text >= 16; text += 16, length += 16) {
    if (const unsigned mask = specialBytes16(text)) {
      return length + static_cast<std::size_t>(__builtin_ctz(mask));
    }
  }
#endif
  return length + plainWordRun(text, end);
}

}  // namespace qta::json::detail

#endif  // QTA_JSON_STRING_STOP_BYTES_H_
