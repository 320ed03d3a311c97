// qta/utils/cpu_stopwatch.h: measures the CPU time the process consumes.
//
// CPUStopwatch adds up user plus system CPU time of the whole process (all
// threads, from getrusage(RUSAGE_SELF)), not wall time, in microseconds. It is
// a plain value that owns nothing; one stopwatch must not be used by two
// threads at once, different stopwatches may. When getrusage() fails, a call
// leaves the times it would have read unchanged.
#ifndef QTA_UTILS_CPU_STOPWATCH_H_
#define QTA_UTILS_CPU_STOPWATCH_H_

#include <cstdint>

#include "qta/export.h"

namespace qta {

class QTA_EXPORT CPUStopwatch {
 public:
  // Zero accumulated time; the start is zero too until start() is called.
  CPUStopwatch() = default;

  // Sets the start and the accumulated time to zero.
  void clear() noexcept;
  // Records the current CPU time as the start; with `reset` also sets the
  // accumulated time to zero (even when the CPU time cannot be read).
  void start(bool reset) noexcept;
  // Adds the CPU time since the start to the accumulated time. The start is
  // kept, so stopping twice adds the span since the start twice.
  void stop() noexcept;
  // Replaces the accumulated time with the CPU time since the start and
  // starts again from now.
  void lap() noexcept;

  // The accumulated CPU time in microseconds.
  std::uint64_t elapsedMicroseconds() const noexcept { return elapsed_; }

 private:
  std::uint64_t systemStart_ = 0;
  std::uint64_t userStart_ = 0;
  std::uint64_t elapsed_ = 0;
};

}  // namespace qta

#endif  // QTA_UTILS_CPU_STOPWATCH_H_
