// qta/logreset/async_reset_handler.h: re-opens every log appender on request,
// on a thread of its own, so that log files can be rotated outside the
// process.
//
// The handler is a QTAThread named "AsyncResetHandler" that reads one-byte
// commands from a pipe: bytes 1 and 2 ask for qtalog::reset(), byte 0 only
// wakes the thread. Requests that arrive before the thread reads them are
// served by one reset. The triggers only write one byte to the non-blocking
// pipe, so they may be called from any thread and from a signal handler; the
// files are re-opened on the handler's thread, never on the caller's. Without
// a pipe (it could not be created) the triggers do nothing.
//
// Ownership: the handler owns its pool, its pipe and its thread; the caller
// starts it with start() and destroys it, which stops and joins the thread.
// Threads: the triggers are safe from anywhere as long as the handler exists;
// start() and destruction belong to the owner.
#ifndef QTA_LOGRESET_ASYNC_RESET_HANDLER_H_
#define QTA_LOGRESET_ASYNC_RESET_HANDLER_H_

#include <apr_file_io.h>

#include <cstdint>

#include "qta/export.h"
#include "qta/pools/apr_pool.h"
#include "qta/thread/qta_thread.h"

namespace qta::qtalog {

class QTA_EXPORT AsyncResetHandler : public QTAThread {
 public:
  // Only wakes the thread.
  static constexpr uint8_t kWake = 0;
  // Ask for a reset; the two values let callers tell their requests apart
  // (a program's own code, and its signal handlers).
  static constexpr uint8_t kReset = 1;
  static constexpr uint8_t kSignalReset = 2;

  // Makes the pipe; the thread starts with start().
  AsyncResetHandler();
  // Stops the thread (a stop request and a wake byte), joins it and closes
  // the pipe.
  ~AsyncResetHandler() override;

  // Each writes one byte to the pipe and never blocks: kReset, kSignalReset,
  // or `command`. Async-signal-safe; errno is left as it was.
  void requestReset() noexcept { send(kReset); }
  void requestSignalReset() noexcept { send(kSignalReset); }
  void send(uint8_t command) noexcept;

  // Whether the pipe exists (the triggers do something).
  bool hasPipe() const noexcept { return writeEnd_ != nullptr; }

 protected:
  void run() override;

 private:
  APRPool pool_;
  apr_file_t* readEnd_ = nullptr;
  apr_file_t* writeEnd_ = nullptr;
  // The write end's descriptor, written with write(2) from signal handlers.
  int writeFd_ = -1;
};

}  // namespace qta::qtalog

#endif  // QTA_LOGRESET_ASYNC_RESET_HANDLER_H_
