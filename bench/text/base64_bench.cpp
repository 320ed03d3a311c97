// base64 encoding and decoding beside OpenSSL, libb64, Boost.Beast and a plain
// copy, at 64 B, 4 KiB and 1 MiB of random payload; "qta_dirty" rows call qta
// after code that left the upper halves of the AVX registers dirty,
// "qta_avx2" rows run it with the AVX-512 kernels switched off and
// "qta_portable" rows with the AVX2 ones off too. Every
// implementation returns its result in a new std::string, as qta's functions
// do, so each iteration pays for one allocation everywhere. Bytes processed
// count each implementation's own input (bytes for encoding, text for decoding).
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "qta/text/base64.h"
#include "text/cpu_features.h"

#ifdef QTA_HAVE_OPENSSL
#include <openssl/evp.h>
#endif
#ifdef QTA_HAVE_LIBB64
extern "C" {
#include <b64/cdecode.h>
#include <b64/cencode.h>
}
#endif
#ifdef QTA_HAVE_BEAST
#include <boost/beast/core/detail/base64.hpp>
#endif

namespace {

using Codec = std::string (*)(const std::string& input);

using qta::text::detail::VectorLevel;

struct Impl {
  const char* name;
  Codec run;
  VectorLevel level = VectorLevel::kAvx512;  // the highest kernels qta may run
};

std::string copyBytes(const std::string& input) { return std::string(input); }

std::string qtaEncode(const std::string& in) {
  return qta::text::base64Encode(in.data(), in.size());
}
std::string qtaUrlEncode(const std::string& in) {
  return qta::text::base64UrlEncode(in.data(), in.size());
}
std::string qtaDecode(const std::string& in) {
  return qta::text::base64DecodeToString(in.data(), in.size());
}
std::string qtaDecodeVector(const std::string& in) {
  const std::vector<uint8_t> bytes = qta::text::base64Decode(in.data(), in.size());
  benchmark::DoNotOptimize(bytes.data());
  return {};
}
std::string qtaUrlDecode(const std::string& in) {
  return qta::text::base64UrlDecodeToString(in.data(), in.size());
}

// A call after code that left the upper vector state dirty.
template <Codec codec>
std::string afterDirtyState(const std::string& in) {
  qtabench::dirtyUpperVectorState();
  return codec(in);
}

#ifdef QTA_HAVE_OPENSSL
auto* bytesOf(std::string& s) { return reinterpret_cast<unsigned char*>(s.data()); }
auto* bytesOf(const std::string& s) { return reinterpret_cast<const unsigned char*>(s.data()); }

std::string opensslEncode(const std::string& in) {
  std::string out(4 * ((in.size() + 2) / 3), '\0');
  EVP_EncodeBlock(bytesOf(out), bytesOf(in), static_cast<int>(in.size()));
  return out;
}
// EVP_DecodeBlock takes clean, padded text only and counts padding as zero bytes.
std::string opensslDecode(const std::string& in) {
  std::string out(in.size() / 4 * 3, '\0');
  const int written = EVP_DecodeBlock(bytesOf(out), bytesOf(in), static_cast<int>(in.size()));
  size_t padding = 0;
  while (padding < 2 && padding < in.size() && in[in.size() - 1 - padding] == '=') ++padding;
  out.resize(static_cast<size_t>(written) - padding);
  return out;
}
// The streaming decoder, which accepts line breaks.
std::string opensslDecodeStream(const std::string& in) {
  std::string out(in.size() / 4 * 3 + 3, '\0');
  EVP_ENCODE_CTX* context = EVP_ENCODE_CTX_new();
  EVP_DecodeInit(context);
  int written = 0;
  int last = 0;
  EVP_DecodeUpdate(context, bytesOf(out), &written, bytesOf(in), static_cast<int>(in.size()));
  EVP_DecodeFinal(context, bytesOf(out) + written, &last);
  EVP_ENCODE_CTX_free(context);
  out.resize(static_cast<size_t>(written + last));
  return out;
}
#endif

#ifdef QTA_HAVE_LIBB64
// libb64 breaks its output into lines of 72 characters.
std::string libb64Encode(const std::string& in) {
  std::string out(4 * ((in.size() + 2) / 3) + in.size() / 54 + 4, '\0');
  base64_encodestate state;
  base64_init_encodestate(&state);
  int written = base64_encode_block(in.data(), static_cast<int>(in.size()), out.data(), &state);
  written += base64_encode_blockend(out.data() + written, &state);
  out.resize(static_cast<size_t>(written));
  return out;
}
std::string libb64Decode(const std::string& in) {
  std::string out(in.size() / 4 * 3 + 3, '\0');
  base64_decodestate state;
  base64_init_decodestate(&state);
  const int written =
      base64_decode_block(in.data(), static_cast<int>(in.size()), out.data(), &state);
  out.resize(static_cast<size_t>(written));
  return out;
}
#endif

#ifdef QTA_HAVE_BEAST
namespace beast64 = boost::beast::detail::base64;
std::string beastEncode(const std::string& in) {
  std::string out(beast64::encoded_size(in.size()), '\0');
  out.resize(beast64::encode(out.data(), in.data(), in.size()));
  return out;
}
std::string beastDecode(const std::string& in) {
  std::string out(beast64::decoded_size(in.size()), '\0');
  out.resize(beast64::decode(out.data(), in.data(), in.size()).first);
  return out;
}
#endif

std::string randomBytes(size_t size) {
  std::mt19937 rng(static_cast<unsigned>(size));
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(rng());
  return bytes;
}

std::string withLineBreaks(const std::string& text) {
  std::string broken;
  for (size_t i = 0; i < text.size(); i += 76) broken.append(text, i, 76).append("\n");
  return broken;
}

// Registers "<group>/<size>/<impl>" for each implementation, each on its own input.
void registerGroup(const std::string& group, size_t size,
                   const std::vector<std::pair<Impl, std::string>>& runs) {
  for (const auto& [impl, input] : runs) {
    const std::string name = group + "/" + std::to_string(size) + "/" + impl.name;
    benchmark::RegisterBenchmark(name.c_str(), [impl, input](benchmark::State& state) {
      qta::text::detail::setVectorLevel(impl.level);
      for (auto _ : state) {
        std::string out = impl.run(input);
        benchmark::DoNotOptimize(out.data());
      }
      qta::text::detail::setVectorLevel(VectorLevel::kAvx512);
      state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * input.size()));
    });
  }
}

