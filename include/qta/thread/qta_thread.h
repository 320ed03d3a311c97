// qta/thread/qta_thread.h: QTAThread, the base of every long-lived worker
// thread.
//
// A subclass implements run(); the base owns the operating-system thread and
// its kernel name, a state machine, cooperative stop requests, join and
// detach, and a priority on a small scale mapped onto POSIX real-time
// scheduling. Its diagnostics go to the logger "qta.utils.thread".
//
// States: idle (never started, or joined) -> starting (start() accepted) ->
// running (run() executing) -> ended (run() returned) -> idle by join().
// A stop request moves starting or running to stop-requested; run() is
// expected to return soon after it, and a thread stopped before it began
// never calls run() at all.
//
// Ownership: the object owns its thread. A joinable thread must be stopped
// and joined before the object goes away; the destructor does so as a last
// resort, but a subclass whose run() uses its own members must stop and join
// in its own destructor, before those members die. A detached thread owns its
// object instead: it must have been created with `new`, it deletes itself
// when run() returns, and nobody may touch it after detach().
// Threads: every public member may be called from any thread; all state is
// kept under one mutex, which run() may share through the protected members.
#ifndef QTA_THREAD_QTA_THREAD_H_
#define QTA_THREAD_QTA_THREAD_H_

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "qta/export.h"

namespace qta {

class QTA_EXPORT QTAThread {
 public:
  enum class State : int32_t {
    kStarting = 0,
    kRunning = 1,
    kStopRequested = 2,
    kEnded = 3,
    kIdle = 4,
  };

  // Steps 0 (lowest) to 4 (highest) within the thread's real-time scheduling
  // policy; kFifo switches to SCHED_FIFO at its lowest priority.
  enum class Priority : int32_t {
    kLowest = 0,
    kLow = 1,
    kMedium = 2,
    kHigh = 3,
    kHighest = 4,
    kFifo = 5,
  };

  // `name` names the thread in messages and, cut to 15 bytes, in the kernel.
  explicit QTAThread(std::string name);
  // Stops and joins a thread still joinable, swallowing errors; terminates
  // the process if the thread cannot be joined.
  virtual ~QTAThread();

  QTAThread(const QTAThread&) = delete;
  QTAThread& operator=(const QTAThread&) = delete;

  // Starts the thread. Throws QTAError 50 when the thread is not idle, and
  // rethrows (after logging it) the std::system_error of a failed creation.
  void start();
  // The body of the new thread: names it, applies a delayed priority, calls
  // run() unless a stop came first, and deletes the object when detached.
  void runAndEnd();

  // Asks run() to return: starting or running become stop-requested; no
  // effect once run() has ended or before start().
  void requestStop();
  // Waits until the thread has begun (left the starting state). A timeout of
  // 0 or less waits without a deadline; returns false when the timeout passed.
  bool waitForStart(std::chrono::microseconds timeout);
  // Waits for the thread to end and returns it to idle. Throws QTAError 50 for
  // a detached thread.
  void join();
  // Lets the thread run on its own; the object deletes itself when run()
  // returns (at once when it has already returned). No effect when there is
  // no thread or it is already detached.
  void detach();
  // requestStop(), then join().
  void stopAndJoin();

  // Applies `priority` now when the thread runs, else when it begins. Returns
  // false when the system refuses it; never throws.
  bool setPriority(Priority priority);

  const std::string& name() const noexcept { return name_; }
  State state() const;

 protected:
  // The thread's work. It should return soon after a stop request: loop
  // while isRunning(), and sleep with waitForStopRequest().
  virtual void run() = 0;

  // True while run() is wanted (the state is running).
  bool isRunning() const;
  // Sleeps for `duration` or until a stop request; true when stop was asked.
  bool waitForStopRequest(std::chrono::nanoseconds duration);

  // The forms of state(), requestStop() and the priority change for a caller
  // that holds `mutex_`.
  State stateLocked() const noexcept { return state_; }
  void requestStopLocked();
  bool changePriorityLocked(Priority priority);

  mutable std::mutex mutex_;
  std::condition_variable cond_;

 private:
  const std::string name_;
  State state_ = State::kIdle;
  std::thread thread_;
  // The running thread's own handle, for scheduling calls; valid while
  // `begun_` (from the start of the body until it ends).
  pthread_t nativeHandle_{};
  bool begun_ = false;
  int32_t currentPriority_ = -1;
  int32_t requestedPriority_ = -1;
  bool detached_ = false;
  // runAndEnd() is past its last use of the object (only for joinable threads).
  bool finished_ = false;
};

}  // namespace qta

#endif  // QTA_THREAD_QTA_THREAD_H_
