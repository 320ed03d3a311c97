// Shared pieces of the benchmark programs: corpus loading and a reporter that
// prints, after Google Benchmark's own table, how qta compares with its peers.
//
// Naming convention: every benchmark is named "<group>/<implementation>", e.g.
// "write/twitter/qta" and "write/twitter/nlohmann". Within a group the
// implementation named "qta" is the reference; the summary prints each peer's
// time divided by qta's, so a ratio above 1 means qta is faster.
#ifndef QTA_BENCH_SUPPORT_H_
#define QTA_BENCH_SUPPORT_H_

#include <benchmark/benchmark.h>

#include <string>

namespace qtabench {

// The corpus directory: $QTA_BENCH_DATA when set, else ../shared/bench-data
// beside the source tree.
std::string dataDirectory();

// Reads a corpus file ("json/twitter.json") whole. Throws std::runtime_error
// with the path when it cannot be read.
std::string readCorpus(const std::string& relativePath);

// Runs the registered benchmarks with the console table plus the ratio
// summary. Use as the body of main().
int runWithRatios(int argc, char** argv);

}  // namespace qtabench

#endif  // QTA_BENCH_SUPPORT_H_
