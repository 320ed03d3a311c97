#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "log/text_shape.h"
#include "run_tool.h"

namespace qtatooltest {
namespace {

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Each test runs the tool in a fresh working directory, where the log files go.
class QtatoolLog : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "qtatool-log-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(folder_);
  }
  void TearDown() override {
    std::filesystem::current_path(previous_);
    std::filesystem::remove_all(folder_);
  }

  std::filesystem::path folder_, previous_;
};

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
