// Arbitrary text, and base64 text broken into lines as the input describes,
// through all four base64 decoders: each must give exactly what the plain
// reference decoder gives, and the string and vector forms must agree.
#include <cstdlib>
#include <iterator>
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

// The input's first byte picks a line length (mostly a multiple of 4), the
// second a separator and the third one byte of the result to change; the
// rest is encoded and broken into such lines.
std::string lineBrokenText(const uint8_t* data, size_t size) {
  static constexpr std::string_view kSeparators[] = {"\n", "\r\n", " ", "\t\n\n", "         "};
  const size_t lineChars = data[0] % 4 != 0 ? 4 * (1 + data[0] / 4) : 1 + data[0] / 4;
  const std::string_view separator = kSeparators[data[1] % std::size(kSeparators)];
  const std::string text = qta::text::base64Encode(data + 3, size - 3);
  std::string lines;
  for (size_t at = 0; at < text.size(); at += lineChars) {
    lines.append(text, at, lineChars);
    lines += separator;
  }
  if (data[2] >= 64 && !lines.empty())
    lines[data[2] * size % lines.size()] = static_cast<char>(data[2]);
  return lines;
}

}  // namespace

// The kernels of one level, as the input's length picks.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qtatest::onVectorLevelPickedBy(size, [&](qtatest::VectorLevel) {
    checkOnePath(data, size);
    if (size >= 3) {
      const std::string lines = lineBrokenText(data, size);
      checkOnePath(reinterpret_cast<const uint8_t*>(lines.data()), lines.size());
    }
  });
  return 0;
}
