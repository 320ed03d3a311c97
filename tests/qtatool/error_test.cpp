// qtatool error: catalogue lookups and the errors the translators throw.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolError, PrintsCodesAndThrownErrors) {
  struct Case {
    std::vector<std::string> args;
    std::string out;
  };
  const Case cases[] = {
      {{"47"}, "3\tEmpthy input string not allowed\n"},
      {{"52"}, "6\tUnknown Network Error\n"},
      {{"54"}, "0\t\n"},
      {{"4294967295"}, "0\tNetwork Error\n"},
      {{"http", "405", "MKCOL", "http://h/d"},
       "QTAError\t33\tFile Exist : HTTP MKCOL http://h/d -> 405\n"},
      {{"http", "407", "GET", "http://h/", "Proxy Authentication Required"},
       "QTAAuthError\t6\tUser authentication failed on proxy : HTTP GET http://h/ -> 407 Proxy "
       "Authentication Required\n"},
      {{"transfer", "ftp", "67", "USER", "ftp://h/"},
       "QTAAuthError\t3\tUser authentication failed on server : FTP USER ftp://h/ -> failed\n"},
      {{"transfer", "http", "73", "PUT", "http://h/f", "exists\r\n"},
       "QTAError\t33\tFile Exist : HTTP PUT http://h/f -> exists\n"},
      {{"errno", "36", "2", "/no/file"},
       "QTAError\t36\tFile read error : /no/file: " + std::string(std::strerror(2)) + "\n"},
      {{"apr", "70007"}, "QTAError\t25\tTimed out\n"},
      {{"apr", "104", "/sock"}, "QTAError\t12\tConnection lost : /sock\n"},
  };
  for (const Case& c : cases) {
    const ToolResult result = runTool([&] {
      std::vector<std::string> args = {"error"};
      args.insert(args.end(), c.args.begin(), c.args.end());
      return args;
    }());
    EXPECT_EQ(result.status, 0) << c.args[0] << result.err;
    EXPECT_EQ(result.out, c.out) << c.args[0];
  }
}

TEST(QtatoolError, BadArgumentsExitWithTwo) {
  const std::vector<std::string> cases[] = {
      {},
      {"x"},
      {"4294967296"},
      {"1", "2"},
      {"smtp", "1"},
      {"http", "4o4", "GET", "http://h/"},
      {"http", "404", "GET"},
      {"transfer", "gopher", "1", "GET", "http://h/"},
      {"transfer", "ftp", "1", "GET"},
      {"errno", "30", "x"},
      {"errno", "-1", "2"},
      {"apr", " 13"},
      {"apr", "13", "/p", "extra"},
  };
  for (const std::vector<std::string>& args : cases) {
    std::vector<std::string> line = {"error"};
    line.insert(line.end(), args.begin(), args.end());
    const ToolResult result = runTool(line);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(args);
    EXPECT_TRUE(result.out.empty()) << testing::PrintToString(args);
  }
  EXPECT_EQ(runTool({"error", "--help"}).status, 0);
}

}  // namespace
}  // namespace qtatooltest