bool registerAll() {
  for (size_t size : {size_t{64}, size_t{4096}, size_t{1} << 20}) {
    const std::string bytes = randomBytes(size);
    const std::string text = qta::text::base64Encode(bytes.data(), bytes.size());
    const std::string urlText = qta::text::base64UrlEncode(bytes.data(), bytes.size());
    const std::string lines = withLineBreaks(text);

    std::vector<std::pair<Impl, std::string>> encode = {
        {{"qta", qtaEncode}, bytes},
        {{"qta_dirty", afterDirtyState<qtaEncode>}, bytes},
        {{"qta_avx2", qtaEncode, VectorLevel::kAvx2}, bytes},
        {{"qta_portable", qtaEncode, VectorLevel::kSsse3}, bytes}};
    std::vector<std::pair<Impl, std::string>> decode = {
        {{"qta", qtaDecode}, text},
        {{"qta_dirty", afterDirtyState<qtaDecode>}, text},
        {{"qta_avx2", qtaDecode, VectorLevel::kAvx2}, text},
        {{"qta_portable", qtaDecode, VectorLevel::kSsse3}, text},
        {{"qta_vector", qtaDecodeVector}, text}};
    std::vector<std::pair<Impl, std::string>> decodeLines = {
        {{"qta", qtaDecode}, lines},
        {{"qta_dirty", afterDirtyState<qtaDecode>}, lines},
        {{"qta_avx2", qtaDecode, VectorLevel::kAvx2}, lines},
        {{"qta_portable", qtaDecode, VectorLevel::kSsse3}, lines}};
#ifdef QTA_HAVE_OPENSSL
    encode.push_back({{"openssl", opensslEncode}, bytes});
    decode.push_back({{"openssl", opensslDecode}, text});
    decodeLines.push_back({{"openssl_clean", opensslDecode}, text});
    decodeLines.push_back({{"openssl_stream", opensslDecodeStream}, lines});
#endif
#ifdef QTA_HAVE_LIBB64
    encode.push_back({{"libb64", libb64Encode}, bytes});
    decode.push_back({{"libb64", libb64Decode}, text});
    decodeLines.push_back({{"libb64", libb64Decode}, lines});
#endif
#ifdef QTA_HAVE_BEAST
    encode.push_back({{"beast", beastEncode}, bytes});
    decode.push_back({{"beast", beastDecode}, text});
#endif
    encode.push_back({{"memcpy", copyBytes}, bytes});
    decode.push_back({{"memcpy", copyBytes}, text});

    registerGroup("base64_encode", size, encode);
    registerGroup("base64_decode", size, decode);
    registerGroup("base64_decode_lines", size, decodeLines);
    registerGroup("base64url_encode", size,
                  {{{"qta", qtaUrlEncode}, bytes}, {{"memcpy", copyBytes}, bytes}});
    registerGroup("base64url_decode", size,
                  {{{"qta", qtaUrlDecode}, urlText}, {{"memcpy", copyBytes}, urlText}});
  }
  return true;
}

const bool kRegistered = registerAll();

}  // namespace
