// qtatool uri: parses a URI and prints its components and written forms as
// one line of JSON; and the URI section of `qtatool demo`.
#include <cstdio>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/json/json.h"
#include "qta/uri/query.h"
#include "qta/uri/uri.h"

namespace qtatool {
namespace {

qta::JSON::root pathObject(const qta::URI::Path& path) {
  qta::JSON::root object = qta::json::makeObject();
  object->set("absolute", qta::json::makeBoolean(path.absolute));
  object->set("trailingSlash", qta::json::makeBoolean(path.trailingSlash));
  qta::JSON* segments = object->set("segments", qta::json::makeArray());
  for (const std::string& segment : path.segments) {
    segments->push(qta::json::makeString(segment));
  }
  return object;
}

// Prints the description as the JSON writer prints one object on one line
// (keys in order), but makes and writes one member at a time, so a huge URI's
// written forms are not all held at once.
void printDescription(const qta::URI& uri, qta::TemplateMode templateMode) {
  using qta::json::makeString;
  using Member = std::pair<const char*, std::function<qta::JSON::root()>>;
  const Member members[] = {
      {"display", [&] { return makeString(uri.toDisplayString(templateMode)); }},
      {"fragment", [&] { return makeString(uri.fragment()); }},
      {"full", [&] { return makeString(uri.toString(templateMode)); }},
      {"host", [&] { return makeString(uri.host()); }},
      {"localPath", [&] { return makeString(uri.localPath()); }},
      {"path", [&] { return pathObject(uri.path()); }},
      {"port", [&] { return qta::json::makeNumber(uri.port()); }},
      {"query", [&] { return makeString(uri.query()); }},
      {"root", [&] { return makeString(uri.rootString()); }},
      {"scheme", [&] { return makeString(uri.scheme()); }},
      {"userInfo", [&] { return makeString(uri.userInfo()); }},
  };
  std::string piece = "{ ";
  for (const auto& [key, value] : members) {
    piece.append("\"").append(key).append("\": ");
    value()->write(piece, -1);
    writeBytes(piece);
    piece = ", ";
  }
  writeBytes(" }\n");
}

// The URI text: the TEXT operand, or the contents of the --file operand less
// one final line break, so that `echo URI | qtatool uri parse --file -` works.
bool uriText(const Command& self, const ParsedArgs& parsed, std::string& text, int& status) {
  const bool fromFile = parsed.has("--file");
  if (fromFile == !parsed.operands.empty()) {
    status = usageError(self,
                        fromFile ? "give TEXT or --file, not both" : "missing TEXT or --file FILE");
    return false;
  }
  if (!fromFile) {
    text = parsed.operands[0];
    return true;
  }
  if (!readInput(parsed.options.at("--file"), text)) {
    status = kUsage;
    return false;
  }
  if (text.ends_with('\n')) {
    text.pop_back();
    if (text.ends_with('\r')) text.pop_back();
  }
  return true;
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(self, args,
                                                     {.modes = {"parse"},
                                                      .flags = {"--template"},
                                                      .valued = {"--file"},
                                                      .operand = "TEXT",
                                                      .maxOperands = 1});
  if (!parsed) return kUsage;
  const qta::TemplateMode templateMode =
      parsed->has("--template") ? qta::TemplateMode::kOn : qta::TemplateMode::kOff;
  std::optional<qta::URI> uri;
  {
    std::string text;  // released once parsed, so a huge text is not held beside its URI
    int status = kSuccess;
    if (!uriText(self, *parsed, text, status)) return status;
    uri = qta::URI::tryParse(text, templateMode);
  }
  if (!uri) {
    std::fputs("invalid URI\n", stderr);
    return kRejected;
  }
  printDescription(*uri, templateMode);
  return kSuccess;
}

void demo(std::ostream& out) {
  out << "== URI\n";
  // Texts as a player meets them: the parser normalises case, escapes, dot
  // segments, default ports and international host names.
  const char* texts[] = {
      "HTTP://Media.Example:80/a/./b/../clips/intro%20cut.mp4?lang=%65n&x=%3d#t=10",
      "ftp://user:p%40ss@B\xC3\xBC"
      "cher.example/pub/",
      "http://[fe80::1%25eth0]:8080/status",
      "//fileserver/share/show.smil",
      "http://host?missing-slash",
  };
  for (const char* text : texts) {
    const std::optional<qta::URI> uri = qta::URI::tryParse(text);
    out << text << "\n";
    if (!uri) {
      out << "  invalid URI\n";
      continue;
    }
    out << "  full:    " << uri->toString() << "\n"
        << "  display: " << uri->toDisplayString() << "\n"
        << "  root:    " << uri->rootString() << "\n";
  }

  const qta::URI local("file:///media/My%20Clips/a.mp4");
  out << "local path of " << local.toString() << ": " << local.localPath() << "\n";

  const qta::URI templated("http://cdn.example/[[channel]]/live.m3u8?token=[[token]]",
                           qta::TemplateMode::kOn);
  out << "template: " << templated.toString(qta::TemplateMode::kOn) << "\n";

  const qta::URI note = qta::URI::fromData({'h', 'i'}, "text/plain");
  out << "data URI: " << note.toString() << " shown as " << note.toDisplayString() << "\n";

  out << "query parameters of the first URI:";
  for (const auto& [name, value] : qta::uri::queryParameters(qta::URI(texts[0]))) {
    out << " " << name << "=" << value;
  }
  out << "\n";
}

const RegisterCommand kUri({
    .order = 40,
    .name = "uri",
    .summary = "parse a URI and show its components and written forms",
    .usage = "Usage: qtatool uri parse [--template] TEXT\n"
             "       qtatool uri parse [--template] --file FILE\n\n"
             "Parses TEXT, or the contents of FILE (\"-\" is standard input) less one final\n"
             "line break, as a URI; put \"--\" before a TEXT that starts with \"-\". With\n"
             "--template, \"[[\" ... \"]]\" placeholders are kept as they are. Prints one line\n"
             "of JSON: scheme, userInfo, host, port, path (absolute, trailingSlash, segments),\n"
             "query, fragment, and the full, display and root forms and the local file path.\n"
             "A text that is not a valid URI prints \"invalid URI\" on standard error and\n"
             "exits with 1.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
