#include "qta/log/configure.h"

#include <apr_file_info.h>
#include <apr_file_io.h>
#include <log4cxx/consoleappender.h>
#include <log4cxx/file.h>
#include <log4cxx/helpers/pool.h>
#include <log4cxx/logmanager.h>
#include <log4cxx/net/syslogappender.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/propertyconfigurator.h>
#include <log4cxx/rolling/rollingfileappender.h>
#include <log4cxx/xml/domconfigurator.h>

#include <cstdio>
#include <exception>
#include <memory>

#include "qta/log/log.h"
#include "qta/pools/apr_pool.h"

namespace qta::qtalog {
namespace {

using log4cxx::Level;
using log4cxx::Logger;
using log4cxx::PatternLayout;

constexpr const char* kPlayerPattern = "%d{dd-MM-y HH:mm:ss} %-5p %-20c - %m%n";
constexpr const char* kSyslogPattern = "%-5p %-20c - %m%n";
constexpr const char* kAccountingPattern = "%m%n";
constexpr const char* kConsolePattern = "%d{HH:mm:ss} %p: %m%n";
constexpr const char* kQuietConsolePattern = "%p: %m%n";

// Starts from an empty hierarchy with the root logger at INFO.
void resetToRootAtInfo() {
  log4cxx::LogManager::resetConfiguration();
  Logger::getRootLogger()->setLevel(Level::getInfo());
}

// The syslog appender of every configuration: FATAL and above, facility DAEMON.
log4cxx::AppenderPtr makeSyslogAppender() {
  auto syslog = std::make_shared<log4cxx::net::SyslogAppender>();
  syslog->setLayout(std::make_shared<PatternLayout>(kSyslogPattern));
  syslog->setFacility("DAEMON");
  syslog->setThreshold(Level::getFatal());
  log4cxx::helpers::Pool pool;
  syslog->activateOptions(pool);
  return syslog;
}

// A rolling file appender that appends to `path` and keeps one backup.
std::shared_ptr<log4cxx::rolling::RollingFileAppender> makeRollingFile(const char* pattern,
                                                                       const char* path,
                                                                       const char* maxSize) {
  auto file = std::make_shared<log4cxx::rolling::RollingFileAppender>();
  file->setLayout(std::make_shared<PatternLayout>(pattern));
  file->setFile(path);
  file->setAppend(true);
  file->setMaxBackupIndex(1);
  file->setMaxFileSize(maxSize);
  return file;
}

void makeLogFolder() {
  APRPool pool("qtalog::configureDefault");
  apr_dir_make_recursive("log", APR_OS_DEFAULT, pool.handle());
}

// Runs a configurator; true when it applied the file. A file it could not
// apply is reported like an exception, under `function`'s name.
template <typename Configure>
bool configureFromFile(const char* function, const std::string& path, Configure configure) {
  try {
    if (configure() != log4cxx::spi::ConfigurationStatus::Configured) {
      std::fprintf(stderr, "ERROR: qtalog::%s() failed with exception '%s'\n", function,
                   ("no configuration applied from " + path).c_str());
      return false;
    }
    return true;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ERROR: qtalog::%s() failed with exception '%s'\n", function, e.what());
    return false;
  }
}

}  // namespace

void startupConfigure(bool toStderr, bool quiet) {
  try {
    resetToRootAtInfo();
    auto console = std::make_shared<log4cxx::ConsoleAppender>(
        std::make_shared<PatternLayout>(quiet ? kQuietConsolePattern : kConsolePattern),
        toStderr ? log4cxx::ConsoleAppender::getSystemErr()
                 : log4cxx::ConsoleAppender::getSystemOut());
    if (quiet) console->setThreshold(Level::getFatal());
    const log4cxx::LoggerPtr root = Logger::getRootLogger();
    root->addAppender(console);
    root->addAppender(makeSyslogAppender());
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ERROR: qtalog::startupConfigure() failed with exception '%s'\n",
                 e.what());
  }
}

bool configureDefault() {
  try {
    resetToRootAtInfo();
    makeLogFolder();
    log4cxx::helpers::Pool pool;

    Logger::getLogger(loggerName("svglib.profiling"))->setAdditivity(false);
    const log4cxx::LoggerPtr root = Logger::getRootLogger();
    root->addAppender(makeSyslogAppender());

    auto accounting = makeRollingFile(kAccountingPattern, "log/accounting.log", "8000KB");
    accounting->activateOptions(pool);
    const log4cxx::LoggerPtr accountingLogger = Logger::getLogger(loggerName("accounting"));
    accountingLogger->setAdditivity(false);
    accountingLogger->addAppender(accounting);

    auto player = makeRollingFile(kPlayerPattern, "log/player.log", "30000KB");
    player->setOption("Threshold", "info");
    player->activateOptions(pool);
    root->addAppender(player);

    QTA_LOG_INFO(getLogger("utils"), "Logs configureDefault() sucess");
    return true;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ERROR: log::configureDefault() failed with exception '%s'\n", e.what());
    return false;
  }
}

bool configureFromXML(const std::string& path) {
  const bool configured = configureFromFile(
      "configureFromXML", path, [&] { return log4cxx::xml::DOMConfigurator::configure(path); });
  if (configured) QTA_LOG_INFO(getLogger("utils"), "Logs configureFromXML() sucess");
  return configured;
}

bool configureFromINI(const std::string& path) {
  const bool configured = configureFromFile("configureFromINI", path, [&] {
    return log4cxx::PropertyConfigurator::configure(log4cxx::File(path));
  });
  if (configured) QTA_LOG_INFO(getLogger("utils"), "Logs configureFromINI() sucess");
  return configured;
}

void reset() {
  try {
    log4cxx::helpers::Pool pool;
    const auto activateAppenders = [&pool](const log4cxx::LoggerPtr& logger) {
      for (const log4cxx::AppenderPtr& appender : logger->getAllAppenders()) {
        appender->activateOptions(pool);
      }
    };
    activateAppenders(Logger::getRootLogger());
    for (const log4cxx::LoggerPtr& logger : log4cxx::LogManager::getCurrentLoggers()) {
      activateAppenders(logger);
    }
  } catch (const std::exception& e) {
    std::fprintf(stderr, "ERROR: qtalog::reset() failed (%s)\n", e.what());
  }
}

}  // namespace qta::qtalog
