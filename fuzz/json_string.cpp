// Arbitrary bytes written as a JSON string, through writeString() and through
// a string node inside an array: both must give what the byte-by-byte
// reference escaper gives, whatever the length and wherever the bytes to
// escape sit relative to the writer's word-at-a-time scan.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "json/reference.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string expected = qta::jsonref::quotedText(text);
  std::string written;
  qta::json::writeString(written, text.c_str());
  if (written != expected) std::abort();
  qta::JSONArray array;
  array.push(qta::json::makeString(text));
  if (qta::json::toJSONText(array) != "[ " + expected + " ]") std::abort();
  return 0;
}
