#include "text/base64_ssse3.h"

#include <tmmintrin.h>

#include <algorithm>
#include <cstring>

#include "text/base64_scalar.h"

#define QTA_SSSE3 __attribute__((target("ssse3")))

namespace qta::text::base64 {
namespace {

QTA_SSSE3 __m128i load16(const void* at) {
  return _mm_loadu_si128(static_cast<const __m128i*>(at));
}

// The first 12 of 16 bytes widened to four 32-bit words, each holding the
// four 6-bit values of one 3-byte group in its four bytes.
QTA_SSSE3 __m128i splitGroups(__m128i bytes) {
  const __m128i spread =
      _mm_shuffle_epi8(bytes, _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
  const __m128i first = _mm_mulhi_epu16(_mm_and_si128(spread, _mm_set1_epi32(0x0fc0fc00)),
                                        _mm_set1_epi32(0x04000040));
  const __m128i second = _mm_mullo_epi16(_mm_and_si128(spread, _mm_set1_epi32(0x003f03f0)),
                                         _mm_set1_epi32(0x01000010));
  return _mm_or_si128(first, second);
}

// 6-bit values to characters through the alphabet's slot shifts: values
// above 51 count up from slot 2, and those above 25 gain 1 (the comparison
// gives -1).
QTA_SSSE3 __m128i valuesToChars(__m128i values, __m128i shift) {
  const __m128i slot = _mm_sub_epi8(_mm_subs_epu8(values, _mm_set1_epi8(51)),
                                    _mm_cmpgt_epi8(values, _mm_set1_epi8(25)));
  return _mm_add_epi8(values, _mm_shuffle_epi8(shift, slot));
}

struct SkipTables {
  __m128i low, high;
};

QTA_SSSE3 SkipTables skipTables(const Alphabet& alphabet) {
  return {load16(alphabet.skipLow.data()), load16(alphabet.skipHigh.data())};
}

QTA_SSSE3 __m128i highNibbles(__m128i chars) {
  return _mm_and_si128(_mm_srli_epi32(chars, 4), _mm_set1_epi8(0x0f));
}

// Non-zero in the bytes of `chars` that are outside the alphabet.
QTA_SSSE3 __m128i skippedBytes(__m128i chars, const SkipTables& tables) {
  const __m128i low = _mm_shuffle_epi8(tables.low, _mm_and_si128(chars, _mm_set1_epi8(0x0f)));
  return _mm_and_si128(low, _mm_shuffle_epi8(tables.high, highNibbles(chars)));
}

constexpr uint32_t kAllKept = 0xffff;

// Bit i set when byte i of `chars` is an alphabet character.
QTA_SSSE3 uint32_t keptMask(__m128i chars, const SkipTables& tables) {
  return static_cast<uint32_t>(
      _mm_movemask_epi8(_mm_cmpeq_epi8(skippedBytes(chars, tables), _mm_setzero_si128())));
}

// 16 alphabet characters to 12 bytes, in the low 12 bytes of the result.
QTA_SSSE3 __m128i decodeBlock(__m128i chars, __m128i shift, __m128i lastChar, __m128i lastCharAdd) {
  const __m128i slot =
      _mm_add_epi8(highNibbles(chars), _mm_and_si128(_mm_cmpeq_epi8(chars, lastChar), lastCharAdd));
  const __m128i values = _mm_add_epi8(chars, _mm_shuffle_epi8(shift, slot));
  // Pairs of values into 12-bit fields, then pairs of those into 24 bits.
  const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
  const __m128i groups = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));
  return _mm_shuffle_epi8(groups,
                          _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
}

}  // namespace

QTA_SSSE3 size_t encodeSsse3(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet) {
  const __m128i shift = load16(alphabet.encodeShift.data());
  const auto encodeBlock = [&](size_t at) QTA_SSSE3 {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at / 3 * 4),
                     valuesToChars(splitGroups(load16(in + at)), shift));
  };
  size_t done = 0;
  // Four independent blocks per round keep the shuffle and multiply units busy.
  for (; size - done >= 52; done += 48) {
    encodeBlock(done);
    encodeBlock(done + 12);
    encodeBlock(done + 24);
    encodeBlock(done + 36);
  }
  for (; size - done >= 16; done += 12) encodeBlock(done);
  return done;
}

