// Configures logging as a player program does, runs a worker thread that
// logs, and rotates the player log the way an outside log rotation does: the
// file is renamed and SIGHUP asks the reset handler to re-open it.
//
//   example_logging                  the default configuration
//   example_logging FILE             FILE in properties form, or XML (*.xml)
//
// The log files land in log/ under the working directory.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "qta/log/configure.h"
#include "qta/log/log.h"
#include "qta/logreset/async_reset_handler.h"
#include "qta/thread/qta_thread.h"

namespace {

qta::qtalog::AsyncResetHandler* resetHandler = nullptr;

// Only writes one byte to a pipe: safe in a signal handler.
void onHangUp(int) { resetHandler->requestSignalReset(); }

// Logs a numbered tick every 50 ms until it has logged `ticks` or is stopped.
class Ticker : public qta::QTAThread {
 public:
  explicit Ticker(int ticks) : QTAThread("example ticker"), ticks_(ticks) {}
  ~Ticker() override { stopAndJoin(); }

 protected:
  void run() override {
    const log4cxx::LoggerPtr logger = qta::qtalog::getLogger("example");
    for (int tick = 1; tick <= ticks_; ++tick) {
      QTA_LOG_INFO(logger, "tick " << tick << " on thread '" << name() << "'");
      if (waitForStopRequest(std::chrono::milliseconds(50))) return;
    }
  }

 private:
  const int ticks_;
};

bool configure(int argc, char** argv) {
  if (argc < 2) return qta::qtalog::configureDefault();
  const std::string path = argv[1];
  std::filesystem::create_directories("log");
  return path.ends_with(".xml") ? qta::qtalog::configureFromXML(path)
                                : qta::qtalog::configureFromINI(path);
}

}  // namespace

int main(int argc, char** argv) {
  qta::qtalog::startupConfigure(true, false);
  if (!configure(argc, argv)) return 1;

  qta::qtalog::AsyncResetHandler handler;
  resetHandler = &handler;
  signal(SIGHUP, onHangUp);
  handler.start();

  Ticker ticker(6);
  ticker.setPriority(qta::QTAThread::Priority::kMedium);  // applied when it begins
  ticker.start();
  usleep(120000);
  std::filesystem::rename("log/player.log", "log/player.log.old");
  kill(getpid(), SIGHUP);
  ticker.join();

  signal(SIGHUP, SIG_DFL);
  std::printf("the first ticks are in log/player.log.old, the later ones in log/player.log\n");
  return 0;
}
