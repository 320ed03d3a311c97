#include "text/base64_avx2.h"

#include <immintrin.h>

#include <algorithm>

#include "text/base64_compress.h"
#include "text/base64_scalar.h"

#define QTA_AVX2 __attribute__((target("avx2")))
// The kernels start on a cache line of their own, so that where the linker
// happens to place them cannot shift their loops across line boundaries: the
// filter loop ran 5 to 10% slower at an unlucky offset.
#define QTA_AVX2_KERNEL QTA_AVX2 __attribute__((aligned(64)))

namespace qta::text::base64 {
namespace {

QTA_AVX2 __m256i broadcast16(const void* table) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(table)));
}

// 24 bytes as two lanes of 12, each widened to four 32-bit words holding the
// four 6-bit values of one 3-byte group in its four bytes. The two loads
// cover bytes 0-15 and 8-23, so nothing past the 24 bytes is read.
QTA_AVX2 __m256i splitGroups(const uint8_t* in) {
  const __m256i bytes = _mm256_inserti128_si256(
      _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in))),
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8)), 1);
  const __m256i spread = _mm256_shuffle_epi8(
      bytes, _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                              5, 4, 6, 5, 8, 7, 9, 8, 11, 10, 12, 11, 14, 13, 15, 14));
  const __m256i first = _mm256_mulhi_epu16(_mm256_and_si256(spread, _mm256_set1_epi32(0x0fc0fc00)),
                                           _mm256_set1_epi32(0x04000040));
  const __m256i second = _mm256_mullo_epi16(_mm256_and_si256(spread, _mm256_set1_epi32(0x003f03f0)),
                                            _mm256_set1_epi32(0x01000010));
  return _mm256_or_si256(first, second);
}

// 6-bit values to characters through the alphabet's slot shifts: values
// above 51 count up from slot 2, and those above 25 gain 1 (the comparison
// gives -1).
QTA_AVX2 __m256i valuesToChars(__m256i values, __m256i shift) {
  const __m256i slot = _mm256_sub_epi8(_mm256_subs_epu8(values, _mm256_set1_epi8(51)),
                                       _mm256_cmpgt_epi8(values, _mm256_set1_epi8(25)));
  return _mm256_add_epi8(values, _mm256_shuffle_epi8(shift, slot));
}

struct SkipTables {
  __m256i low, high;
};

QTA_AVX2 SkipTables skipTables(const Alphabet& alphabet) {
  return {broadcast16(alphabet.skipLow.data()), broadcast16(alphabet.skipHigh.data())};
}

QTA_AVX2 __m256i highNibbles(__m256i chars) {
  return _mm256_and_si256(_mm256_srli_epi32(chars, 4), _mm256_set1_epi8(0x0f));
}

// Non-zero in the bytes of `chars` that are outside the alphabet.
QTA_AVX2 __m256i skippedBytes(__m256i chars, const SkipTables& tables) {
  const __m256i low =
      _mm256_shuffle_epi8(tables.low, _mm256_and_si256(chars, _mm256_set1_epi8(0x0f)));
  return _mm256_and_si256(low, _mm256_shuffle_epi8(tables.high, highNibbles(chars)));
}

// Bit i set when byte i of `chars` is an alphabet character.
QTA_AVX2 uint32_t keptMask(__m256i chars, const SkipTables& tables) {
  return static_cast<uint32_t>(
      _mm256_movemask_epi8(_mm256_cmpeq_epi8(skippedBytes(chars, tables), _mm256_setzero_si256())));
}

// 32 alphabet characters to 24 bytes, in the low 24 bytes of the result.
QTA_AVX2 __m256i decodeBlock(__m256i chars, __m256i shift, __m256i lastChar, __m256i lastCharAdd) {
  const __m256i slot = _mm256_add_epi8(
      highNibbles(chars), _mm256_and_si256(_mm256_cmpeq_epi8(chars, lastChar), lastCharAdd));
  const __m256i values = _mm256_add_epi8(chars, _mm256_shuffle_epi8(shift, slot));
  // Pairs of values into 12-bit fields, then pairs of those into 24 bits.
  const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
  const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
  const __m256i bytes = _mm256_shuffle_epi8(
      groups, _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                               2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
  return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
}

}  // namespace

