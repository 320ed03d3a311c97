#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolCli, HelpListsEveryCommandAndEachHasItsOwnHelp) {
  const std::string help = runTool({"--help"}).out;
  for (const std::string name : {"demo", "log", "json", "utf8", "utf16", "utf32", "base64", "jws",
                                 "uri", "error", "clock", "date", "device", "serial"}) {
    EXPECT_NE(help.find("\n  " + name + " "), std::string::npos) << name;
    const ToolResult own = runTool({name, "--help"});
    EXPECT_EQ(own.status, 0) << name;
    EXPECT_TRUE(own.out.starts_with("Usage: qtatool " + name)) << own.out;
  }
  EXPECT_EQ(runTool({"--version"}).status, 0);
}

// A wrong command line or an unreadable input exits with 2, a message on
// stderr and nothing on stdout. Cases end at ';', their arguments split at
// white space; the first case is empty: no arguments at all.
TEST(QtatoolCli, UsageErrorsExitWithTwo) {
  std::istringstream cases(R"(; no-such-command; --no-such-option; demo extra;
json; json frob; json fmt a b; json get; json get --compact a; json fmt /no/such/file;
base64; base64 compress; base64 encode --wrap; base64 decode a b; base64 decode /no/such/file;
utf8 check a b; utf16 to-utf8 12345; utf16 to-utf8 xyz; utf32 to-utf8 123456789;
uri show x; uri parse; uri parse a b; uri parse --file; uri parse a --file -;
uri parse --file /no/such/file; uri resolve a; uri relative a b c; uri compare a --file b;
error; error x; error 4294967296; error 1 2; error smtp 1; error http 4o4 GET http://h/;
error http 404 GET; error transfer gopher 1 GET http://h/; error transfer ftp 1 GET;
error errno 30 x; error errno -1 2; error apr 13 /p extra;
jws; jws mint; jws sign; jws sign --secret-hex 00; jws sign --alg XX256 --secret-hex 00;
jws sign --alg none --secret-hex 00; jws sign --alg HS256 --secret-hex 0;
jws sign --alg HS256 --secret-hex 0g; jws sign --alg HS256 --key k.pem --secret-hex 00;
jws sign --alg HS256 --secret-hex 00 --header [1] /dev/null;
jws verify --alg HS256 --secret-hex 00 --header {} t; jws verify --alg ES256 --key /no/such.pem t;
jws header; jws header --alg HS256 t; jws header a b;
log; log qta INFO; log qta LOUD m; log qta INFO m extra; log --config;
log --default --config f qta INFO m)");
  for (std::string line; std::getline(cases, line, ';');) {
    std::vector<std::string> args;
    std::istringstream words(line);
    for (std::string word; words >> word;) args.push_back(word);
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << line;
    EXPECT_FALSE(result.err.empty()) << line;
    EXPECT_TRUE(result.out.empty()) << line;
  }
  EXPECT_EQ(runTool({"error", "apr", " 13"}).status, 2);  // no blanks before a number
}

TEST(QtatoolCli, DemoShowsEveryModuleInAFixedOrder) {
  const ToolResult result = runTool({"demo"});
  EXPECT_EQ(result.status, 0) << result.err;
  size_t at = 0;
  for (const char* section :
       {"== logging\n", "== JSON\n", "== Unicode text\n", "== base64\n", "== JWS\n", "== URI\n",
        "== errors\n", "== clock values\n", "== calendar dates\n", "== device\n", "== serial\n"}) {
    at = result.out.find(section, at);
    EXPECT_NE(at, std::string::npos) << section;
  }
}

TEST(QtatoolCli, CommandsReadAFile) {
  const std::string path = testing::TempDir() + "qtatool_input.txt";
  std::ofstream(path, std::ios::binary) << "http://h/\r\n";
  const ToolResult encoded = runTool({"base64", "encode", "--url", path});
  const ToolResult units = runTool({"utf8", "to-utf16", path});
  const ToolResult uri = runTool({"uri", "parse", "--file", path});
  std::remove(path.c_str());
  EXPECT_EQ(encoded.out, "aHR0cDovL2gvDQo\n");
  EXPECT_EQ(units.out, "0068 0074 0074 0070 003A 002F 002F 0068 002F 000D 000A\n");
  EXPECT_NE(uri.out.find("\"full\": \"http://h/\""), std::string::npos) << uri.err;
}

}  // namespace
}  // namespace qtatooltest
