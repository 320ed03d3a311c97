// QTAThread's priority scale on POSIX real-time scheduling.
#include <pthread.h>
#include <sched.h>

#include "qta/log/log.h"
#include "qta/thread/qta_thread.h"
#include "thread/priority_scale.h"
#include "thread/thread_logger.h"

namespace qta {

bool QTAThread::setPriority(Priority priority) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto step = static_cast<int32_t>(priority);
  if (currentPriority_ == step && requestedPriority_ == step) return true;
  if (!begun_ || (state_ != State::kRunning && state_ != State::kStopRequested)) {
    QTA_LOG_DEBUG(detail::threadLogger(), "delayed setPriority() on thread '" << name_ << "'");
    requestedPriority_ = step;
    return true;
  }
  return changePriorityLocked(priority);
}

bool QTAThread::changePriorityLocked(Priority priority) {
  int policy = 0;
  sched_param param{};
  // A thread that is not running has no scheduling parameters to read.
  if (!begun_ || pthread_getschedparam(nativeHandle_, &policy, &param) != 0) {
    QTA_LOG_ERROR(detail::threadLogger(), "failed to retrive thread's scheduling parameters");
    return false;
  }
  const auto step = static_cast<int32_t>(priority);
  const auto record = [this, step] {
    currentPriority_ = step;
    requestedPriority_ = step;
    return true;
  };
  const int targetPolicy = priority == Priority::kFifo ? SCHED_FIFO : policy;
  if (targetPolicy == SCHED_OTHER) {
    QTA_LOG_DEBUG(detail::threadLogger(),
                  "ignoring set priority for SCHED_OTHER thread (cannot set)");
    return record();
  }
  const int min = sched_get_priority_min(targetPolicy);
  const int max = sched_get_priority_max(targetPolicy);
  if (min == -1 || max == -1) return false;
  const int target = priority == Priority::kFifo ? min : detail::scaledPriority(min, max, step);

  if (policy == targetPolicy) {
    if (param.sched_priority != target && pthread_setschedprio(nativeHandle_, target) != 0) {
      return false;
    }
  } else {
    param.sched_priority = target;
    if (pthread_setschedparam(nativeHandle_, targetPolicy, &param) != 0) return false;
  }
  return record();
}

}  // namespace qta
