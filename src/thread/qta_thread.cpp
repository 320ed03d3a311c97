#include "qta/thread/qta_thread.h"

#include <exception>
#include <system_error>
#include <utility>

#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/log/log.h"
#include "qta/utils/format.h"
#include "thread/thread_logger.h"

namespace qta {
namespace {

// The longest name the kernel keeps for a thread, without its final zero.
constexpr size_t kKernelNameBytes = 15;

}  // namespace

QTAThread::QTAThread(std::string name) : name_(std::move(name)) {}

QTAThread::~QTAThread() {
  if (!thread_.joinable()) return;
  try {
    stopAndJoin();
  } catch (...) {
    // Nothing may leave a destructor; a thread left running is caught below.
  }
  if (thread_.joinable()) std::terminate();
}

void QTAThread::start() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (state_ != State::kIdle) {
      throw QTAError(errors::kWrongState,
                     formatString("Thread '%s' is already running", name_.c_str()));
    }
    state_ = State::kStarting;
    finished_ = false;
  }
  std::thread thread;
  try {
    thread = std::thread(&QTAThread::runAndEnd, this);
  } catch (const std::system_error& e) {
    QTA_LOG_ERROR(detail::threadLogger(), "Thread '" << name_ << "' not started: " << e.what());
    {
      std::lock_guard<std::mutex> lock(mutex_);
      state_ = State::kIdle;
    }
    cond_.notify_all();
    throw;
  }
  const std::thread::id id = thread.get_id();
  {
    std::lock_guard<std::mutex> lock(mutex_);
    thread_ = std::move(thread);
  }
  QTA_LOG_DEBUG(detail::threadLogger(), "Thread id '" << id << "' aka '" << name_ << "' started");
}

void QTAThread::runAndEnd() {
  pthread_setname_np(pthread_self(), name_.substr(0, kKernelNameBytes).c_str());
  std::unique_lock<std::mutex> lock(mutex_);
  if (state_ == State::kStarting) {
    state_ = State::kRunning;
    nativeHandle_ = pthread_self();
    begun_ = true;
    if (requestedPriority_ != currentPriority_) {
      changePriorityLocked(static_cast<Priority>(requestedPriority_));
    }
    lock.unlock();
    cond_.notify_all();
    try {
      run();
    } catch (const std::exception& e) {
      QTA_LOG_ERROR(detail::threadLogger(),
                    "Thread '" << name_ << "' ended by exception: " << e.what());
    }
    lock.lock();
  }
  state_ = State::kEnded;
  begun_ = false;
  lock.unlock();
  QTA_LOG_DEBUG(detail::threadLogger(),
                "Thread id '" << std::this_thread::get_id() << "' aka '" << name_ << "' stopped");
  lock.lock();
  if (detached_) {
    lock.unlock();
    delete this;
    return;
  }
  // Notified under the lock: once it is released, a joiner or detach() may
  // free the object.
  finished_ = true;
  cond_.notify_all();
}

void QTAThread::requestStop() {
  std::lock_guard<std::mutex> lock(mutex_);
  requestStopLocked();
}

void QTAThread::requestStopLocked() {
  if (state_ == State::kEnded || state_ == State::kIdle) return;
  state_ = State::kStopRequested;
  cond_.notify_all();
}

bool QTAThread::waitForStart(std::chrono::microseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto begun = [this] { return state_ != State::kStarting; };
  if (timeout.count() <= 0) {
    cond_.wait(lock, begun);
    return true;
  }
  return cond_.wait_for(lock, timeout, begun);
}

void QTAThread::join() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (detached_) {
    throw QTAError(errors::kWrongState, formatString("Thread '%s' is detached", name_.c_str()));
  }
  if (state_ == State::kIdle) return;
  lock.unlock();
  if (thread_.joinable()) thread_.join();
  lock.lock();
  state_ = State::kIdle;
}

void QTAThread::detach() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (detached_ || !thread_.joinable()) return;
  detached_ = true;
  thread_.detach();
  // A body that already finished will not come back to delete the object.
  if (!finished_) return;
  lock.unlock();
  delete this;
}

void QTAThread::stopAndJoin() {
  requestStop();
  join();
}

QTAThread::State QTAThread::state() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return state_;
}

bool QTAThread::isRunning() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return state_ == State::kRunning;
}

bool QTAThread::waitForStopRequest(std::chrono::nanoseconds duration) {
  std::unique_lock<std::mutex> lock(mutex_);
  return cond_.wait_for(lock, duration, [this] { return state_ != State::kRunning; });
}

}  // namespace qta
