#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "log/log_test_support.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"
#include "qta/logreset/async_reset_handler.h"

namespace qta {
namespace {

using namespace std::chrono_literals;
using qtalog::AsyncResetHandler;
using testing::readLines;

bool becomesTrue(const std::function<bool()>& condition) {
  for (int i = 0; i < 1000 && !condition(); ++i) std::this_thread::sleep_for(5ms);
  return condition();
}

using ConcurrentAsyncResetHandler = testing::LogDirectoryTest;

TEST_F(ConcurrentAsyncResetHandler, RequestsBeforeTheReadMakeOneReset) {
  const auto counter = std::make_shared<testing::CaptureAppender>();
  log4cxx::Logger::getRootLogger()->addAppender(counter);
  {
    AsyncResetHandler handler;
    ASSERT_TRUE(handler.hasPipe());
    handler.requestReset();
    handler.requestSignalReset();
    handler.send(AsyncResetHandler::kReset);
    handler.start();
    EXPECT_TRUE(becomesTrue([&] { return counter->activations.load() == 1; }));
    handler.send(AsyncResetHandler::kWake);
    handler.requestReset();
    EXPECT_TRUE(becomesTrue([&] { return counter->activations.load() == 2; }));
    std::this_thread::sleep_for(50ms);
  }
  EXPECT_EQ(counter->activations.load(), 2);
  // A handler that never started goes away quietly too.
  AsyncResetHandler idle;
}

AsyncResetHandler* hangUpHandler = nullptr;

void onHangUp(int) { hangUpHandler->requestSignalReset(); }

// Several threads log numbered lines to the player log; meanwhile the file is
// renamed, as a log rotation outside the process does, and a reset is
// requested (`request`). Every line must end up in exactly one of the two
// files, and the lines after the reset in the new one.
void rotateWhileLogging(AsyncResetHandler& handler, const std::function<void()>& request) {
  ASSERT_TRUE(qtalog::configureDefault());
  handler.start();
  constexpr int kThreads = 3, kLines = 1500;
  const log4cxx::LoggerPtr logger = qtalog::getLogger("tests.rotation");
  std::atomic<int> logged{0};
  std::atomic<bool> reopened{false};
  std::vector<std::thread> writers;
  for (int t = 0; t < kThreads; ++t) {
    writers.emplace_back([&, t] {
      for (int i = 0; i < kLines; ++i) {
        if (i == kLines * 3 / 4) {
          while (!reopened.load()) std::this_thread::sleep_for(1ms);
        }
        QTA_LOG_INFO(logger, "line " << t << ' ' << i);
        logged.fetch_add(1);
      }
    });
  }
  while (logged.load() < kThreads * kLines / 4) std::this_thread::sleep_for(1ms);
  std::filesystem::rename("log/player.log", "log/player.log.rotated");
  request();
  EXPECT_TRUE(becomesTrue([] { return std::filesystem::exists("log/player.log"); }));
  reopened = true;
  for (std::thread& writer : writers) writer.join();

  std::map<std::pair<int, int>, int> seen;
  int linesInNewFile = 0;
  for (const char* file : {"log/player.log.rotated", "log/player.log"}) {
    for (const std::string& line : readLines(file)) {
      const size_t at = line.find(" - line ");
      int t = -1, i = -1;
      if (at == std::string::npos || std::sscanf(line.c_str() + at, " - line %d %d", &t, &i) != 2) {
        continue;
      }
      ++seen[{t, i}];
      linesInNewFile += file == std::string("log/player.log");
    }
  }
  ASSERT_EQ(seen.size(), size_t{kThreads * kLines});
  for (const auto& [line, count] : seen) {
    EXPECT_EQ(count, 1) << "line " << line.first << ' ' << line.second;
  }
  EXPECT_GE(linesInNewFile, kThreads * (kLines - kLines * 3 / 4));
}

TEST_F(ConcurrentAsyncResetHandler, RotationLosesAndDoublesNoLine) {
  AsyncResetHandler handler;
  rotateWhileLogging(handler, [&handler] { handler.requestReset(); });
}

TEST_F(ConcurrentAsyncResetHandler, RotationRequestedFromASignalHandler) {
  AsyncResetHandler handler;
  hangUpHandler = &handler;
  struct sigaction action = {}, previous = {};
  action.sa_handler = onHangUp;
  sigemptyset(&action.sa_mask);
  ASSERT_EQ(sigaction(SIGHUP, &action, &previous), 0);
  rotateWhileLogging(handler, [] { kill(getpid(), SIGHUP); });
  sigaction(SIGHUP, &previous, nullptr);
  hangUpHandler = nullptr;
}

}  // namespace
}  // namespace qta
