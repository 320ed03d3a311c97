// The codec against the plain reference on generated inputs of every length
// around the vector block sizes, once on the portable path and once on the
// AVX2 path (where the processor has it). Inputs sit in heap buffers of
// exactly their length, so the sanitizer build catches any read past the end.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "qta/text/base64.h"
#include "text/base64_reference.h"
#include "text/cpu_features.h"

namespace qta::text {
namespace {

class ExactBuffer {
 public:
  explicit ExactBuffer(std::string_view bytes)
      : data_(new char[bytes.size()]), size_(bytes.size()) {
    bytes.copy(data_.get(), size_);
  }
  const char* data() const { return data_.get(); }
  size_t size() const { return size_; }

 private:
  std::unique_ptr<char[]> data_;
  size_t size_;
};

void expectDecodesLikeReference(std::string_view text) {
  const ExactBuffer in(text);
  const std::string standard = base64ref::decodeStandard(text);
  const std::string url = base64ref::decodeUrl(text);
  ASSERT_EQ(base64DecodeToString(in.data(), in.size()), standard) << testing::PrintToString(text);
  ASSERT_EQ(base64UrlDecodeToString(in.data(), in.size()), url) << testing::PrintToString(text);
  const std::vector<uint8_t> standardBytes = base64Decode(in.data(), in.size());
  const std::vector<uint8_t> urlBytes = base64UrlDecode(in.data(), in.size());
  ASSERT_EQ(std::string(standardBytes.begin(), standardBytes.end()), standard);
  ASSERT_EQ(std::string(urlBytes.begin(), urlBytes.end()), url);
}

std::string randomBytes(std::mt19937& rng, size_t size) {
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(rng());
  return bytes;
}

// The parameter says whether the AVX2 kernels may run.
class Base64Differential : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override { detail::setAvx2Enabled(GetParam()); }
  void TearDown() override { detail::setAvx2Enabled(true); }
};

INSTANTIATE_TEST_SUITE_P(Paths, Base64Differential, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                           return info.param ? "Avx2" : "Portable";
                         });

// Lengths that cover every remainder around the 24-, 32- and 64-byte blocks.
std::vector<size_t> testLengths() {
  std::vector<size_t> lengths;
  for (size_t n = 0; n <= 200; ++n) lengths.push_back(n);
  for (size_t n : {255, 256, 257, 1000, 4095, 4096, 4097, 100003}) lengths.push_back(n);
  return lengths;
}

TEST_P(Base64Differential, EncodesLikeReferenceAndRoundTrips) {
  std::mt19937 rng(1);
  for (size_t size : testLengths()) {
    const std::string bytes = randomBytes(rng, size);
    const ExactBuffer in(bytes);
    const std::string standard = base64Encode(in.data(), in.size());
    const std::string url = base64UrlEncode(in.data(), in.size());
    ASSERT_EQ(standard, base64ref::encodeStandard(bytes)) << size;
    ASSERT_EQ(url, base64ref::encodeUrl(bytes)) << size;
    ASSERT_EQ(base64DecodeToString(ExactBuffer(standard).data(), standard.size()), bytes) << size;
    ASSERT_EQ(base64UrlDecodeToString(ExactBuffer(url).data(), url.size()), bytes) << size;
  }
}

TEST_P(Base64Differential, DecodesMixedTextLikeReference) {
  // Each profile draws characters from its pool; the pools mix both
  // alphabets with padding, white space, NUL and high bytes in different
  // densities, from nearly clean to mostly noise.
  const std::string alphabets = std::string(base64ref::kStandard) + "-_";
  const std::string noise = std::string("=\n\r \t\0\x7f\x80\xff", 9);
  const std::string pools[] = {alphabets, alphabets + alphabets + alphabets + "=\n",
                               alphabets + noise, noise + "Ab+/-_"};
  std::mt19937 rng(2);
  for (const std::string& pool : pools) {
    for (size_t size : testLengths()) {
      std::string text(size, '\0');
      for (char& c : text) c = pool[rng() % pool.size()];
      expectDecodesLikeReference(text);
    }
  }
}

TEST_P(Base64Differential, DecodesLineBrokenAndPaddedText) {
  std::mt19937 rng(3);
  for (size_t size : {0, 1, 2, 56, 57, 58, 1000, 4096, 65536}) {
    const std::string encoded = base64ref::encodeStandard(randomBytes(rng, size));
    for (std::string_view lineBreak : {"\n", "\r\n"}) {
      std::string text;
      for (size_t i = 0; i < encoded.size(); i += 76) {
        text.append(encoded, i, 76).append(lineBreak);
      }
      expectDecodesLikeReference(text);
    }
  }
}

TEST_P(Base64Differential, OneSkippedByteAtEveryPosition) {
  std::mt19937 rng(4);
  // Short texts are filtered on the stack, long ones scanned first.
  for (size_t size : {150, 1100}) {
    const std::string clean = base64ref::encodeUrl(randomBytes(rng, size));
    for (size_t at = 0; at <= clean.size(); ++at) {
      for (char skipped : {'=', '\n', '+'}) {
        std::string text = clean;
        text.insert(at, 1, skipped);
        expectDecodesLikeReference(text);
      }
    }
  }
}

}  // namespace
}  // namespace qta::text
