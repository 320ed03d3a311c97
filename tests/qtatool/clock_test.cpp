// qtatool clock and qtatool date: results, rejected inputs and usage errors.
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
      {{"clock", "parse", "indefinite"}, "indefinite\n"},
      {{"clock", "format", "1500000000"}, "1.5s\n"},
      {{"clock", "format", "--", "-1500000000", "ms"}, "-1500ms\n"},
      {{"clock", "format", "59999600000", "hms."}, "0:00:59.1000\n"},
      {{"clock", "format", "1", "hms.."}, "<invalid format>\n"},
      {{"clock", "convert", "48000", "48000"}, "1000000000\n"},
      {{"clock", "convert", "48000", "48000", "100"}, "999900000\n"},
      {{"clock", "convert", "9223372037", "1"}, "9223372036854775807\n"},
      {{"date", "iso", "784111777000000000"}, "1994-11-06T08:49:37Z\n"},
      {{"date", "rfc822", "--", "-1000000000"}, "Wed, 31 Dec 1969 23:59:59 GMT\n"},
      {{"date", "http", "Sunday, 06-Nov-94 08:49:37 GMT"}, "784111777000000000\n"},
      {{"date", "http", "yesterday"}, "0\n"},
  };
  for (const auto& [args, out] : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 0) << args[2] << result.err;
    EXPECT_EQ(result.out, out) << args[2];
  }
}

TEST(QtatoolClock, RejectsRefusedValuesWithOne) {
  const std::vector<std::string> cases[] = {
      {"clock", "parse", "0"},          {"clock", "parse", "--allow-zero", "--", "-1"},
      {"clock", "parse", "1:02:03.5s"}, {"clock", "parse", "unresolved"},
      {"clock", "convert", "1", "0"},   {"clock", "convert", "99999999999", "0", "5"},
  };
  for (const std::vector<std::string>& args : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 1) << args[2];
    EXPECT_TRUE(result.out.empty()) << args[2];
    EXPECT_FALSE(result.err.empty()) << args[2];
  }
}

TEST(QtatoolClock, UsageErrorsExitWithTwo) {
  const std::vector<std::string> cases[] = {
      {"clock"},
      {"clock", "parse"},
      {"clock", "parse", "1", "2"},
      {"clock", "format", "1.5"},
      {"clock", "format", "1", "s", "x"},
      {"clock", "format", "--allow-zero", "1"},
      {"clock", "convert", "1"},
      {"clock", "convert", "1", "x"},
      {"clock", "convert", "1", "2", "3000000000"},
      {"date", "iso"},
      {"date", "week", "1"},
      {"date", "rfc822", "9223372036854775808"},
  };
  for (const std::vector<std::string>& args : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << args.back();
    EXPECT_TRUE(result.out.empty()) << args.back();
  }
}

TEST(QtatoolClock, ListedWithHelpAndDemoSections) {
  const std::string help = runTool({"--help"}).out;
  for (const std::string name : {"clock", "date"}) {
    EXPECT_NE(help.find("\n  " + name + " "), std::string::npos) << name;
    EXPECT_TRUE(runTool({name, "--help"}).out.starts_with("Usage: qtatool " + name));
  }
  const std::string demo = runTool({"demo"}).out;
  const size_t clock = demo.find("== clock values\n");
  EXPECT_NE(clock, std::string::npos);
  EXPECT_NE(demo.find("== calendar dates\n", clock), std::string::npos);
}

}  // namespace
}  // namespace qtatooltest
