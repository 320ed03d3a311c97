// Arbitrary text through all four base64 decoders: each must give exactly
// what the plain reference decoder gives, and the string and vector forms
// must agree.
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "qta/text/base64.h"
#include "text/base64_reference.h"
#include "text/code_paths.h"

namespace {

void check(bool ok) {
  if (!ok) std::abort();
}

std::string_view asText(const std::vector<uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void checkOnePath(const uint8_t* data, size_t size) {
  using namespace qta::text;
  const auto* text = reinterpret_cast<const char*>(data);
  const std::string_view view(text, size);

  const std::string standard = base64DecodeToString(text, size);
  check(standard == base64ref::decodeStandard(view));
  check(asText(base64Decode(text, size)) == standard);

  const std::string url = base64UrlDecodeToString(text, size);
  check(url == base64ref::decodeUrl(view));
  check(asText(base64UrlDecode(text, size)) == url);
}

}  // namespace

// The kernels of one level, as the input's length picks.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qtatest::onVectorLevelPickedBy(size, [&](qtatest::VectorLevel) { checkOnePath(data, size); });
  return 0;
}
