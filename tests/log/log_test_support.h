// Test support for code that logs: a working directory of its own, an
// appender that keeps events, and file reading.
#ifndef QTA_TESTS_LOG_LOG_TEST_SUPPORT_H_
#define QTA_TESTS_LOG_LOG_TEST_SUPPORT_H_

#include <gtest/gtest.h>
#include <log4cxx/appenderskeleton.h>
#include <log4cxx/logmanager.h>
#include <log4cxx/spi/loggingevent.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

namespace qta::testing {

// Runs each test in a fresh temporary working directory (log files land in
// "log/" there) and leaves log4cxx unconfigured afterwards.
class LogDirectoryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "qta-log-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(directory_);
  }
  void TearDown() override {
    log4cxx::LogManager::resetConfiguration();
    std::filesystem::current_path(previous_);
    std::filesystem::remove_all(directory_);
  }

  std::filesystem::path directory_;
  std::filesystem::path previous_;
};

// The whole file; empty when it does not exist.
inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The file's lines, without their line breaks.
inline std::vector<std::string> readLines(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

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
