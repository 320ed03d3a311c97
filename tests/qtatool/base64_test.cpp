#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

using namespace std::string_literals;

TEST(QtatoolBase64, EncodesAndDecodesStandardInput) {
  struct Case {
    std::vector<std::string> args;
    std::string input, out;
  };
  const Case cases[] = {
      {{"base64", "encode"}, "foobar", "Zm9vYmFy\n"},
      {{"base64", "encode", "-"}, "\xFB\xFF", "+/8=\n"},
      {{"base64", "encode", "--url"}, "\xFB\xFF", "-_8\n"},
      {{"base64", "encode"}, "", "\n"},
      {{"base64", "decode"}, "Zm9v\nYmFy\n", "foobar"},
      {{"base64", "decode", "--url", "-"}, "-_8", "\xFB\xFF"},
      {{"base64", "decode"}, "-_8", ""},
      {{"base64", "decode"}, "AAB/", "\0\0\x7f"s},  // NUL bytes pass through unchanged
  };
  for (const Case& c : cases) {
    const ToolResult result = runTool(c.args, c.input);
    EXPECT_EQ(result.status, 0) << c.input << result.err;
    EXPECT_EQ(result.out, c.out) << c.input;
  }
}

TEST(QtatoolBase64, ReadsAFile) {
  const std::string path = testing::TempDir() + "qtatool_base64_input.bin";
  std::ofstream(path, std::ios::binary) << "\xFF\xFE\x00\x01"s;
  const ToolResult result = runTool({"base64", "encode", "--url", path});
  std::remove(path.c_str());
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "__4AAQ\n");
}

TEST(QtatoolBase64, UsageErrorsExitWithTwo) {
  const std::vector<std::string> cases[] = {
      {"base64"},
      {"base64", "compress"},
      {"base64", "encode", "--wrap"},
      {"base64", "decode", "a", "b"},
      {"base64", "decode", "/nonexistent/input"},
  };
  for (const auto& args : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << args.back();
    EXPECT_FALSE(result.err.empty());
    EXPECT_TRUE(result.out.empty());
  }
  const ToolResult help = runTool({"base64", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--url"), std::string::npos);
}

}  // namespace
}  // namespace qtatooltest