QTA_AVX2_KERNEL size_t encodeAvx2(const uint8_t* in, size_t size, char* out,
                                  const Alphabet& alphabet) {
  const size_t full = size - size % 3;
  if (full < 24) return 0;
  const __m256i shift = broadcast16(alphabet.encodeShift.data());
  const auto encodeBlock = [&](size_t at) QTA_AVX2 {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + at / 3 * 4),
                        valuesToChars(splitGroups(in + at), shift));
  };
  size_t done = 0;
  for (; full - done >= 24; done += 24) encodeBlock(done);
  // The last groups again as one block ending at the last full group: the
  // overlap is written twice with the same characters.
  if (done != full) encodeBlock(full - 24);
  return full;
}

QTA_AVX2_KERNEL size_t firstSkippedAvx2(const char* text, size_t size, const Alphabet& alphabet) {
  if (size < 32) return firstSkippedScalar(text, size, alphabet);
  const SkipTables tables = skipTables(alphabet);
  const auto load = [text](size_t at) QTA_AVX2 {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + at));
  };
  // 128 bytes at a time while all are kept; the block loop below then finds
  // the exact place.
  size_t i = 0;
  for (; size - i >= 128; i += 128) {
    const __m256i skipped = _mm256_or_si256(
        _mm256_or_si256(skippedBytes(load(i), tables), skippedBytes(load(i + 32), tables)),
        _mm256_or_si256(skippedBytes(load(i + 64), tables), skippedBytes(load(i + 96), tables)));
    if (!_mm256_testz_si256(skipped, skipped)) break;
  }
  // The last block ends at the end of the text; bytes seen twice are known
  // to be kept.
  for (; i < size; i += 32) {
    const size_t at = std::min(i, size - 32);
    const uint32_t kept = keptMask(load(at), tables);
    if (kept != ~uint32_t{0}) return at + static_cast<size_t>(__builtin_ctz(~kept));
  }
  return size;
}

QTA_AVX2_KERNEL size_t filterAvx2(const char* text, size_t size, char* out,
                                  const Alphabet& alphabet) {
  const SkipTables tables = skipTables(alphabet);
  size_t kept = 0;
  size_t i = 0;
  for (; size - i >= 32; i += 32) {
    const __m256i chars = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + i));
    const uint32_t mask = keptMask(chars, tables);
    if (mask == ~uint32_t{0}) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + kept), chars);
      kept += 32;
    } else if (mask != 0) {
      kept = compress16(_mm256_castsi256_si128(chars), mask, out, kept);
      kept = compress16(_mm256_extracti128_si256(chars, 1), mask >> 16, out, kept);
    }
  }
  if (i == size || size < 32) return kept + filterScalar(text + i, size - i, out + kept, alphabet);
  // The last 32 bytes, less those already filtered.
  const size_t at = size - 32;
  const __m256i chars = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + at));
  const uint32_t mask = keptMask(chars, tables) & (~uint32_t{0} << (i - at));
  kept = compress16(_mm256_castsi256_si128(chars), mask, out, kept);
  return compress16(_mm256_extracti128_si256(chars, 1), mask >> 16, out, kept);
}

QTA_AVX2_KERNEL size_t decodeAvx2(const char* text, size_t kept, uint8_t* out,
                                  const Alphabet& alphabet) {
  const size_t full = kept - kept % 4;
  if (full < 32) return 0;
  const __m256i shift = broadcast16(alphabet.decodeShift.data());
  const __m256i lastChar = _mm256_set1_epi8(alphabet.lastChar);
  const __m256i lastCharAdd = _mm256_set1_epi8(alphabet.lastCharAdd);
  const auto decodeAt = [&](size_t at) QTA_AVX2 {
    return decodeBlock(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + at)), shift,
                       lastChar, lastCharAdd);
  };
  // 24 bytes of result and 8 bytes of scratch per 32-byte store, while the
  // scratch still lands inside the result.
  const size_t room = decodedLength(kept);
  size_t i = 0;
  for (; full - i >= 32 && room - i / 4 * 3 >= 32; i += 32) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i / 4 * 3), decodeAt(i));
  }
  // The rest with exact 24-byte stores, the last block ending at the last
  // full group and rewriting what it overlaps with the same bytes.
  for (; i < full; i += 32) {
    const size_t at = std::min(i, full - 32);
    const __m256i bytes = decodeAt(at);
    uint8_t* to = out + at / 4 * 3;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(bytes));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(bytes, 1));
  }
  return full;
}

}  // namespace qta::text::base64
