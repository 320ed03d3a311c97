#include <gtest/gtest.h>

#include "run_tool.h"

namespace qtatooltest {
namespace {

constexpr const char* kDocument = R"({"b": [1, 2.50, "x\u00e9"], "a": {"c": null}, "b": {}})";

TEST(QtatoolJson, FormatsGetsAndRefuses) {
  expectRuns({
      {{"json", "fmt"}, 0, "{\n\t\"a\": {\n\t\t\"c\": null\n\t},\n\t\"b\": { }\n}\n", kDocument},
      {{"json", "fmt", "--compact", "-"},
       0,
       "[ 1, 16, \"x\xC3\xA9\" ]\n",
       "[1, 0x10, \"x\u00e9\","},
      {{"json", "get", "a"}, 0, "{ \"c\": null }\n", kDocument},
      {{"json", "get", "a.c"}, 0, "null\n", kDocument},
      {{"json", "get", "1"}, 0, "[ \"\\n\" ]\n", "[true, [\"\\n\"]]"},
      {{"json", "get", "a.d"}, 1, "", kDocument, ""},  // no such value: nothing said,
      {{"json", "get", "b.0"}, 1, "", kDocument, ""},
      {{"json", "fmt"}, 1, "", "[1, 2"},
      {{"json", "get", "a"}, 1, "", ""},
      {{"json", "fmt"}, 1, "", "nul", "invalid JSON\n"},
  });
}

}  // namespace
}  // namespace qtatooltest
