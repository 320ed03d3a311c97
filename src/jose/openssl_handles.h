// Owning pointers for the OpenSSL objects the jose module makes, each freed
// with its own free function on every path.
#ifndef QTA_SRC_JOSE_OPENSSL_HANDLES_H_
#define QTA_SRC_JOSE_OPENSSL_HANDLES_H_

#include <openssl/bn.h>
#include <openssl/crypto.h>
#include <openssl/ec.h>
#include <openssl/evp.h>

#include <cstdio>
#include <memory>

namespace qta::jose {

template <typename T, void (*Free)(T*)>
struct FreeWith {
  void operator()(T* object) const noexcept { Free(object); }
};

using PKeyPtr = std::unique_ptr<EVP_PKEY, FreeWith<EVP_PKEY, EVP_PKEY_free>>;
using ContextPtr = std::unique_ptr<EVP_MD_CTX, FreeWith<EVP_MD_CTX, EVP_MD_CTX_free>>;
using EcdsaSigPtr = std::unique_ptr<ECDSA_SIG, FreeWith<ECDSA_SIG, ECDSA_SIG_free>>;
using BignumPtr = std::unique_ptr<BIGNUM, FreeWith<BIGNUM, BN_free>>;

struct FileCloser {
  void operator()(FILE* file) const noexcept { std::fclose(file); }
};
using FilePtr = std::unique_ptr<FILE, FileCloser>;

}  // namespace qta::jose

#endif  // QTA_SRC_JOSE_OPENSSL_HANDLES_H_
