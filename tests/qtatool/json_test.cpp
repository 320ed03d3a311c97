#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

constexpr const char* kDocument = R"({"b": [1, 2.50, "x\u00e9"], "a": {"c": null}, "b": {}})";

TEST(QtatoolJson, FormatsGetsAndRefuses) {
  struct Case {
    std::vector<std::string> args;
    std::string input;
    int status;
    std::string out;
  };
  const Case cases[] = {
      {{"json", "fmt"}, kDocument, 0, "{\n\t\"a\": {\n\t\t\"c\": null\n\t},\n\t\"b\": { }\n}\n"},
      {{"json", "fmt", "--compact", "-"},
       "[1, 0x10, \"x\u00e9\",",
       0,
       "[ 1, 16, \"x\xC3\xA9\" ]\n"},
      {{"json", "get", "a"}, kDocument, 0, "{ \"c\": null }\n"},
      {{"json", "get", "a.c"}, kDocument, 0, "null\n"},
      {{"json", "get", "1"}, "[true, [\"\\n\"]]", 0, "[ \"\\n\" ]\n"},
      {{"json", "get", "a.d"}, kDocument, 1, ""},
      {{"json", "get", "b.0"}, kDocument, 1, ""},
      {{"json", "fmt"}, "[1, 2", 1, ""},
      {{"json", "get", "a"}, "", 1, ""},
  };
  for (const Case& c : cases) {
    const ToolResult result = runTool(c.args, c.input);
    EXPECT_EQ(result.status, c.status) << c.input << result.err;
    EXPECT_EQ(result.out, c.out) << c.input;
  }
  EXPECT_EQ(runTool({"json", "fmt"}, "nul").err, "invalid JSON\n");
}

}  // namespace
}  // namespace qtatooltest
