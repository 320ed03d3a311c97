#include "qta/thread/counting_rw_lock.h"

namespace qta {

void CountingRWLock::lockShared() {
  std::unique_lock<std::mutex> lock(mutex_);
  // A newcomer is let in while the count equals maxShared, so up to
  // maxShared + 1 holders share the lock.
  cond_.wait(lock, [this] { return count_ >= 0 && (maxShared_ <= 0 || count_ <= maxShared_); });
  ++count_;
}

void CountingRWLock::lockExclusive() {
  std::unique_lock<std::mutex> lock(mutex_);
  cond_.wait(lock, [this] { return count_ == 0; });
  count_ = -1;
}

void CountingRWLock::unlock() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    count_ = count_ < 1 ? 0 : count_ - 1;
  }
  cond_.notify_all();
}

int32_t CountingRWLock::count() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return count_;
}

}  // namespace qta
