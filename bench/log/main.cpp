// The logging front end beside the same work done with log4cxx's own macros.
//
// "disabled/<impl>": a DEBUG statement on a logger at INFO (nothing is built).
// "file/<impl>": an INFO statement written by the default configuration's
// player log appender (a file in a scratch folder).
// "printf/<impl>": qtalog_logger_log with a format, beside vsnprintf into the
// same 512-byte buffer and LOG4CXX_INFO of the text.
// The peer is "log4cxx", so "qta gain" is log4cxx's time over qta's: 1 means
// the front end costs nothing over the raw macro.
#include <log4cxx/logger.h>
#include <log4cxx/logmanager.h>
#include <stdlib.h>

#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <string>

#include "bench_support.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"

namespace {

const log4cxx::LoggerPtr& benchLogger() {
  static const log4cxx::LoggerPtr logger = qta::qtalog::getLogger("bench");
  return logger;
}

void disabledQta(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) {
    QTA_LOG_DEBUG(logger, "frame " << frame << " decoded");
    benchmark::DoNotOptimize(++frame);
  }
}

void disabledLog4cxx(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) {
    LOG4CXX_DEBUG(logger, "frame " << frame << " decoded");
    benchmark::DoNotOptimize(++frame);
  }
}

void fileQta(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) QTA_LOG_INFO(logger, "frame " << ++frame << " decoded");
}

void fileLog4cxx(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) LOG4CXX_INFO(logger, "frame " << ++frame << " decoded");
}

void printfQta(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) {
    qta::qtalog_logger_log(logger, log4cxx::Level::INFO_INT, __FILE__, __func__, __LINE__,
                           "frame %d decoded in %.2f ms", ++frame, 1.25);
  }
}

// What qtalog_logger_log does, written with log4cxx's macro.
__attribute__((format(printf, 2, 3))) void log4cxxPrintf(const log4cxx::LoggerPtr& logger,
                                                         const char* format, ...) {
  if (!log4cxx::Logger::isInfoEnabledFor(logger)) return;
  char text[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  LOG4CXX_INFO(logger, text);
}

void printfLog4cxx(benchmark::State& state) {
  const log4cxx::LoggerPtr& logger = benchLogger();
  int frame = 0;
  for (auto _ : state) log4cxxPrintf(logger, "frame %d decoded in %.2f ms", ++frame, 1.25);
}

}  // namespace

int main(int argc, char** argv) {
  // The default configuration writes into a scratch folder, removed at the end.
  std::string folder = (std::filesystem::temp_directory_path() / "qta-bench-log-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  if (!qta::qtalog::configureDefault()) return 1;

  benchmark::RegisterBenchmark("disabled/qta", disabledQta);
  benchmark::RegisterBenchmark("disabled/log4cxx", disabledLog4cxx);
  benchmark::RegisterBenchmark("file/qta", fileQta);
  benchmark::RegisterBenchmark("file/log4cxx", fileLog4cxx);
  benchmark::RegisterBenchmark("printf/qta", printfQta);
  benchmark::RegisterBenchmark("printf/log4cxx", printfLog4cxx);
  const int status = qtabench::runWithRatios(argc, argv);

  log4cxx::LogManager::shutdown();
  std::filesystem::current_path(previous);
  std::filesystem::remove_all(folder);
  return status;
}
