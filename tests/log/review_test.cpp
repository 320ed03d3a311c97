#include <gtest/gtest.h>
#include <log4cxx/net/syslogappender.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/rolling/rollingfileappender.h>

#include <string>

#include "log/log_test_support.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"

namespace qta {
namespace {

using log4cxx::Level;
using log4cxx::Logger;
using log4cxx::rolling::RollingFileAppender;

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

using DefaultConfiguration = testing::LogDirectoryTest;

TEST_F(DefaultConfiguration, AppendersCarryTheirSizesBackupsAndThresholds) {
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

TEST_F(DefaultConfiguration, StartupSyslogMatchesTheDefaultOne) {
  for (const bool quiet : {false, true}) {
    qtalog::startupConfigure(false, quiet);
    expectRootSyslog();
  }
}

}  // namespace
}  // namespace qta
