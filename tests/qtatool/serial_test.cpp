// qtatool serial: both directions, refusals with their reasons, usage errors.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolSerial, EncodesDecodesAndRefuses) {
  const struct {
    std::vector<std::string> args;
    int status;
    std::string out;
    std::string err;
  } cases[] = {
      {{"serial", "encode", "0", "00c0de000000"}, 0, "X222222J\n", ""},
      {{"serial", "decode", "x222222j"}, 0, "0 00c0de000000\n", ""},
      {{"serial", "encode", "0", "00:11:22:33:44:55"}, 1, "", "bad mac\n"},
      {{"serial", "decode", "Y2345678"}, 1, "", "Serial number must start with an X\n"},
      {{"serial", "decode", "X0000000"}, 1, "", "invalid base32 character\n"},
      {{"serial", "decode", "X222222J2"}, 1, "", "setBits index\n"},
      {{"serial", "decode", "X222222K"}, 1, "", "Damm code error\n"},
  };
  for (const auto& [args, status, out, err] : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, status) << args.back();
    EXPECT_EQ(result.out, out) << args.back();
    EXPECT_EQ(result.err, err) << args.back();
  }
}

TEST(QtatoolSerial, RoundTripsThroughTheTool) {
  const ToolResult encoded = runTool({"serial", "encode", "19", "00-C0-DE-AB-CD-EF"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  ASSERT_EQ(encoded.out.size(), 9u);
  const ToolResult decoded = runTool({"serial", "decode", encoded.out.substr(0, 8)});
  EXPECT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_EQ(decoded.out, "19 00c0deabcdef\n");
}

TEST(QtatoolSerial, UsageErrors) {
  const std::vector<std::string> cases[] = {
      {"serial"},
      {"serial", "encode", "0"},
      {"serial", "encode", "256", "00c0de000000"},
      {"serial", "encode", "-1", "00c0de000000"},
      {"serial", "decode"},
      {"serial", "decode", "X222222J", "extra"},
  };
  for (const auto& args : cases) {
    const ToolResult result = runTool(args);
    EXPECT_EQ(result.status, 2) << args.size();
    EXPECT_TRUE(result.out.empty());
  }
}

}  // namespace
}  // namespace qtatooltest
