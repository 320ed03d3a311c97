// Shared pieces of the benchmark programs: corpus loading, a reporter that
// prints, after Google Benchmark's own table, how qta compares with its peers,
// and a helper that puts the processor's vector state in a caller's worst case.
//
// Naming convention: every benchmark is named "<group>/<implementation>", e.g.
// "write/twitter/qta" and "write/twitter/nlohmann". Within a group the
// implementation named "qta" is the reference; the summary prints each peer's
// time divided by qta's, so a ratio above 1 means qta is faster.
//
// Every benchmark runs 5 times unless --benchmark_repetitions says otherwise.
// The summary reports the median of the repetitions (a noisy machine skews
// means) and their spread, the distance from the fastest to the slowest one
// as a share of the median; ratios are taken between medians. Add
// --benchmark_enable_random_interleaving=true to spread slow phases of the
// machine over all benchmarks alike.
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

// Leaves the upper halves of the AVX registers dirty, as AVX code that returns
// without vzeroupper does. Called before a function under test, it shows what
// that function costs after such a caller. Does nothing without AVX.
void dirtyUpperVectorState();

// Runs the registered benchmarks with the console table plus the ratio
// summary. Use as the body of main().
int runWithRatios(int argc, char** argv);

}  // namespace qtabench

#endif  // QTA_BENCH_SUPPORT_H_
