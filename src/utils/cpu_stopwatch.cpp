#include "qta/utils/cpu_stopwatch.h"

#include <sys/resource.h>
#include <sys/time.h>

namespace qta {
namespace {

struct CpuTimes {
  std::uint64_t user = 0;
  std::uint64_t system = 0;
};

std::uint64_t microseconds(const timeval& time) {
  return static_cast<std::uint64_t>(time.tv_sec) * 1000000u +
         static_cast<std::uint64_t>(time.tv_usec);
}

bool readCpuTimes(CpuTimes& times) {
  rusage usage{};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return false;
  times.user = microseconds(usage.ru_utime);
  times.system = microseconds(usage.ru_stime);
  return true;
}

}  // namespace

void CPUStopwatch::clear() noexcept {
  systemStart_ = 0;
  userStart_ = 0;
  elapsed_ = 0;
}

void CPUStopwatch::start(bool reset) noexcept {
  CpuTimes now;
  if (readCpuTimes(now)) {
    userStart_ = now.user;
    systemStart_ = now.system;
  }
  if (reset) elapsed_ = 0;
}

void CPUStopwatch::stop() noexcept {
  CpuTimes now;
  if (readCpuTimes(now)) elapsed_ += now.user + now.system - userStart_ - systemStart_;
}

void CPUStopwatch::lap() noexcept {
  CpuTimes now;
  if (!readCpuTimes(now)) return;
  elapsed_ = now.user + now.system - userStart_ - systemStart_;
  userStart_ = now.user;
  systemStart_ = now.system;
}

}  // namespace qta
