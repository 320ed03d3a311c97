// qta/log/configure.h: installing a logging configuration, and re-opening
// every appender.
//
// A program calls startupConfigure() before anything else runs, then one of
// configureDefault(), configureFromINI() or configureFromXML(). Each replaces
// log4cxx's whole configuration. None of them lets a log4cxx exception out:
// a failure is written to standard error as one "ERROR: ..." line and the
// functions that report a result return false.
//
// The default configuration, relative to the working directory:
//   root            INFO; syslog (FATAL and above, facility DAEMON) and
//                   "log/player.log" (INFO and above, 30000KB, 1 backup)
//   qta.accounting  not additive; "log/accounting.log" (bare message text,
//                   8000KB, 1 backup)
//   qta.svglib.profiling  not additive and without appenders: silenced
//
// Ownership: the appenders and layouts belong to log4cxx's hierarchy.
// Threads: configuring while other threads log is as safe as log4cxx makes
// it; two configurations should not run at once. reset() may run at any time
// (the asynchronous reset handler calls it from its own thread).
#ifndef QTA_LOG_CONFIGURE_H_
#define QTA_LOG_CONFIGURE_H_

#include <string>

#include "qta/export.h"

namespace qta::qtalog {

// The first configuration: root at INFO with a console appender (standard
// error when `toStderr`, else standard output; "%p: %m%n" and FATAL only when
// `quiet`, else "%d{HH:mm:ss} %p: %m%n") and the syslog appender.
QTA_EXPORT void startupConfigure(bool toStderr, bool quiet);

// The default configuration above; creates the folder "log" when missing.
// Returns true on success.
QTA_EXPORT bool configureDefault();

// The configuration in the XML file at `path`; true on success.
QTA_EXPORT bool configureFromXML(const std::string& path);

// The configuration in the properties (INI) file at `path`; true on success.
QTA_EXPORT bool configureFromINI(const std::string& path);

// Re-activates every appender of the root logger and of every other logger,
// which makes file appenders close and re-open their files: a log file renamed
// by another process is then written anew under its configured name.
QTA_EXPORT void reset();

}  // namespace qta::qtalog

#endif  // QTA_LOG_CONFIGURE_H_
