// The model's number text against the C library: the first eight bytes as
// the bits of a double and the whole input as text must give what printf
// ("%.16g") and sscanf ("%lg") give, and so must the double the text scans to,
// which lets decimal seeds steer the values written toward rounding edges.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "json/reference.h"
#include "qta/json/json.h"

namespace {

void checkWritten(double value) {
  if (qta::JSONNumber(value).toString() != qta::jsonref::printfText(value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size >= sizeof(double)) {
    double bits;
    std::memcpy(&bits, data, sizeof bits);
    checkWritten(bits);
  }
  const std::string text(reinterpret_cast<const char*>(data), size);
  const double scanned = qta::jsonref::scanfNumber(text);
  if (!qta::jsonref::sameNumber(qta::JSONString(text).toNumber(), scanned)) std::abort();
  checkWritten(scanned);
  return 0;
}
