#include "qta/utils/cpu_stopwatch.h"

#include <gtest/gtest.h>
#include <cstdint>
#include <ctime>

namespace qta {
namespace {

// Keeps the processor busy for 20 ms of this process's CPU time.
void burnSpan() {
  const std::clock_t end = std::clock() + CLOCKS_PER_SEC / 50;
  while (std::clock() < end) {
  }
}

TEST(CPUStopwatch, AddsReplacesAndClearsSpans) {
  constexpr std::uint64_t kAtLeast = 18000;  // what a span measures at the least
  CPUStopwatch watch;
  watch.start(true);
  burnSpan();
  watch.stop();
  const std::uint64_t once = watch.elapsedMicroseconds();
  EXPECT_GE(once, kAtLeast);
  EXPECT_LT(once, 400000u);
  watch.stop();  // the start stays, so this adds the whole span again
  const std::uint64_t twice = watch.elapsedMicroseconds();
  EXPECT_GE(twice, 2 * once);
  watch.start(false);  // keeps the total
  burnSpan();
  watch.stop();
  EXPECT_GE(watch.elapsedMicroseconds(), twice + kAtLeast);
  watch.lap();  // the total becomes the time since the start, which restarts
  EXPECT_GE(watch.elapsedMicroseconds(), kAtLeast);
  EXPECT_LT(watch.elapsedMicroseconds(), twice);
  CPUStopwatch cleared = watch, restarted = watch;
  cleared.clear();
  restarted.start(true);
  EXPECT_EQ(cleared.elapsedMicroseconds() + restarted.elapsedMicroseconds(), 0u);
  watch.lap();
  EXPECT_LT(watch.elapsedMicroseconds(), kAtLeast);
}

}  // namespace
}  // namespace qta
