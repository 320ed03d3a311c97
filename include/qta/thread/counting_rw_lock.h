// qta/thread/counting_rw_lock.h: a reader/writer lock that counts its readers
// and can cap them.
//
// Any number of shared holders (up to maxShared + 1 when maxShared is above
// 0), or one exclusive holder. Waiters are not queued fairly: a steady stream
// of shared holders can keep an exclusive one waiting. The lock is not
// recursive and does not know who holds it; unlock() ends either kind of hold.
//
// Ownership: the lock owns only its mutex and condition variable.
// Threads: every member may be called from any thread; that is its purpose.
#ifndef QTA_THREAD_COUNTING_RW_LOCK_H_
#define QTA_THREAD_COUNTING_RW_LOCK_H_

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "qta/export.h"

namespace qta {

class QTA_EXPORT CountingRWLock {
 public:
  // `maxShared` of 0 or less lets any number of shared holders in.
  explicit CountingRWLock(int32_t maxShared = 0) : maxShared_(maxShared) {}

  CountingRWLock(const CountingRWLock&) = delete;
  CountingRWLock& operator=(const CountingRWLock&) = delete;

  // Waits while the lock is held exclusively or its shared holders are over
  // maxShared, then joins them.
  void lockShared();
  // Waits until nobody holds the lock, then holds it alone.
  void lockExclusive();
  // Ends one shared hold, or the exclusive one.
  void unlock();

  // Shared holders, or -1 while held exclusively.
  int32_t count() const;

 private:
  mutable std::mutex mutex_;
  std::condition_variable cond_;
  int32_t count_ = 0;
  const int32_t maxShared_;
};

}  // namespace qta

#endif  // QTA_THREAD_COUNTING_RW_LOCK_H_
