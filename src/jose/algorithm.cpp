// The algorithm table.
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "jose/algorithm_traits.h"
#include "qta/jose/algorithm.h"

namespace qta::jose {
namespace {

struct AlgorithmEntry {
  const char* name;
  size_t signatureSize;
  int keyBits;
};

// Indexed by the algorithm's value.
constexpr AlgorithmEntry kAlgorithms[] = {
    {"none", 0, 0},       {"HS256", 32, 0},     {"HS384", 48, 0},    {"HS512", 64, 0},
    {"ES256", 64, 256},   {"ES384", 96, 384},   {"ES512", 128, 521}, {"RS256", 256, 2048},
    {"RS384", 256, 2048}, {"RS512", 256, 2048},
};

const AlgorithmEntry& entryOf(JWSAlgorithm algorithm) noexcept {
  const auto value = static_cast<uint32_t>(algorithm);
  return value < std::size(kAlgorithms) ? kAlgorithms[value] : kAlgorithms[0];
}

}  // namespace

const char* algorithmName(JWSAlgorithm algorithm) noexcept { return entryOf(algorithm).name; }

size_t signatureSize(JWSAlgorithm algorithm) noexcept { return entryOf(algorithm).signatureSize; }

int requiredKeyBits(JWSAlgorithm algorithm) noexcept { return entryOf(algorithm).keyBits; }

Family familyOf(JWSAlgorithm algorithm) noexcept {
  const auto value = static_cast<uint32_t>(algorithm);
  if (value >= 1 && value <= 3) return Family::hmac;
  if (value >= 4 && value <= 6) return Family::ecdsa;
  if (value >= 7 && value <= 9) return Family::rsa;
  return Family::none;
}

const EVP_MD* digestOf(JWSAlgorithm algorithm) noexcept {
  if (familyOf(algorithm) == Family::none) return nullptr;
  switch ((static_cast<uint32_t>(algorithm) - 1) % 3) {
    case 0:
      return EVP_sha256();
    case 1:
      return EVP_sha384();
    default:
      return EVP_sha512();
  }
}

}  // namespace qta::jose
