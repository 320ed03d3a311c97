#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "log/log_test_support.h"
#include "log/text_shape.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"

namespace qta {
namespace {

using testing::kPlayerStamp;
using testing::matchesShape;
using testing::readFile;
using testing::readLines;

// A player-log line: the time stamp, the level in 5 columns, the logger in 20,
// " - " and the message.
std::string playerLine(const std::string& levelAndLogger, const std::string& message) {
  return std::string(kPlayerStamp) + levelAndLogger + " - " + message;
}

// Logs one message of each kind the configurations treat differently.
void logOneOfEach() {
  QTA_LOG_INFO(qtalog::getLogger("accounting"), "sale 1 EUR 2.50");
  QTA_LOG_WARN(qtalog::getLogger("device"), "no serial");
  QTA_LOG_DEBUG(qtalog::getLogger("device"), "not at DEBUG");
  QTA_LOG_ERROR(qtalog::getLogger("svglib.profiling"), "silenced");
}

using LogConfigure = testing::LogDirectoryTest;

TEST_F(LogConfigure, DefaultWritesThePlayerAndAccountingFiles) {
  ASSERT_TRUE(qtalog::configureDefault());
  logOneOfEach();

  const std::vector<std::string> player = readLines("log/player.log");
  ASSERT_EQ(player.size(), 2u) << readFile("log/player.log");
  EXPECT_TRUE(matchesShape(
      player[0], playerLine("INFO  qta.utils           ", "Logs configureDefault() sucess")))
      << player[0];
  EXPECT_TRUE(matchesShape(player[1], playerLine("WARN  qta.device          ", "no serial")))
      << player[1];
  EXPECT_EQ(readFile("log/accounting.log"), "sale 1 EUR 2.50\n");
}

TEST_F(LogConfigure, DefaultAppendsToExistingFiles) {
  std::filesystem::create_directory("log");
  { std::ofstream("log/accounting.log") << "earlier\n"; }
  ASSERT_TRUE(qtalog::configureDefault());
  logOneOfEach();
  EXPECT_EQ(readFile("log/accounting.log"), "earlier\nsale 1 EUR 2.50\n");
}

// The example configurations write the same files as the default one, and
// let the thread module's DEBUG messages through.
TEST_F(LogConfigure, ExampleFilesInBothForms) {
  const struct {
    const char* file;
    bool (*configure)(const std::string&);
    const char* success;
  } kForms[] = {
      {"log4cxx.properties", qtalog::configureFromINI, "Logs configureFromINI() sucess"},
      {"log4cxx.xml", qtalog::configureFromXML, "Logs configureFromXML() sucess"},
  };
  std::filesystem::create_directory("log");
  for (const auto& form : kForms) {
    SCOPED_TRACE(form.file);
    ASSERT_TRUE(form.configure(std::string(QTA_SOURCE_DIR "/examples/") + form.file));
    logOneOfEach();
    QTA_LOG_DEBUG(qtalog::getLogger("utils.thread"), "thread detail");
    log4cxx::LogManager::resetConfiguration();

    const std::vector<std::string> player = readLines("log/player.log");
    ASSERT_EQ(player.size(), 3u) << readFile("log/player.log");
    EXPECT_TRUE(matchesShape(player[0], playerLine("INFO  qta.utils           ", form.success)))
        << player[0];
    EXPECT_TRUE(matchesShape(player[1], playerLine("WARN  qta.device          ", "no serial")));
    EXPECT_TRUE(matchesShape(player[2], playerLine("DEBUG qta.utils.thread    ", "thread detail")));
    EXPECT_EQ(readFile("log/accounting.log"), "sale 1 EUR 2.50\n");
    std::filesystem::remove("log/player.log");
    std::filesystem::remove("log/accounting.log");
  }
}

TEST_F(LogConfigure, UnreadableFilesAreReportedAndRefused) {
  const struct {
    bool (*configure)(const std::string&);
    const char* error;
  } kForms[] = {
      {qtalog::configureFromINI, "ERROR: qtalog::configureFromINI() failed with exception '"},
      {qtalog::configureFromXML, "ERROR: qtalog::configureFromXML() failed with exception '"},
  };
  for (const auto& form : kForms) {
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(form.configure("missing.conf"));
    EXPECT_NE(::testing::internal::GetCapturedStderr().find(form.error), std::string::npos)
        << form.error;
  }
}

TEST_F(LogConfigure, StartupConsoleLayouts) {
  const log4cxx::LoggerPtr logger = qtalog::getLogger("tests.startup");
  qtalog::startupConfigure(true, false);
  ::testing::internal::CaptureStderr();
  QTA_LOG_INFO(logger, "hello");
  QTA_LOG_DEBUG(logger, "below INFO");
  EXPECT_TRUE(matchesShape(::testing::internal::GetCapturedStderr(), "##:##:## INFO: hello\n"));

  qtalog::startupConfigure(false, false);
  ::testing::internal::CaptureStdout();
  QTA_LOG_WARN(logger, "to stdout");
  EXPECT_TRUE(matchesShape(::testing::internal::GetCapturedStdout(), "##:##:## WARN: to stdout\n"));

  // Quiet lets FATAL through only (which syslog also receives).
  qtalog::startupConfigure(true, true);
  ::testing::internal::CaptureStderr();
  QTA_LOG_ERROR(logger, "held back");
  QTA_LOG_FATAL(logger, "qta test: quiet startup passes FATAL");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "FATAL: qta test: quiet startup passes FATAL\n");
}

TEST_F(LogConfigure, ResetReopensARenamedFile) {
  ASSERT_TRUE(qtalog::configureDefault());
  QTA_LOG_INFO(qtalog::getLogger("accounting"), "before");
  std::filesystem::rename("log/accounting.log", "log/accounting.log.old");
  QTA_LOG_INFO(qtalog::getLogger("accounting"), "still old");
  qtalog::reset();
  QTA_LOG_INFO(qtalog::getLogger("accounting"), "after");
  EXPECT_EQ(readFile("log/accounting.log.old"), "before\nstill old\n");
  EXPECT_EQ(readFile("log/accounting.log"), "after\n");
}

}  // namespace
}  // namespace qta
