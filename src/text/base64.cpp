#include "qta/text/base64.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "text/base64_alphabet.h"
#include "text/base64_kernels.h"
#include "text/base64_scalar.h"
#include "text/cpu_features.h"

namespace qta::text {
namespace {

using base64::Alphabet;
using base64::Kernels;

// Characters filtered at a time on the stack.
constexpr size_t kChunk = 8192;

// The portable level has no block kernels: the scalar ones do everything.
size_t noEncodeBlocks(const uint8_t*, size_t, char*, const Alphabet&) { return 0; }
size_t noDecodeRun(const char*, size_t, uint8_t*, size_t, const Alphabet&) { return 0; }
size_t noDecodeLines(const char*, size_t, uint8_t*, size_t, size_t, const Alphabet&) { return 0; }

constexpr Kernels kPortableKernels = {noEncodeBlocks, base64::filterScalar, noDecodeRun,
                                      noDecodeLines};

const Kernels& kernels() {
  if (detail::avx512Enabled()) return base64::kAvx512Kernels;
  if (detail::avx2Enabled()) return base64::kAvx2Kernels;
  return detail::ssse3Enabled() ? base64::kSsse3Kernels : kPortableKernels;
}

void encodeInto(const void* data, size_t size, char* out, const Alphabet& alphabet) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  const size_t done = kernels().encode(bytes, size, out, alphabet);
  base64::encodeScalar(bytes + done, size - done, out + done / 3 * 4, alphabet);
}

// A new Out (std::string or std::vector<uint8_t>) of at most `size` units,
// written by fill(data), which returns the length it used. Strings get their
// room without the zero fill that resize() costs; vectors have no such way.
template <typename Out, typename Fill>
Out filledResult(size_t size, Fill fill) {
  Out out;
  if constexpr (std::is_same_v<Out, std::string>) {
    out.resize_and_overwrite(size, [&](char* data, size_t) { return fill(data); });
  } else {
    out.resize(size);
    out.resize(fill(reinterpret_cast<char*>(out.data())));
  }
  return out;
}

std::string encode(const void* data, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  const size_t length = base64::encodedLength(size, alphabet.padded);
  return filledResult<std::string>(length, [&](char* text) {
    encodeInto(data, size, text, alphabet);
    return length;
  });
}

size_t encodeTo(const void* data, size_t size, char* out, size_t capacity,
                const Alphabet& alphabet) {
  const size_t length = base64::encodedLength(size, alphabet.padded);
  if (length <= capacity) {
    detail::clearUpperState();
    encodeInto(data, size, out, alphabet);
  }
  return length;
}

// Decodes `count` alphabet characters into decodedLength(count) bytes at
// `out`, which has room for `room`; returns their length.
size_t decodeKept(const char* chars, size_t count, uint8_t* out, size_t room, const Kernels& level,
                  const Alphabet& alphabet) {
  const size_t done = level.decodeRun(chars, count, out, room, alphabet);
  base64::decodeScalar(chars + done, count - done, out + done / 4 * 3, alphabet);
  return base64::decodedLength(count);
}

// Calls use(chars, count) on the alphabet characters of `text`, filtered a
// chunk at a time into a buffer on the stack; each call but the last gets a
// multiple of 4 characters (the rest of a group carries over to the next),
// and the last is left out when nothing is left.
template <typename Use>
void forEachKeptChunk(const char* text, size_t size, const Kernels& level, const Alphabet& alphabet,
                      Use use) {
  char chunk[kChunk + base64::kFilterSlack];
  size_t have = 0;
  for (size_t at = 0; at < size;) {
    const size_t take = std::min(size - at, kChunk - have);
    have += level.filter(text + at, take, chunk + have, alphabet);
    at += take;
    const size_t whole = have - have % 4;
    use(chunk, whole);
    std::memmove(chunk, chunk + whole, have - whole);
    have -= whole;
  }
  if (have > 0) use(chunk, have);
}

// Skipped bytes between lines: more than this many end the line-by-line
// decoding.
constexpr size_t kMaxLineGap = 8;

// How many bytes outside the alphabet `text` starts with, up to `limit`.
size_t skippedBytesAt(const char* text, size_t limit, const Alphabet& alphabet) {
  size_t count = 0;
  while (count < limit && alphabet.decode[static_cast<uint8_t>(text[count])] == base64::kSkip) {
    ++count;
  }
  return count;
}

// Decodes `text` into `out`, which has room for `room` bytes and at least for
// the result; returns the result's length. The run of alphabet characters the
// text starts with (all of clean text) is decoded where it stands, and so are
// the lines that follow when they are as long as the run and each ends in the
// same few skipped bytes (text broken into lines). The rest is filtered and
// decoded a chunk at a time, so no copy of the whole text is made.
size_t decodeInto(const char* text, size_t size, uint8_t* out, size_t room,
                  const Alphabet& alphabet) {
  const Kernels& level = kernels();
  size_t at = 0;
  size_t written = 0;
  const auto decodeRun = [&] {
    const size_t run =
        level.decodeRun(text + at, size - at, out + written, room - written, alphabet);
    at += run;
    written += run / 4 * 3;
    return run;
  };
  for (size_t run = decodeRun(); run > 0 && at < size; run = decodeRun()) {
    const size_t gap = skippedBytesAt(text + at, std::min(size - at, kMaxLineGap + 1), alphabet);
    if (gap == 0 || gap > kMaxLineGap) break;
    at += gap;
    const size_t lines = level.decodeLines(text + at, size - at, out + written, run, gap, alphabet);
    at += lines * (run + gap);
    written += lines * (run / 4 * 3);
  }
  forEachKeptChunk(text + at, size - at, level, alphabet, [&](const char* chars, size_t count) {
    written += decodeKept(chars, count, out + written, room - written, level, alphabet);
  });
  return written;
}

size_t countKept(const char* text, size_t size, const Alphabet& alphabet) {
  size_t kept = 0;
  forEachKeptChunk(text, size, kernels(), alphabet,
                   [&](const char*, size_t count) { kept += count; });
  return kept;
}

// Returns a result of type Out (std::string or std::vector<uint8_t>). Room
// for text made of alphabet characters only is allocated once; when skipped
// bytes left more than half of it unused, the result moves to a fitting copy.
template <typename Out>
Out decode(const char* text, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  const size_t room = base64DecodedSizeMax(size);
  Out out = filledResult<Out>(room, [&](char* data) {
    return decodeInto(text, size, reinterpret_cast<uint8_t*>(data), room, alphabet);
  });
  if (out.size() < room / 2) out.shrink_to_fit();
  return out;
}

size_t decodeTo(const char* text, size_t size, void* out, size_t capacity,
                const Alphabet& alphabet) {
  detail::clearUpperState();
  if (capacity < base64DecodedSizeMax(size)) {
    const size_t length = base64::decodedLength(countKept(text, size, alphabet));
    if (length > capacity) return length;
  }
  return decodeInto(text, size, static_cast<uint8_t*>(out), capacity, alphabet);
}

}  // namespace

