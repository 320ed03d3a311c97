// UTF-16 and UTF-32 to UTF-8, and the single code point encoder.
#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>

#include "qta/text/unicode.h"
#include "text/cpu_features.h"
#include "text/utf8_encode_kernels.h"
#include "text/utf8_encode_pairs.h"
#include "text/utf_blocks.h"
#include "text/utf_sequence.h"

namespace qta::text {
namespace {

using detail::kBlock;

template <typename Unit>
using BlockEncoder = size_t (*)(const Unit*&, const Unit*, char*, size_t);

// The vector kernel of the highest level in `features`, or none.
template <typename Unit>
BlockEncoder<Unit> blockEncoder(unsigned features) {
  if ((features & detail::kUseAvx2) != 0) return detail::encodeUtf8BlocksAvx2;
  if ((features & detail::kUseSsse3) != 0) return detail::encodeUtf8BlocksSsse3;
  return nullptr;
}

using AsciiRuns = size_t (*)(const char16_t*&, const char16_t*, char*, size_t);

// The ASCII run loop of the highest level in `features`, or none.
inline AsciiRuns asciiRunsKernel(unsigned features) {
  if ((features & detail::kUseAvx2) != 0) return detail::narrowAsciiAvx2;
  if ((features & detail::kUseSsse3) != 0) return detail::narrowAsciiSsse3;
  return nullptr;
}

// Stores the 16 units at `p`, some of them not ASCII, narrowed to bytes at
// `out` and returns how many of them, from the first, are ASCII; stores nothing
// and returns 0 when some unit is a surrogate. The bytes past the ASCII ones
// are overwritten later: the units they stand for each write at least one byte.
inline size_t narrowAsciiPrefix(const char16_t* p, char* out) {
  const __m128i a = detail::loadBytes(p);
  const __m128i b = detail::loadBytes(p + 8);
  const __m128i top5 = _mm_set1_epi16(static_cast<short>(0xF800));
  const __m128i surrogate = _mm_set1_epi16(static_cast<short>(0xD800));
  const __m128i surrogates = _mm_or_si128(_mm_cmpeq_epi16(_mm_and_si128(a, top5), surrogate),
                                          _mm_cmpeq_epi16(_mm_and_si128(b, top5), surrogate));
  if (_mm_movemask_epi8(surrogates) != 0) return 0;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(a, b));
  const __m128i zero = _mm_setzero_si128();
  const __m128i high9 = _mm_set1_epi16(static_cast<short>(0xFF80));
  const auto ascii = static_cast<unsigned>(
      _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(a, high9), zero),
                                        _mm_cmpeq_epi16(_mm_and_si128(b, high9), zero))));
  return static_cast<size_t>(__builtin_ctz(~ascii));
}

// Narrows whole blocks of 16 ASCII units, then (from UTF-16) the ASCII units
// that start the next block. Advances `src`; returns the bytes written.
// Works on a copy of `src`: the stores could alias it, so the compiler would
// store and reload it on every block.
template <typename Unit>
[[gnu::always_inline]] inline size_t narrowAsciiBlocks(const Unit*& src, const Unit* end, char* out,
                                                       size_t room) {
  const Unit* p = src;
  size_t written = 0;
  while (static_cast<size_t>(end - p) >= kBlock && room - written >= kBlock &&
         detail::narrowAscii(p, out + written)) {
    p += kBlock;
    written += kBlock;
  }
  if constexpr (sizeof(Unit) == 2) {
    if (static_cast<size_t>(end - p) >= kBlock && room - written >= kBlock) {
      const size_t ascii = narrowAsciiPrefix(p, out + written);
      p += ascii;
      written += ascii;
    }
  }
  src = p;
  return written;
}

// The ASCII units from `p` on: whole blocks, then unit by unit. Advances `p`;
// returns the bytes written.
template <typename Unit>
[[gnu::always_inline]] inline size_t narrowAsciiRun(const Unit*& p, const Unit* end, char* out,
                                                    size_t room) {
  size_t written = narrowAsciiBlocks(p, end, out, room);
  while (p < end && *p < 0x80 && written < room) out[written++] = static_cast<char>(*p++);
  return written;
}

// Units below U+0800 from `p` with SSSE3, in a text too short for the
// kernels: all of them in one go when that many fit, else step by step.
// Advances `p`; returns the bytes written.
inline size_t encodeShortPairs(const char16_t*& p, const char16_t* end, char* out, size_t room) {
  const auto units = static_cast<size_t>(end - p);
  if (units >= detail::kPairStepUnits && units <= detail::kPairWholeUnits) {
    const size_t written = detail::encodeShortPairsSsse3(p, units, out, room);
    if (written != 0) {
      p = end;
      return written;
    }
  }
  return detail::stepOnCopy(detail::encodePairsSsse3, p, end, out, room);
}

