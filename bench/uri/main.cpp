// Parses every line of the URL lists with qta and its peers, and writes the
// parsed URIs back. Items per second are URIs per second.
//
// "parse/<list>/<impl>": qta's parse normalises (case, escapes, dot segments,
// default ports, IDNA hosts), so each peer parses and then normalises too.
// "write-vs-parse/<list>/qta" writes toString() of URIs parsed beforehand and
// "qta-parse" parses them, so the ratio printed is how many times faster
// writing is than parsing.
#include <string>
#include <vector>

#include "bench_support.h"
#include "qta/uri/uri.h"

#ifdef QTA_HAVE_URIPARSER
#include <uriparser/Uri.h>
#endif
#ifdef QTA_HAVE_BOOST_URL
#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>
#endif

namespace {

std::vector<std::string> readLines(const std::string& corpus) {
  const std::string text = qtabench::readCorpus(corpus);
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

const std::vector<std::string>& urlList(const std::string& name) {
  static const std::vector<std::string> kasztp = readLines("uri/kasztp.txt");
  static const std::vector<std::string> userbait = readLines("uri/userbait.txt");
  return name == "kasztp" ? kasztp : userbait;
}

void finish(benchmark::State& state, size_t count, size_t accepted) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * count));
  state.counters["accepted"] = static_cast<double>(accepted);
}

void parseQta(benchmark::State& state, const std::string& list) {
  const std::vector<std::string>& lines = urlList(list);
  size_t accepted = 0;
  for (auto _ : state) {
    accepted = 0;
    for (const std::string& line : lines) {
      const std::optional<qta::URI> uri = qta::URI::tryParse(line);
      accepted += uri.has_value();
      benchmark::DoNotOptimize(uri);
    }
  }
  finish(state, lines.size(), accepted);
}

void writeQta(benchmark::State& state, const std::string& list) {
  std::vector<qta::URI> uris;
  for (const std::string& line : urlList(list)) uris.emplace_back(line);
  for (auto _ : state) {
    for (const qta::URI& uri : uris) {
      std::string text = uri.toString();
      benchmark::DoNotOptimize(text);
    }
  }
  finish(state, uris.size(), uris.size());
}

#ifdef QTA_HAVE_URIPARSER
void parseUriparser(benchmark::State& state, const std::string& list) {
  const std::vector<std::string>& lines = urlList(list);
  size_t accepted = 0;
  for (auto _ : state) {
    accepted = 0;
    for (const std::string& line : lines) {
      UriUriA uri;
      const char* errorPos = nullptr;
      if (uriParseSingleUriA(&uri, line.c_str(), &errorPos) == URI_SUCCESS) {
        accepted += uriNormalizeSyntaxA(&uri) == URI_SUCCESS;
      }
      uriFreeUriMembersA(&uri);
    }
  }
  finish(state, lines.size(), accepted);
}
#endif

#ifdef QTA_HAVE_BOOST_URL
void parseBoostUrl(benchmark::State& state, const std::string& list) {
  const std::vector<std::string>& lines = urlList(list);
  size_t accepted = 0;
  for (auto _ : state) {
    accepted = 0;
    for (const std::string& line : lines) {
      auto view = boost::urls::parse_uri(line);
      if (!view) continue;
      boost::urls::url url(*view);
      url.normalize();
      benchmark::DoNotOptimize(url);
      ++accepted;
    }
  }
  finish(state, lines.size(), accepted);
}
#endif

void registerAll() {
  for (const std::string list : {"kasztp", "userbait"}) {
    const std::string parse = "parse/" + list + "/";
    benchmark::RegisterBenchmark((parse + "qta").c_str(), parseQta, list);
#ifdef QTA_HAVE_URIPARSER
    benchmark::RegisterBenchmark((parse + "uriparser").c_str(), parseUriparser, list);
#endif
#ifdef QTA_HAVE_BOOST_URL
    benchmark::RegisterBenchmark((parse + "boost-url").c_str(), parseBoostUrl, list);
#endif
    const std::string write = "write-vs-parse/" + list + "/";
    benchmark::RegisterBenchmark((write + "qta").c_str(), writeQta, list);
    benchmark::RegisterBenchmark((write + "qta-parse").c_str(), parseQta, list);
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerAll();
  return qtabench::runWithRatios(argc, argv);
}
