#include <gtest/gtest.h>
#include <log4cxx/helpers/exception.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "log/log_test_support.h"
#include "qta/log/log.h"

namespace qta {
namespace {

using log4cxx::Level;
using testing::CaptureAppender;

TEST(LogFrontEnd, LoggerNamesJoinThePrefixWithOneDot) {
  const struct {
    const char* path;
    const char* name;
  } kCases[] = {
      {"utils", "qta.utils"},
      {"utils.thread", "qta.utils.thread"},
      {".accounting", "qta.accounting"},
      {"", "qta"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(qtalog::loggerName(c.path), c.name) << c.path;
    EXPECT_EQ(qtalog::getLogger(c.path)->getName(), c.name) << c.path;
  }
}

// A logger of its own with a capturing appender, at INFO.
class LogStatementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    logger_->removeAllAppenders();
    logger_->setAdditivity(false);
    logger_->setLevel(Level::getInfo());
    logger_->addAppender(capture_);
  }
  void TearDown() override { logger_->removeAllAppenders(); }

  const log4cxx::LoggerPtr logger_ = qtalog::getLogger("tests.frontend");
  const std::shared_ptr<CaptureAppender> capture_ = std::make_shared<CaptureAppender>();
};

TEST_F(LogStatementTest, EnabledStatementCarriesTextAndLocation) {
  const int line = __LINE__ + 1;
  QTA_LOG_WARN(logger_, "value " << 42 << ' ' << 2.5);
  const auto events = capture_->takeEvents();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]->getMessage(), "value 42 2.5");
  EXPECT_EQ(events[0]->getLevel(), Level::getWarn());
  const auto& location = events[0]->getLocationInformation();
  EXPECT_STREQ(location.getFileName(), "front_end_test.cpp");
  EXPECT_STREQ(location.getShortFileName(), "front_end_test.cpp");
  EXPECT_EQ(location.getLineNumber(), line);
  EXPECT_EQ(location.getMethodName(), "TestBody");
  EXPECT_NE(location.getClassName().find("EnabledStatementCarriesTextAndLocation"),
            std::string::npos)
      << location.getClassName();
}

TEST_F(LogStatementTest, DisabledStatementNeverBuildsItsText) {
  int built = 0;
  const auto text = [&built] {
    ++built;
    return "text";
  };
  QTA_LOG_DEBUG(logger_, text());
  QTA_LOG(logger_, Level::getDebug(), text());
  QTA_LOG_INFO(log4cxx::LoggerPtr(), text());
  EXPECT_EQ(built, 0);
  QTA_LOG(logger_, Level::getError(), text());
  QTA_LOG_FATAL(logger_, L"wide " << 7);
  const auto events = capture_->takeEvents();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(built, 1);
  EXPECT_EQ(events[0]->getLevel(), Level::getError());
  EXPECT_EQ(events[1]->getMessage(), "wide 7");
}

TEST_F(LogStatementTest, PrintfCallFormatsIntoA512ByteBuffer) {
  const std::string longText(600, 'x');
  qtalog_logger_log(logger_, Level::INFO_INT, "dir/file.cpp", "void f(int)", 12, "n=%d %s", 5,
                    "five");
  qtalog_logger_log(logger_, Level::ERROR_INT, "file.cpp", "f", 1, "%s", longText.c_str());
  qtalog_logger_log(logger_, Level::DEBUG_INT, "file.cpp", "f", 1, "disabled");
  qtalog_logger_log(nullptr, Level::FATAL_INT, "file.cpp", "f", 1, "no logger");
  qtalog_logger_log(logger_, Level::INFO_INT, nullptr, nullptr, 0, "no location");
  const auto events = capture_->takeEvents();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0]->getMessage(), "n=5 five");
  EXPECT_STREQ(events[0]->getLocationInformation().getShortFileName(), "file.cpp");
  EXPECT_EQ(events[0]->getLocationInformation().getMethodName(), "f");
  EXPECT_EQ(events[0]->getLocationInformation().getLineNumber(), 12);
  EXPECT_EQ(events[1]->getMessage(), longText.substr(0, 511));
  EXPECT_EQ(events[1]->getLevel(), Level::getError());
  EXPECT_EQ(events[2]->getMessage(), "no location");
}

// An appender that fails with a log4cxx exception, or with another one.
class ThrowingAppender : public CaptureAppender {
 public:
  explicit ThrowingAppender(bool log4cxxError) : log4cxxError_(log4cxxError) {}

 protected:
  void append(const log4cxx::spi::LoggingEventPtr&, log4cxx::helpers::Pool&) override {
    if (log4cxxError_) throw log4cxx::helpers::RuntimeException("appender broke");
    throw std::logic_error("not a log4cxx error");
  }

 private:
  bool log4cxxError_;
};

TEST_F(LogStatementTest, Log4cxxFailuresGoToStandardError) {
  logger_->removeAllAppenders();
  logger_->addAppender(std::make_shared<ThrowingAppender>(true));
  ::testing::internal::CaptureStderr();
  QTA_LOG_INFO(logger_, "lost");
  QTA_LOG_INFO(logger_, L"lost");
  qtalog_logger_log(logger_, Level::INFO_INT, "file.cpp", "f", 1, "lost");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "ERROR: log failed (appender broke)\n"
            "ERROR: log failed (appender broke)\n"
            "ERROR: qtalog_logger_log() failed with exception 'appender broke'\n");

  logger_->removeAllAppenders();
  logger_->addAppender(std::make_shared<ThrowingAppender>(false));
  EXPECT_THROW(QTA_LOG_INFO(logger_, "escapes"), std::logic_error);
}

}  // namespace
}  // namespace qta
