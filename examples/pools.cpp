// Builds a small tree of APR pools, allocates from it, writes a report to
// standard output with writeAll and times the work on the CPU stopwatch.
#include <apr_strings.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "qta/pools/apr_pool.h"
#include "qta/utils/cpu_stopwatch.h"
#include "qta/utils/format.h"
#include "qta/utils/io_loops.h"

int main() {
  qta::CPUStopwatch watch;
  watch.start(true);

  // The root pool keeps APR running; the request pool lives inside it and
  // goes when its object goes (or with the root, whichever comes first).
  qta::APRPool root("example");
  std::string report;
  for (int request = 0; request < 3; ++request) {
    qta::APRPool scratch(root, "request");
    const char* greeting = apr_psprintf(scratch.handle(), "request %d", request);
    report += qta::formatString("%s in pool %s\n", greeting, scratch.tag().c_str());
  }
  watch.stop();
  report += qta::formatString("root pool %s, %u APR user(s)\n", root.tag().c_str(),
                              qta::APRInitializer::users());

  size_t written = 0;
  if (qta::utils::writeAll(STDOUT_FILENO, report.data(), report.size(), &written) != 0) {
    std::perror("writeAll");
    return 1;
  }
  std::fprintf(stderr, "wrote %zu bytes in %llu microseconds of CPU time\n", written,
               static_cast<unsigned long long>(watch.elapsedMicroseconds()));
  return 0;
}
