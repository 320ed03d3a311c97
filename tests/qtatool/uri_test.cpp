#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolUri, PrintsResultsAndRefusesInvalidTexts) {
  expectRuns({
      {{"uri", "parse", "HTTP://u@Server1/a/../b%20c?x=%3d#f"},
       0,
       "{ \"display\": \"http://u@server1/b c?x==#f\", \"fragment\": \"f\", "
       "\"full\": \"http://u@server1/b%20c?x=%3D#f\", \"host\": \"server1\", "
       "\"localPath\": \"\", \"path\": { \"absolute\": true, \"segments\": [ \"b c\" ], "
       "\"trailingSlash\": false }, \"port\": 80, \"query\": \"x=%3D\", "
       "\"root\": \"http://server1/\", \"scheme\": \"http\", \"userInfo\": \"u\" }\n"},
      {{"uri", "parse", "http://host?x"}, 1, "", "", "invalid URI\n"},
      {{"uri", "resolve", "http://h/a/b/c", "../z?q"}, 0, "http://h/a/z?q\n"},
      {{"uri", "resolve", "--template", "http://h/[[a/b]]/c", "d"}, 0, "http://h/[[a/b]]/d\n"},
      {{"uri", "resolve", "http://h/", "http://h?x"}, 1, "", "", "invalid URI: http://h?x\n"},
      {{"uri", "relative", "http://h/x/y", "http://h/a/b/c"}, 0, "../a/b/c\n"},
      {{"uri", "relative", "https://h/a/d", "http://h/a/b/c"}, 0, "http://h/a/b/c\n"},
      {{"uri", "compare", "http://h/a", "HTTP://h:80/a"}, 0, "0\n"},
      {{"uri", "compare", "http://h/a", "http://h/b"}, 0, "-1\n"},
      {{"uri", "compare", "https://a/", "http://z/"}, 0, "1\n"},
  });
}

TEST(QtatoolUri, ParsesTemplatesDataAndLongTexts) {
  const std::string longPath(200 * 1024, 'p');
  const struct {
    std::vector<std::string> args;
    std::string input;
    std::vector<std::string> parts;  // each must show up in the output
  } cases[] = {
      {{"file:///m/[[a/b]]"}, "", {"\"segments\": [ \"m\", \"[[a\", \"b]]\" ]"}},
      {{"--template", "file:///m/[[a/b]]"},
       "",
       {"\"segments\": [ \"m\", \"[[a/b]]\" ]", "\"localPath\": \"/m/[[a/b]]\""}},
      {{""}, "", {"\"full\": \"\""}},                    // an empty reference is valid
      {{"--", "-x"}, "", {"\"segments\": [ \"-x\" ]"}},  // "--" ends the options
      // Texts longer than the system lets one argument be come through standard
      // input; one final line break is not part of the text.
      {{"--file", "-"}, "http://h/" + longPath + "\n", {"\"full\": \"http://h/" + longPath + "\""}},
      {{"data:,A%20brief%20note"},
       "",
       {"{ \"data\": \"QSBicmllZiBub3Rl\", \"display\": "
        "\"data:text/plain;charset=US-ASCII,[...]\", ",
        "\"localPath\": \"\", \"mediaType\": \"text/plain;charset=US-ASCII\", \"path\""}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> args = {"uri", "parse"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    const ToolResult result = runTool(args, c.input);
    EXPECT_EQ(result.status, 0) << c.args.back() << result.err;
    for (const std::string& part : c.parts) {
      EXPECT_NE(result.out.find(part), std::string::npos) << part.substr(0, 80);
    }
  }
  EXPECT_EQ(runTool({"uri", "parse", "http://h/"}).out.find("mediaType"), std::string::npos);
}

}  // namespace
}  // namespace qtatooltest
