// Test support for code that logs: a working directory of its own that
// leaves log4cxx unconfigured, and an appender that keeps events.
#ifndef QTA_TESTS_LOG_LOG_TEST_SUPPORT_H_
#define QTA_TESTS_LOG_LOG_TEST_SUPPORT_H_

#include <gtest/gtest.h>
#include <log4cxx/appenderskeleton.h>
#include <log4cxx/logmanager.h>
#include <log4cxx/spi/loggingevent.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "log/scratch_directory.h"

namespace qta::testing {

// A scratch working directory that also leaves log4cxx unconfigured
// afterwards.
class LogDirectoryTest : public ScratchDirectoryTest {
 protected:
  void TearDown() override {
    log4cxx::LogManager::resetConfiguration();
    ScratchDirectoryTest::TearDown();
  }
};

// Keeps every event it is given, and counts its activations (a reset
// re-activates every appender).
class CaptureAppender : public log4cxx::AppenderSkeleton {
 public:
  void activateOptions(log4cxx::helpers::Pool&) override { activations.fetch_add(1); }
  void close() override {}
  bool requiresLayout() const override { return false; }

  std::vector<log4cxx::spi::LoggingEventPtr> takeEvents() {
    std::lock_guard<std::mutex> lock(eventsMutex_);
    return std::move(events_);
  }

  std::atomic<int> activations{0};

 protected:
  void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool&) override {
    std::lock_guard<std::mutex> lock(eventsMutex_);
    events_.push_back(event);
  }

 private:
  std::mutex eventsMutex_;
  std::vector<log4cxx::spi::LoggingEventPtr> events_;
};

}  // namespace qta::testing

#endif  // QTA_TESTS_LOG_LOG_TEST_SUPPORT_H_
