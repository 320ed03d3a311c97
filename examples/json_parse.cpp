// Parses a player's configuration text, reads values from it by path and
// shows the parser's leniencies and refusals.
#include <iostream>
#include <string>

#include "qta/json/json.h"
#include "qta/json/parser.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

int main() {
  using namespace qta::json;

  const std::string text = R"({
    "player": {"name": "lobby-screen-2", "volume": 0.8, "volume": 0.5},
    "servers": [{"url": "http://media.example/", "retries": 3}, {"url": "ftp://backup.example/"}],
    "greeting": "caf\u00e9 \uD83D\uDE00"
  })";
  const qta::JSON::root config = parse(text);
  if (!config) {
    std::cerr << "invalid JSON\n";
    return 1;
  }
  // The last of duplicate keys wins; members come out in key order.
  std::cout << "volume: " << find(*config, "player.volume")->toNumber() << "\n";
  std::cout << "second server: " << find(*config, "servers.1.url")->toString() << "\n";
  std::cout << toJSONText(*config, 0) << "\n";

  // Numbers are read as the C library's "%lg" reads them; a text cut off
  // right after "[" or a comma still gives its container; "{\"\": 1}" has an
  // empty key, which is refused.
  for (const char* sample : {"[007, 0x1A, -inf, 1.]", "[1, 2,", "[1, 2", "{\"\": 1}"}) {
    const qta::JSON::root value = parse(sample);
    std::cout << sample << " -> " << (value ? toJSONText(*value) : "(refused)") << "\n";
  }

  // parseValue() reads one value and leaves the cursor after it.
  const char* cursor = "42 and more";
  const qta::JSON::root first = parseValue(cursor);
  std::cout << "first value " << first->toString() << ", rest '" << cursor << "'\n";
  return 0;
}
