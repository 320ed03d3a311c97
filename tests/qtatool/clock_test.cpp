// qtatool clock and qtatool date: results, refused values and usage errors.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolClock, PrintsResults) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"clock", "parse", "  1:02:03.5  "}, "3723500000000\n"},
      {{"clock", "parse", "--allow-negative", "--", "-5s"}, "-5000000000\n"},
      {{"clock", "parse", "--allow-zero", "0"}, "0\n"},
      {{"clock", "parse", "media"}, "media\n"},
      {{"clock", "format", "--", "-1500000000", "ms"}, "-1500ms\n"},
      {{"clock", "format", "59999600000", "hms."}, "0:00:59.1000\n"},
      {{"clock", "convert", "48000", "48000"}, "1000000000\n"},
      {{"clock", "convert", "48000", "48000", "100"}, "999900000\n"},
      {{"date", "iso", "784111777000000000"}, "1994-11-06T08:49:37Z\n"},
      {{"date", "rfc822", "--", "-1000000000"}, "Wed, 31 Dec 1969 23:59:59 GMT\n"},
      {{"date", "http", "Sunday, 06-Nov-94 08:49:37 GMT"}, "784111777000000000\n"},
  };
  for (const auto& [args, out] : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 0) << args[2] << result.err;
    EXPECT_EQ(result.out, out) << args[2];
  }
}

// Refused values exit with 1, malformed command lines with 2; neither prints a result.
TEST(QtatoolClock, FailuresExitWithOneOrTwo) {
  const std::pair<std::vector<std::string>, int> cases[] = {
      {{"clock", "parse", "0"}, 1},        {{"clock", "parse", "--allow-zero", "--", "-1"}, 1},
      {{"clock", "convert", "1", "0"}, 1}, {{"clock", "parse", "1:02:03.5s"}, 1},
      {{"clock", "parse", "1", "2"}, 2},   {{"clock"}, 2},
      {{"clock", "format", "1.5"}, 2},     {{"clock", "convert", "1", "2", "3000000000"}, 2},
      {{"date", "week", "1"}, 2},          {{"date", "rfc822", "9223372036854775808"}, 2},
  };
  for (const auto& [args, status] : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, status) << args.back();
    EXPECT_TRUE(result.out.empty()) << args.back();
    EXPECT_FALSE(result.err.empty()) << args.back();
  }
}

}  // namespace
}  // namespace qtatooltest
