// A fresh temporary working directory for each test (where log files land,
// in "log/"), and file reading. Nothing here needs the logging library, so
// the tests of the tool and of the device sources share it too.
#ifndef QTA_TESTS_LOG_SCRATCH_DIRECTORY_H_
#define QTA_TESTS_LOG_SCRATCH_DIRECTORY_H_

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace qta::testing {

class ScratchDirectoryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "qta-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(directory_);
  }
  void TearDown() override {
    std::filesystem::current_path(previous_);
    std::filesystem::remove_all(directory_);
  }

  std::filesystem::path directory_;
  std::filesystem::path previous_;
};

// The whole file; empty when it does not exist.
inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The file's lines, without their line breaks.
inline std::vector<std::string> readLines(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace qta::testing

#endif  // QTA_TESTS_LOG_SCRATCH_DIRECTORY_H_
