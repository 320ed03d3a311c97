#include "bench_support.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <vector>

namespace qtabench {
namespace {

struct Measurement {
  std::string implementation;
  double nanoseconds = 0;     // real time per iteration
  double bytesPerSecond = 0;  // 0 when the benchmark sets no byte count
  std::map<std::string, double> counters;
};

struct Group {
  std::string name;
  std::vector<Measurement> measurements;
};

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "mean") continue;
      record(run);
    }
  }

  void Finalize() override {
    ConsoleReporter::Finalize();
    printSummary();
  }

 private:
  void record(const Run& run) {
    const std::string full = run.run_name.str();
    const size_t slash = full.rfind('/');
    const std::string group = slash == std::string::npos ? full : full.substr(0, slash);
    Measurement measurement;
    measurement.implementation = slash == std::string::npos ? "?" : full.substr(slash + 1);
    measurement.nanoseconds =
        run.GetAdjustedRealTime() * (run.time_unit == benchmark::kNanosecond    ? 1.0
                                     : run.time_unit == benchmark::kMicrosecond ? 1e3
                                     : run.time_unit == benchmark::kMillisecond ? 1e6
                                                                                : 1e9);
    for (const auto& [name, counter] : run.counters) {
      if (name == "bytes_per_second") {
        measurement.bytesPerSecond = counter.value;
      } else {
        measurement.counters[name] = counter.value;
      }
    }
    Group* target = nullptr;
    for (Group& existing : groups_) {
      if (existing.name == group) target = &existing;
    }
    if (target == nullptr) {
      groups_.push_back({group, {}});
      target = &groups_.back();
    }
    target->measurements.push_back(std::move(measurement));
  }

  void printSummary() const {
    std::printf("\n%-44s %-12s %14s %12s %10s  %s\n", "group", "impl", "time/iter", "MB/s",
                "qta gain", "counters");
    for (const Group& group : groups_) {
      double reference = 0;
      for (const Measurement& m : group.measurements) {
        if (m.implementation == "qta") reference = m.nanoseconds;
      }
      for (const Measurement& m : group.measurements) {
        std::string counters;
        for (const auto& [name, value] : m.counters) {
          char text[64];
          std::snprintf(text, sizeof text, "%s=%.3g ", name.c_str(), value);
          counters += text;
        }
        char gain[32] = "";
        if (reference > 0 && m.implementation != "qta") {
          std::snprintf(gain, sizeof gain, "%.2fx", m.nanoseconds / reference);
        }
        std::printf("%-44s %-12s %11.1f ns %12.1f %10s  %s\n", group.name.c_str(),
                    m.implementation.c_str(), m.nanoseconds, m.bytesPerSecond / 1e6, gain,
                    counters.c_str());
      }
    }
    std::printf("\n'qta gain' is the peer's time divided by qta's: above 1 means qta is faster.\n");
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

int runWithRatios(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}

}  // namespace qtabench
