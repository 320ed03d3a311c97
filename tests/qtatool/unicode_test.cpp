#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

using namespace std::string_literals;

TEST(QtatoolUnicode, ConvertsAndChecks) {
  struct Case {
    std::vector<std::string> args;
    std::string input;
    int status;
    std::string out;
  };
  const Case cases[] = {
      {{"utf8", "check"}, "caf\xC3\xA9", 0, ""},
      {{"utf8", "check", "-"}, "\xC0\x80", 1, ""},
      {{"utf8", "check"}, "", 0, ""},
      {{"utf8", "to-utf16"},
       "\xF0\x9F\x98\x80"
       "A",
       0,
       "D83D DE00 0041\n"},
      {{"utf8", "to-utf32"},
       "\xF0\x9F\x98\x80"
       "A",
       0,
       "1F600 0041\n"},
      {{"utf8", "to-utf16"}, "\xF4\x90\x80\x80", 0, "003F 003F\n"},
      {{"utf8", "to-utf32"}, "", 0, "\n"},
      {{"utf16", "to-utf8", "D83D", "de00", "41"},
       "",
       0,
       "\xF0\x9F\x98\x80"
       "A"},
      {{"utf16", "to-utf8", "DE00"}, "", 0, ""},
      {{"utf32", "to-utf8", "E9", "110000", "0"}, "", 0, "\xC3\xA9\0"s},
  };
  for (const Case& c : cases) {
    const ToolResult result = runTool(c.args, c.input);
    EXPECT_EQ(result.status, c.status) << c.args[1] << " " << c.input << result.err;
    EXPECT_EQ(result.out, c.out) << c.args[1] << " " << c.input;
  }
}

TEST(QtatoolUnicode, ReadsAFile) {
  const std::string path = testing::TempDir() + "qtatool_unicode_input.txt";
  std::ofstream(path, std::ios::binary) << "\xE2\x82\xAC";
  const ToolResult result = runTool({"utf8", "to-utf16", path});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "20AC\n");
  std::remove(path.c_str());
}

TEST(QtatoolUnicode, UsageErrors) {
  const std::vector<std::vector<std::string>> cases = {
      {"utf8"},
      {"utf8", "shout"},
      {"utf8", "check", "a", "b"},
      {"utf8", "check", "--fast"},
      {"utf16", "to-utf8", "12345"},
      {"utf16", "to-utf8", "xyz"},
      {"utf32", "to-utf8", "123456789"},
      {"utf32"},
      {"utf8", "check", "/no/such/file"},
  };
  for (const auto& args : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << args.back();
    EXPECT_FALSE(result.err.empty()) << args.back();
    EXPECT_TRUE(result.out.empty()) << args.back();
  }
}

}  // namespace
}  // namespace qtatooltest