// Converts as encodeUtf8() does, after its ASCII start. Kept out of line: its
// kernel calls make it save registers on entry, which short ASCII texts skip.
template <typename Unit>
[[gnu::noinline]] size_t encodeMixed(const Unit*& src, const Unit* end, char* dst,
                                     size_t capacity) {
  const Unit* p = src;
  size_t written = 0;
  // Short texts leave the kernels alone.
  const size_t units = static_cast<size_t>(end - p);
  const unsigned features = units >= detail::kEncodeBlocksMinUnits ? detail::vectorFeatures() : 0;
  const BlockEncoder<Unit> blocks = blockEncoder<Unit>(features);
  const AsciiRuns asciiRuns =
      sizeof(Unit) == 2 && units >= detail::kAsciiRunUnits ? asciiRunsKernel(features) : nullptr;
  const bool pairSteps = sizeof(Unit) == 2 && features == 0 && detail::ssse3Enabled();
  const Unit* scalarUntil = p;  // where the kernel may be tried again
  while (p < end) {
    uint32_t c = *p;
    if (c < 0x80) {
      if (written == capacity) break;
      if constexpr (sizeof(Unit) == 2) {
        if (asciiRuns) {
          written += detail::stepOnCopy(asciiRuns, p, end, dst + written, capacity - written);
        }
      }
      written += narrowAsciiRun(p, end, dst + written, capacity - written);
      continue;
    }
    // A lone non-ASCII unit in ASCII text is cheaper to encode on its own.
    if (blocks && p >= scalarUntil && end - p >= 2 && p[1] >= 0x80) {
      if (static_cast<size_t>(end - p) >= detail::kEncodeBlocksMinUnits &&
          capacity - written >= detail::kEncodeBlocksMinRoom) {
        const Unit* before = p;
        written += detail::stepOnCopy(blocks, p, end, dst + written, capacity - written);
        if (p != before) continue;
      }
      scalarUntil = p + std::min<ptrdiff_t>(16, end - p);
    }
    // Characters below 0x800 (Cyrillic, Greek, Arabic, Hebrew text) in a tight
    // loop, up to where the kernel may take over; short texts, which the
    // kernel leaves alone, eight units a step first.
    const Unit* const runEnd = blocks ? scalarUntil : end;
    const Unit* const runStart = p;
    if constexpr (sizeof(Unit) == 2) {
      if (pairSteps && end - p >= detail::kPairStepUnits) {
        written +=
            detail::stepOnCopy(detail::encodePairsSsse3, p, end, dst + written, capacity - written);
      }
    }
    while (runEnd - p >= 2 && capacity - written >= 2) {
      const uint32_t u = p[0];
      if (u < 0x80) {
        if (p[1] < 0x80) break;  // an ASCII run: the block copy above does it faster
        dst[written++] = static_cast<char>(u);
      } else if (u < 0x800) {
        dst[written++] = static_cast<char>(0xC0 | u >> 6);
        dst[written++] = static_cast<char>(0x80 | (u & 0x3F));
      } else {
        break;
      }
      ++p;
    }
    if (p != runStart) continue;
    if constexpr (sizeof(Unit) == 2) {
      if (detail::isHighSurrogate(c) && end - p >= 2 && detail::isLowSurrogate(p[1])) {
        if (capacity - written < 4) break;
        detail::encodeFourBytes(0x10000 + ((c & 0x3FF) << 10 | (p[1] & 0x3FFu)), dst + written);
        p += 2;
        written += 4;
        continue;
      }
      if (detail::isSurrogate(c)) {  // unpaired: dropped
        ++p;
        continue;
      }
    }
    if (capacity - written < detail::utf8Size(c)) break;
    written += detail::encodeUtf8(c, dst + written);
    ++p;
  }
  src = p;
  return written;
}

// Texts shorter than this that start with ASCII have their ASCII units
// narrowed before the rest goes to encodeMixed(), and those too short for
// the kernels their units below U+0800; longer ones go there at once, for its
// wide ASCII steps.
constexpr ptrdiff_t kShortUnits = 64;

// Converts from `src` until the input ends or the next code point does not fit
// in the `capacity` bytes at `dst`. Advances `src`; returns the bytes written.
// Whole blocks of 16 ASCII units are narrowed at once; other text goes to the
// vector kernel, and what it does not handle is encoded one code point at a
// time for a few units before the kernel is tried again. Units that encode to
// nothing are consumed even when the output is full.
template <typename Unit>
size_t encodeUtf8(const Unit*& src, const Unit* end, char* dst, size_t capacity) {
  detail::clearUpperState();
  size_t written = 0;
  if (end - src < kShortUnits && src != end) {
    const Unit* p = src;
    if (*p < 0x80) {
      written = narrowAsciiRun(p, end, dst, capacity);
    } else if constexpr (sizeof(Unit) == 2) {
      if (end - p < static_cast<ptrdiff_t>(detail::kEncodeBlocksMinUnits) &&
          detail::ssse3Enabled()) {
        written = encodeShortPairs(p, end, dst, capacity);
      }
    }
    src = p;
    if (p == end) return written;
  }
  return written + encodeMixed(src, end, dst + written, capacity - written);
}

