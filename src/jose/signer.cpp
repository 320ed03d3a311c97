// JWSSigner and the one-shot signing function.
#include "qta/jose/signer.h"

#include "jose/algorithm_traits.h"
#include "jose/context.h"
#include "jose/ecdsa_signature.h"

namespace qta {

JWSSigner::JWSSigner(const JWSKey& key) : key_(key) {}

JWSSigner::~JWSSigner() = default;

void JWSSigner::start() {
  jose::startContext(context_, key_, jose::Purpose::sign);
  started_ = true;
  finished_ = false;
}

void JWSSigner::update(const uint8_t* data, size_t length) {
  if (!started_) start();
  jose::updateContext(context_.get(), data, length, jose::Purpose::sign);
}

const std::vector<uint8_t>& JWSSigner::finish() {
  if (finished_) return signature_;
  if (!started_) start();
  const size_t size = jose::signatureSize(key_.algorithm());
  signature_ = jose::familyOf(key_.algorithm()) == jose::Family::ecdsa
                   ? jose::finishEcdsaSigning(context_.get(), size)
                   : jose::finishSigning(context_.get(), size);
  started_ = false;
  finished_ = true;
  return signature_;
}

namespace jose {

std::vector<uint8_t> jwsSignBytes(const uint8_t* data, size_t length, const JWSKey& key) {
  JWSSigner signer(key);
  signer.update(data, length);
  return signer.finish();
}

}  // namespace jose
}  // namespace qta
