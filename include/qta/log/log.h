// qta/log/log.h: the logging front end every module writes its messages with.
//
// Loggers are log4cxx loggers named "qta." plus the module path (loggerName,
// getLogger). The statement macros (QTA_LOG_INFO and its siblings) ask the
// logger whether the level is enabled before anything else, so a disabled
// statement costs one inline comparison and never builds its text; an enabled
// one streams its message into a log4cxx MessageBuffer and logs it with the
// bare source file name, the enclosing function's full signature and the line.
// qtalog_logger_log is the printf-style call for code that holds only a logger
// handle. No log4cxx exception leaves any of them: it is written to standard
// error as one "ERROR: ..." line instead.
//
// Ownership: loggers belong to log4cxx's hierarchy and are shared through
// LoggerPtr; nothing here keeps state of its own.
// Threads: every function and macro may be used from any number of threads at
// once, as log4cxx's loggers may.
#ifndef QTA_LOG_LOG_H_
#define QTA_LOG_LOG_H_

#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/spi/location/locationinfo.h>

#include <string>
#include <string_view>

#include "qta/export.h"

namespace qta::qtalog {

// The first part of every logger name of the library.
inline constexpr const char* kLoggerPrefix = "qta";

// "qta" and `modulePath` joined with exactly one "." ("utils.thread" and
// ".utils.thread" both give "qta.utils.thread"); just "qta" for an empty path.
QTA_EXPORT std::string loggerName(std::string_view modulePath);

// The logger named loggerName(modulePath).
QTA_EXPORT log4cxx::LoggerPtr getLogger(std::string_view modulePath);

// logger->forcedLog(level, message, location), with a log4cxx exception caught
// and written to standard error as "ERROR: log failed (TEXT)"; any other
// exception propagates. The statement macros end here.
QTA_EXPORT void forcedLog(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level,
                          const std::string& message, const log4cxx::spi::LocationInfo& location);
QTA_EXPORT void forcedLog(const log4cxx::LoggerPtr& logger, const log4cxx::LevelPtr& level,
                          const std::wstring& message, const log4cxx::spi::LocationInfo& location);

}  // namespace qta::qtalog

namespace qta {

// Logs the printf-style message at the log4cxx level number `level` (a
// log4cxx::Level::*_INT value) on `logger` (nothing happens when it is null or
// not enabled for the level), at the given file, function and line. The text
// is formatted into a 512-byte buffer: longer messages are cut to 511 bytes.
QTA_EXPORT void qtalog_logger_log(const log4cxx::LoggerPtr& logger, int level, const char* file,
                                  const char* function, int line, const char* format, ...)
    __attribute__((format(printf, 6, 7)));

}  // namespace qta

// The location of the statement: the file name without its directory, the
// enclosing function's full signature and the line.
#define QTA_LOG_LOCATION                                                                  \
  ::log4cxx::spi::LocationInfo(::log4cxx::spi::LocationInfo::calcShortFileName(__FILE__), \
                               ::log4cxx::spi::LocationInfo::calcShortFileName(__FILE__), \
                               __PRETTY_FUNCTION__, __LINE__)

// Builds `message` (anything that streams into an std::ostream, joined with
// <<) and logs it at `level` when `enabled` holds.
#define QTA_LOG_IF_ENABLED(enabled, logger, level, message)                                    \
  do {                                                                                         \
    if (enabled) {                                                                             \
      ::log4cxx::helpers::MessageBuffer qta_log_buffer_;                                       \
      ::qta::qtalog::forcedLog(logger, level, qta_log_buffer_.str(qta_log_buffer_ << message), \
                               QTA_LOG_LOCATION);                                              \
    }                                                                                          \
  } while (0)

// Statements at a fixed level; the level test is log4cxx's inline one.
#define QTA_LOG_DEBUG(logger, message)                                     \
  QTA_LOG_IF_ENABLED(::log4cxx::Logger::isDebugEnabledFor(logger), logger, \
                     ::log4cxx::Level::getDebug(), message)
#define QTA_LOG_INFO(logger, message)                                     \
  QTA_LOG_IF_ENABLED(::log4cxx::Logger::isInfoEnabledFor(logger), logger, \
                     ::log4cxx::Level::getInfo(), message)
#define QTA_LOG_WARN(logger, message)                                     \
  QTA_LOG_IF_ENABLED(::log4cxx::Logger::isWarnEnabledFor(logger), logger, \
                     ::log4cxx::Level::getWarn(), message)
#define QTA_LOG_ERROR(logger, message)                                     \
  QTA_LOG_IF_ENABLED(::log4cxx::Logger::isErrorEnabledFor(logger), logger, \
                     ::log4cxx::Level::getError(), message)
#define QTA_LOG_FATAL(logger, message)                                     \
  QTA_LOG_IF_ENABLED(::log4cxx::Logger::isFatalEnabledFor(logger), logger, \
                     ::log4cxx::Level::getFatal(), message)

// A statement at a level chosen at run time (a log4cxx::LevelPtr).
#define QTA_LOG(logger, level, message) \
  QTA_LOG_IF_ENABLED((logger) != nullptr && (logger)->isEnabledFor(level), logger, level, message)

#endif  // QTA_LOG_LOG_H_