template <typename Unit>
size_t convertCounted(const Unit* src, size_t count, char* dst, bool terminate) {
  const size_t n = encodeUtf8(src, src + count, dst, std::numeric_limits<size_t>::max());
  if (terminate) dst[n] = '\0';
  return n;
}

template <typename Unit>
size_t convertPartial(const Unit*& src, size_t& remaining, char* dst, size_t capacity) {
  const Unit* begin = src;
  const size_t n = encodeUtf8(src, begin + remaining, dst, capacity);
  remaining -= static_cast<size_t>(src - begin);
  return n;
}

// Short results are converted into a stack buffer in one pass and copied;
// longer ones reserve their length once and are converted chunk by chunk. The
// loop also covers a UTF-32 estimate that came out too small.
template <typename Unit>
std::string convertToString(std::basic_string_view<Unit> src, size_t length) {
  char chunk[1024];
  std::string out;
  if (length >= sizeof chunk) out.reserve(length + 1);
  const Unit* p = src.data();
  size_t remaining = src.size();
  while (remaining > 0) out.append(chunk, convertPartial(p, remaining, chunk, sizeof chunk));
  return out;
}

}  // namespace

void appendUtf8(std::string& out, char32_t codePoint) {
  char bytes[4];
  out.append(bytes, detail::encodeUtf8(codePoint, bytes));
}

size_t utf32ToUtf8(const char32_t* src, char* dst, bool terminate) {
  return convertCounted(src, std::char_traits<char32_t>::length(src), dst, terminate);
}
size_t utf32ToUtf8(const char32_t* src, size_t count, char* dst, bool terminate) {
  return convertCounted(src, count, dst, terminate);
}
size_t utf32ToUtf8Partial(const char32_t*& src, size_t& remaining, char* dst, size_t capacity) {
  return convertPartial(src, remaining, dst, capacity);
}
std::string utf32ToUtf8(std::u32string_view src) {
  return convertToString(src, utf32ToUtf8Length(src));
}
size_t utf32ToUtf8Length(std::u32string_view src) {
  detail::clearUpperState();
  size_t length = 0;
  for (const char32_t c : src) {
    if (c < 0x80) {
      length += 1;
    } else if (c < 0x800) {
      length += 2;
    } else if (c < 0x10000) {
      length += 3;
    } else if (c < 0x10FFFF) {
      length += 4;
    }
  }
  return length;
}

size_t utf16ToUtf8(const char16_t* src, char* dst, bool terminate) {
  return convertCounted(src, std::char_traits<char16_t>::length(src), dst, terminate);
}
// Starts a cache line: a short text runs little more than this function's own
// code, whose speed otherwise moved by 6% with where the linker placed it.
[[gnu::aligned(64)]] size_t utf16ToUtf8(const char16_t* src, size_t count, char* dst,
                                        bool terminate) {
  return convertCounted(src, count, dst, terminate);
}
size_t utf16ToUtf8Partial(const char16_t*& src, size_t& remaining, char* dst, size_t capacity) {
  return convertPartial(src, remaining, dst, capacity);
}
std::string utf16ToUtf8(std::u16string_view src) {
  return convertToString(src, utf16ToUtf8Length(src));
}
size_t utf16ToUtf8Length(std::u16string_view src) {
  detail::clearUpperState();
  const char16_t* p = src.data();
  const char16_t* end = p + src.size();
  size_t length = 0;
  // Blocks of 8 units without surrogates: 1 byte each, plus one from 0x80 up,
  // plus one more from 0x800 up (the masks hold 2 bits per unit). Blocks with
  // surrogates are counted one code point at a time.
  const __m128i zero = _mm_setzero_si128();
  while (p < end) {
    if (end - p >= 8) {
      const __m128i units = detail::loadBytes(p);
      const __m128i top5 = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
      const __m128i surrogates = _mm_cmpeq_epi16(top5, _mm_set1_epi16(static_cast<short>(0xD800)));
      if (_mm_movemask_epi8(surrogates) == 0) {
        const __m128i high9 = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
        const int under80 = _mm_movemask_epi8(_mm_cmpeq_epi16(high9, zero));
        const int under800 = _mm_movemask_epi8(_mm_cmpeq_epi16(top5, zero));
        length += 8 + (32 - __builtin_popcount(under80) - __builtin_popcount(under800)) / 2;
        p += 8;
        continue;
      }
    }
    const char16_t* stop = end - p > 8 ? p + 8 : end;
    while (p < stop) {
      uint32_t c = *p++;
      if (detail::isHighSurrogate(c) && p < end && detail::isLowSurrogate(*p)) {
        c = 0x10000;
        ++p;
      }
      length += detail::utf8Size(c);
    }
  }
  return length;
}

}  // namespace qta::text
