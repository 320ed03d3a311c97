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

TEST(QtatoolUri, DataURIsAddMediaTypeAndBytes) {
  const ToolResult result = runTool({"uri", "parse", "data:,A%20brief%20note"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(
      result.out.starts_with("{ \"data\": \"QSBicmllZiBub3Rl\", \"display\": "
                             "\"data:text/plain;charset=US-ASCII,[...]\", "))
      << result.out;
  EXPECT_NE(result.out.find(
                "\"localPath\": \"\", \"mediaType\": \"text/plain;charset=US-ASCII\", \"path\""),
            std::string::npos)
      << result.out;
  EXPECT_EQ(runTool({"uri", "parse", "http://h/"}).out.find("mediaType"), std::string::npos);
}

TEST(QtatoolUri, ResolvesRelativisesAndCompares) {
  struct Case {
    std::vector<std::string> args;
    std::string out;
  };
  const Case cases[] = {
      {{"resolve", "http://h/a/b/c", "../z?q"}, "http://h/a/z?q\n"},
      {{"resolve", "--template", "http://h/[[a/b]]/c", "d"}, "http://h/[[a/b]]/d\n"},
      {{"relative", "http://h/x/y", "http://h/a/b/c"}, "../a/b/c\n"},
      {{"relative", "https://h/a/d", "http://h/a/b/c"}, "http://h/a/b/c\n"},
      {{"compare", "http://h/a", "HTTP://h:80/a"}, "0\n"},
      {{"compare", "http://h/a", "http://h/b"}, "-1\n"},
      {{"compare", "https://a/", "http://z/"}, "1\n"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args = {"uri"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 0) << c.args[1] << " " << result.err;
    EXPECT_EQ(result.out, c.out) << c.args[1];
  }
  const ToolResult invalid = runTool({"uri", "resolve", "http://h/", "http://h?x"});
  EXPECT_EQ(invalid.status, 1);
  EXPECT_EQ(invalid.err, "invalid URI: http://h?x\n");
}

}  // namespace
}  // namespace qtatooltest
