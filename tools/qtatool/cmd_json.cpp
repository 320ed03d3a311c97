// qtatool's json entry: so far only its section of `qtatool demo`.
#include <ostream>
#include <string>

#include "command.h"
#include "qta/json/json.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

namespace qtatool {
namespace {

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
}

const RegisterCommand kJson({.order = 10, .name = "json", .demo = demo});

}  // namespace
}  // namespace qtatool
