// Arbitrary bytes through both base64 encoders: each must give exactly what
// the plain reference encoder gives, and decoding the text must give the
// bytes back.
#include <cstdlib>
#include <string>
#include <string_view>

#include "qta/text/base64.h"
#include "text/base64_reference.h"
#include "text/code_paths.h"

namespace {

void check(bool ok) {
  if (!ok) std::abort();
}

void checkOnePath(const uint8_t* data, size_t size) {
  using namespace qta::text;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);

  const std::string standard = base64Encode(data, size);
  check(standard == base64ref::encodeStandard(bytes));
  check(base64DecodeToString(standard) == bytes);

  const std::string url = base64UrlEncode(data, size);
  check(url == base64ref::encodeUrl(bytes));
  check(base64UrlDecodeToString(url) == bytes);
}

}  // namespace

// The kernels of one level, as the input's length picks.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qtatest::onVectorLevelPickedBy(size, [&](qtatest::VectorLevel) { checkOnePath(data, size); });
  return 0;
}
