// qtatool device: the shape of its one-line JSON. The values come from the
// machine's own files, so only what holds on every machine is checked.
#include <gtest/gtest.h>

#include <string>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolDevice, PrintsEveryIdentifierOnOneLine) {
  const ToolResult result = runTool({"device"});
  ASSERT_EQ(result.status, 0) << result.err;
  ASSERT_FALSE(result.out.empty());
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
  const char* names[] = {"hardwareType",      "serialNumber",       "userSerialNumber",
                         "boardSerialNumber", "systemSerialNumber", "chassisSerialNumber",
                         "mainInterfaceName", "interfaceName"};
  for (const char* name : names) {
    EXPECT_NE(result.out.find("\"" + std::string(name) + "\": { \"found\": "), std::string::npos)
        << name;
  }
  // Nothing sets the application's interface name in the tool.
  EXPECT_NE(result.out.find("\"interfaceName\": { \"found\": false, \"value\": \"eth0\" }"),
            std::string::npos);
  EXPECT_NE(result.out.find("\"result\": "), std::string::npos);
}

TEST(QtatoolDevice, RefusesOperands) { EXPECT_EQ(runTool({"device", "extra"}).status, 2); }

}  // namespace
}  // namespace qtatooltest
