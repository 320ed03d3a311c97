#include <gtest/gtest.h>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolCli, HelpAndVersionSucceed) {
  const ToolResult help = runTool({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("demo"), std::string::npos);
  EXPECT_EQ(runTool({"--version"}).status, 0);
  EXPECT_EQ(runTool({"demo", "--help"}).status, 0);
}

TEST(QtatoolCli, UsageErrorsExitWithTwo) {
  for (const auto& args :
       std::vector<std::vector<std::string>>{{}, {"no-such-command"}, {"demo", "extra"}}) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << (args.empty() ? "(none)" : args[0]);
    EXPECT_FALSE(result.err.empty());
    EXPECT_TRUE(result.out.empty());
  }
}

TEST(QtatoolCli, DemoRuns) {
  const ToolResult result = runTool({"demo"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_FALSE(result.out.empty());
}

}  // namespace
}  // namespace qtatooltest
