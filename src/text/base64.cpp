#include "qta/text/base64.h"

#include <cstring>
#include <memory>

#include "text/base64_alphabet.h"
#include "text/base64_avx2.h"
#include "text/base64_scalar.h"
#include "text/base64_ssse3.h"
#include "text/cpu_features.h"

namespace qta::text {
namespace {

using base64::Alphabet;

constexpr size_t kLocalScratch = 1024;

// The kernels of one level. The vector ones work through whole blocks and
// return how far they got (bytes consumed by `encode`, characters by
// `decode`); the scalar kernels finish the rest.
struct Kernels {
  size_t (*encode)(const uint8_t* in, size_t size, char* out, const Alphabet& alphabet);
  size_t (*firstSkipped)(const char* text, size_t size, const Alphabet& alphabet);
  size_t (*filter)(const char* text, size_t size, char* out, const Alphabet& alphabet);
  size_t (*decode)(const char* text, size_t kept, uint8_t* out, const Alphabet& alphabet);
};

// The portable level has no block kernels: the scalar ones do everything.
template <typename Out, typename In>
size_t noBlocks(const In*, size_t, Out*, const Alphabet&) {
  return 0;
}

constexpr Kernels kAvx2Kernels = {base64::encodeAvx2, base64::firstSkippedAvx2, base64::filterAvx2,
                                  base64::decodeAvx2};
constexpr Kernels kSsse3Kernels = {base64::encodeSsse3, base64::firstSkippedSsse3,
                                   base64::filterSsse3, base64::decodeSsse3};
constexpr Kernels kPortableKernels = {noBlocks<char, uint8_t>, base64::firstSkippedScalar,
                                      base64::filterScalar, noBlocks<uint8_t, char>};

const Kernels& kernels() {
  if (detail::avx2Enabled()) return kAvx2Kernels;
  return detail::ssse3Enabled() ? kSsse3Kernels : kPortableKernels;
}

bool anyKept(const char* text, size_t size, const Alphabet& alphabet) {
  for (size_t i = 0; i < size; ++i) {
    if (alphabet.decode[static_cast<uint8_t>(text[i])] != base64::kSkip) return true;
  }
  return false;
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
void decodeKept(const char* kept, size_t size, void* out, const Alphabet& alphabet) {
  auto* bytes = static_cast<uint8_t*>(out);
  const size_t done = kernels().decode(kept, size, bytes, alphabet);
  base64::decodeScalar(kept + done, size - done, bytes + done / 4 * 3, alphabet);
}

// The alphabet characters of a text in one run, so that the length of the
// result is known before anything is written. Short texts (tokens, header
// fields) are filtered into a buffer inside the object in one pass. Longer
// text made of alphabet characters, perhaps followed by skipped ones only
// (the usual "=" padding), is used in place after a scan; any other is
// filtered into a heap copy.
class KeptChars {
 public:
  KeptChars(const char* text, size_t size, const Alphabet& alphabet) {
    if (size <= kLocalScratch) {
      data_ = local_;
      size_ = kernels().filter(text, size, local_, alphabet);
      return;
    }
    const size_t clean = kernels().firstSkipped(text, size, alphabet);
    if (!anyKept(text + clean, size - clean, alphabet)) {
      data_ = text;
      size_ = clean;
      return;
    }
    heap_ = std::make_unique_for_overwrite<char[]>(size + base64::kFilterSlack);
    std::memcpy(heap_.get(), text, clean);
    data_ = heap_.get();
    size_ = clean + kernels().filter(text + clean, size - clean, heap_.get() + clean, alphabet);
  }
  KeptChars(const KeptChars&) = delete;
  KeptChars& operator=(const KeptChars&) = delete;

  const char* data() const { return data_; }
  size_t size() const { return size_; }

 private:
  const char* data_;
  size_t size_;
  std::unique_ptr<char[]> heap_;
  char local_[kLocalScratch + base64::kFilterSlack];
};

// Returns a result of type Out (std::string or std::vector<uint8_t>),
// allocated once at its final length.
template <typename Out>
Out decode(const char* text, size_t size, const Alphabet& alphabet) {
  detail::clearUpperState();
  const KeptChars kept(text, size, alphabet);
  Out out(base64::decodedLength(kept.size()), 0);
  decodeKept(kept.data(), kept.size(), out.data(), alphabet);
  return out;
}

size_t decodeTo(const char* text, size_t size, void* out, size_t capacity,
                const Alphabet& alphabet) {
  detail::clearUpperState();
  const KeptChars kept(text, size, alphabet);
  const size_t length = base64::decodedLength(kept.size());
  if (length <= capacity) decodeKept(kept.data(), kept.size(), out, alphabet);
  return length;
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
