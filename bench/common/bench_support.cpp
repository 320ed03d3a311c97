#include "bench_support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <vector>

namespace qtabench {
namespace {

constexpr const char* kDefaultRepetitions = "--benchmark_repetitions=5";

// One repetition of one benchmark.
struct Sample {
  double nanoseconds = 0;     // real time per iteration
  double bytesPerSecond = 0;  // 0 when the benchmark sets no byte count
  std::map<std::string, double> counters;
};

struct Measurement {
  std::string implementation;
  std::vector<Sample> samples;
};

struct Group {
  std::string name;
  std::vector<Measurement> measurements;
};

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

template <typename Field>
double medianOf(const std::vector<Sample>& samples, Field field) {
  std::vector<double> values;
  for (const Sample& sample : samples) values.push_back(field(sample));
  return median(std::move(values));
}

double nanosecondsPerIteration(const benchmark::BenchmarkReporter::Run& run) {
  const double scale = run.time_unit == benchmark::kNanosecond    ? 1.0
                       : run.time_unit == benchmark::kMicrosecond ? 1e3
                       : run.time_unit == benchmark::kMillisecond ? 1e6
                                                                  : 1e9;
  return run.GetAdjustedRealTime() * scale;
}

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      if (run.run_type == Run::RT_Iteration) {
        measurementFor(run.run_name.str()).samples.push_back(sampleOf(run));
      } else if (run.aggregate_name == "median") {
        // Only the aggregates are shown: the median stands in for the repetitions.
        Measurement& measurement = measurementFor(run.run_name.str());
        if (measurement.samples.empty()) measurement.samples.push_back(sampleOf(run));
      }
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    printSummary();
  }

 private:
  static Sample sampleOf(const Run& run) {
    Sample sample;
    sample.nanoseconds = nanosecondsPerIteration(run);
    for (const auto& [name, counter] : run.counters) {
      if (name == "bytes_per_second") {
        sample.bytesPerSecond = counter.value;
      } else {
        sample.counters[name] = counter.value;
      }
    }
    return sample;
  }

  Measurement& measurementFor(const std::string& full) {
    const size_t slash = full.rfind('/');
    const std::string group = slash == std::string::npos ? full : full.substr(0, slash);
    const std::string implementation = slash == std::string::npos ? "?" : full.substr(slash + 1);
    auto groupIt = std::find_if(groups_.begin(), groups_.end(),
                                [&](const Group& existing) { return existing.name == group; });
    if (groupIt == groups_.end()) groupIt = groups_.insert(groups_.end(), Group{group, {}});
    std::vector<Measurement>& measurements = groupIt->measurements;
    auto it = std::find_if(measurements.begin(), measurements.end(), [&](const Measurement& m) {
      return m.implementation == implementation;
    });
    if (it == measurements.end())
      it = measurements.insert(measurements.end(), Measurement{implementation, {}});
    return *it;
  }

  void printSummary() const {
    std::printf("\n%-44s %-12s %14s %8s %10s %10s  %s\n", "group", "impl", "median/iter", "spread",
                "MB/s", "qta gain", "counters");
    for (const Group& group : groups_) {
      double reference = 0;
      for (const Measurement& m : group.measurements) {
        if (m.implementation == "qta") {
          reference = medianOf(m.samples, [](const Sample& s) { return s.nanoseconds; });
        }
      }
      for (const Measurement& m : group.measurements) printRow(group.name, m, reference);
    }
    std::printf(
        "\nMedians of the repetitions; spread is (slowest - fastest) / median. 'qta gain' is "
        "the peer's median time divided by qta's: above 1 means qta is faster.\n");
  }

  static void printRow(const std::string& group, const Measurement& m, double reference) {
    const auto time = [](const Sample& s) { return s.nanoseconds; };
    const double nanoseconds = medianOf(m.samples, time);
    const auto [fastest, slowest] = std::minmax_element(
        m.samples.begin(), m.samples.end(),
        [](const Sample& a, const Sample& b) { return a.nanoseconds < b.nanoseconds; });
    char spread[16] = "-";  // one sample (a single repetition, or only aggregates shown)
    if (m.samples.size() > 1 && nanoseconds > 0) {
      std::snprintf(spread, sizeof spread, "%.1f%%",
                    100 * (slowest->nanoseconds - fastest->nanoseconds) / nanoseconds);
    }
    std::string counters;
    for (const auto& [name, value] : m.samples.front().counters) {
      char text[64];
      std::snprintf(text, sizeof text, "%s=%.3g ", name.c_str(),
                    medianOf(m.samples, [&](const Sample& s) { return s.counters.at(name); }));
      counters += text;
    }
    char gain[32] = "";
    if (reference > 0 && m.implementation != "qta") {
      std::snprintf(gain, sizeof gain, "%.2fx", nanoseconds / reference);
    }
    const double bytesPerSecond =
        medianOf(m.samples, [](const Sample& s) { return s.bytesPerSecond; });
    std::printf("%-44s %-12s %11.1f ns %8s %10.1f %10s  %s\n", group.c_str(),
                m.implementation.c_str(), nanoseconds, spread, bytesPerSecond / 1e6, gain,
                counters.c_str());
  }

  std::vector<Group> groups_;
};

}  // namespace

std::string dataDirectory() {
  if (const char* fromEnvironment = std::getenv("QTA_BENCH_DATA")) return fromEnvironment;
  return QTA_DEFAULT_BENCH_DATA;
}

std::string readCorpus(const std::string& relativePath) {
  const std::string path = dataDirectory() + "/" + relativePath;
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read corpus " + path);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void dirtyUpperVectorState() {
  static const bool hasAvx = __builtin_cpu_supports("avx") != 0;
  // A 256-bit write the compiler does not see, so no vzeroupper follows it.
  // vcmpps is AVX (not AVX2), so the row runs on every processor with AVX.
  if (hasAvx) asm volatile("vcmpps $15, %%ymm15, %%ymm15, %%ymm15" ::: "xmm15");
}

int runWithRatios(int argc, char** argv) {
  std::vector<char*> args(argv, argv + argc);
  const bool repetitionsGiven = std::any_of(args.begin(), args.end(), [](const char* arg) {
    return std::strncmp(arg, "--benchmark_repetitions", 23) == 0;
  });
  if (!repetitionsGiven) args.push_back(const_cast<char*>(kDefaultRepetitions));
  int count = static_cast<int>(args.size());
  args.push_back(nullptr);
  benchmark::Initialize(&count, args.data());
  if (benchmark::ReportUnrecognizedArguments(count, args.data())) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace qtabench
