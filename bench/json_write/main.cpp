// Writes the JSON corpora in the one-line form with qta and its peers, and
// reports how much heap each parsed tree holds relative to its input text.
#include <cstdio>
#include <string>
#include <vector>

#include "bench_support.h"
#include "heap_counter.h"
#include "qta/json/json.h"

#ifdef QTA_HAVE_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef QTA_HAVE_RAPIDJSON
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#endif

namespace {

const char* const kCorpora[] = {"twitter", "citm_catalog", "canada"};

#ifdef QTA_HAVE_NLOHMANN
// Builds the qta tree of a parsed document the way the parser will: arrays
// grow by push(), members arrive in key order.
qta::JSON::root toQta(const nlohmann::json& value) {
  using qta::json::makeString;
  switch (value.type()) {
    case nlohmann::json::value_t::object: {
      qta::JSON::root object = qta::json::makeObject();
      for (const auto& [key, member] : value.items()) object->set(key, toQta(member));
      return object;
    }
    case nlohmann::json::value_t::array: {
      qta::JSON::root array = qta::json::makeArray();
      for (const auto& element : value) array->push(toQta(element));
      return array;
    }
    case nlohmann::json::value_t::string:
      return makeString(value.get_ref<const std::string&>());
    case nlohmann::json::value_t::boolean:
      return qta::json::makeBoolean(value.get<bool>());
    case nlohmann::json::value_t::null:
      return qta::json::makeNull();
    default:
      return qta::json::makeNumber(value.get<double>());
  }
}

// Builds a tree that lives until the program ends and reports the heap it
// holds as a multiple of the input size.
template <typename Build>
auto* keepMeasured(const std::string& input, Build build, double& heapRatio) {
  const std::size_t before = qtabench::heapInUse();
  auto* tree = new auto(build());
  heapRatio =
      static_cast<double>(qtabench::heapInUse() - before) / static_cast<double>(input.size());
  return tree;
}
#endif

template <typename Write>
void registerWrite(const std::string& name, std::size_t inputSize, double heapRatio, Write write) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    std::size_t written = 0;
    for (auto _ : state) {
      written = write();
      benchmark::DoNotOptimize(written);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * inputSize));
    state.counters["out_bytes"] = static_cast<double>(written);
    if (heapRatio > 0) state.counters["heap_x_input"] = heapRatio;
  })->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
#ifdef QTA_HAVE_NLOHMANN
  for (const char* corpus : kCorpora) {
    const std::string group = std::string("write/") + corpus + "/";
    const auto* input =
        new std::string(qtabench::readCorpus(std::string("json/") + corpus + ".json"));
    double peerHeap = 0;
    const auto* peer = keepMeasured(
        *input, [&] { return nlohmann::json::parse(*input); }, peerHeap);
    double qtaHeap = 0;
    const auto* ours = keepMeasured(
        *input, [&] { return toQta(*peer); }, qtaHeap);
    registerWrite(group + "qta", input->size(), qtaHeap, [ours] {
      std::string out;
      (*ours)->write(out, -1);
      return out.size();
    });
    registerWrite(group + "nlohmann", input->size(), peerHeap,
                  [peer] { return peer->dump().size(); });
#ifdef QTA_HAVE_RAPIDJSON
    auto* document = new rapidjson::Document();
    document->Parse(input->c_str());
    registerWrite(group + "rapidjson", input->size(), 0, [document] {
      rapidjson::StringBuffer buffer;
      rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
      document->Accept(writer);
      return buffer.GetSize();
    });
#endif
  }
#else
  std::fprintf(stderr, "json_write: nlohmann::json is needed to build the trees; nothing to run\n");
#endif
  return qtabench::runWithRatios(argc, argv);
}
