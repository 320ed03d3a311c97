// qtatool uri: parses a URI and prints its components and written forms as
// one line of JSON.
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "cli.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"
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

qta::JSON::root describe(const qta::URI& uri, qta::TemplateMode templateMode) {
  using qta::json::makeString;
  qta::JSON::root object = qta::json::makeObject();
  object->set("scheme", makeString(uri.scheme()));
  object->set("userInfo", makeString(uri.userInfo()));
  object->set("host", makeString(uri.host()));
  object->set("port", qta::json::makeNumber(uri.port()));
  object->set("path", pathObject(uri.path()));
  object->set("query", makeString(uri.query()));
  object->set("fragment", makeString(uri.fragment()));
  object->set("full", makeString(uri.toString(templateMode)));
  object->set("display", makeString(uri.toDisplayString(templateMode)));
  object->set("root", makeString(uri.rootString()));
  object->set("localPath", makeString(uri.localPath()));
  return object;
}

}  // namespace

int runUri(Args args) {
  const Command& command = *findCommand("uri");
  if (args.empty()) return usageError(command, "missing 'parse'");
  if (args[0] != "parse") return usageError(command, "expected 'parse', not '" + args[0] + "'");
  qta::TemplateMode templateMode = qta::TemplateMode::kOff;
  std::optional<std::string> text;
  for (const std::string& arg : args.subspan(1)) {
    if (arg == "--template") {
      templateMode = qta::TemplateMode::kOn;
    } else if (arg.size() > 1 && arg[0] == '-' && !text) {
      return usageError(command, "unknown option '" + arg + "'");
    } else if (text) {
      return usageError(command, "more than one TEXT");
    } else {
      text = arg;
    }
  }
  if (!text) return usageError(command, "missing TEXT");

  const std::optional<qta::URI> uri = qta::URI::tryParse(*text, templateMode);
  if (!uri) {
    std::fputs("invalid URI\n", stderr);
    return kRejected;
  }
  std::string json;
  describe(*uri, templateMode)->write(json, -1);
  json += '\n';
  writeBytes(json);
  return kSuccess;
}

}  // namespace qtatool
