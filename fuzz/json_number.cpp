// The model's number text against the C library: the first eight bytes as
// the bits of a double and the whole input as text must give what printf
// ("%.16g") and sscanf ("%lg") give, and so must the double the text scans to,
// which lets decimal seeds steer the values written toward rounding edges.
// A text that starts with a digit or "-" must also parse as a JSON number to
// the value and length of sscanf's "%lg%n".
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "json/reference.h"
#include "qta/json/json.h"
#include "qta/json/parser.h"

namespace {

void checkWritten(double value) {
  if (qta::JSONNumber(value).toString() != qta::jsonref::printfText(value)) std::abort();
}

void checkParsed(const std::string& text) {
  if (text.empty() || (text[0] != '-' && (text[0] < '0' || text[0] > '9'))) return;
  double expected = 0;
  const std::size_t consumed = qta::jsonref::scanfPrefix(text.c_str(), expected);
  const char* cursor = text.c_str();
  const qta::JSON::root value = qta::json::parseValue(cursor);
  if (consumed == 0) {
    if (value) std::abort();
    return;
  }
  if (!value || !qta::jsonref::sameNumber(value->toNumber(), expected) ||
      cursor != text.c_str() + consumed) {
    std::abort();
  }
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
  checkParsed(text);
  return 0;
}
