// qtatool json: reformats a JSON document or prints one value of it; and the
// JSON section of `qtatool demo`.
#include <cstdio>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/json/json.h"
#include "qta/json/parser.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

namespace qtatool {
namespace {

// Writes `value` in the given layout and one newline.
void printValue(const qta::JSON& value, int indent) {
  std::string text = qta::json::toJSONText(value, indent);
  text += '\n';
  writeBytes(text);
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(
      self, args,
      {.modes = {"fmt", "get"}, .flags = {"--compact"}, .operand = "argument", .maxOperands = 2});
  if (!parsed) return kUsage;
  const bool get = parsed->mode == "get";
  const std::vector<std::string_view>& operands = parsed->operands;
  if (get && operands.empty()) return usageError(self, "missing PATH");
  if (get && parsed->has("--compact")) return usageError(self, "--compact is for fmt only");
  const size_t fileAt = get ? 1 : 0;
  if (operands.size() > fileAt + 1) return usageError(self, "too many arguments");

  qta::JSON::root document;
  {
    std::string text;  // released once parsed, so it is not held beside the tree
    if (!readInput(operands.size() > fileAt ? operands[fileAt] : "-", text)) return kUsage;
    document = qta::json::parse(text);
  }
  if (!document) {
    std::fputs("invalid JSON\n", stderr);
    return kRejected;
  }
  if (!get) {
    printValue(*document, parsed->has("--compact") ? -1 : 0);
    return kSuccess;
  }
  const qta::JSON* value = qta::json::find(*document, std::string(operands[0]));
  if (value == nullptr) return kRejected;
  printValue(*value, -1);
  return kSuccess;
}

void demo(std::ostream& out) {
  using namespace qta::json;
  // A player's status report, built through dotted paths.
  qta::JSON::root status;
  set(status, "player.name", makeString("lobby-screen-2"));
  set(status, "player.playing", makeBoolean(1));
  set(status, "player.volume", makeNumber(0.75));
  set(status, "playlist.0.uri", makeString("http://media.example/intro.mp4"));
  set(status, "playlist.0.seconds", makeNumber(12.5));
  set(status, "playlist.1.uri", makeString("http://media.example/menu \"today\".png"));
  set(status, "playlist.1.seconds", makeNumber(30));
  set(status, "errors", makeArray());

  out << "== JSON\n";
  out << "one line (indent -1):\n" << toJSONText(*status, -1) << "\n";
  out << "multi-line (indent 0):\n" << toJSONText(*status, 0) << "\n";
  out << "find(\"playlist.1.seconds\") -> " << find(*status, "playlist.1.seconds")->toString()
      << "\n";

  // Parsing: keys come out in order, the last duplicate wins, numbers are
  // read as the C library reads them, and a text cut off after "[" or a
  // trailing comma still gives its container.
  for (const char* text : {R"({"volume": 0x10, "name": "caf\u00e9", "volume": -1e3})", "[1, 007,",
                           "[1, 2", R"({"": 1})"}) {
    const qta::JSON::root parsed = parse(text);
    out << "parse " << text << " -> " << (parsed ? toJSONText(*parsed) : "(invalid)") << "\n";
  }
}

const RegisterCommand kJson({
    .order = 10,
    .name = "json",
    .summary = "reformat a JSON document or print one value of it",
    .usage = "Usage: qtatool json fmt [--compact] [FILE]\n"
             "       qtatool json get PATH [FILE]\n\n"
             "Reads FILE, or standard input when FILE is omitted or \"-\", as one JSON value.\n"
             "fmt writes it back on tab-indented lines (with --compact: on one line), members\n"
             "in key order, and one newline. get writes the value at the dotted PATH\n"
             "(\"servers.0.name\": digits index an array, other words name a member) on one\n"
             "line; it exits with 1 when there is no such value. Input that is not JSON\n"
             "prints \"invalid JSON\" and exits with 1.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
