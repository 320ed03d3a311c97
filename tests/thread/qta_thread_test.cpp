#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "log/log_test_support.h"
#include "qta/errors/error.h"
#include "qta/log/log.h"
#include "qta/thread/qta_thread.h"
#include "thread/priority_scale.h"

namespace qta {
namespace {

using namespace std::chrono_literals;
using State = QTAThread::State;
using Priority = QTAThread::Priority;

// A worker whose body runs `body` once, then waits for a stop request.
class Worker : public QTAThread {
 public:
  explicit Worker(std::string name, std::function<void()> body = {})
      : QTAThread(std::move(name)), body_(std::move(body)) {}
  ~Worker() override { stopAndJoin(); }

  std::atomic<int> runs{0};

  // Holds the thread's lock, as run() and the Locked members expect.
  std::unique_lock<std::mutex> lock() { return std::unique_lock<std::mutex>(mutex_); }
  using QTAThread::changePriorityLocked;
  using QTAThread::requestStopLocked;
  using QTAThread::stateLocked;

 protected:
  void run() override {
    runs.fetch_add(1);
    if (body_) body_();
    while (!waitForStopRequest(1s)) {
    }
  }

 private:
  std::function<void()> body_;
};

TEST(ConcurrentQTAThread, RunsUntilStoppedThenJoinsToIdle) {
  Worker worker("worker");
  EXPECT_EQ(worker.state(), State::kIdle);
  worker.start();
  EXPECT_TRUE(worker.waitForStart(0us));
  EXPECT_TRUE(worker.waitForStart(1000us));
  EXPECT_EQ(worker.state(), State::kRunning);
  worker.stopAndJoin();
  EXPECT_EQ(worker.state(), State::kIdle);
  EXPECT_EQ(worker.runs.load(), 1);
  // Joined, it may start again.
  worker.start();
  EXPECT_TRUE(worker.waitForStart(0us));
  worker.stopAndJoin();
  EXPECT_EQ(worker.runs.load(), 2);
}

TEST(ConcurrentQTAThread, StopBeforeTheThreadBeginsSkipsRun) {
  // Whether the new thread has taken the lock when start() returns is up to
  // the scheduler; the rounds that find it still starting must skip run().
  int skipped = 0;
  for (int round = 0; round < 200 && skipped < 5; ++round) {
    Worker worker("early stop");
    worker.start();
    bool stoppedEarly;
    {
      auto lock = worker.lock();
      stoppedEarly = worker.stateLocked() == State::kStarting;
      worker.requestStopLocked();
    }
    if (!stoppedEarly) continue;
    ++skipped;
    EXPECT_TRUE(worker.waitForStart(0us));
    worker.join();
    EXPECT_EQ(worker.runs.load(), 0);
  }
  EXPECT_GT(skipped, 0) << "no round reached the thread before it began";
}

TEST(ConcurrentQTAThread, StateRulesThrowTheWrongStateError) {
  Worker worker("twice");
  worker.start();
  try {
    worker.start();
    FAIL() << "a second start() succeeded";
  } catch (const QTAError& e) {
    EXPECT_EQ(e.code(), 50u);
    EXPECT_STREQ(e.what(),
                 "The operation cannot be executed in the current state : "
                 "Thread 'twice' is already running");
  }
  worker.stopAndJoin();
  // A stop request before start() or after the end changes nothing.
  worker.requestStop();
  EXPECT_EQ(worker.state(), State::kIdle);
}

// Tells when its object is destroyed; run() returns once `release` is set.
class SelfDeleting : public QTAThread {
 public:
  SelfDeleting(std::atomic<bool>* destroyed, const std::atomic<bool>* release)
      : QTAThread("detached"), destroyed_(destroyed), release_(release) {}
  ~SelfDeleting() override { destroyed_->store(true); }

  using QTAThread::join;

 protected:
  void run() override {
    while (!release_->load()) std::this_thread::sleep_for(1ms);
  }