std::string base64Encode(const void* data, size_t size) {
  return encode(data, size, base64::kStandard);
}

std::string base64UrlEncode(const void* data, size_t size) {
  return encode(data, size, base64::kUrl);
}

std::vector<uint8_t> base64Decode(const char* text, size_t size) {
  return decode<std::vector<uint8_t>>(text, size, base64::kStandard);
}

std::string base64DecodeToString(const char* text, size_t size) {
  return decode<std::string>(text, size, base64::kStandard);
}

std::vector<uint8_t> base64UrlDecode(const char* text, size_t size) {
  return decode<std::vector<uint8_t>>(text, size, base64::kUrl);
}

std::string base64UrlDecodeToString(const char* text, size_t size) {
  return decode<std::string>(text, size, base64::kUrl);
}

size_t base64EncodeTo(const void* data, size_t size, char* out, size_t capacity) {
  return encodeTo(data, size, out, capacity, base64::kStandard);
}

size_t base64UrlEncodeTo(const void* data, size_t size, char* out, size_t capacity) {
  return encodeTo(data, size, out, capacity, base64::kUrl);
}

size_t base64DecodeTo(const char* text, size_t size, void* out, size_t capacity) {
  return decodeTo(text, size, out, capacity, base64::kStandard);
}

size_t base64UrlDecodeTo(const char* text, size_t size, void* out, size_t capacity) {
  return decodeTo(text, size, out, capacity, base64::kUrl);
}

}  // namespace qta::text
