#include "text/cpu_features.h"

#include <atomic>

namespace qta::text::detail {
namespace {

bool cpuHasAvx2() {
  __builtin_cpu_init();  // may run before the runtime's own initialisation
  return __builtin_cpu_supports("avx2") != 0;
}

// A function-local static, so callers during static initialisation see the
// processor's answer too.
std::atomic<bool>& useAvx2() {
  static std::atomic<bool> flag{cpuHasAvx2()};
  return flag;
}

}  // namespace

bool avx2Enabled() { return useAvx2().load(std::memory_order_relaxed); }

void setAvx2Enabled(bool enabled) {
  useAvx2().store(enabled && cpuHasAvx2(), std::memory_order_relaxed);
}

}  // namespace qta::text::detail
