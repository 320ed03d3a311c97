// Reads URIs given on the command line (or a few built-in ones) and prints
// their parts, the forms the library writes, and their query parameters;
// then resolves, relativises and sorts a few URIs.
#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "qta/uri/query.h"
#include "qta/uri/relative.h"
#include "qta/uri/uri.h"

int main(int argc, char** argv) {
  std::vector<std::string> texts(argv + 1, argv + argc);
  if (texts.empty()) {
    texts = {"HTTP://Media.Example:80/a/../clip%20one.mp4?t=%31&lang=en",
             "//fileserver/share/show.smil", "http://host?no-slash"};
  }
  for (const std::string& text : texts) {
    const std::optional<qta::URI> uri = qta::URI::tryParse(text);
    if (!uri) {
      std::printf("%s: invalid URI\n", text.c_str());
      continue;
    }
    std::printf("%s\n  scheme %s, host %s, port %u\n  full    %s\n  display %s\n", text.c_str(),
                uri->scheme().c_str(), uri->host().c_str(), uri->port(), uri->toString().c_str(),
                uri->toDisplayString().c_str());
    for (const auto& [name, value] : qta::uri::queryParameters(*uri)) {
      std::printf("  parameter %s = %s\n", name.c_str(), value.c_str());
    }
  }

  // Changing a copy leaves the original as it was.
  const qta::URI original("http://media.example/list.json");
  qta::URI copy = original;
  copy.setQuery("page=2");
  std::printf("%s stays, its copy is %s\n", original.toString().c_str(), copy.toString().c_str());

  // A data URI carries its payload: the bytes are decoded once, when parsed.
  const qta::URI note("data:text/plain;base64,aGk=");
  std::printf("%s holds %zu bytes of %s\n", note.toString().c_str(), note.bytes().size(),
              note.mediaType().c_str());

  // References resolve against the document they appear in; a URI of the same
  // server can be written relative to it.
  const qta::URI page("http://media.example/shows/a/index.smil");
  const qta::URI clip = qta::uri::resolve(qta::URI("../b/clip.mp4?t=5"), page);
  std::printf("%s, relative again: %s\n", clip.toString().c_str(),
              qta::uri::relativize(clip, page).toString().c_str());

  // URIs sort by their normalised parts, so equal URIs meet in a set.
  const std::set<qta::URI> unique = {clip, page,
                                     qta::URI("HTTP://Media.Example:80/shows/a/index.smil")};
  std::printf("%zu different URIs\n", unique.size());
  return 0;
}
