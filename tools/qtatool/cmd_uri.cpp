// qtatool uri: parses a URI and prints its components and written forms as
// one line of JSON; resolves a reference, makes a URI relative, or compares
// two URIs; and the URI section of `qtatool demo`.
#include <cstdio>
#include <functional>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "args.h"
#include "command.h"
#include "io.h"
#include "qta/json/json.h"
#include "qta/text/base64.h"
#include "qta/uri/compare.h"
#include "qta/uri/query.h"
#include "qta/uri/relative.h"
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
// written forms are not all held at once. A "data" URI adds its payload (in
// base64) as "data" and its "mediaType".
void printDescription(const qta::URI& uri, qta::TemplateMode templateMode) {
  using qta::json::makeString;
  using Member = std::pair<const char*, std::function<qta::JSON::root()>>;
  const bool isData = uri.content() != nullptr;
  std::vector<Member> members;
  if (isData) {
    members.emplace_back("data", [&] {
      return makeString(qta::text::base64Encode(uri.bytes().data(), uri.bytes().size()));
    });
  }
  members.insert(members.end(),
                 {
                     {"display", [&] { return makeString(uri.toDisplayString(templateMode)); }},
                     {"fragment", [&] { return makeString(uri.fragment()); }},
                     {"full", [&] { return makeString(uri.toString(templateMode)); }},
                     {"host", [&] { return makeString(uri.host()); }},
                     {"localPath", [&] { return makeString(uri.localPath()); }},
                 });
  if (isData) members.emplace_back("mediaType", [&] { return makeString(uri.mediaType()); });
  members.insert(members.end(), {
                                    {"path", [&] { return pathObject(uri.path()); }},
                                    {"port", [&] { return qta::json::makeNumber(uri.port()); }},
                                    {"query", [&] { return makeString(uri.query()); }},
                                    {"root", [&] { return makeString(uri.rootString()); }},
                                    {"scheme", [&] { return makeString(uri.scheme()); }},
                                    {"userInfo", [&] { return makeString(uri.userInfo()); }},
                                });
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

int parse(const Command& self, const ParsedArgs& parsed, qta::TemplateMode templateMode) {
  std::optional<qta::URI> uri;
  {
    std::string text;  // released once parsed, so a huge text is not held beside its URI
    int status = kSuccess;
    if (!uriText(self, parsed, text, status)) return status;
    uri = qta::URI::tryParse(text, templateMode);
  }
  if (!uri) {
    std::fputs("invalid URI\n", stderr);
    return kRejected;
  }
  printDescription(*uri, templateMode);
  return kSuccess;
}

// The modes that take two URIs: resolve BASE REF, relative BASE URI, compare A B.
int combine(const Command& self, const ParsedArgs& parsed, qta::TemplateMode templateMode) {
  if (parsed.has("--file")) return usageError(self, "--file goes with parse only");
  if (parsed.operands.size() != 2) return usageError(self, "give two URIs");
  std::optional<qta::URI> uris[2];
  for (size_t i = 0; i < 2; ++i) {
    uris[i] = qta::URI::tryParse(parsed.operands[i], templateMode);
    if (!uris[i]) {
      std::fprintf(stderr, "invalid URI: %.*s\n", static_cast<int>(parsed.operands[i].size()),
                   parsed.operands[i].data());
      return kRejected;
    }
  }
  const qta::URI& first = *uris[0];
  const qta::URI& second = *uris[1];
  std::string line;
  if (parsed.mode == "compare") {
    const int order = qta::uri::compare(first, second);
    line = std::to_string((order > 0) - (order < 0));
  } else if (parsed.mode == "resolve") {
    line = qta::uri::resolve(second, first).toString(templateMode);
  } else {
    line = qta::uri::relativize(second, first).toString(templateMode);
  }
  writeBytes(line + "\n");
  return kSuccess;
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args,
                {.modes = {"parse", "resolve", "relative", "compare"},
                 .flags = {"--template"},
                 .valued = {"--file"},
                 .operand = "TEXT",
                 .maxOperands = 2});
  if (!parsed) return kUsage;
  const qta::TemplateMode templateMode =
      parsed->has("--template") ? qta::TemplateMode::kOn : qta::TemplateMode::kOff;
  if (parsed->mode != "parse") return combine(self, *parsed, templateMode);
  if (parsed->operands.size() > 1) return usageError(self, "parse takes one TEXT");
  return parse(self, *parsed, templateMode);
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

  const char* const noteText = "data:,A%20brief%20note";
  const qta::URI parsedNote(noteText);
  out << noteText << ": media type " << parsedNote.mediaType() << ", bytes \""
      << std::string(parsedNote.bytes().begin(), parsedNote.bytes().end()) << "\"\n";

  // References in a playlist resolve against the playlist's own URI, and
  // URIs of the same server are written relative to it.
  const qta::URI playlist("http://media.example/shows/a/index.smil?v=2");
  out << "relative to " << playlist.toString() << ":\n";
  for (const char* reference : {"intro.mp4", "../b/clip.mp4#t=5", "/live/", "?v=3",
                                "http:other.mp4", "https://cdn.example/x.mp4"}) {
    out << "  " << reference << " -> "
        << qta::uri::resolve(qta::URI(reference), playlist).toString() << "\n";
  }
  const qta::URI clip("http://media.example/shows/b/clip.mp4");
  out << "  " << clip.toString()
      << " written relative: " << qta::uri::relativize(clip, playlist).toString() << "\n";
  const std::set<qta::URI> sorted = {qta::URI("https://a.example/"), clip, playlist,
                                     qta::URI("HTTP://Media.Example:80/shows/b/clip.mp4")};
  out << "sorted, duplicates dropped:";
  for (const qta::URI& uri : sorted) out << " " << uri.toString();
  out << "\n";

  out << "query parameters of the first URI:";
  for (const auto& [name, value] : qta::uri::queryParameters(qta::URI(texts[0]))) {
    out << " " << name << "=" << value;
  }
  out << "\n";
}

const RegisterCommand kUri({
    .order = 40,
    .name = "uri",
    .summary = "parse, resolve, relativise or compare URIs",
    .usage = "Usage: qtatool uri parse [--template] TEXT\n"
             "       qtatool uri parse [--template] --file FILE\n"
             "       qtatool uri resolve [--template] BASE REF\n"
             "       qtatool uri relative [--template] BASE URI\n"
             "       qtatool uri compare [--template] A B\n\n"
             "parse reads TEXT, or the contents of FILE (\"-\" is standard input) less one\n"
             "final line break, as a URI; put \"--\" before a TEXT that starts with \"-\".\n"
             "It prints one line of JSON: scheme, userInfo, host, port, path (absolute,\n"
             "trailingSlash, segments), query, fragment, and the full, display and root\n"
             "forms and the local file path; for a data: URI also mediaType and data (the\n"
             "bytes in base64).\n"
             "resolve prints the full form of REF resolved against BASE; relative prints\n"
             "URI made relative to BASE (unchanged unless both have the same scheme, host\n"
             "and port); compare prints -1, 0 or 1 as A sorts before, with or after B.\n"
             "With --template, \"[[\" ... \"]]\" placeholders are kept as they are. A text\n"
             "that is not a valid URI prints \"invalid URI\" on standard error (with the\n"
             "text, in the modes that take two) and exits with 1.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
