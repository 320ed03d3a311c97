#include "qta/utils/cpu_stopwatch.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdint>

namespace qta {
namespace {

constexpr std::uint64_t kSpan = 20000;     // microseconds of CPU time
constexpr std::uint64_t kAtLeast = 18000;  // what a span measures at the least

// Keeps the processor busy for kSpan of this process's CPU time.
void burnSpan() {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1000000 + time.tv_nsec / 1000;
  };
  const std::uint64_t end = now() + kSpan;
  volatile std::uint64_t sink = 0;
  while (now() < end) sink = sink + 1;
}

TEST(CPUStopwatch, StopAddsTheSpanSinceTheStart) {
  CPUStopwatch watch;
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
  watch.start(true);
  burnSpan();
  watch.stop();
  const std::uint64_t once = watch.elapsedMicroseconds();
  EXPECT_GE(once, kAtLeast);
  EXPECT_LT(once, kSpan * 20);
  // The start stays, so a second stop adds the whole span again.
  watch.stop();
  EXPECT_GE(watch.elapsedMicroseconds(), 2 * once);

  // start(false) keeps the total, start(true) and clear() zero it.
  const std::uint64_t twice = watch.elapsedMicroseconds();
  watch.start(false);
  burnSpan();
  watch.stop();
  EXPECT_GE(watch.elapsedMicroseconds(), twice + kAtLeast);
  watch.start(true);
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
  burnSpan();
  watch.stop();
  watch.clear();
  EXPECT_EQ(watch.elapsedMicroseconds(), 0u);
}

TEST(CPUStopwatch, LapReplacesTheTotalAndRestarts) {
  CPUStopwatch watch;
  watch.start(true);
  burnSpan();
  watch.stop();
  watch.stop();
  const std::uint64_t doubled = watch.elapsedMicroseconds();

  watch.lap();
  const std::uint64_t sinceStart = watch.elapsedMicroseconds();
  EXPECT_GE(sinceStart, kAtLeast);
  EXPECT_LT(sinceStart, doubled);
  // The lap started a new span from now.
  watch.lap();
  EXPECT_LT(watch.elapsedMicroseconds(), sinceStart);
}

}  // namespace
}  // namespace qta
