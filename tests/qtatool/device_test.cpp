// qtatool device and serial. The device values come from the machine's own
// files, so only the shape of its one-line JSON is checked; serial is checked
// both ways, with its refusals and their reasons, and its usage errors.
#include <gtest/gtest.h>

#include <string>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolDevice, PrintsEveryIdentifierOnOneLine) {
  const ToolResult result = runTool({"device"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
  for (const char* name :
       {"hardwareType", "serialNumber", "userSerialNumber", "boardSerialNumber",
        "systemSerialNumber", "chassisSerialNumber", "mainInterfaceName", "result"}) {
    EXPECT_NE(result.out.find(std::string("\"").append(name).append("\": ")), std::string::npos)
        << name;
  }
  // Nothing sets the application's interface name in the tool.
  EXPECT_NE(result.out.find("\"interfaceName\": { \"found\": false, \"value\": \"eth0\" }"),
            std::string::npos);
}

// The library tests check every refusal text; these show the tool passes them on.
TEST(QtatoolSerial, EncodesDecodesAndRefuses) {
  expectRuns({
      {{"serial", "encode", "0", "00c0de000000"}, 0, "X222222J\n", "", ""},
      {{"serial", "encode", "19", "00-C0-DE-AB-CD-EF"}, 0, "XMURMHHC\n", "", ""},
      {{"serial", "decode", "xmurmhhc"}, 0, "19 00c0deabcdef\n", "", ""},
      {{"serial", "encode", "0", "00:11:22:33:44:55"}, 1, "", "", "bad mac\n"},
      {{"serial", "decode", "Y2345678"}, 1, "", "", "Serial number must start with an X\n"},
      {{"serial"}, 2},
      {{"serial", "encode", "256", "00c0de000000"}, 2},
      {{"serial", "decode", "X222222J", "extra"}, 2},
      {{"device", "extra"}, 2},
  });
}

}  // namespace
}  // namespace qtatooltest
