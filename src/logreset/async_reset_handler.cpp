#include "qta/logreset/async_reset_handler.h"

#include <apr_portable.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "qta/log/configure.h"

namespace qta::qtalog {
namespace {

// The most commands served by one read; the rest wait for the next.
constexpr apr_size_t kBatchBytes = 16;

}  // namespace

AsyncResetHandler::AsyncResetHandler()
    : QTAThread("AsyncResetHandler"), pool_("qtalog::AsyncResetHandler") {
  if (apr_file_pipe_create_ex(&readEnd_, &writeEnd_, APR_READ_BLOCK, pool_.handle()) !=
      APR_SUCCESS) {
    readEnd_ = nullptr;
    writeEnd_ = nullptr;
    return;
  }
  // The reader blocks until a command comes; the writer never waits.
  apr_file_pipe_timeout_set(readEnd_, -1);
  apr_file_pipe_timeout_set(writeEnd_, 0);
  apr_file_inherit_unset(readEnd_);
  apr_file_inherit_unset(writeEnd_);
  apr_os_file_t fd = -1;
  apr_os_file_get(&fd, writeEnd_);
  writeFd_ = fd;
}

AsyncResetHandler::~AsyncResetHandler() {
  requestStop();
  send(kWake);
  try {
    join();
  } catch (...) {
    // join() throws only for a detached thread, which never comes here.
  }
  if (readEnd_ != nullptr) apr_file_close(readEnd_);
  if (writeEnd_ != nullptr) apr_file_close(writeEnd_);
}

void AsyncResetHandler::send(uint8_t command) noexcept {
  if (writeFd_ < 0) return;
  const int savedErrno = errno;
  // A full pipe already holds requests enough: a dropped byte loses nothing.
  [[maybe_unused]] const ssize_t written = ::write(writeFd_, &command, 1);
  errno = savedErrno;
}

void AsyncResetHandler::run() {
  if (readEnd_ == nullptr) return;
  while (isRunning()) {
    uint8_t commands[kBatchBytes];
    apr_size_t length = sizeof commands;
    const apr_status_t status = apr_file_read(readEnd_, commands, &length);
    // An interrupted or empty read is tried again; any other failure (the
    // pipe is broken) would fail forever, so the thread ends instead of
    // spinning.
    if (APR_STATUS_IS_EINTR(status) || APR_STATUS_IS_EAGAIN(status)) continue;
    if (status != APR_SUCCESS) return;
    if (length == 0) continue;
    const uint8_t* const begin = commands;
    const uint8_t* const end = commands + length;
    if (std::any_of(begin, end, [](uint8_t c) { return c == kReset || c == kSignalReset; })) {
      reset();
    }
  }
}

}  // namespace qta::qtalog
