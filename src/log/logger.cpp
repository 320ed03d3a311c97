#include <log4cxx/helpers/exception.h>

#include <cstdarg>
#include <cstdio>

#include "qta/log/log.h"

namespace qta::qtalog {
namespace {

template <typename Text>
void forcedLogOrReport(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level,
                       const Text& message, const log4cxx::spi::LocationInfo& location) {
  try {
    logger->forcedLog(level, message, location);
  } catch (const log4cxx::helpers::Exception& e) {
    std::fprintf(stderr, "ERROR: log failed (%s)\n", e.what());
  }
}

}  // namespace

std::string loggerName(std::string_view modulePath) {
  while (!modulePath.empty() && modulePath.front() == '.') modulePath.remove_prefix(1);
  std::string name = kLoggerPrefix;
  if (!modulePath.empty()) {
    name += '.';
    name += modulePath;
  }
  return name;
}

log4cxx::LoggerPtr getLogger(std::string_view modulePath) {
  return log4cxx::Logger::getLogger(loggerName(modulePath));
}

void forcedLog(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level,
               const std::string& message, const log4cxx::spi::LocationInfo& location) {
  forcedLogOrReport(logger, level, message, location);
}

void forcedLog(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level,
               const std::wstring& message, const log4cxx::spi::LocationInfo& location) {
  forcedLogOrReport(logger, level, message, location);
}

}  // namespace qta::qtalog

namespace qta {

void qtalog_logger_log(const log4cxx::LoggerPtr& logger, int level, const char* file,
                       const char* function, int line, const char* format, ...) {
  try {
    const log4cxx::LevelPtr levelPtr = log4cxx::Level::toLevel(level);
    if (logger == nullptr || !logger->isEnabledFor(levelPtr)) return;
    // The message is cut to fit; vsnprintf always ends it with a zero.
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    const char* fileName =
        file != nullptr ? log4cxx::spi::LocationInfo::calcShortFileName(file) : "";
    logger->forcedLog(
        levelPtr, std::string(text),
        log4cxx::spi::LocationInfo(fileName, fileName, function != nullptr ? function : "", line));
  } catch (const log4cxx::helpers::Exception& e) {
    std::fprintf(stderr, "ERROR: qtalog_logger_log() failed with exception '%s'\n", e.what());
  }
}

}  // namespace qta
