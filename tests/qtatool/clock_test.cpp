// qtatool clock and qtatool date: results, refused values (status 1) and
// malformed command lines (status 2); neither failure prints a result.
#include <gtest/gtest.h>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolClock, PrintsResultsAndRefuses) {
  expectRuns({
      {{"clock", "parse", "  1:02:03.5  "}, 0, "3723500000000\n"},
      {{"clock", "parse", "--allow-negative", "--", "-5s"}, 0, "-5000000000\n"},
      {{"clock", "parse", "--allow-zero", "0"}, 0, "0\n"},
      {{"clock", "parse", "media"}, 0, "media\n"},
      {{"clock", "format", "--", "-1500000000", "ms"}, 0, "-1500ms\n"},
      {{"clock", "format", "59999600000", "hms."}, 0, "0:00:59.1000\n"},
      {{"clock", "convert", "48000", "48000"}, 0, "1000000000\n"},
      {{"clock", "convert", "48000", "48000", "100"}, 0, "999900000\n"},
      {{"date", "iso", "784111777000000000"}, 0, "1994-11-06T08:49:37Z\n"},
      {{"date", "rfc822", "--", "-1000000000"}, 0, "Wed, 31 Dec 1969 23:59:59 GMT\n"},
      {{"date", "http", "Sunday, 06-Nov-94 08:49:37 GMT"}, 0, "784111777000000000\n"},
      {{"clock", "parse", "0"}, 1},
      {{"clock", "parse", "--allow-zero", "--", "-1"}, 1},
      {{"clock", "convert", "1", "0"}, 1},
      {{"clock", "parse", "1:02:03.5s"}, 1},
      {{"clock", "parse", "1", "2"}, 2},
      {{"clock"}, 2},
      {{"clock", "format", "1.5"}, 2},
      {{"clock", "convert", "1", "2", "3000000000"}, 2},
      {{"date", "week", "1"}, 2},
      {{"date", "rfc822", "9223372036854775808"}, 2},
  });
}

}  // namespace
}  // namespace qtatooltest
