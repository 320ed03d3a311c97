// UTF-8 to UTF-16 and UTF-32: one decoder, templated on the output unit.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string>

#include "qta/text/unicode.h"
#include "text/cpu_features.h"
#include "text/utf8_decode_kernels.h"
#include "text/utf8_decode_pairs.h"
#include "text/utf_blocks.h"
#include "text/utf_sequence.h"

namespace qta::text {
namespace {

using detail::kBlock;

// Units written for a lead byte: every non-continuation byte gives exactly one
// unit, except that lead bytes 0xF0 and above give two in UTF-16 (a pair or "??").
template <typename Unit>
constexpr size_t unitsForLead(uint8_t lead) {
  return sizeof(Unit) == 2 && lead >= 0xF0 ? 2 : 1;
}

template <typename Unit>
using DecodeKernel = size_t (*)(const uint8_t*&, const uint8_t*, Unit*, size_t);

// The vector kernel of the highest level enabled (none: plain SSE2), and
// where it starts. The SSSE3 kernel beats the scalar loops below only on text
// of three- and four-byte sequences (Chinese, Japanese, Korean, Hindi, emoji),
// so it starts only where two such sequences follow each other and stops at
// ASCII: mostly-ASCII text and two-byte scripts stay on the scalar loops.
template <typename Unit>
struct KernelChoice {
  DecodeKernel<Unit> run = nullptr;
  bool wideRunsOnly = false;  // starts only at two three- or four-byte sequences
};

template <typename Unit>
KernelChoice<Unit> pickKernel() {
  if (detail::avx2Enabled()) return {&detail::decodeUtf8Avx2};
  if (detail::ssse3Enabled()) return {&detail::decodeBlocksSsse3, true};
  return {};
}

// A three- or four-byte lead at `p` whose sequence is followed by another such
// lead; reads at most p[4], so the caller keeps five bytes in view.
inline bool startsWideRun(const uint8_t* p) {
  return p[0] >= 0xE0 && p[p[0] >= 0xF0 ? 4 : 3] >= 0xE0;
}

// A two-byte lead at `p` and at least four among the 16 bytes from it (which
// it reads): a run for the 16-byte steps, even of short words (Hebrew). A few
// accented letters in ASCII text are cheaper to convert one by one.
inline bool startsPairRun(const uint8_t* p) {
  if (!detail::isTwoByteLead(p[0])) return false;
  auto leads =
      static_cast<unsigned>(_mm_movemask_epi8(detail::twoByteLeadLanes(detail::loadBytes(p))));
  leads &= leads - 1;
  leads &= leads - 1;
  return (leads & (leads - 1)) != 0;
}

// The vector kernels take over where at least this much text remains; below
// it their setup costs more than the sequence reader.
constexpr ptrdiff_t kKernelText = 64;

// The ASCII bytes from `p` on as units: whole blocks, then byte by byte.
// Advances `p`; returns the units written.
template <typename Unit>
[[gnu::always_inline]] inline size_t widenAsciiRun(const uint8_t*& p, const uint8_t* end, Unit* out,
                                                   size_t room) {
  size_t written = 0;
  // Into UTF-16, four blocks a step while they are ASCII; then (and always
  // into UTF-32, whose four stores a block set the pace) block by block.
  while (sizeof(Unit) == 2 && static_cast<size_t>(end - p) >= 4 * kBlock &&
         room - written >= 4 * kBlock) {
    const __m128i b0 = detail::loadBytes(p);
    const __m128i b1 = detail::loadBytes(p + kBlock);
    const __m128i b2 = detail::loadBytes(p + 2 * kBlock);
    const __m128i b3 = detail::loadBytes(p + 3 * kBlock);
    if (detail::highBits(_mm_or_si128(_mm_or_si128(b0, b1), _mm_or_si128(b2, b3))) != 0) break;
    detail::storeWidened(b0, out + written);
    detail::storeWidened(b1, out + written + kBlock);
    detail::storeWidened(b2, out + written + 2 * kBlock);
    detail::storeWidened(b3, out + written + 3 * kBlock);
    p += 4 * kBlock;
    written += 4 * kBlock;
  }
  while (static_cast<size_t>(end - p) >= kBlock && room - written >= kBlock) {
    const __m128i bytes = detail::loadBytes(p);
    if (detail::highBits(bytes) != 0) break;
    detail::storeWidened(bytes, out + written);
    p += kBlock;
    written += kBlock;
  }
  while (p < end && *p < 0x80 && written < room) out[written++] = *p++;
  return written;
}

// Converts as decodeUtf8() does, after its ASCII start. Kept out of line: its
// kernel calls make it save registers on entry, which short ASCII texts skip.
template <typename Unit>
[[gnu::noinline]] size_t decodeMixed(const uint8_t*& src, const uint8_t* end, Unit* dst,
                                     size_t capacity) {
  const KernelChoice<Unit> kernel = pickKernel<Unit>();
  const bool pairSteps = detail::ssse3Enabled();
  const uint8_t* p = src;
  size_t written = 0;
  const uint8_t* scalarUntil = p;  // where the kernel may be tried again
  while (p < end) {
    const uint8_t lead = *p;
    // Runs of well-formed one- and two-byte characters (Cyrillic, Greek,
    // Arabic, Hebrew text) go 16 bytes a step through the pair step, which
    // beats every block converter on them.
    if (pairSteps && end - p >= detail::kPairStepBytes && startsPairRun(p)) {
      const size_t units =
          detail::stepOnCopy(detail::decodePairsSsse3, p, end, dst + written, capacity - written);
      if (units != 0) {
        written += units;
        continue;
      }
    }
    const bool kernelFits = kernel.run != nullptr && end - p >= kKernelText;
    if (kernelFits && p >= scalarUntil && (!kernel.wideRunsOnly || startsWideRun(p))) {
      written += kernel.run(p, end, dst + written, capacity - written);
      scalarUntil = p + std::min<ptrdiff_t>(kBlock, end - p);
      continue;
    }
    if (lead < 0x80) {
      if (written == capacity) break;
      written += widenAsciiRun(p, end, dst + written, capacity - written);
      continue;
    }
    // Well-formed one- and two-byte characters in a tight loop, up to where
    // the kernel may take over (a kernel that starts only at three-byte leads
    // leaves it the whole run: the loop stops at those leads itself).
    const bool kernelTakesRuns = kernelFits && !kernel.wideRunsOnly;
    const uint8_t* const runEnd = kernelTakesRuns ? scalarUntil : end;
    const uint8_t* const runStart = p;
    while (runEnd - p >= 2 && written < capacity) {
      const uint32_t b0 = p[0];
      const uint32_t b1 = p[1];
      if (b0 < 0x80) {
        if (b1 < 0x80) break;  // an ASCII run: the block copy above does it faster
        dst[written++] = static_cast<Unit>(b0);
        ++p;
      } else if (detail::isTwoByteLead(static_cast<uint8_t>(b0)) &&
                 detail::isContinuation(static_cast<uint8_t>(b1))) {
        dst[written++] = static_cast<Unit>((b0 & 0x1F) << 6 | (b1 & 0x3F));
        p += 2;
      } else {
        break;
      }
    }
    if (p != runStart) continue;
    if (lead < 0xC0) {  // stray continuation byte
      ++p;
      continue;
    }
    if (capacity - written < unitsForLead<Unit>(lead)) break;
    const detail::Decoded seq = detail::decodeSequence(p, end);
    p += seq.length;
    if (lead < 0xF0) {
      dst[written++] = seq.valid ? static_cast<Unit>(seq.value) : Unit{'?'};
    } else if constexpr (sizeof(Unit) == 2) {
      if (seq.valid) {
        const uint32_t v = seq.value - 0x10000;
        dst[written++] = static_cast<Unit>(0xD800 | v >> 10);
        dst[written++] = static_cast<Unit>(0xDC00 | (v & 0x3FF));
      } else {
        dst[written++] = Unit{'?'};
        dst[written++] = Unit{'?'};
      }
    } else {
      dst[written++] = seq.valid ? static_cast<Unit>(seq.value) : Unit{'?'};
    }
  }
  src = p;
  return written;
}

// Converts from `src` until the input ends or the next sequence does not fit in
// the `capacity` units at `dst`. Advances `src`; returns the units written.
// The vector kernel converts what it can; where it stops, the next block goes
// through the scalar sequence reader (whole blocks of 16 ASCII bytes are copied
// at once) before the kernel is tried again. Short texts that start with ASCII
// or a two-byte sequence have the ASCII run or the pair step's blocks
// converted here before the rest goes to decodeMixed().
template <typename Unit>
size_t decodeUtf8(const uint8_t*& src, const uint8_t* end, Unit* dst, size_t capacity) {
  detail::clearUpperState();
  size_t written = 0;
  if (end - src < kKernelText && src != end) {
    if (*src < 0x80) {
      written = widenAsciiRun(src, end, dst, capacity);
    } else if (end - src >= detail::kPairStepBytes && detail::isTwoByteLead(*src) &&
               detail::ssse3Enabled()) {
      written = detail::decodePairsSsse3(src, end, dst, capacity);
    }
    if (src == end) return written;
  }
  return written + decodeMixed(src, end, dst + written, capacity - written);
}

template <typename Unit>
size_t convertCounted(const char* src, size_t count, Unit* dst, bool terminate) {
  const auto* p = reinterpret_cast<const uint8_t*>(src);
  const size_t n = decodeUtf8(p, p + count, dst, std::numeric_limits<size_t>::max());
  if (terminate) dst[n] = 0;
  return n;
}

template <typename Unit>
size_t convertPartial(const char*& src, size_t& remaining, Unit* dst, size_t capacity) {
  const auto* begin = reinterpret_cast<const uint8_t*>(src);
  const uint8_t* p = begin;
  const size_t n = decodeUtf8(p, begin + remaining, dst, capacity);
  const auto consumed = static_cast<size_t>(p - begin);
  src += consumed;
  remaining -= consumed;
  return n;
}

// Units produced from `src`: every byte that is not a continuation byte starts
// one sequence, and lead bytes 0xF0 and above count twice in UTF-16.
template <typename Unit>
size_t decodedLength(std::string_view src) {
  detail::clearUpperState();
  const auto* p = reinterpret_cast<const uint8_t*>(src.data());
  const uint8_t* end = p + src.size();
  size_t continuations = 0;
  size_t fourByteLeads = 0;
  for (; static_cast<size_t>(end - p) >= kBlock; p += kBlock) {
    const __m128i bytes = detail::loadBytes(p);
    if (detail::highBits(bytes) == 0) continue;
    continuations += __builtin_popcount(_mm_movemask_epi8(detail::continuationLanes(bytes)));
    if constexpr (sizeof(Unit) == 2) {
      fourByteLeads += __builtin_popcount(_mm_movemask_epi8(detail::atLeast(bytes, 0xF0)));
    }
  }
  for (; p < end; ++p) {
    continuations += detail::isContinuation(*p);
    if constexpr (sizeof(Unit) == 2) fourByteLeads += *p >= 0xF0;
  }
  return src.size() - continuations + fourByteLeads;
}

template <typename String>
String convertToString(std::string_view src) {
  using Unit = typename String::value_type;
  String out(decodedLength<Unit>(src), Unit{0});
  convertCounted(src.data(), src.size(), out.data(), false);
  return out;
}

}  // namespace

size_t utf8ToUtf16(const char* src, char16_t* dst, bool terminate) {
  return convertCounted(src, std::strlen(src), dst, terminate);
}
size_t utf8ToUtf16(const char* src, size_t count, char16_t* dst, bool terminate) {
  return convertCounted(src, count, dst, terminate);
}
size_t utf8ToUtf16Partial(const char*& src, size_t& remaining, char16_t* dst, size_t capacity) {
  return convertPartial(src, remaining, dst, capacity);
}
std::u16string utf8ToUtf16(std::string_view src) { return convertToString<std::u16string>(src); }
size_t utf8ToUtf16Length(std::string_view src) { return decodedLength<char16_t>(src); }

size_t utf8ToUtf32(const char* src, char32_t* dst, bool terminate) {
  return convertCounted(src, std::strlen(src), dst, terminate);
}
size_t utf8ToUtf32(const char* src, size_t count, char32_t* dst, bool terminate) {
  return convertCounted(src, count, dst, terminate);
}
size_t utf8ToUtf32Partial(const char*& src, size_t& remaining, char32_t* dst, size_t capacity) {
  return convertPartial(src, remaining, dst, capacity);
}
std::u32string utf8ToUtf32(std::string_view src) { return convertToString<std::u32string>(src); }
size_t utf8ToUtf32Length(std::string_view src) { return decodedLength<char32_t>(src); }

}  // namespace qta::text