 private:
  std::atomic<bool>* destroyed_;
  const std::atomic<bool>* release_;
};

bool becomesTrue(const std::function<bool()>& condition) {
  for (int i = 0; i < 500 && !condition(); ++i) std::this_thread::sleep_for(10ms);
  return condition();
}

TEST(ConcurrentQTAThread, DetachedThreadDeletesItsObject) {
  // Detached while run() is still going: join() is refused, and the thread
  // deletes the object when run() returns.
  std::atomic<bool> destroyed{false}, release{false};
  auto* thread = new SelfDeleting(&destroyed, &release);
  thread->start();
  thread->detach();
  EXPECT_THROW(thread->join(), QTAError);
  release = true;
  EXPECT_TRUE(becomesTrue([&] { return destroyed.load(); }));

  // Detached after run() has returned: detach() deletes it.
  destroyed = false;
  thread = new SelfDeleting(&destroyed, &release);
  thread->start();
  EXPECT_TRUE(becomesTrue([&] { return thread->state() == State::kEnded; }));
  std::this_thread::sleep_for(20ms);
  thread->detach();
  EXPECT_TRUE(becomesTrue([&] { return destroyed.load(); }));
}

TEST(ConcurrentQTAThread, KernelNameIsCutTo15Bytes) {
  char kernelName[32] = {};
  Worker worker("twenty-byte-name-xyz", [&kernelName] {
    pthread_getname_np(pthread_self(), kernelName, sizeof kernelName);
  });
  worker.start();
  worker.waitForStart(0us);
  while (worker.runs.load() == 0) std::this_thread::yield();
  worker.stopAndJoin();
  EXPECT_STREQ(kernelName, "twenty-byte-nam");
  EXPECT_EQ(worker.name(), "twenty-byte-name-xyz");
}

TEST(QTAThreadPriority, StepsSpreadOverThePolicyRange) {
  const int kExpected[] = {1, 25, 50, 74, 99};
  for (int step = 0; step <= 4; ++step) {
    EXPECT_EQ(detail::scaledPriority(1, 99, step), kExpected[step]) << step;
  }
  EXPECT_EQ(detail::scaledPriority(0, 0, 4), 0);
}

TEST(QTAThreadPriority, ChangeWithoutARunningThreadFailsAndSaysWhy) {
  const log4cxx::LoggerPtr logger = qtalog::getLogger("utils.thread");
  const auto capture = std::make_shared<testing::CaptureAppender>();
  logger->addAppender(capture);
  Worker worker("never started");
  {
    const auto lock = worker.lock();
    EXPECT_FALSE(worker.changePriorityLocked(Priority::kHigh));
  }
  logger->removeAppender(capture);

  const auto events = capture->takeEvents();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]->getLevel(), log4cxx::Level::getError());
  EXPECT_EQ(events[0]->getMessage(), "failed to retrive thread's scheduling parameters");
}

// The policy and priority of the calling thread.
std::pair<int, int> ownScheduling() {
  int policy = 0;
  sched_param param{};
  pthread_getschedparam(pthread_self(), &policy, &param);
  return {policy, param.sched_priority};
}

TEST(ConcurrentQTAThread, OrdinaryThreadRecordsPrioritiesWithoutChange) {
  std::pair<int, int> seen;
  std::atomic<bool> looked{false};
  Worker worker("ordinary", [&] {
    seen = ownScheduling();
    looked = true;
  });
  EXPECT_TRUE(worker.setPriority(Priority::kHigh));  // delayed, then ignored
  worker.start();
  EXPECT_TRUE(becomesTrue([&] { return looked.load(); }));
  EXPECT_TRUE(worker.setPriority(Priority::kLowest));
  EXPECT_TRUE(worker.setPriority(Priority::kLowest));
  worker.stopAndJoin();
  EXPECT_EQ(seen.first, SCHED_OTHER);
}

// Runs `test` on a thread under SCHED_RR at its lowest priority, so that
// QTAThreads started there inherit the policy; skips when not permitted.
void onRoundRobinThread(const std::function<void()>& test) {
  int error = 0;
  std::thread([&] {
    sched_param param{};
    param.sched_priority = sched_get_priority_min(SCHED_RR);
    error = pthread_setschedparam(pthread_self(), SCHED_RR, &param);
    if (error == 0) test();
  }).join();
  if (error == EPERM) GTEST_SKIP() << "real-time scheduling is not permitted here (EPERM)";
  ASSERT_EQ(error, 0) << std::strerror(error);
}

TEST(ConcurrentQTAThread, PrioritiesOnARealTimeThread) {
  const int min = sched_get_priority_min(SCHED_RR), max = sched_get_priority_max(SCHED_RR);
  onRoundRobinThread([&] {
    // The worker and this thread take turns; blocking waits, since a
    // spinning real-time thread would starve the machine.
    std::promise<std::pair<int, int>> atStart, afterHigh, afterFifo;
    std::promise<void> highSet, fifoSet;
    Worker worker("realtime", [&] {
      atStart.set_value(ownScheduling());
      highSet.get_future().wait();
      afterHigh.set_value(ownScheduling());
      fifoSet.get_future().wait();
      afterFifo.set_value(ownScheduling());
    });
    // Delayed until the thread begins.
    EXPECT_TRUE(worker.setPriority(Priority::kHighest));
    worker.start();
    EXPECT_EQ(atStart.get_future().get(), std::make_pair(SCHED_RR, max));
    EXPECT_TRUE(worker.setPriority(Priority::kHigh));
    highSet.set_value();
    EXPECT_EQ(afterHigh.get_future().get(),
              std::make_pair(SCHED_RR, detail::scaledPriority(min, max, 3)));
    EXPECT_TRUE(worker.setPriority(Priority::kFifo));
    fifoSet.set_value();
    EXPECT_EQ(afterFifo.get_future().get(),
              std::make_pair(SCHED_FIFO, sched_get_priority_min(SCHED_FIFO)));
    worker.stopAndJoin();
  });
}

}  // namespace
}  // namespace qta
