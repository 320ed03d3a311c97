// Reads URIs given on the command line (or a few built-in ones) and prints
// their parts, the forms the library writes, and their query parameters.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "qta/uri/query.h"
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
  return 0;
}
