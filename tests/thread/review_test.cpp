#include <gtest/gtest.h>

#include <memory>
#include <mutex>

#include "log/log_test_support.h"
#include "qta/log/log.h"
#include "qta/thread/qta_thread.h"

namespace qta {
namespace {

using Priority = QTAThread::Priority;

// A thread that is never started, whose priority is changed as a subclass
// would, under the lock.
class NeverStarted : public QTAThread {
 public:
  NeverStarted() : QTAThread("never started") {}

  bool changePriority(Priority priority) {
    std::lock_guard<std::mutex> lock(mutex_);
    return changePriorityLocked(priority);
  }

 protected:
  void run() override {}
};

TEST(QTAThreadPriorityChange, WithoutARunningThreadFailsAndSaysWhy) {
  const log4cxx::LoggerPtr logger = qtalog::getLogger("utils.thread");
  const auto capture = std::make_shared<testing::CaptureAppender>();
  logger->addAppender(capture);
  NeverStarted thread;
  EXPECT_FALSE(thread.changePriority(Priority::kHigh));
  logger->removeAppender(capture);

  const auto events = capture->takeEvents();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]->getLevel(), log4cxx::Level::getError());
  EXPECT_EQ(events[0]->getMessage(), "failed to retrive thread's scheduling parameters");
}

}  // namespace
}  // namespace qta
