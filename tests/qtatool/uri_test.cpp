#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolUri, PrintsComponentsAndFormsAsOneJSONLine) {
  const ToolResult result = runTool({"uri", "parse", "HTTP://u@Server1/a/../b%20c?x=%3d#f"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "{ \"display\": \"http://u@server1/b c?x==#f\", \"fragment\": \"f\", "
            "\"full\": \"http://u@server1/b%20c?x=%3D#f\", \"host\": \"server1\", "
            "\"localPath\": \"\", \"path\": { \"absolute\": true, \"segments\": [ \"b c\" ], "
            "\"trailingSlash\": false }, \"port\": 80, \"query\": \"x=%3D\", "
            "\"root\": \"http://server1/\", \"scheme\": \"http\", \"userInfo\": \"u\" }\n");
}

TEST(QtatoolUri, TemplateModeKeepsPlaceholders) {
  const ToolResult plain = runTool({"uri", "parse", "file:///m/[[a/b]]"});
  const ToolResult templated = runTool({"uri", "parse", "--template", "file:///m/[[a/b]]"});
  EXPECT_NE(plain.out.find("\"segments\": [ \"m\", \"[[a\", \"b]]\" ]"), std::string::npos);
  EXPECT_NE(templated.out.find("\"segments\": [ \"m\", \"[[a/b]]\" ]"), std::string::npos);
  EXPECT_NE(templated.out.find("\"localPath\": \"/m/[[a/b]]\""), std::string::npos);
}

TEST(QtatoolUri, RejectsOnlyInvalidTexts) {
  const ToolResult invalid = runTool({"uri", "parse", "http://host?x"});
  EXPECT_EQ(invalid.status, 1);
  EXPECT_EQ(invalid.out, "");
  EXPECT_EQ(invalid.err, "invalid URI\n");

  const ToolResult empty = runTool({"uri", "parse", ""});  // an empty reference is valid
  EXPECT_EQ(empty.status, 0);
  EXPECT_NE(empty.out.find("\"full\": \"\""), std::string::npos);
}

// Texts longer than the system lets one argument be come through standard
// input (or a file); one final line break is not part of the text.
TEST(QtatoolUri, ReadsLongTextsFromStandardInput) {
  const std::string path = std::string(200 * 1024, 'p');
  const ToolResult piped = runTool({"uri", "parse", "--file", "-"}, "http://h/" + path + "\n");
  EXPECT_EQ(piped.status, 0) << piped.err;
  EXPECT_NE(piped.out.find("\"full\": \"http://h/" + path + "\""), std::string::npos);

  const ToolResult dashed = runTool({"uri", "parse", "--", "-x"});  // "--" ends the options
  EXPECT_NE(dashed.out.find("\"segments\": [ \"-x\" ]"), std::string::npos) << dashed.err;
}

}  // namespace
}  // namespace qtatooltest
