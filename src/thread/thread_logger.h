// The logger of the thread module's diagnostics.
#ifndef QTA_SRC_THREAD_THREAD_LOGGER_H_
#define QTA_SRC_THREAD_THREAD_LOGGER_H_

#include "qta/log/log.h"

namespace qta::detail {

// "qta.utils.thread"; looked up once, since log4cxx keeps loggers for good.
inline const log4cxx::LoggerPtr& threadLogger() {
  static const log4cxx::LoggerPtr logger = qtalog::getLogger("utils.thread");
  return logger;
}

}  // namespace qta::detail

#endif  // QTA_SRC_THREAD_THREAD_LOGGER_H_
