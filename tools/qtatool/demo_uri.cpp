#include <ostream>

#include "demo.h"
#include "qta/uri/query.h"
#include "qta/uri/uri.h"

namespace qtatool {

void demoUri(std::ostream& out) {
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

}  // namespace qtatool
