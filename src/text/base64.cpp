#include "qta/text/base64.h"

#include <algorithm>
#include <cstring>

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
size_t noDecodeBlocks(const char*, size_t, uint8_t*, const Alphabet&) { return 0; }

constexpr Kernels kPortableKernels = {noEncodeBlocks, base64::firstSkippedScalar,
                                      base64::filterScalar, noDecodeBlocks};

const Kernels& kernels() {
  if (detail::avx2Enabled()) return base64::kAvx2Kernels;
  return detail::ssse3Enabled() ? base64::kSsse3Kernels : kPortableKernels;
}

void encodeInto(const void* data, size_t size, char* out, const Alphabet& alphabet) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  const size_t done = kernels().encode(bytes, size, out, alphabet);
  base64::encodeScalar(bytes + done, size - done, out + done / 3 * 4, alphabet);
}

std::string encode(const void* data, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  std::string text(base64::encodedLength(size, alphabet.padded), '\0');
  encodeInto(data, size, text.data(), alphabet);
  return text;
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

// Decodes `size` alphabet characters into decodedLength(size) bytes at `out`.
void decodeKept(const char* kept, size_t size, uint8_t* out, const Kernels& kernels,
                const Alphabet& alphabet) {
  const size_t done = kernels.decode(kept, size, out, alphabet);
  base64::decodeScalar(kept + done, size - done, out + done / 4 * 3, alphabet);
}

// Calls use(chars, count) on the alphabet characters of `text`, filtered a
// chunk at a time into a buffer on the stack; each call but the last gets a
// multiple of 4 characters (the rest of a group carries over to the next),
// and the last is left out when nothing is left.
template <typename Use>
void forEachKeptChunk(const char* text, size_t size, const Kernels& kernels,
                      const Alphabet& alphabet, Use use) {
  char chunk[kChunk + base64::kFilterSlack];
  size_t have = 0;
  for (size_t at = 0; at < size;) {
    const size_t take = std::min(size - at, kChunk - have);
    have += kernels.filter(text + at, take, chunk + have, alphabet);
    at += take;
    const size_t whole = have - have % 4;
    use(chunk, whole);
    std::memmove(chunk, chunk + whole, have - whole);
    have -= whole;
  }
  if (have > 0) use(chunk, have);
}

// Decodes `text` into `out`, which has room for the result; returns its
// length. The run of alphabet characters the text starts with (all of clean
// text) is decoded in place; the rest is filtered and decoded a chunk at a
// time, so no copy of the whole text is made.
size_t decodeInto(const char* text, size_t size, uint8_t* out, const Alphabet& alphabet) {
  const Kernels& level = kernels();
  const size_t clean = level.firstSkipped(text, size, alphabet);
  const size_t direct = clean - clean % 4;
  decodeKept(text, direct, out, level, alphabet);
  size_t written = direct / 4 * 3;
  forEachKeptChunk(text + direct, size - direct, level, alphabet,
                   [&](const char* chars, size_t count) {
                     decodeKept(chars, count, out + written, level, alphabet);
                     written += base64::decodedLength(count);
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
  Out out(base64DecodedSizeMax(size), 0);
  const size_t length = decodeInto(text, size, reinterpret_cast<uint8_t*>(out.data()), alphabet);
  const bool mostlyUnused = length < out.size() / 2;
  out.resize(length);
  if (mostlyUnused) out.shrink_to_fit();
  return out;
}

size_t decodeTo(const char* text, size_t size, void* out, size_t capacity,
                const Alphabet& alphabet) {
  detail::clearUpperState();
  if (capacity < base64DecodedSizeMax(size)) {
    const size_t length = base64::decodedLength(countKept(text, size, alphabet));
    if (length > capacity) return length;
  }
  return decodeInto(text, size, static_cast<uint8_t*>(out), alphabet);
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
