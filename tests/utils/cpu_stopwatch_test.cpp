#include "qta/utils/cpu_stopwatch.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdint>

namespace qta {
namespace {

// Keeps the processor busy for `microseconds` of this process's CPU time.
void burnCpu(std::int64_t microseconds) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::int64_t{time.tv_sec} * 1000000 + time.tv_nsec / 1000;
  };
  const std::int64_t end = now() + microseconds;
  volatile std::uint64_t sink = 0;
  while (now() < end) sink = sink + 1;
}

constexpr std::int64_t kSpan = 20000;

TEST(CPUStopwatch, MeasuresCpuTimeBetweenStartAndStop) {
  CPUStopwatch watch;
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
  watch.start(true);
  burnCpu(kSpan);
  watch.stop();
  const std::uint64_t once = watch.elapsedMicroseconds();
  EXPECT_GE(once, static_cast<std::uint64_t>(kSpan) * 9 / 10);
  EXPECT_LT(once, static_cast<std::uint64_t>(kSpan) * 20);

  // The start stays, so a second stop adds the whole span again.
  watch.stop();
  EXPECT_GE(watch.elapsedMicroseconds(), 2 * once);

  watch.clear();
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
}

TEST(CPUStopwatch, StartKeepsOrResetsTheTotal) {
  CPUStopwatch watch;
  watch.start(true);
  burnCpu(kSpan);
  watch.stop();
  const std::uint64_t first = watch.elapsedMicroseconds();

  watch.start(false);
  burnCpu(kSpan);
  watch.stop();
  EXPECT_GE(watch.elapsedMicroseconds(), first + kSpan * 9 / 10);

  watch.start(true);
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
}

TEST(CPUStopwatch, LapReplacesTheTotalAndRestarts) {
  CPUStopwatch watch;
  watch.start(true);
  burnCpu(kSpan);
  watch.stop();
  watch.stop();
  const std::uint64_t doubled = watch.elapsedMicroseconds();

  watch.lap();
  const std::uint64_t sinceStart = watch.elapsedMicroseconds();
  EXPECT_GE(sinceStart, static_cast<std::uint64_t>(kSpan) * 9 / 10);
  EXPECT_LT(sinceStart, doubled);

  // The lap started a new span from now.
  watch.lap();
  EXPECT_LT(watch.elapsedMicroseconds(), sinceStart);
}

}  // namespace
}  // namespace qta
