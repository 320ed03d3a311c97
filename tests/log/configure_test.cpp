#include <gtest/gtest.h>
#include <log4cxx/net/syslogappender.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/rolling/rollingfileappender.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "log/log_test_support.h"
#include "log/text_shape.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"

namespace qta {
namespace {

using log4cxx::Level;
using log4cxx::Logger;
using log4cxx::rolling::RollingFileAppender;
using testing::kPlayerStamp;
using testing::matchesShape;
using testing::readFile;
using testing::readLines;

std::string patternOf(const log4cxx::AppenderPtr& appender) {
  const auto layout = log4cxx::cast<log4cxx::PatternLayout>(appender->getLayout());
  return layout != nullptr ? layout->getConversionPattern() : "";
}

// The appender of `logger` of type T; null when it has none or several.
template <typename T>
std::shared_ptr<T> onlyAppenderOf(const log4cxx::LoggerPtr& logger) {
  std::shared_ptr<T> found;
  for (const log4cxx::AppenderPtr& appender : logger->getAllAppenders()) {
    if (auto typed = log4cxx::cast<T>(appender)) {
      if (found != nullptr) return nullptr;
      found = typed;
    }
  }
  return found;
}

// The syslog appender every configuration puts on the root logger.
void expectRootSyslog() {
  const auto syslog = onlyAppenderOf<log4cxx::net::SyslogAppender>(Logger::getRootLogger());
  ASSERT_NE(syslog, nullptr);
  EXPECT_EQ(syslog->getFacility(), "daemon");
  EXPECT_EQ(syslog->getThreshold(), Level::getFatal());
  EXPECT_EQ(patternOf(syslog), "%-5p %-20c - %m%n");
}

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

bool configureDefault(const std::string&) { return qtalog::configureDefault(); }

// The ways to configure, in the order the test below uses them; each reports
// its success on the player log under its own name.
const struct {
  const char* name;
  bool (*configure)(const std::string&);
  const char* example;  // the example file it reads, in examples/
} kForms[] = {
    {"configureDefault", configureDefault, nullptr},
    {"configureFromINI", qtalog::configureFromINI, "log4cxx.properties"},
    {"configureFromXML", qtalog::configureFromXML, "log4cxx.xml"},
    {"configureDefault", configureDefault, nullptr},
};

using LogConfigure = testing::LogDirectoryTest;

// Every form writes the same player and accounting files (the first one
// making the directory), appending to what the one before left; the examples
// also let the thread module's DEBUG messages through.
TEST_F(LogConfigure, DefaultAndExampleFilesWriteTheSameFiles) {
  std::string accounting;
  for (const auto& form : kForms) {
    SCOPED_TRACE(form.name);
    const std::string example = form.example ? form.example : "";
    ASSERT_TRUE(form.configure(QTA_SOURCE_DIR "/examples/" + example));
    logOneOfEach();
    QTA_LOG_DEBUG(qtalog::getLogger("utils.thread"), "thread detail");
    log4cxx::LogManager::resetConfiguration();

    std::vector<std::string> expected = {
        playerLine("INFO  qta.utils           ", std::string("Logs ") + form.name + "() sucess"),
        playerLine("WARN  qta.device          ", "no serial")};
    if (form.example) {
      expected.push_back(playerLine("DEBUG qta.utils.thread    ", "thread detail"));
    }
    const std::vector<std::string> player = readLines("log/player.log");
    ASSERT_EQ(player.size(), expected.size()) << readFile("log/player.log");
    for (size_t i = 0; i < player.size(); ++i) {
      EXPECT_TRUE(matchesShape(player[i], expected[i])) << player[i];
    }
    accounting += "sale 1 EUR 2.50\n";
    EXPECT_EQ(readFile("log/accounting.log"), accounting);
    std::filesystem::remove("log/player.log");
  }
}

TEST_F(LogConfigure, DefaultAppendersCarryTheirSizesBackupsAndThresholds) {
  ASSERT_TRUE(qtalog::configureDefault());
  EXPECT_EQ(Logger::getRootLogger()->getLevel(), Level::getInfo());
  EXPECT_EQ(Logger::getRootLogger()->getAllAppenders().size(), 2u);
  expectRootSyslog();

  const struct {
    log4cxx::LoggerPtr logger;
    bool additive;
    const char* file;
    const char* pattern;
    size_t maxBytes;
    log4cxx::LevelPtr threshold;
  } kFiles[] = {
      {Logger::getRootLogger(), true, "log/player.log", "%d{dd-MM-y HH:mm:ss} %-5p %-20c - %m%n",
       30000 * 1024, Level::getInfo()},
      {qtalog::getLogger("accounting"), false, "log/accounting.log", "%m%n", 8000 * 1024,
       Level::getAll()},
  };
  for (const auto& expected : kFiles) {
    SCOPED_TRACE(expected.file);
    EXPECT_EQ(expected.logger->getAdditivity(), expected.additive);
    const auto file = onlyAppenderOf<RollingFileAppender>(expected.logger);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->getFile(), expected.file);
    EXPECT_TRUE(file->getAppend());
    EXPECT_EQ(file->getMaxBackupIndex(), 1);
    EXPECT_EQ(file->getMaximumFileSize(), expected.maxBytes);
    EXPECT_EQ(file->getThreshold(), expected.threshold);
    EXPECT_EQ(patternOf(file), expected.pattern);
  }

  const log4cxx::LoggerPtr profiling = qtalog::getLogger("svglib.profiling");
  EXPECT_FALSE(profiling->getAdditivity());
  EXPECT_TRUE(profiling->getAllAppenders().empty());
}

TEST_F(LogConfigure, UnreadableFilesAreReportedAndRefused) {
  for (const auto& form : kForms) {
    if (!form.example) continue;
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(form.configure("missing.conf"));
    const std::string error =
        std::string("ERROR: qtalog::") + form.name + "() failed with exception '";
    EXPECT_NE(::testing::internal::GetCapturedStderr().find(error), std::string::npos) << error;
  }
}

TEST_F(LogConfigure, StartupConsoleLayoutsAndSyslog) {
  const log4cxx::LoggerPtr logger = qtalog::getLogger("tests.startup");
  qtalog::startupConfigure(true, false);
  expectRootSyslog();
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
  expectRootSyslog();
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