QTA_SSSE3 size_t firstSkippedSsse3(const char* text, size_t size, const Alphabet& alphabet) {
  if (size < 16) return firstSkippedScalar(text, size, alphabet);
  const SkipTables tables = skipTables(alphabet);
  // 64 bytes at a time while all are kept; the block loop below then finds
  // the exact place.
  size_t i = 0;
  for (; size - i >= 64; i += 64) {
    const __m128i skipped = _mm_or_si128(_mm_or_si128(skippedBytes(load16(text + i), tables),
                                                      skippedBytes(load16(text + i + 16), tables)),
                                         _mm_or_si128(skippedBytes(load16(text + i + 32), tables),
                                                      skippedBytes(load16(text + i + 48), tables)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(skipped, _mm_setzero_si128())) != kAllKept) break;
  }
  // The last block ends at the end of the text; bytes seen twice are known
  // to be kept.
  for (; i < size; i += 16) {
    const size_t at = std::min(i, size - 16);
    const uint32_t kept = keptMask(load16(text + at), tables);
    if (kept != kAllKept) return at + static_cast<size_t>(__builtin_ctz(~kept));
  }
  return size;
}

QTA_SSSE3 size_t filterSsse3(const char* text, size_t size, char* out, const Alphabet& alphabet) {
  const SkipTables tables = skipTables(alphabet);
  size_t kept = 0;
  size_t i = 0;
  for (; size - i >= 16; i += 16) {
    const __m128i chars = load16(text + i);
    const uint32_t mask = keptMask(chars, tables);
    if (mask == kAllKept) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + kept), chars);
      kept += 16;
    } else if (mask != 0) {
      kept = compress16(chars, mask, out, kept);
    }
  }
  if (i == size || size < 16) return kept + filterScalar(text + i, size - i, out + kept, alphabet);
  // The last 16 bytes, less those already filtered.
  const size_t at = size - 16;
  const __m128i chars = load16(text + at);
  return compress16(chars, keptMask(chars, tables) & (kAllKept << (i - at)), out, kept);
}

QTA_SSSE3 size_t decodeSsse3(const char* text, size_t kept, uint8_t* out,
                             const Alphabet& alphabet) {
  const size_t full = kept - kept % 4;
  if (full < 16) return 0;
  const __m128i shift = load16(alphabet.decodeShift.data());
  const __m128i lastChar = _mm_set1_epi8(alphabet.lastChar);
  const __m128i lastCharAdd = _mm_set1_epi8(alphabet.lastCharAdd);
  const auto decodeAt = [&](size_t at) QTA_SSSE3 {
    return decodeBlock(load16(text + at), shift, lastChar, lastCharAdd);
  };
  // 12 bytes of result and 4 bytes of scratch per 16-byte store, while the
  // scratch still lands inside the result.
  const size_t room = decodedLength(kept);
  size_t i = 0;
  for (; full - i >= 16 && room - i / 4 * 3 >= 16; i += 16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i / 4 * 3), decodeAt(i));
  }
  // The rest with exact 12-byte stores, the last block ending at the last
  // full group and rewriting what it overlaps with the same bytes.
  for (; i < full; i += 16) {
    const size_t at = std::min(i, full - 16);
    const __m128i bytes = decodeAt(at);
    uint8_t* to = out + at / 4 * 3;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes);
    const uint32_t last = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(bytes, 8)));
    std::memcpy(to + 8, &last, 4);
  }
  return full;
}

}  // namespace qta::text::base64
