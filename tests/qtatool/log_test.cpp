#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "log/scratch_directory.h"
#include "log/text_shape.h"
#include "run_tool.h"

namespace qtatooltest {
namespace {

using qta::testing::readFile;

// Each test runs the tool in a fresh working directory, where the log files go.
using QtatoolLog = qta::testing::ScratchDirectoryTest;

TEST_F(QtatoolLog, DefaultConfigurationWritesTheFiles) {
  const ToolResult result = runTool({"log", "--default", "qta.accounting", "info", "sale 1"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(readFile("log/accounting.log"), "sale 1\n");
  EXPECT_TRUE(qta::testing::matchesShape(
      readFile("log/player.log"),
      std::string(qta::testing::kPlayerStamp) +
          "INFO  qta.utils            - Logs configureDefault() sucess\n"));
}

TEST_F(QtatoolLog, StartupConfigurationWritesToStandardError) {
  const ToolResult result = runTool({"log", "qta.device", "WARN", "no serial"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(qta::testing::matchesShape(result.err, "##:##:## WARN: no serial\n")) << result.err;
  EXPECT_EQ(runTool({"log", "qta.device", "DEBUG", "dropped"}).err, "");
}

TEST_F(QtatoolLog, ConfigurationFilesInBothForms) {
  std::filesystem::create_directory("log");
  for (const char* file : {"log4cxx.properties", "log4cxx.xml"}) {
    const std::string path = std::string(QTA_SOURCE_DIR "/examples/") + file;
    const ToolResult result = runTool({"log", "--config", path, "qta.accounting", "INFO", file});
    EXPECT_EQ(result.status, 0) << result.err;
  }
  EXPECT_EQ(readFile("log/accounting.log"), "log4cxx.properties\nlog4cxx.xml\n");
  const ToolResult missing = runTool({"log", "--config", "missing.xml", "qta", "INFO", "m"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.err.find("ERROR: qtalog::configureFromXML() failed"), std::string::npos);
}

}  // namespace
}  // namespace qtatooltest
