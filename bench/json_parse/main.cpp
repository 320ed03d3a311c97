// Parses the JSON corpora with qta and its peers. Each iteration parses the
// whole document from memory and frees the tree, since a program that parses
// a document also frees it. The heap a parsed document holds is reported as a
// multiple of the input size (heap_x_input), measured as the growth of
// malloc's bytes in use while one tree is alive, for each corpus alone.
#include <malloc.h>

#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include "bench_support.h"
#include "qta/json/parser.h"

#ifdef QTA_HAVE_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef QTA_HAVE_RAPIDJSON
#include <rapidjson/document.h>
#endif
#ifdef QTA_HAVE_SIMDJSON
#include <simdjson.h>
#endif

namespace {

const char* const kCorpora[] = {"twitter", "citm_catalog", "canada"};

std::size_t mallocInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// The heap that what `make` returns holds while it lives, over `inputSize`.
// Measured on a thread of its own: a thread keeps the emptied blocks of its
// JSON nodes for reuse, so on a thread that has parsed other corpora before
// the tree would partly sit in memory already counted and read smaller.
template <typename Make>
double heapRatio(std::size_t inputSize, Make make) {
  double ratio = 0;
  std::thread([&] {
    const std::size_t before = mallocInUse();
    const auto kept = make();
    const std::size_t after = mallocInUse();
    benchmark::DoNotOptimize(kept);
    ratio = static_cast<double>(after - before) / static_cast<double>(inputSize);
  }).join();
  return ratio;
}

// Registers "parse/CORPUS/NAME": each iteration runs `parseAndFree`, which
// returns false when the document was refused.
template <typename ParseAndFree>
void registerParse(const std::string& corpus, const char* name, std::size_t inputSize, double heap,
                   ParseAndFree parseAndFree) {
  const std::string full = "parse/" + corpus + "/" + name;
  benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
    for (auto _ : state) {
      if (!parseAndFree()) {
        state.SkipWithError("the document did not parse");
        break;
      }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * inputSize));
    state.counters["heap_x_input"] = heap;
  })->Unit(benchmark::kMicrosecond);
}

#ifdef QTA_HAVE_RAPIDJSON
template <unsigned kFlags>
void registerRapidJSON(const std::string& corpus, const char* name, const std::string* input) {
  const double heap = heapRatio(input->size(), [input] {
    auto document = std::make_unique<rapidjson::Document>();
    document->Parse<kFlags>(input->c_str());
    return document;
  });
  registerParse(corpus, name, input->size(), heap, [input] {
    rapidjson::Document document;
    document.Parse<kFlags>(input->c_str());
    return !document.HasParseError();
  });
}
#endif

void registerCorpus(const std::string& corpus) {
  // Kept until the program ends: the benchmarks run after registration.
  const auto* input = new std::string(qtabench::readCorpus("json/" + corpus + ".json"));
  const std::size_t size = input->size();
  registerParse(corpus, "qta", size, heapRatio(size, [input] { return qta::json::parse(*input); }),
                [input] { return qta::json::parse(*input) != nullptr; });
#ifdef QTA_HAVE_NLOHMANN
  registerParse(corpus, "nlohmann", size,
                heapRatio(size,
                          [input] {
                            return std::make_unique<nlohmann::json>(nlohmann::json::parse(*input));
                          }),
                [input] { return !nlohmann::json::parse(*input).is_discarded(); });
#endif
#ifdef QTA_HAVE_RAPIDJSON
  registerRapidJSON<rapidjson::kParseDefaultFlags>(corpus, "rapidjson", input);
  registerRapidJSON<rapidjson::kParseFullPrecisionFlag>(corpus, "rapidjson_full", input);
#endif
#ifdef QTA_HAVE_SIMDJSON
  // The DOM parser is reused from one document to the next, as intended; its
  // buffers are the heap it holds. The document is read-only.
  const auto* padded = new simdjson::padded_string(*input);
  auto* parser = new simdjson::dom::parser();
  const double heap = heapRatio(size, [&] {
    simdjson::dom::element root;
    return parser->parse(*padded).get(root) == simdjson::SUCCESS;
  });
  registerParse(corpus, "simdjson", size, heap, [padded, parser] {
    simdjson::dom::element root;
    return parser->parse(*padded).get(root) == simdjson::SUCCESS;
  });
#endif
}

}  // namespace

int main(int argc, char** argv) {
  for (const char* corpus : kCorpora) registerCorpus(corpus);
  return qtabench::runWithRatios(argc, argv);
}
