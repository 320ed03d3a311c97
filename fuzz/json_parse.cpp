// The parser on arbitrary bytes: it must not crash, leak or read outside the
// text, parseValue() must leave its cursor inside the text, and every tree
// the writer can express must survive the round trip: written in either
// layout and parsed, its text is stable from then on. The first text is not
// compared, nor are trees: "%.16g" does not give back every double exactly,
// and at a power of ten it may not even give back its own text (1e+29 reads
// as the double just below, which prints as 9.999999999999999e+28). The
// writer cannot express NaN and infinities, nor strings and keys that hold a
// NUL byte (which "\uD83D\u0000" decodes to): it stops at the NUL.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "qta/json/parser.h"
#include "qta/json/writer.h"

namespace {

bool hasNul(const std::string& text) { return text.find('\0') != std::string::npos; }

bool writable(const qta::JSON& tree) {
  std::vector<const qta::JSON*> pending{&tree};
  while (!pending.empty()) {
    const qta::JSON* node = pending.back();
    pending.pop_back();
    if (node->type == qta::JSON::Number && !std::isfinite(node->toNumber())) return false;
    if (node->type == qta::JSON::String && hasNul(node->toString())) return false;
    for (const auto& element : node->elements()) pending.push_back(element.get());
    for (const auto& [key, member] : node->members()) {
      if (hasNul(key)) return false;
      pending.push_back(member.get());
    }
  }
  return true;
}

// The text of parse(text) in the layout `indent`; aborts when it does not parse.
std::string rewritten(const std::string& text, int indent) {
  const qta::JSON::root tree = qta::json::parse(text);
  if (!tree) std::abort();
  return qta::json::toJSONText(*tree, indent);
}

void checkRoundTrip(const qta::JSON& tree, int indent) {
  const std::string settled = rewritten(qta::json::toJSONText(tree, indent), indent);
  if (rewritten(settled, indent) != settled) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const char* cursor = text.c_str();
  (void)qta::json::parseValue(cursor);
  if (cursor < text.c_str() || cursor > text.c_str() + std::strlen(text.c_str())) std::abort();

  const qta::JSON::root tree = qta::json::parse(text);
  if (!tree || !writable(*tree)) return 0;
  checkRoundTrip(*tree, -1);
  checkRoundTrip(*tree, 0);
  return 0;
}
