#include "qta/text/base64.h"

#include <cstring>
#include <memory>

#include "text/base64_alphabet.h"
#include "text/base64_avx2.h"
#include "text/base64_scalar.h"
#include "text/cpu_features.h"

namespace qta::text {
namespace {

using base64::Alphabet;

constexpr size_t kLocalScratch = 1024;

size_t firstSkipped(const char* text, size_t size, const Alphabet& alphabet) {
  return detail::avx2Enabled() ? base64::firstSkippedAvx2(text, size, alphabet)
                               : base64::firstSkippedScalar(text, size, alphabet);
}

size_t filter(const char* text, size_t size, char* out, const Alphabet& alphabet) {
  return detail::avx2Enabled() ? base64::filterAvx2(text, size, out, alphabet)
                               : base64::filterScalar(text, size, out, alphabet);
}

bool anyKept(const char* text, size_t size, const Alphabet& alphabet) {
  for (size_t i = 0; i < size; ++i) {
    if (alphabet.decode[static_cast<uint8_t>(text[i])] != base64::kSkip) return true;
  }
  return false;
}

std::string encode(const void* data, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  std::string text(base64::encodedLength(size, alphabet.padded), '\0');
  const auto* bytes = static_cast<const uint8_t*>(data);
  const size_t done =
      detail::avx2Enabled() ? base64::encodeAvx2(bytes, size, text.data(), alphabet) : 0;
  base64::encodeScalar(bytes + done, size - done, text.data() + done / 3 * 4, alphabet);
  return text;
}

// Decodes `size` alphabet characters into a result of type Out (std::string
// or std::vector<uint8_t>), allocated once at its final length.
template <typename Out>
Out decodeKept(const char* kept, size_t size, const Alphabet& alphabet) {
  Out out(base64::decodedLength(size), 0);
  auto* bytes = reinterpret_cast<uint8_t*>(out.data());
  const size_t done = detail::avx2Enabled() ? base64::decodeAvx2(kept, size, bytes, alphabet) : 0;
  base64::decodeScalar(kept + done, size - done, bytes + done / 4 * 3, alphabet);
  return out;
}

// The count of kept characters must be known before the result is allocated.
// Short texts (tokens, header fields) are filtered into a stack buffer in one
// pass. Longer text made of alphabet characters, perhaps followed by skipped
// ones only (the usual "=" padding), is decoded in place after a scan; any
// other is filtered into a heap copy.
template <typename Out>
Out decode(const char* text, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  if (size <= kLocalScratch) {
    char scratch[kLocalScratch + base64::kFilterSlack];
    return decodeKept<Out>(scratch, filter(text, size, scratch, alphabet), alphabet);
  }
  const size_t clean = firstSkipped(text, size, alphabet);
  if (!anyKept(text + clean, size - clean, alphabet)) return decodeKept<Out>(text, clean, alphabet);
  const auto scratch = std::make_unique_for_overwrite<char[]>(size + base64::kFilterSlack);
  std::memcpy(scratch.get(), text, clean);
  const size_t kept = clean + filter(text + clean, size - clean, scratch.get() + clean, alphabet);
  return decodeKept<Out>(scratch.get(), kept, alphabet);
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

}  // namespace qta::text
